// JSON as the commands print it.
#pragma once

#include <string>
#include <string_view>

#include "core/table/work_sheet.h"

namespace rowvane::cli {

void append_json_string(std::string_view text, std::string& out);

// One value of a table: numbers in shortest form, texts as strings, empty as null, a formula error as
// {"error": "#VALUE!"}, files as an array of their names.
void append_json_value(const CWorkSheet& table, RecordNumber record, size_t field, std::string& out);

}  // namespace rowvane::cli

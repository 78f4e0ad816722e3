// Values as they are typed on the command line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/table/work_sheet.h"

namespace rowvane::cli {

struct Assignment {
  size_t field;
  CellValue value;
};

// Reads "FIELD=VALUE" arguments for TABLE. Values are read as the window reads what is typed
// into a cell, by the generic signs: a decimal point, the year first. A long text or code "@PATH" is read
// from that file. Images and files are paths separated by ";", "link:PATH" for a shortcut. Answers a status
// and reports what is wrong.
int read_assignments(const CWorkSheet& table, const std::vector<std::string>& texts,
                     std::vector<Assignment>& assignments);

// Reads record numbers such as "1,5-9" into ascending positions; an empty list when TEXT is none.
std::vector<uint32_t> read_record_list(std::string_view text, uint32_t record_count);

}  // namespace rowvane::cli

// Prints records on the standard output stream.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/table/work_sheet.h"
#include "recordset/record_set.h"

namespace rowvane::cli {

enum class PrintFormat { kTable, kCsv, kJson };

struct PrintOptions {
  std::vector<size_t> fields;  // in the order in which they are printed
  PrintFormat format = PrintFormat::kTable;
  const RecordSet* records = nullptr;  // that are printed, in their order; null: all. Borrowed
  uint32_t first = 0;                  // records that are left out before the first one
  uint32_t count = 0;                  // records printed; must be there
  bool with_path = false;              // the table's path goes before its records, in JSON into each object
};

// kTable: aligned columns, fitted to the terminal where there is one, numbers by their display formats and
// with the user's separators; kCsv: what an export writes; kJson: one object a line. Stops early when nobody
// reads the output any more.
ErrorCode print_records(const CWorkSheet& table, const PrintOptions& options);

}  // namespace rowvane::cli

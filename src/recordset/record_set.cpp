#include "recordset/record_set.h"

#include <numeric>

#include "core/table/work_sheet.h"

namespace rowvane {

RecordSet all_records(const CWorkSheet& table) {
  RecordSet records(table.record_count());
  std::iota(records.begin(), records.end(), 0u);
  return records;
}

}  // namespace rowvane

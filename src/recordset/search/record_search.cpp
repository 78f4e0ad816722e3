#include "recordset/search/record_search.h"

#include <algorithm>

namespace rowvane {

RecordRange find_records(const RecordOrder& order, std::span<const uint32_t> records,
                         std::span<const CellValue> values) {
  const auto is_before = [&](uint32_t record) { return order.compare(record, values) < 0; };
  const auto is_not_behind = [&](uint32_t record) { return order.compare(record, values) <= 0; };
  const auto first = std::partition_point(records.begin(), records.end(), is_before);
  const auto end = std::partition_point(first, records.end(), is_not_behind);
  return {static_cast<size_t>(first - records.begin()), static_cast<size_t>(end - records.begin())};
}

}  // namespace rowvane

// Binary search for records by their key values in a sorted record set.
#pragma once

#include <span>

#include "recordset/record_set.h"
#include "recordset/sort/record_order.h"

namespace rowvane {

// Indices of a record set: `first` up to the one before `end`. Where no record is found both are the index at
// which one would stand.
struct RecordRange {
  size_t first = 0;
  size_t end = 0;

  bool empty() const { return first == end; }
  bool operator==(const RecordRange&) const = default;
};

// The records whose values in the first keys of ORDER equal VALUES, one for each of these keys. RECORDS must
// be sorted by ORDER. A long text or code that can't be read leaves its error in `order.error()`.
RecordRange find_records(const RecordOrder& order, std::span<const uint32_t> records,
                         std::span<const CellValue> values);

}  // namespace rowvane

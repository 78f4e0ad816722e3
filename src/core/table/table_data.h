// What a table holds: its fields, one column each, a flag word a record, the objects that are kept with it.
#pragma once

#include <cstdint>
#include <vector>

#include "core/limits.h"
#include "core/table/field.h"
#include "core/table/table_objects.h"

namespace rowvane {

// Bits of a record's flag word. Bit 0 takes the record out of per-record passes; bits 1 to 11 hold the
// outcome of the last pass; bits 12 to 15 the number of the record's flag type, 0 for none.
using RecordFlags = uint16_t;
inline constexpr RecordFlags kSkippedFlag = 0x0001;
inline constexpr RecordFlags kOutcomeMask = 0x0FFE;
inline constexpr int kFlagTypeShift = 12;

// Bytes that one field takes of the record size, whatever its type: its slot in the record.
inline constexpr size_t kRecordSlotBytes = 4;

struct TableData {
  std::vector<Field> fields;
  std::vector<Column> columns;  // one for each field, all of record_count cells
  uint32_t record_count = 0;
  UninitializedVector<RecordFlags> flags;  // empty until a record gets a flag, then record_count words
  std::vector<FieldId> field_ids;          // one for each field; the table that takes the data gives new ones
  TableObjects objects;
  LaterTableObjects later_objects;
};

// Bytes of one record's in-record fields; at most kMaxRecordBytes.
inline size_t record_bytes(size_t field_count) {
  return field_count * kRecordSlotBytes;
}

}  // namespace rowvane

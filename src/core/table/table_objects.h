// What is kept with a table beside its fields and records: search keys, how a grid shows it, and what later
// versions of the program keep.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/table/field.h"
#include "core/table/search_key.h"

namespace rowvane {

// How a grid shows the table, beside what the fields say of themselves.
struct GridArrangement {
  int lines = 1;                // of text in each record, 1 to kMaxRecordLines
  uint16_t frozen_fields = 0;   // of the shown ones, from the first
  uint32_t frozen_records = 0;  // of the shown ones, from the first
  bool operator==(const GridArrangement&) const = default;
};

// All kinds of objects that this version knows.
struct TableObjects {
  std::vector<SearchKey> search_keys;  // as they were added; names differ in more than letter case
  GridArrangement arrangement;

  // What becomes of them when a field is inserted at, deleted from or moved to an index.
  void insert_field(size_t index);
  void erase_field(size_t index);
  void move_field(size_t from, size_t to);
};

// The objects of one kind that a later version of the program keeps with a table or a database, as its file
// holds them. This version can't read them; its files have them all the same.
struct LaterObjects {
  uint16_t kind = 0;
  uint16_t version = 0;
  std::shared_ptr<const std::string> bytes;  // never null
};

// Those of a table speak of its fields by their numbers and types, and nobody here can bring them in line
// with other fields. They are valid while the fields are those that they were made for; undoing a change of
// the fields makes them valid again. A field's other properties don't matter, nor does its name: a formula
// may always name fields that are not there.
class LaterTableObjects {
 public:
  // The kinds ascend.
  std::vector<LaterObjects> kinds;

  // FIELDS and their IDS are what the kinds were made for. No IDS: those that the table will give its fields.
  void set_fields(const std::vector<Field>& fields, std::vector<FieldId> ids);
  bool are_valid(const std::vector<Field>& fields, const std::vector<FieldId>& ids) const;

 private:
  std::vector<FieldType> types_;
  std::vector<FieldId> ids_;
};

}  // namespace rowvane

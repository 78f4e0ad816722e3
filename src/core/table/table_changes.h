// The changes of a table that can be undone.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/database/undo_log.h"
#include "core/table/work_sheet.h"

namespace rowvane {

// A change of one table; marks it as changed whenever it is toggled.
class TableChange : public Change {
 public:
  explicit TableChange(CWorkSheet& table) : table_(table) {}
  void toggle() final;

 protected:
  virtual void swap_state(TableData& data) = 0;

 private:
  CWorkSheet& table_;
};

// Other values in some cells of one field.
class CellsChange final : public TableChange {
 public:
  // CELLS hold the new values, in the order of POSITIONS.
  CellsChange(CWorkSheet& table, size_t field, std::vector<uint32_t> positions, Column cells);

 private:
  void swap_state(TableData& data) override;

  size_t field_;
  std::vector<uint32_t> positions_;
  Column cells_;
};

// Another definition of a field, and another column where `with_column`.
class FieldChange final : public TableChange {
 public:
  FieldChange(CWorkSheet& table, size_t index, Field definition);
  FieldChange(CWorkSheet& table, size_t index, Field definition, Column column);

 private:
  void swap_state(TableData& data) override;

  size_t index_;
  Field definition_;
  Column column_;
  bool with_column_;
};

// A field inserted or deleted.
class FieldPresenceChange final : public TableChange {
 public:
  FieldPresenceChange(CWorkSheet& table, size_t index, Field field, FieldId id, Column column);  // inserts
  FieldPresenceChange(CWorkSheet& table, size_t index);                                          // deletes

 private:
  void swap_state(TableData& data) override;

  size_t index_;
  bool absent_;
  Field field_;
  FieldId id_ = 0;
  Column column_;
  std::optional<TableObjects> objects_;  // of the table with the field; nothing before it was ever there
};

class FieldMoveChange final : public TableChange {
 public:
  FieldMoveChange(CWorkSheet& table, size_t from, size_t to) : TableChange(table), from_(from), to_(to) {}

 private:
  void swap_state(TableData& data) override;

  size_t from_;
  size_t to_;
};

// Records inserted (`cells` given, one column a field) or deleted.
class RecordsChange final : public TableChange {
 public:
  RecordsChange(CWorkSheet& table, std::vector<uint32_t> positions, std::vector<Column> cells);
  RecordsChange(CWorkSheet& table, std::vector<uint32_t> positions);

 private:
  void swap_state(TableData& data) override;
  void insert(TableData& data);
  void erase(TableData& data);

  std::vector<uint32_t> positions_;
  bool absent_;
  std::vector<Column> cells_;
  UninitializedVector<RecordFlags> flags_;
};

// Other search keys.
class SearchKeysChange final : public TableChange {
 public:
  SearchKeysChange(CWorkSheet& table, std::vector<SearchKey> keys)
      : TableChange(table), keys_(std::move(keys)) {}

 private:
  void swap_state(TableData& data) override { std::swap(data.objects.search_keys, keys_); }

  std::vector<SearchKey> keys_;
};

// Another arrangement of the grid.
class ArrangementChange final : public TableChange {
 public:
  ArrangementChange(CWorkSheet& table, const GridArrangement& arrangement)
      : TableChange(table), arrangement_(arrangement) {}

 private:
  void swap_state(TableData& data) override { std::swap(data.objects.arrangement, arrangement_); }

  GridArrangement arrangement_;
};

class FlagsChange final : public TableChange {
 public:
  FlagsChange(CWorkSheet& table, std::vector<uint32_t> positions, std::vector<RecordFlags> flags);

 private:
  void swap_state(TableData& data) override;

  std::vector<uint32_t> positions_;
  std::vector<RecordFlags> flags_;
};

}  // namespace rowvane

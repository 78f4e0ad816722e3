#include "core/table/table_changes.h"

#include <algorithm>
#include <utility>

#include "core/table/cell_positions.h"

namespace rowvane {
namespace {

template <typename Element>
void move_element(std::vector<Element>& all, size_t from, size_t to) {
  const auto at = [&all](size_t i) { return all.begin() + static_cast<std::ptrdiff_t>(i); };
  if (from < to) {
    std::rotate(at(from), at(from + 1), at(to + 1));
  } else {
    std::rotate(at(to), at(from), at(from + 1));
  }
}

}  // namespace

void TableChange::toggle() {
  swap_state(table_.data_);
  table_.touch();
}

CellsChange::CellsChange(CWorkSheet& table, size_t field, std::vector<uint32_t> positions, Column cells)
    : TableChange(table), field_(field), positions_(std::move(positions)), cells_(std::move(cells)) {}

void CellsChange::swap_state(TableData& data) {
  Column& column = data.columns[field_];
  Column former = select_cells(column, positions_);
  assign_cells(column, positions_, cells_);
  cells_ = std::move(former);
}

FieldChange::FieldChange(CWorkSheet& table, size_t index, Field definition)
    : TableChange(table), index_(index), definition_(std::move(definition)), with_column_(false) {}

FieldChange::FieldChange(CWorkSheet& table, size_t index, Field definition, Column column)
    : TableChange(table),
      index_(index),
      definition_(std::move(definition)),
      column_(std::move(column)),
      with_column_(true) {}

void FieldChange::swap_state(TableData& data) {
  std::swap(data.fields[index_], definition_);
  if (with_column_) std::swap(data.columns[index_], column_);
}

FieldPresenceChange::FieldPresenceChange(CWorkSheet& table, size_t index, Field field, FieldId id,
                                         Column column)
    : TableChange(table),
      index_(index),
      absent_(true),
      field_(std::move(field)),
      id_(id),
      column_(std::move(column)) {}

FieldPresenceChange::FieldPresenceChange(CWorkSheet& table, size_t index)
    : TableChange(table), index_(index), absent_(false) {}

void FieldPresenceChange::swap_state(TableData& data) {
  const auto place = static_cast<std::ptrdiff_t>(index_);
  if (absent_) {
    data.fields.insert(data.fields.begin() + place, std::move(field_));
    data.field_ids.insert(data.field_ids.begin() + place, id_);
    data.columns.insert(data.columns.begin() + place, std::move(column_));
    if (objects_) {
      data.objects = std::move(*objects_);
    } else {
      data.objects.insert_field(index_);
    }
  } else {
    field_ = std::move(data.fields[index_]);
    id_ = data.field_ids[index_];
    column_ = std::move(data.columns[index_]);
    data.fields.erase(data.fields.begin() + place);
    data.field_ids.erase(data.field_ids.begin() + place);
    data.columns.erase(data.columns.begin() + place);
    objects_ = data.objects;
    data.objects.erase_field(index_);
  }
  absent_ = !absent_;
}

void FieldMoveChange::swap_state(TableData& data) {
  move_element(data.fields, from_, to_);
  move_element(data.field_ids, from_, to_);
  move_element(data.columns, from_, to_);
  data.objects.move_field(from_, to_);
  std::swap(from_, to_);
}

RecordsChange::RecordsChange(CWorkSheet& table, std::vector<uint32_t> positions, std::vector<Column> cells)
    : TableChange(table), positions_(std::move(positions)), absent_(true), cells_(std::move(cells)) {}

RecordsChange::RecordsChange(CWorkSheet& table, std::vector<uint32_t> positions)
    : TableChange(table), positions_(std::move(positions)), absent_(false) {}

void RecordsChange::swap_state(TableData& data) {
  if (absent_) {
    insert(data);
  } else {
    erase(data);
  }
  absent_ = !absent_;
}

void RecordsChange::insert(TableData& data) {
  for (size_t i = 0; i < data.columns.size(); ++i) restore_cells(data.columns[i], positions_, cells_[i]);
  data.record_count += static_cast<uint32_t>(positions_.size());
  if (!data.flags.empty() || !flags_.empty()) {
    data.flags.resize(data.record_count - positions_.size(), RecordFlags{0});
    flags_.resize(positions_.size(), RecordFlags{0});
    insert_positions(data.flags, positions_, flags_);
  }
  cells_.clear();
  flags_.clear();
}

void RecordsChange::erase(TableData& data) {
  for (Column& column : data.columns) {
    cells_.push_back(select_cells(column, positions_));
    erase_cells(column, positions_);
  }
  if (!data.flags.empty()) {
    for (const uint32_t position : positions_) flags_.push_back(data.flags[position]);
    erase_positions(data.flags, positions_);
  }
  data.record_count -= static_cast<uint32_t>(positions_.size());
}

FlagsChange::FlagsChange(CWorkSheet& table, std::vector<uint32_t> positions, std::vector<RecordFlags> flags)
    : TableChange(table), positions_(std::move(positions)), flags_(std::move(flags)) {}

void FlagsChange::swap_state(TableData& data) {
  if (data.flags.empty()) data.flags.resize(data.record_count, RecordFlags{0});
  for (size_t i = 0; i < positions_.size(); ++i) std::swap(data.flags[positions_[i]], flags_[i]);
}

}  // namespace rowvane

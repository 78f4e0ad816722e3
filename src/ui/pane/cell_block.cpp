#include "ui/pane/cell_block.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include "core/database/database.h"
#include "formula/fields/value_input.h"

namespace rowvane {
namespace {

// One undo step where the table belongs to a database.
class Step {
 public:
  Step(CWorkSheet& table, const char* caption) {
    if (table.database() != nullptr) group_.emplace(*table.database(), caption);
  }

 private:
  std::optional<ChangeGroup> group_;
};

void note(CellChanges& changes, size_t cells, ErrorCode error, const std::vector<RefusedValue>& refused) {
  if (error != ErrorCode::kOk) {
    changes.refused += cells;
    if (changes.error == ErrorCode::kOk) changes.error = error;
    return;
  }
  changes.refused += refused.size();
  changes.changed += cells - refused.size();
  if (!refused.empty() && changes.error == ErrorCode::kOk) changes.error = refused.front().error;
}

// Stores in FIELD the values that VALUE_OF reads for the indices into RECORDS.
template <typename ValueOf>
void store(CWorkSheet& table, size_t field, std::span<const uint32_t> records, CellChanges& changes,
           const ValueOf& value_of) {
  std::vector<uint32_t> positions;
  std::vector<CellValue> values;
  for (size_t i = 0; i < records.size(); ++i) {
    ValueReading read = value_of(i);
    if (read.error != ErrorCode::kOk) {
      note(changes, 1, read.error, {});
      continue;
    }
    positions.push_back(records[i]);
    values.push_back(std::move(read.value));
  }
  if (positions.empty()) return;
  Column cells = make_column(table.field(field).type);
  resize_column(cells, values.size());
  for (size_t i = 0; i < values.size(); ++i) store_value(cells, i, values[i]);
  std::vector<RefusedValue> refused;
  const size_t count = values.size();
  const ErrorCode error = table.set_values(field, std::move(positions), std::move(cells), refused);
  note(changes, count, error, refused);
}

// Stores VALUE in all RECORDS.
void store_same(CWorkSheet& table, size_t field, std::span<const uint32_t> records, CellChanges& changes,
                const CellValue& value) {
  Column cells = make_column(table.field(field).type);
  if (!fits_column(cells, value)) return note(changes, records.size(), ErrorCode::kFieldTypeMismatch, {});
  resize_column(cells, records.size());
  if (!is_empty(value) && !records.empty()) {
    store_value(cells, 0, value);
    std::visit([](auto& column) { std::fill(column.cells.begin(), column.cells.end(), column.cells[0]); },
               cells);
  }
  std::vector<RefusedValue> refused;
  const ErrorCode error =
      table.set_values(field, {records.begin(), records.end()}, std::move(cells), refused);
  note(changes, records.size(), error, refused);
}

// Calculated fields have no values of their own.
bool is_entered(const CWorkSheet& table, size_t field) {
  return table.field(field).formula.empty();
}

}  // namespace

void add_changes(CellChanges& sum, const CellChanges& more) {
  sum.changed += more.changed;
  sum.refused += more.refused;
  if (sum.error == ErrorCode::kOk) sum.error = more.error;
}

CellChanges clear_cells(CWorkSheet& table, const CellBlock& block) {
  const Step step(table, "Clear");
  CellChanges changes;
  for (const size_t field : block.fields) {
    if (!is_entered(table, field)) continue;
    store_same(table, field, block.positions, changes, {});
  }
  return changes;
}

CellChanges fill_down(CWorkSheet& table, const CellBlock& block) {
  const Step step(table, "Fill Down");
  CellChanges changes;
  if (block.positions.size() < 2) return changes;
  for (const size_t field : block.fields) {
    if (!is_entered(table, field)) continue;
    const CellValue first = table.value(record_number(block.positions.front()), field);
    store_same(table, field, std::span(block.positions).subspan(1), changes, first);
  }
  return changes;
}

CellChanges paste_cells(CWorkSheet& table, const CellBlock& block, const ClipboardRows& rows,
                        const platform::RegionalSettings& region) {
  const Step step(table, "Paste");
  CellChanges changes;
  const size_t height =
      std::min(block.positions.size(), rows.size() == 1 ? block.positions.size() : rows.size());
  size_t widest = 0;
  for (const auto& row : rows) widest = std::max(widest, row.size());
  const bool one_cell = rows.size() == 1 && widest == 1;
  const size_t width = std::min(block.fields.size(), one_cell ? block.fields.size() : widest);
  for (size_t column = 0; column < width; ++column) {
    const size_t field = block.fields[column];
    if (!is_entered(table, field)) continue;
    if (one_cell) {
      const ValueReading read = read_field_value(table.field(field), rows[0][0], region);
      if (read.error == ErrorCode::kOk) {
        store_same(table, field, block.positions, changes, read.value);
      } else {
        note(changes, block.positions.size(), read.error, {});
      }
      continue;
    }
    store(table, field, std::span(block.positions).first(height), changes, [&](size_t i) {
      const auto& row = rows[rows.size() == 1 ? 0 : i];
      return column < row.size() ? read_field_value(table.field(field), row[column], region) : ValueReading();
    });
  }
  return changes;
}

}  // namespace rowvane

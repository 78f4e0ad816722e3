// The commands that add, delete and mark records.
#include <algorithm>
#include <numeric>

#include "core/database/database.h"
#include "ui/pane/table_pane.h"

namespace rowvane {

ErrorCode TablePane::insert_shown_records(RecordNumber before, uint32_t count, int row) {
  model_.expect_inserted(before, count, row);
  const ErrorCode error = table_.insert_records(before, count);
  if (error != ErrorCode::kOk) model_.expect_nothing();
  return error;
}

// Where the first selected record stands, among the shown ones and in the order of entry.
void TablePane::insert_records() {
  if (!may_change()) return;
  const RowRanges rows = selected_rows();
  const int row = rows.empty() ? 0 : rows.front().first;
  const auto count = static_cast<uint32_t>(std::max<int64_t>(count_rows(rows), 1));
  const bool is_empty = model_.rowCount() == 0;
  const RecordNumber before = is_empty ? table_.end_record() : model_.record_at(row);
  report(insert_shown_records(before, count, row));
  go_to_row(row);
}

void TablePane::append_record() {
  if (!may_change()) return;
  const ErrorCode error = insert_shown_records(table_.end_record(), 1, model_.rowCount());
  report(error);
  if (error == ErrorCode::kOk) go_to_row(model_.rowCount() - 1);
}

// The entered values of the records at ORIGINALS to as many records from FIRST on.
void TablePane::copy_values(const std::vector<uint32_t>& originals, uint32_t first) {
  std::vector<uint32_t> copies(originals.size());
  std::iota(copies.begin(), copies.end(), first);
  for (size_t field = 0; field < table_.field_count(); ++field) {
    if (!table_.field(field).formula.empty() || table_.field(field).encrypted) continue;
    std::vector<RefusedValue> refused;
    static_cast<void>(
        table_.set_values(field, copies, select_cells(table_.column(field), originals), refused));
  }
}

void TablePane::duplicate_records() {
  if (!may_change()) return;
  std::vector<uint32_t> originals = selected_positions();
  if (originals.empty()) return;
  const int row = selected_rows().back().last + 1;
  const auto count = static_cast<uint32_t>(originals.size());
  const uint32_t first = model_.record_at(row - 1).position() + 1;
  for (uint32_t& position : originals) {
    if (position >= first) position += count;
  }
  ErrorCode error = ErrorCode::kOk;
  {
    const ChangeGroup step(document_.database(), "Duplicate Records");
    error = insert_shown_records(record_number(first), count, row);
    if (error == ErrorCode::kOk) copy_values(originals, first);
  }
  report(error);
  if (error == ErrorCode::kOk) go_to_row(row);
}

void TablePane::delete_records() {
  if (!may_change()) return;
  const std::vector<uint32_t> positions = selected_positions();
  if (positions.empty()) return;
  const int row = selected_rows().front().first;
  model_.expect_deleted(positions);
  const ErrorCode error = table_.delete_records(positions);
  if (error != ErrorCode::kOk) model_.expect_nothing();
  report(error);
  go_to_row(row);
}

void TablePane::flag_records(int type) {
  report(table_.set_flag_type(selected_positions(), type));
}

}  // namespace rowvane

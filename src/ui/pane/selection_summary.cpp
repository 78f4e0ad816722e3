#include "ui/pane/selection_summary.h"

#include <cmath>

#include "ui/long_task.h"

namespace rowvane {
namespace {

constexpr int64_t kSliceCells = 1'000'000;  // a few milliseconds
constexpr int kWaitMilliseconds = 50;

}  // namespace

SelectionSummary::SelectionSummary(const TableModel& model, QObject* parent)
    : QObject(parent), model_(model) {
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, &SelectionSummary::run_slice);
}

void SelectionSummary::begin(std::vector<CellGroup> groups) {
  timer_.stop();
  groups_ = std::move(groups);
  group_ = field_ = range_ = 0;
  done_rows_ = 0;
  sum_ = ExactSum();
  count_ = 0;
  result_.reset();
  int64_t cells = 0;
  for (const CellGroup& group : groups_) cells += group.size();
  if (cells > 1) timer_.start(0);
}

void SelectionSummary::add(double cell) {
  if (!std::isfinite(cell)) return;
  sum_.add(cell);
  ++count_;
}

void SelectionSummary::add_cells(const NumberColumn& numbers, RowRange range, int64_t most) {
  const int64_t first = range.first + done_rows_;
  const int64_t end = std::min<int64_t>(first + most, int64_t{range.last} + 1);
  const auto& records = model_.records();
  for (int64_t row = first; row < end; ++row) {
    const auto i = static_cast<size_t>(row);
    add(numbers.cells[records ? (*records)[i] : i]);
  }
  done_rows_ += end - first;
}

// False behind the last one.
bool SelectionSummary::next_range() {
  done_rows_ = 0;
  if (++range_ < groups_[group_].rows.size()) return true;
  range_ = 0;
  if (++field_ < groups_[group_].fields.size()) return true;
  field_ = 0;
  return ++group_ < groups_.size();
}

void SelectionSummary::run_slice() {
  // It may be changing the table.
  if (is_long_task_running()) return timer_.start(kWaitMilliseconds);
  int64_t left = kSliceCells;
  bool more = true;
  while (more && left > 0) {
    const CellGroup& group = groups_[group_];
    const RowRange range = group.rows[range_];
    const auto* numbers =
        std::get_if<NumberColumn>(&model_.table().column(static_cast<size_t>(group.fields[field_])));
    if (numbers == nullptr) {
      more = next_range();
      continue;
    }
    const int64_t before = done_rows_;
    add_cells(*numbers, range, left);
    left -= done_rows_ - before;
    if (done_rows_ == range.size()) more = next_range();
  }
  if (more) return timer_.start(0);
  if (count_ > 0) result_ = NumberSummary{sum_.rounded(), sum_.mean(count_), count_};
  emit finished();
}

}  // namespace rowvane

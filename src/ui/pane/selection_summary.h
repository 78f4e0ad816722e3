// Sum, mean and count of the selected numbers.
#pragma once

#include <QObject>
#include <QTimer>
#include <optional>

#include "core/values/exact_sum.h"
#include "ui/pane/cell_selection.h"
#include "ui/pane/table_model.h"

namespace rowvane {

struct NumberSummary {
  double sum = 0;
  double mean = 0;
  uint64_t count = 0;
};

// Works in slices between the events of the window, so that a selection of any size lets it go on.
class SelectionSummary final : public QObject {
  Q_OBJECT

 public:
  // MODEL must outlive this.
  explicit SelectionSummary(const TableModel& model, QObject* parent = nullptr);

  // Forgets what it was at and begins with GROUPS.
  void begin(std::vector<CellGroup> groups);
  // Nothing while it is being worked out, and for less than two cells.
  const std::optional<NumberSummary>& result() const { return result_; }

 signals:
  void finished();

 private:
  void run_slice();
  // Adds what is left of the current range, at most MOST cells.
  void add_cells(const NumberColumn& numbers, RowRange range, int64_t most);
  void add(double cell);
  bool next_range();

  const TableModel& model_;
  QTimer timer_;
  std::vector<CellGroup> groups_;
  size_t group_ = 0;
  size_t field_ = 0;
  size_t range_ = 0;
  int64_t done_rows_ = 0;  // of the range
  ExactSum sum_;
  uint64_t count_ = 0;
  std::optional<NumberSummary> result_;
};

}  // namespace rowvane

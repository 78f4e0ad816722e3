// What is selected of a table, by ranges instead of cells: a field of millions of records is one range.
#pragma once

#include <QItemSelection>
#include <cstdint>
#include <vector>

namespace rowvane {

struct RowRange {
  int first = 0;
  int last = 0;

  int64_t size() const { return int64_t{last} - first + 1; }
  bool operator==(const RowRange&) const = default;
};

// Ascending, with gaps between them.
using RowRanges = std::vector<RowRange>;
int64_t count_rows(const RowRanges& rows);

// Fields of which the same records are selected, in the order in which they are shown.
struct CellGroup {
  RowRanges rows;
  std::vector<int> fields;

  int64_t size() const { return count_rows(rows) * static_cast<int64_t>(fields.size()); }
};

// The selected cells of FIELDS, those that are shown, in their order. One group where they are a block, if
// one with gaps.
std::vector<CellGroup> cell_groups(const QItemSelection& selection, const std::vector<size_t>& fields);

// The rows with a selected cell.
RowRanges selected_rows(const QItemSelection& selection);

// The cells of FIELDS in ROWS, as the selection of MODEL has them.
QItemSelection selection_of(const QAbstractItemModel& model, RowRange rows, std::vector<size_t> fields);

}  // namespace rowvane

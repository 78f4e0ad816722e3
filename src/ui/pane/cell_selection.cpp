#include "ui/pane/cell_selection.h"

#include <algorithm>
#include <map>

namespace rowvane {
namespace {

void merge_rows(RowRanges& rows) {
  std::ranges::sort(rows, {}, &RowRange::first);
  RowRanges merged;
  for (const RowRange& range : rows) {
    if (!merged.empty() && range.first <= merged.back().last + 1) {
      merged.back().last = std::max(merged.back().last, range.last);
    } else {
      merged.push_back(range);
    }
  }
  rows = std::move(merged);
}

}  // namespace

int64_t count_rows(const RowRanges& rows) {
  int64_t count = 0;
  for (const RowRange& range : rows) count += range.size();
  return count;
}

std::vector<CellGroup> cell_groups(const QItemSelection& selection, const std::vector<size_t>& fields) {
  std::map<size_t, RowRanges> by_field;
  for (const QItemSelectionRange& range : selection) {
    for (int field = range.left(); field <= range.right(); ++field)
      by_field[static_cast<size_t>(field)].push_back({range.top(), range.bottom()});
  }
  std::vector<CellGroup> groups;
  for (const size_t field : fields) {
    const auto found = by_field.find(field);
    if (found == by_field.end()) continue;
    RowRanges& rows = found->second;
    merge_rows(rows);
    const auto same = std::ranges::find(groups, rows, &CellGroup::rows);
    if (same != groups.end()) {
      same->fields.push_back(static_cast<int>(field));
    } else {
      groups.push_back({std::move(rows), {static_cast<int>(field)}});
    }
  }
  return groups;
}

RowRanges selected_rows(const QItemSelection& selection) {
  RowRanges rows;
  for (const QItemSelectionRange& range : selection) rows.push_back({range.top(), range.bottom()});
  merge_rows(rows);
  return rows;
}

QItemSelection selection_of(const QAbstractItemModel& model, RowRange rows, std::vector<size_t> fields) {
  std::ranges::sort(fields);
  QItemSelection selection;
  for (size_t begin = 0; begin < fields.size();) {
    size_t end = begin + 1;
    while (end < fields.size() && fields[end] == fields[end - 1] + 1) ++end;
    selection.append(QItemSelectionRange(model.index(rows.first, static_cast<int>(fields[begin])),
                                         model.index(rows.last, static_cast<int>(fields[end - 1]))));
    begin = end;
  }
  return selection;
}

}  // namespace rowvane

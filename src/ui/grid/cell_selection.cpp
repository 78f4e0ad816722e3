#include "ui/grid/cell_selection.h"

#include <algorithm>

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

std::vector<CellGroup> cell_groups(const QItemSelection& selection, const GridLayout& layout) {
  std::vector<RowRanges> by_place(static_cast<size_t>(layout.place_count()));
  for (const QItemSelectionRange& range : selection) {
    for (int field = range.left(); field <= range.right(); ++field) {
      const int place = layout.place_of(field);
      if (place >= 0) by_place[static_cast<size_t>(place)].push_back({range.top(), range.bottom()});
    }
  }
  std::vector<CellGroup> groups;
  for (size_t place = 0; place < by_place.size(); ++place) {
    RowRanges& rows = by_place[place];
    if (rows.empty()) continue;
    merge_rows(rows);
    const int field = layout.field_at(static_cast<int>(place));
    const auto same = std::ranges::find(groups, rows, &CellGroup::rows);
    if (same != groups.end()) {
      same->fields.push_back(field);
    } else {
      groups.push_back({std::move(rows), {field}});
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

QItemSelection selection_of(const QAbstractItemModel& model, const GridLayout& layout, RowRange rows,
                            int first_place, int last_place) {
  std::vector<int> fields;
  for (int place = first_place; place <= last_place; ++place) fields.push_back(layout.field_at(place));
  std::ranges::sort(fields);
  QItemSelection selection;
  for (size_t begin = 0; begin < fields.size();) {
    size_t end = begin + 1;
    while (end < fields.size() && fields[end] == fields[end - 1] + 1) ++end;
    selection.append(
        QItemSelectionRange(model.index(rows.first, fields[begin]), model.index(rows.last, fields[end - 1])));
    begin = end;
  }
  return selection;
}

}  // namespace rowvane

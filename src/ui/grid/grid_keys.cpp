#include "ui/grid/grid_keys.h"

#include <algorithm>

namespace rowvane {
namespace {

// From the edge of the data on: over empty cells to the first one that is not, over others to the last of
// them, as spreadsheets do. IS_EMPTY is asked for places from 0 to COUNT - 1.
template <typename IsEmpty>
int data_edge(int from, int step, int count, const IsEmpty& is_empty) {
  const int last = step > 0 ? count - 1 : 0;
  if (from == last) return from;
  int at = from + step;
  if (!is_empty(from) && !is_empty(at)) {
    while (at != last && !is_empty(at + step)) at += step;
    return at;
  }
  while (at != last && is_empty(at)) at += step;
  return at;
}

bool is_empty_cell(const Column& column, size_t position) {
  if (const auto* numbers = std::get_if<NumberColumn>(&column)) {
    return is_empty_number(numbers->cells[position]);
  }
  if (const auto* texts = std::get_if<TextColumn>(&column)) return texts->text(position).empty();
  if (const auto* contents = std::get_if<ContentColumn>(&column)) return contents->cells[position] == 0;
  return std::get<FilesColumn>(column).cells[position] == 0;
}

int record_edge(GridPlace from, int step, const GridLayout& layout, const TableModel& model) {
  const Column& column = model.table().column(static_cast<size_t>(layout.field_at(from.place)));
  return data_edge(from.row, step, layout.row_count(),
                   [&](int row) { return is_empty_cell(column, model.record_at(row).position()); });
}

int field_edge(GridPlace from, int step, const GridLayout& layout, const TableModel& model) {
  const size_t position = model.record_at(from.row).position();
  return data_edge(from.place, step, layout.place_count(), [&](int place) {
    return is_empty_cell(model.table().column(static_cast<size_t>(layout.field_at(place))), position);
  });
}

}  // namespace

std::optional<GridPlace> arrow_target(int key, Qt::KeyboardModifiers modifiers, GridPlace from,
                                      const GridLayout& layout, const TableModel& model) {
  const bool far = modifiers.testFlag(Qt::ControlModifier);
  const GridPlace last{layout.row_count() - 1, layout.place_count() - 1};
  GridPlace to = from;
  switch (key) {
    case Qt::Key_Up:
      to.row = far ? record_edge(from, -1, layout, model) : from.row - 1;
      break;
    case Qt::Key_Down:
      to.row = far ? record_edge(from, 1, layout, model) : from.row + 1;
      break;
    case Qt::Key_Left:
      to.place = far ? field_edge(from, -1, layout, model) : from.place - 1;
      break;
    case Qt::Key_Right:
      to.place = far ? field_edge(from, 1, layout, model) : from.place + 1;
      break;
    case Qt::Key_Home:
      to = {far ? 0 : from.row, 0};
      break;
    case Qt::Key_End:
      to = {far ? last.row : from.row, last.place};
      break;
    case Qt::Key_PageUp:
      to.row = from.row - layout.rows_of_page();
      break;
    case Qt::Key_PageDown:
      to.row = std::min(last.row, from.row + layout.rows_of_page());
      break;
    default:
      return std::nullopt;
  }
  return GridPlace{std::clamp(to.row, 0, last.row), std::clamp(to.place, 0, last.place)};
}

GridPlace tab_target(GridPlace from, int step, const GridLayout& layout) {
  GridPlace to{from.row, from.place + step};
  if (to.place < 0) to = {from.row - 1, layout.place_count() - 1};
  if (to.place >= layout.place_count()) to = {from.row + 1, 0};
  return to.row >= 0 && to.row < layout.row_count() ? to : from;
}

GridPlace enter_target(EnterKey enter, GridPlace from, int step, const GridLayout& layout) {
  switch (enter) {
    case EnterKey::kRecordBelow:
      return {std::clamp(from.row + step, 0, layout.row_count() - 1), from.place};
    case EnterKey::kNextField:
      return tab_target(from, step, layout);
    case EnterKey::kStay:
    case EnterKey::kEdit:
      break;
  }
  return from;
}

}  // namespace rowvane

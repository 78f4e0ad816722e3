// The current cell and the selection: cells, whole fields and whole records.
#include <QAccessible>
#include <QScrollBar>
#include <algorithm>

#include "ui/grid/cellvane_view.h"

namespace rowvane {

QModelIndex CCellvaneView::index_of(GridPlace place) const {
  return model_.index(place.row, layout_.field_at(place.place));
}

GridPlace CCellvaneView::current_place() const {
  const QModelIndex current = currentIndex();
  if (!current.isValid()) return {};
  return {current.row(), std::max(layout_.place_of(current.column()), 0)};
}

bool CCellvaneView::is_selected(GridPlace place) const {
  return selectionModel()->isSelected(index_of(place));
}

QItemSelection CCellvaneView::cells_between(RowRange rows, int first_place, int last_place) const {
  std::vector<size_t> fields;
  for (int place = first_place; place <= last_place; ++place)
    fields.push_back(static_cast<size_t>(layout_.field_at(place)));
  return selection_of(model_, rows, std::move(fields));
}

// ---- making a selection

void CCellvaneView::go_to(GridPlace place) {
  begin_selection(place, Span::kCells, Qt::NoModifier);
}

// With Shift the present selection goes on to PLACE, with Ctrl another block is added to it, or taken out
// where PLACE is selected.
void CCellvaneView::begin_selection(GridPlace place, Span span, Qt::KeyboardModifiers modifiers) {
  if (!is_usable()) return;
  span_ = span;
  if (modifiers.testFlag(Qt::ShiftModifier)) return extend_selection(place);
  const bool adds = modifiers.testFlag(Qt::ControlModifier);
  removes_ = adds && is_selected(place) && !selectionModel()->selection().isEmpty() &&
             selectionModel()->selection() != QItemSelection(currentIndex(), currentIndex());
  kept_ = adds ? selectionModel()->selection() : QItemSelection();
  anchor_ = place;
  selecting_ = true;
  selectionModel()->setCurrentIndex(index_of(place), QItemSelectionModel::NoUpdate);
  selecting_ = false;
  extend_selection(place);
}

void CCellvaneView::extend_selection(GridPlace to) {
  lead_ = to;
  apply_selection();
  const QModelIndex lead = index_of(to);
  // A field or a record that was chosen by its head need not be scrolled to its beginning.
  if (span_ == Span::kCells) scrollTo(lead);
  if (span_ == Span::kRecords) verticalScrollBar()->setValue(layout_.line_for(to.row));
}

void CCellvaneView::apply_selection() {
  const GridPlace last{layout_.row_count() - 1, layout_.place_count() - 1};
  anchor_ = {std::min(anchor_.row, last.row), std::min(anchor_.place, last.place)};
  RowRange rows{std::min(anchor_.row, lead_.row), std::max(anchor_.row, lead_.row)};
  auto [first, end] = std::minmax(anchor_.place, lead_.place);
  int first_place = first;
  int last_place = end;
  if (span_ == Span::kFields) rows = {0, last.row};
  if (span_ == Span::kRecords) {
    first_place = 0;
    last_place = last.place;
  }
  QItemSelection selection = kept_;
  selection.merge(cells_between(rows, first_place, last_place),
                  removes_ ? QItemSelectionModel::Deselect : QItemSelectionModel::Select);
  selecting_ = true;
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  selecting_ = false;
}

// The current cell, moved to where it is in view: heads are chosen without scrolling away from them.
GridPlace CCellvaneView::seen_place() const {
  GridPlace place = current_place();
  const auto [first_row, end_row] = layout_.scrolled_rows();
  const auto [first_place, end_place] = layout_.scrolled_places();
  if (place.row >= layout_.frozen_rows() && end_row > first_row) {
    place.row = std::clamp(place.row, first_row, end_row - 1);
  }
  if (place.place >= layout_.frozen_places() && end_place > first_place) {
    place.place = std::clamp(place.place, first_place, end_place - 1);
  }
  return place;
}

void CCellvaneView::select_fields(int place, Qt::KeyboardModifiers modifiers) {
  if (!finish_editing()) return;
  pane_.choose_field(static_cast<size_t>(layout_.field_at(place)));
  setFocus();
  if (!is_usable()) return show_headers();
  begin_selection({seen_place().row, place}, Span::kFields, modifiers);
}

void CCellvaneView::select_records(int row, Qt::KeyboardModifiers modifiers) {
  if (!finish_editing() || !is_usable()) return;
  setFocus();
  dragging_ = true;
  const int place = seen_place().place;
  drag_point_ = QPoint(layout_.left(place) + 1, 0);
  begin_selection({row, place}, Span::kRecords, modifiers);
}

void CCellvaneView::select_fields_of_selection() {
  span_ = Span::kFields;
  if (is_usable()) apply_selection();
}

void CCellvaneView::select_records_of_selection() {
  span_ = Span::kRecords;
  if (is_usable()) apply_selection();
}

// Of Qt's own ways to select, in pixels of the viewport.
void CCellvaneView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
  if (!is_usable()) return;
  const RowRange rows{layout_.nearest_row(rect.top()), layout_.nearest_row(rect.bottom())};
  const auto [first, last] =
      std::minmax(layout_.nearest_place(rect.left()), layout_.nearest_place(rect.right()));
  selectionModel()->select(cells_between(rows, first, last), command);
}

// ---- what follows from a selection

void CCellvaneView::show_headers() {
  const QItemSelection selection = selectionModel()->selection();
  std::vector<bool> places(static_cast<size_t>(layout_.place_count()));
  for (const QItemSelectionRange& range : selection) {
    for (int field = range.left(); field <= std::min(range.right(), model_.columnCount() - 1); ++field) {
      const int place = layout_.place_of(field);
      if (place >= 0) places[static_cast<size_t>(place)] = true;
    }
  }
  const QModelIndex current = currentIndex();
  const auto field = pane_.current_field();
  field_header_->show_place(field ? layout_.place_of(static_cast<int>(*field)) : -1, std::move(places));
  record_header_->show_rows(current.isValid() ? current.row() : -1, selected_rows(selection));
}

// What was made from outside is where the next selection begins.
void CCellvaneView::begin_at_current() {
  anchor_ = lead_ = current_place();
  kept_ = {};
  removes_ = false;
  span_ = Span::kCells;
}

void CCellvaneView::selectionChanged(const QItemSelection&, const QItemSelection&) {
  if (!selecting_) begin_at_current();
  viewport()->update();
  show_headers();
}

void CCellvaneView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  if (current.isValid() && rows_above_) {
    const int top = std::max(current.row() - *rows_above_ - layout_.frozen_rows(), 0);
    verticalScrollBar()->setValue(top * layout_.lines());
    rows_above_.reset();
  }
  QAbstractItemView::currentChanged(current, previous);
  if (current.isValid() && !selecting_) begin_at_current();
  viewport()->update();
  show_headers();
  if (QAccessible::isActive() && current.isValid() && hasFocus()) tell_screen_readers();
}

void CCellvaneView::tell_screen_readers() {
  QAccessibleInterface* grid = QAccessible::queryAccessibleInterface(this);
  QAccessibleEvent event(this, QAccessible::Focus);
  if (QAccessibleTableInterface* cells = grid != nullptr ? grid->tableInterface() : nullptr) {
    const GridPlace current = current_place();
    event.setChild(grid->indexOfChild(cells->cellAt(current.row, current.place)));
  }
  QAccessible::updateAccessibility(&event);
}

}  // namespace rowvane

// The current cell and the selection: cells, whole fields and whole records.
#include <QAccessible>
#include <QScrollBar>
#include <algorithm>

#include "ui/grid/cellvane_view.h"

namespace rowvane {

QModelIndex CCellvaneView::index_of(GridPlace place) const {
  return model_->index(place.row, layout_.field_at(place.place));
}

std::optional<size_t> CCellvaneView::current_field() const {
  if (layout_.place_count() == 0) return std::nullopt;
  const QModelIndex current = currentIndex();
  if (current.isValid()) return static_cast<size_t>(current.column());
  const bool is_shown = chosen_field_ >= 0 && static_cast<size_t>(chosen_field_) < table().field_count() &&
                        layout_.place_of(chosen_field_) >= 0;
  return static_cast<size_t>(is_shown ? chosen_field_ : layout_.field_at(0));
}

GridPlace CCellvaneView::current_place() const {
  const QModelIndex current = currentIndex();
  if (!current.isValid()) return {};
  return {current.row(), std::max(layout_.place_of(current.column()), 0)};
}

std::vector<CellGroup> CCellvaneView::selected_groups() const {
  QItemSelection selection = selectionModel()->selection();
  const QModelIndex current = currentIndex();
  if (selection.isEmpty() && current.isValid()) selection.select(current, current);
  return cell_groups(selection, layout_);
}

CellBlock CCellvaneView::block_of(const CellGroup& group) const {
  CellBlock block;
  block.records.reserve(static_cast<size_t>(count_rows(group.rows)));
  for (const RowRange& range : group.rows) {
    for (int row = range.first; row <= range.last; ++row) block.records.push_back(model_->record_at(row));
  }
  block.fields.assign(group.fields.begin(), group.fields.end());
  return block;
}

CellBlock CCellvaneView::selected_block() const {
  const std::vector<CellGroup> groups = selected_groups();
  if (groups.size() == 1) return block_of(groups.front());
  CellGroup all;
  all.rows = selected_rows(selectionModel()->selection());
  for (int place = 0; place < layout_.place_count(); ++place) {
    const int field = layout_.field_at(place);
    const auto has_field = [field](const CellGroup& group) {
      return std::ranges::find(group.fields, field) != group.fields.end();
    };
    if (std::ranges::any_of(groups, has_field)) all.fields.push_back(field);
  }
  return block_of(all);
}

std::vector<uint32_t> CCellvaneView::selected_positions() const {
  std::vector<uint32_t> positions;
  QItemSelection selection = selectionModel()->selection();
  const QModelIndex current = currentIndex();
  if (selection.isEmpty() && current.isValid()) selection.select(current, current);
  for (const RowRange& range : selected_rows(selection)) {
    for (int row = range.first; row <= range.last; ++row) positions.push_back(model_->record_at(row) - 1);
  }
  std::ranges::sort(positions);
  return positions;
}

bool CCellvaneView::is_selected(GridPlace place) const {
  return selectionModel()->isSelected(index_of(place));
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
  removes_ = adds && is_selected(place) && selectionModel()->selection().size() > 0 &&
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
  selection.merge(selection_of(*model_, layout_, rows, first_place, last_place),
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
  chosen_field_ = layout_.field_at(place);
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

void CCellvaneView::selectAll() {
  if (!finish_editing() || !is_usable()) return;
  const GridPlace lead = lead_;
  anchor_ = {0, 0};
  lead_ = {layout_.row_count() - 1, layout_.place_count() - 1};
  kept_ = {};
  removes_ = false;
  span_ = Span::kCells;
  apply_selection();
  anchor_ = lead_ = lead;
  setFocus();
}

// Of Qt's own ways to select, in pixels of the viewport.
void CCellvaneView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
  if (!is_usable()) return;
  const RowRange rows{layout_.nearest_row(rect.top()), layout_.nearest_row(rect.bottom())};
  const auto [first, last] =
      std::minmax(layout_.nearest_place(rect.left()), layout_.nearest_place(rect.right()));
  selectionModel()->select(selection_of(*model_, layout_, rows, first, last), command);
}

// ---- what follows from a selection

void CCellvaneView::show_headers() {
  const QItemSelection selection = selectionModel()->selection();
  std::vector<bool> places(static_cast<size_t>(layout_.place_count()));
  for (const QItemSelectionRange& range : selection) {
    for (int field = range.left(); field <= std::min(range.right(), model_->columnCount() - 1); ++field) {
      const int place = layout_.place_of(field);
      if (place >= 0) places[static_cast<size_t>(place)] = true;
    }
  }
  const QModelIndex current = currentIndex();
  const int field = current.isValid() ? current.column() : chosen_field_;
  const bool has_place = field >= 0 && field < model_->columnCount();
  field_header_->show_place(has_place ? layout_.place_of(field) : -1, std::move(places));
  record_header_->show_rows(current.isValid() ? current.row() : -1, selected_rows(selection));
}

void CCellvaneView::selectionChanged(const QItemSelection&, const QItemSelection&) {
  viewport()->update();
  show_headers();
  summary_->begin(cell_groups(selectionModel()->selection(), layout_));
  emit place_changed();
}

// A cell that was made the current one from outside is where the next selection begins.
void CCellvaneView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QAbstractItemView::currentChanged(current, previous);
  if (current.isValid() && !selecting_) {
    anchor_ = lead_ = current_place();
    kept_ = {};
    removes_ = false;
    span_ = Span::kCells;
  }
  if (current.isValid()) {
    chosen_field_ = current.column();
    current_field_id_ = table().field_id(static_cast<size_t>(current.column()));
  }
  viewport()->update();
  show_headers();
  if (QAccessible::isActive() && current.isValid() && hasFocus()) {
    QAccessibleEvent event(this, QAccessible::Focus);
    if (QAccessibleInterface* grid = QAccessible::queryAccessibleInterface(this)) {
      if (QAccessibleTableInterface* cells = grid->tableInterface()) {
        event.setChild(grid->indexOfChild(cells->cellAt(current.row(), current_place().place)));
      }
    }
    QAccessible::updateAccessibility(&event);
  }
  emit place_changed();
}

}  // namespace rowvane

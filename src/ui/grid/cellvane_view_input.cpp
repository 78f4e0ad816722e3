// Keys and the mouse.
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTimerEvent>

#include "ui/grid/cellvane_view.h"
#include "ui/grid/editor_keys.h"

namespace rowvane {
namespace {

constexpr int kDragInterval = 40;  // milliseconds between two steps of scrolling while the mouse is dragged

}  // namespace

// ---- keys

// Enter, Tab and the keys that lead to other cells; also those that end an editor.
bool CCellvaneView::handle_move_key(int key, Qt::KeyboardModifiers modifiers) {
  const bool shift = modifiers.testFlag(Qt::ShiftModifier);
  if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
    go_to(tab_target(current_place(), key == Qt::Key_Backtab || shift ? -1 : 1, layout_));
    return true;
  }
  const auto enter = static_cast<EnterKey>(settings_.general_options.when_enter_pressed);
  if (is_enter(key)) {
    go_to(enter_target(enter, current_place(), shift ? -1 : 1, layout_));
    return true;
  }
  const auto target = arrow_target(key, modifiers, shift ? lead_ : current_place(), layout_, model_);
  if (!target) return false;
  if (shift) {
    extend_selection(*target);
  } else {
    go_to(*target);
  }
  return true;
}

bool CCellvaneView::handle_command_key(QKeyEvent& event) {
  const bool control = event.modifiers().testFlag(Qt::ControlModifier);
  const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
  const auto enter = static_cast<EnterKey>(settings_.general_options.when_enter_pressed);
  if (event.key() == Qt::Key_Space && control) {
    select_fields_of_selection();
  } else if (event.key() == Qt::Key_Space && shift) {
    select_records_of_selection();
  } else if (event.key() == Qt::Key_Delete && event.modifiers() == Qt::NoModifier) {
    pane_.clear();
  } else if (is_enter(event.key()) && control) {
    pane_.search();
  } else if (event.key() == Qt::Key_Semicolon && control) {
    pane_.insert_today();
  } else if (event.key() == Qt::Key_Apostrophe && control) {
    pane_.copy_from_above();
  } else if (event.key() == Qt::Key_F2 ||
             (is_enter(event.key()) && !control && !shift && enter == EnterKey::kEdit)) {
    edit(currentIndex(), EditKeyPressed, &event);
  } else if (event.key() == Qt::Key_Down && event.modifiers().testFlag(Qt::AltModifier)) {
    if (edit(currentIndex(), EditKeyPressed, &event)) delegate_->open_choices();
  } else {
    return false;
  }
  return true;
}

void CCellvaneView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    pane_.escape_pressed();
    return;
  }
  event->accept();
  if (!is_usable() || !currentIndex().isValid()) return event->ignore();
  if (handle_command_key(*event)) return;
  if (!event->modifiers().testFlag(Qt::AltModifier) && handle_move_key(event->key(), event->modifiers()))
    return;
  const bool is_command =
      (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0;
  const bool is_typed = !event->text().isEmpty() && event->text().at(0).isPrint();
  // AltGr is Ctrl and Alt to Windows.
  const bool is_alt_gr = event->modifiers().testFlags(Qt::ControlModifier | Qt::AltModifier);
  if (!is_typed || (is_command && !is_alt_gr) || !edit(currentIndex(), AnyKeyPressed, event)) event->ignore();
}

QModelIndex CCellvaneView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  if (!is_usable()) return {};
  const GridPlace from = current_place();
  switch (action) {
    case MoveNext:
      return index_of(tab_target(from, 1, layout_));
    case MovePrevious:
      return index_of(tab_target(from, -1, layout_));
    default:
      break;
  }
  constexpr std::pair<CursorAction, Qt::Key> kKeys[] = {
      {MoveUp, Qt::Key_Up},         {MoveDown, Qt::Key_Down},        {MoveLeft, Qt::Key_Left},
      {MoveRight, Qt::Key_Right},   {MoveHome, Qt::Key_Home},        {MoveEnd, Qt::Key_End},
      {MovePageUp, Qt::Key_PageUp}, {MovePageDown, Qt::Key_PageDown}};
  for (const auto& [move, key] : kKeys) {
    if (move == action) return index_of(arrow_target(key, modifiers, from, layout_, model_).value_or(from));
  }
  return {};
}

// ---- the mouse

void CCellvaneView::mousePressEvent(QMouseEvent* event) {
  if (!finish_editing() || !is_usable()) return;
  const QPoint point = event->position().toPoint();
  const QModelIndex index = indexAt(point);
  if (!index.isValid()) return;
  const GridPlace place{index.row(), layout_.place_of(index.column())};
  if (event->button() == Qt::RightButton) {
    if (!is_selected(place)) go_to(place);
    return;
  }
  if (event->button() != Qt::LeftButton) return;
  if (event->modifiers() == Qt::ControlModifier && pane_.link_at(index).isValid()) {
    go_to(place);
    pane_.open_link();
    return;
  }
  dragging_ = true;
  begin_selection(place, Span::kCells, event->modifiers());
}

void CCellvaneView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint point = event->position().toPoint();
  if (dragging_ && event->buttons().testFlag(Qt::LeftButton)) return drag_to(point);
  const QModelIndex index = indexAt(point);
  const bool is_link = index.isValid() && table_.field(static_cast<size_t>(index.column())).link &&
                       !index.data().toString().isEmpty();
  const bool opens = is_link && event->modifiers().testFlag(Qt::ControlModifier);
  viewport()->setCursor(opens ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

// Beyond the edge the grid scrolls for as long as the mouse stays there.
void CCellvaneView::drag_to(QPoint point) {
  if (!dragging_ || !is_usable()) return;
  drag_point_ = point;
  const GridPlace to{layout_.nearest_row(std::min(point.y(), viewport()->height() - 1)),
                     layout_.nearest_place(std::min(point.x(), viewport()->width() - 1))};
  if (to != lead_) extend_selection(to);
  const bool outside = !viewport()->rect().contains(point);
  if (outside && !drag_timer_.isActive()) drag_timer_.start(kDragInterval, this);
  if (!outside) drag_timer_.stop();
}

void CCellvaneView::timerEvent(QTimerEvent* event) {
  if (event->timerId() != drag_timer_.timerId()) return QAbstractItemView::timerEvent(event);
  const QRect all = viewport()->rect();
  const auto scroll = [](QScrollBar* bar, int beyond) {
    if (beyond != 0) bar->setValue(bar->value() + (beyond > 0 ? 1 : -1) * bar->singleStep());
  };
  scroll(verticalScrollBar(), std::min(drag_point_.y(), 0) + std::max(drag_point_.y() - all.bottom(), 0));
  if (span_ == Span::kCells) {
    scroll(horizontalScrollBar(), std::min(drag_point_.x(), 0) + std::max(drag_point_.x() - all.right(), 0));
  }
  drag_to(drag_point_);
}

void CCellvaneView::mouseReleaseEvent(QMouseEvent*) {
  dragging_ = false;
  drag_timer_.stop();
}

void CCellvaneView::mouseDoubleClickEvent(QMouseEvent* event) {
  dragging_ = false;
  const QModelIndex index = indexAt(event->position().toPoint());
  if (event->button() == Qt::LeftButton && index.isValid()) edit(index, DoubleClicked, event);
}

void CCellvaneView::focusInEvent(QFocusEvent* event) {
  QAbstractItemView::focusInEvent(event);
  viewport()->update();
}

void CCellvaneView::focusOutEvent(QFocusEvent* event) {
  QAbstractItemView::focusOutEvent(event);
  viewport()->update();
}

}  // namespace rowvane

// How the view draws itself: the frozen parts and what scrolls between them.
#include <QPaintEvent>
#include <QPainter>

#include "ui/grid/cellvane_view.h"
#include "ui/theme.h"

namespace rowvane {
namespace {

QColor with_alpha(QColor color, float alpha) {
  color.setAlphaF(alpha);
  return color;
}

// Whether AT is one of NUMBER places, of which BEFORE stand before the current one.
bool is_within(int at, int current, int64_t before, int64_t number) {
  const int64_t first = current - before;
  return at >= first && at < first + number;
}

}  // namespace

CellPainter::Look CCellvaneView::look() const {
  CellPainter::Look look;
  look.palette = palette();
  look.font = font();
  const uint32_t chosen = settings_.table_font.color;
  look.text = chosen != 0 ? QColor::fromRgb(chosen) : palette().color(QPalette::Text);
  look.lines = layout_.lines();
  const profile::CheckBoxOptions& options = settings_.check_box_options;
  if (options.table_view_thumbnails && options.files_in_tables) {
    look.thumbnail = static_cast<int>(options.table_view_thumb_size) * zoom_ / 100;
  }
  return look;
}

void CCellvaneView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.fillRect(event->rect(), palette().color(QPalette::Base));
  if (!is_usable()) return;
  const CellPainter::Look cell_look = look();
  CellPainter cells(painter, cell_look, *widths_, thumbnails_);
  const int x = layout_.frozen_width();
  const int y = layout_.frozen_height();
  const QRect all = viewport()->rect();
  const std::pair frozen_rows(0, layout_.frozen_rows());
  const std::pair frozen_places(0, layout_.frozen_places());
  const auto rows = layout_.scrolled_rows();
  const auto places = layout_.scrolled_places();
  draw_cells(painter, cells, rows, places, QRect(QPoint(x, y), all.bottomRight()));
  draw_cells(painter, cells, rows, frozen_places, QRect(0, y, x, all.height() - y));
  draw_cells(painter, cells, frozen_rows, places, QRect(x, 0, all.width() - x, y));
  draw_cells(painter, cells, frozen_rows, frozen_places, QRect(0, 0, x, y));
  painter.setClipping(false);
  const QColor seam = palette().color(QPalette::Mid);
  if (x > 0) painter.fillRect(QRect(x - 2, 0, 2, all.height()), seam);
  if (y > 0) painter.fillRect(QRect(0, y - 2, all.width(), 2), seam);
  draw_current_cell(painter);
}

// The cells of ROWS and PLACES (each the first and the one behind the last) within CLIP.
void CCellvaneView::draw_cells(QPainter& painter, CellPainter& cells, std::pair<int, int> rows,
                               std::pair<int, int> places, const QRect& clip) const {
  if (rows.first >= rows.second || places.first >= places.second || clip.isEmpty()) return;
  painter.setClipRect(clip);
  draw_grounds(painter, rows, places);
  draw_cross(painter, rows, places);
  draw_selection(painter, rows, places);
  const int height = layout_.row_height();
  for (int place = places.first; place < places.second; ++place) {
    const int field = layout_.field_at(place);
    const int left = layout_.left(place);
    const int width = layout_.width(place) - 1;
    for (int row = rows.first; row < rows.second; ++row) {
      cells.draw(QRect(left, layout_.top(row), width, height - 1), model_.shown_cell(row, field));
    }
  }
}

void CCellvaneView::draw_grounds(QPainter& painter, std::pair<int, int> rows,
                                 std::pair<int, int> places) const {
  const int left = layout_.left(places.first);
  const int right = layout_.left(places.second - 1) + layout_.width(places.second - 1);
  const int height = layout_.row_height();
  const QColor alternate = palette().color(QPalette::AlternateBase);
  for (int row = rows.first; row < rows.second; ++row) {
    if (row % 2 == 1) painter.fillRect(QRect(left, layout_.top(row), right - left, height), alternate);
  }
  const int top = layout_.top(rows.first);
  const int bottom = layout_.top(rows.second - 1) + height;
  painter.setPen(with_alpha(palette().color(QPalette::Mid), 0.55F));
  for (int row = rows.first; row < rows.second; ++row) {
    const int y = layout_.top(row) + height - 1;
    painter.drawLine(left, y, right - 1, y);
  }
  for (int place = places.first; place < places.second; ++place) {
    const int x = layout_.left(place) + layout_.width(place) - 1;
    painter.drawLine(x, top, x, bottom - 1);
  }
}

// The rows and columns about the current cell, as the options have them.
void CCellvaneView::draw_cross(QPainter& painter, std::pair<int, int> rows,
                               std::pair<int, int> places) const {
  const profile::Crosshighlighting& cross = settings_.crosshighlighting;
  if ((!cross.rows && !cross.columns) || !currentIndex().isValid()) return;
  const GridPlace current = current_place();
  const int left = layout_.left(places.first);
  const int right = layout_.left(places.second - 1) + layout_.width(places.second - 1);
  const int top = layout_.top(rows.first);
  const int bottom = layout_.top(rows.second - 1) + layout_.row_height();
  QRegion region;
  for (int row = rows.first; cross.rows && row < rows.second; ++row) {
    if (!is_within(row, current.row, cross.row_position, cross.row_number)) continue;
    region += QRect(left, layout_.top(row), right - left, layout_.row_height() - 1);
  }
  for (int place = places.first; cross.columns && place < places.second; ++place) {
    if (!is_within(place, current.place, cross.column_position, cross.column_number)) continue;
    region += QRect(layout_.left(place), top, layout_.width(place) - 1, bottom - top);
  }
  // Bright colours would outshine the texts on a dark ground.
  const float strength = is_dark(palette().color(QPalette::Base)) ? 0.3F : 1.0F;
  const QColor color =
      with_alpha(QColor::fromRgb(cross.color), strength * static_cast<float>(cross.contrast) / 100.0F);
  for (const QRect& rect : region) painter.fillRect(rect, color);
}

void CCellvaneView::draw_selection(QPainter& painter, std::pair<int, int> rows,
                                   std::pair<int, int> places) const {
  const QColor tint = with_alpha(palette().color(QPalette::Highlight), hasFocus() ? 0.22F : 0.14F);
  const int height = layout_.row_height();
  const QModelIndex current = currentIndex();
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    const int first = std::max(range.top(), rows.first);
    const int last = std::min(range.bottom(), rows.second - 1);
    if (first > last) continue;
    const int top = layout_.top(first);
    const int bottom = layout_.top(last) + height - 1;
    for (int place = places.first; place < places.second; ++place) {
      const int field = layout_.field_at(place);
      if (field < range.left() || field > range.right()) continue;
      const QRect rect(layout_.left(place), top, layout_.width(place) - 1, bottom - top);
      // The current cell keeps its ground, so that it stands out.
      QRegion region(rect);
      if (current.column() == field && range.contains(current)) region -= visualRect(current);
      for (const QRect& part : region) painter.fillRect(part, tint);
    }
  }
}

// A frame about it, over the seams of the frozen parts.
void CCellvaneView::draw_current_cell(QPainter& painter) const {
  const QModelIndex current = currentIndex();
  const QRect cell = visualRect(current);
  if (!cell.isValid()) return;
  const bool frozen_row = current.row() < layout_.frozen_rows();
  const bool frozen_place = current_place().place < layout_.frozen_places();
  const QRect all = viewport()->rect();
  painter.setClipRect(all.adjusted(frozen_place ? 0 : layout_.frozen_width(),
                                   frozen_row ? 0 : layout_.frozen_height(), 0, 0));
  const QColor frame = palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid);
  painter.setPen(QPen(frame, 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(cell.adjusted(1, 1, -1, -1));
}

}  // namespace rowvane

#include "ui/grid/cell_painter.h"

#include <QTextOption>
#include <algorithm>
#include <cmath>

#include "formula/formats/number_format.h"
#include "ui/grid/type_signs.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kCellMargin = 4;

// Line breaks and tabs have no place on a single line.
QString on_one_line(QString text) {
  for (QChar& character : text) {
    if (character.unicode() < 0x20) character = u' ';
  }
  return text;
}

// No more of a text than a width can show, so that long ones need not be measured.
QString shortened(const QString& text, qsizetype most, bool shows_end) {
  if (text.size() <= most) return text;
  return shows_end ? text.right(most) : text.left(most);
}

}  // namespace

CellPainter::CellPainter(QPainter& painter, const Look& look, const TextWidths& widths,
                         Thumbnails& thumbnails)
    : painter_(painter),
      look_(look),
      widths_(widths),
      thumbnails_(thumbnails),
      metrics_(look.font),
      link_font_(look.font) {
  link_font_.setUnderline(true);
}

int CellPainter::thumbnail_side(int height) const {
  return std::min(look_.thumbnail, height - 4);
}

int CellPainter::width_of(const QString& text) const {
  const auto width = widths_.width(text);
  return width ? static_cast<int>(std::ceil(*width)) : metrics_.horizontalAdvance(text);
}

int wanted_cell_width(const ShownCell& cell, const QFontMetrics& metrics) {
  int widest = 0;
  for (const QString& line : shortened(cell.text, 500, cell.shows_end).split(u'\n')) {
    widest = std::max(widest, metrics.horizontalAdvance(line));
  }
  return widest + 2 * kCellMargin + 2;
}

void CellPainter::draw(const QRect& rect, const ShownCell& cell) {
  QRect inside = rect.adjusted(kCellMargin, 0, -kCellMargin, 0);
  if (cell.files != nullptr && look_.thumbnail > 0) inside = draw_thumbnails(inside, *cell.files);
  if (cell.text.isEmpty() || inside.width() <= 0) return;
  const auto color = format_color(cell.color, look_.palette.color(QPalette::Base));
  painter_.setPen(cell.is_link ? look_.palette.color(QPalette::Link) : color.value_or(look_.text));
  painter_.setFont(cell.is_link ? link_font_ : look_.font);
  if (look_.lines > 1 && !cell.is_number && !cell.shows_end) {
    draw_lines(inside, cell);
  } else {
    draw_line(inside, cell);
  }
}

QString CellPainter::filled(const ShownCell& cell, int width) const {
  const int one = std::max(metrics_.horizontalAdvance(cell.fill), 1);
  const int room = width - metrics_.horizontalAdvance(cell.text);
  QString text = cell.text;
  return room > 0 ? text.insert(cell.fill_position, cell.fill.repeated(room / one)) : text;
}

QString CellPainter::cut(const QString& text, int width, bool shows_end) const {
  const auto simple = shows_end ? std::nullopt : widths_.shortened(text, width);
  return simple ? *simple : metrics_.elidedText(text, shows_end ? Qt::ElideLeft : Qt::ElideRight, width);
}

void CellPainter::draw_line(const QRect& rect, const ShownCell& cell) {
  const qsizetype most = rect.width() / 2 + 2;
  QString text = cell.fill.isEmpty() ? on_one_line(shortened(cell.text, most, cell.shows_end))
                                     : filled(cell, rect.width());
  int width = width_of(text);
  if (width > rect.width()) {
    // Half a number would be a wrong one.
    text = cell.is_number ? to_qt(kNotShown) : cut(text, rect.width(), cell.shows_end);
    width = width_of(text);
    if (width > rect.width()) return;
  }
  const int x = cell.is_number ? rect.right() + 1 - width : rect.left();
  const int line = metrics_.height();
  const int y = look_.lines > 1 ? rect.top() + 3 : rect.top() + (rect.height() - line) / 2;
  const QPoint base(x, y + metrics_.ascent());
  const auto glyphs = cell.is_link ? std::nullopt : widths_.glyphs(text);
  if (glyphs) {
    painter_.drawGlyphRun(base, *glyphs);
  } else {
    painter_.drawText(base, text);
  }
}

void CellPainter::draw_lines(const QRect& rect, const ShownCell& cell) {
  const qsizetype most = (rect.width() / 2 + 2) * qsizetype{look_.lines};
  QTextOption option(Qt::AlignLeft | Qt::AlignTop);
  option.setWrapMode(cell.wraps ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
  const QRect lines(rect.left(), rect.top() + 3, rect.width(), metrics_.height() * look_.lines);
  painter_.save();
  painter_.setClipRect(lines, Qt::IntersectClip);
  painter_.drawText(QRectF(lines), shortened(cell.text, most, false), option);
  painter_.restore();
}

// Side by side; answers what is left for the text.
QRect CellPainter::draw_thumbnails(const QRect& rect, const FileList& files) {
  const int side = thumbnail_side(rect.height());
  if (side < 8) return rect;
  const qreal ratio = painter_.device()->devicePixelRatioF();
  const QColor sign = look_.palette.color(QPalette::Disabled, QPalette::Text);
  int x = rect.left();
  for (const FileObject& file : files) {
    if (x + side > rect.right()) break;
    const QRect place(x, rect.top() + (rect.height() - side) / 2, side, side);
    const Thumbnails::Thumbnail thumbnail = thumbnails_.of(file, static_cast<int>(side * ratio));
    const int sign_side = std::min(side, 32);
    QRect sign_place(0, 0, sign_side, sign_side);
    sign_place.moveCenter(place.center());
    switch (thumbnail.state) {
      case Thumbnails::State::kImage: {
        const QSize size = thumbnail.pixmap.size() / ratio;
        painter_.drawPixmap(QRect(place.left() + (side - size.width()) / 2,
                                  place.top() + (side - size.height()) / 2, size.width(), size.height()),
                            thumbnail.pixmap);
        break;
      }
      case Thumbnails::State::kDamaged:
        draw_broken_image(painter_, sign_place, sign);
        break;
      case Thumbnails::State::kWaiting:
      case Thumbnails::State::kNoImage:
        draw_file_sign(painter_, sign_place, sign);
        break;
    }
    x += side + 3;
  }
  return rect.adjusted(x + 2 - rect.left(), 0, 0, 0);
}

}  // namespace rowvane

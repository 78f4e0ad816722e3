#include "ui/grid/type_signs.h"

#include <QPainterPath>

#include "formula/formats/format_code.h"

namespace rowvane {
namespace {

// All are drawn on a field of 16 by 16.
constexpr qreal kSide = 16;

void prepare(QPainter& painter, const QRect& rect, const QColor& color) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(rect.topLeft());
  painter.scale(rect.width() / kSide, rect.height() / kSide);
  painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
}

void draw_letters(QPainter& painter, const QString& letters) {
  QFont font = painter.font();
  font.setBold(true);
  font.setPixelSize(11);
  painter.setFont(font);
  painter.drawText(QRectF(0, 0, kSide, kSide), Qt::AlignCenter, letters);
}

void draw_lines(QPainter& painter) {
  for (const auto& [y, end] : {std::pair(4.0, 13.5), {8.0, 13.5}, {12.0, 9.0}}) {
    painter.drawLine(QPointF(2.5, y), QPointF(end, y));
  }
}

void draw_picture(QPainter& painter) {
  painter.drawRoundedRect(QRectF(2, 3, 12, 10), 1.5, 1.5);
  painter.drawPolyline(QPolygonF({{2.5, 11.5}, {6, 7.5}, {9, 10.5}, {11, 8.5}, {13.5, 11.5}}));
}

void draw_code(QPainter& painter) {
  painter.drawPolyline(QPolygonF({{5.5, 4}, {2, 8}, {5.5, 12}}));
  painter.drawPolyline(QPolygonF({{10.5, 4}, {14, 8}, {10.5, 12}}));
}

void draw_calendar(QPainter& painter) {
  painter.drawRoundedRect(QRectF(2.5, 3.5, 11, 10), 1.5, 1.5);
  painter.drawLine(QPointF(2.5, 7), QPointF(13.5, 7));
  painter.drawLine(QPointF(5.5, 2), QPointF(5.5, 4.5));
  painter.drawLine(QPointF(10.5, 2), QPointF(10.5, 4.5));
}

void draw_chain(QPainter& painter) {
  painter.drawRoundedRect(QRectF(1.5, 6, 7.5, 4.5), 2.2, 2.2);
  painter.drawRoundedRect(QRectF(7, 6, 7.5, 4.5), 2.2, 2.2);
}

}  // namespace

bool shows_dates(const Field& field) {
  if (field.type != FieldType::kNumber || field.format.empty()) return false;
  const FormatCode code(field.format);
  if (!code.problem().empty()) return false;
  const FormatSection* section = code.section_of(1);
  return section != nullptr && section->layout == FormatLayout::kDate && section->has_calendar_part;
}

void draw_type_sign(QPainter& painter, const QRect& rect, const Field& field, const QColor& color) {
  painter.save();
  prepare(painter, rect, color);
  switch (field.type) {
    case FieldType::kText:
      field.link ? draw_chain(painter) : draw_letters(painter, "ab");
      break;
    case FieldType::kNumber:
      shows_dates(field) ? draw_calendar(painter) : draw_letters(painter, "12");
      break;
    case FieldType::kLongText:
      draw_lines(painter);
      break;
    case FieldType::kFiles:
      draw_picture(painter);
      break;
    case FieldType::kCode:
      draw_code(painter);
      break;
  }
  painter.restore();
}

void draw_broken_image(QPainter& painter, const QRect& rect, const QColor& color) {
  painter.save();
  prepare(painter, rect, color);
  painter.drawRoundedRect(QRectF(2, 3, 12, 10), 1.5, 1.5);
  painter.drawLine(QPointF(5.5, 5.5), QPointF(10.5, 10.5));
  painter.drawLine(QPointF(10.5, 5.5), QPointF(5.5, 10.5));
  painter.restore();
}

void draw_file_sign(QPainter& painter, const QRect& rect, const QColor& color) {
  painter.save();
  prepare(painter, rect, color);
  painter.drawPolyline(QPolygonF({{9.5, 2}, {3.5, 2}, {3.5, 14}, {12.5, 14}, {12.5, 5}, {9.5, 2}}));
  painter.drawPolyline(QPolygonF({{9.5, 2}, {9.5, 5}, {12.5, 5}}));
  painter.restore();
}

}  // namespace rowvane

#include "ui/grid/record_header.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "core/database/database.h"

namespace rowvane {
namespace {

constexpr int kMarkWidth = 12;  // of the current record, on the left
constexpr int kNumberMargin = 5;
constexpr int kFlagWidth = 4;

}  // namespace

RecordHeader::RecordHeader(const TableModel& model, const GridLayout& layout, QWidget* parent)
    : QWidget(parent), model_(model), layout_(layout) {
  setAccessibleName(tr("Records"));
}

void RecordHeader::show_rows(int current, RowRanges selected) {
  current_ = current;
  selected_ = std::move(selected);
  update();
}

int RecordHeader::wanted_width() const {
  const auto digits = std::max<qsizetype>(QString::number(model_.table().record_count()).size(), 2);
  return fontMetrics().horizontalAdvance(QString(digits, u'8')) + kMarkWidth + kNumberMargin + kFlagWidth + 3;
}

bool RecordHeader::is_selected(int row) const {
  const auto next = std::ranges::upper_bound(selected_, row, {}, &RowRange::first);
  return next != selected_.begin() && (next - 1)->last >= row;
}

void RecordHeader::draw_row(QPainter& painter, int row) {
  const RecordNumber record = model_.record_at(row);
  const QRect rect(0, layout_.top(row), width(), layout_.row_height());
  const QColor accent = palette().color(QPalette::Highlight);
  if (is_selected(row)) {
    QColor tint = accent;
    tint.setAlphaF(0.25F);
    painter.fillRect(rect, tint);
  }
  QFont font = this->font();
  font.setBold(row == current_);
  painter.setFont(font);
  painter.setPen(palette().color(row == current_ ? QPalette::Active : QPalette::Disabled, QPalette::Text));
  const int line = std::min(rect.height(), layout_.row_height() / layout_.lines());
  painter.drawText(
      QRect(kMarkWidth, rect.top(), rect.width() - kMarkWidth - kNumberMargin - kFlagWidth, line),
      Qt::AlignRight | Qt::AlignVCenter, QString::number(record.number()));
  const int type = model_.table().flag_type(record);
  const Database* database = model_.table().database();
  if (type > 0 && database != nullptr &&
      static_cast<size_t>(type) <= database->settings().record_flag_types.size()) {
    const uint32_t color = database->settings().record_flag_types[static_cast<size_t>(type) - 1].color;
    painter.fillRect(QRect(rect.right() - kFlagWidth - 1, rect.top() + 1, kFlagWidth, rect.height() - 2),
                     QColor::fromRgb(color));
  }
  if (row == current_) {
    const int y = rect.top() + line / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(accent);
    painter.drawPolygon(QPolygonF({QPointF(4, y - 4), QPointF(9, y), QPointF(4, y + 4)}));
    painter.restore();
  }
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(rect.bottomLeft(), rect.bottomRight());
}

void RecordHeader::draw_rows(QPainter& painter, int first, int end, const QRect& clip) {
  painter.setClipRect(clip);
  for (int row = first; row < end; ++row) draw_row(painter, row);
}

void RecordHeader::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Button));
  const int seam = layout_.frozen_height();
  const auto [first, end] = layout_.scrolled_rows();
  draw_rows(painter, first, end, QRect(0, seam, width(), height() - seam));
  draw_rows(painter, 0, layout_.frozen_rows(), QRect(0, 0, width(), seam));
  painter.setClipping(false);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(width() - 1, 0, width() - 1, height());
  if (seam > 0) painter.fillRect(QRect(0, seam - 2, width(), 2), palette().color(QPalette::Mid));
}

// ---- the mouse

void RecordHeader::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const int row = layout_.row_at(event->position().toPoint().y());
  if (row >= 0) emit chosen(row, event->modifiers());
}

void RecordHeader::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons().testFlag(Qt::LeftButton)) emit dragged_to(event->position().toPoint().y());
}

void RecordHeader::mouseReleaseEvent(QMouseEvent*) {
  emit released();
}

}  // namespace rowvane

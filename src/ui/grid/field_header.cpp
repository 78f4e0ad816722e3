#include "ui/grid/field_header.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QToolTip>

#include "core/database/database.h"
#include "recordset/search/criterion.h"
#include "ui/grid/type_signs.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kHeaderMargin = 5;
constexpr int kSignSide = 14;
constexpr int kBorderReach = 4;  // how near to a border the mouse takes it
constexpr int kLeastFieldWidth = 16;
constexpr int kArrowWidth = 9;

void draw_arrow(QPainter& painter, const QRect& rect, bool descending) {
  const QPointF center = QRectF(rect).center();
  const qreal up = descending ? -1 : 1;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(painter.pen().color());
  painter.setPen(Qt::NoPen);
  painter.drawPolygon(QPolygonF({{center.x() - 3.5, center.y() + 2 * up},
                                 {center.x() + 3.5, center.y() + 2 * up},
                                 {center.x(), center.y() - 2.5 * up}}));
  painter.restore();
}

}  // namespace

FieldHeader::FieldHeader(TablePane& pane, const GridLayout& layout, QWidget* parent)
    : QWidget(parent), pane_(pane), model_(pane.model()), layout_(layout) {
  setMouseTracking(true);
  setAccessibleName(tr("Fields"));
}

void FieldHeader::show_place(int current, std::vector<bool> selected) {
  current_ = current;
  selected_ = std::move(selected);
  update();
}

// ---- what stands in a head

QString FieldHeader::criterion_text(int field) const {
  const auto criterion = pane_.document().criteria().criterion(model_.table(), static_cast<size_t>(field));
  if (!criterion) return {};
  return to_qt(rowvane::criterion_text(*criterion, pane_.document().database().settings().record_flag_types));
}

QString FieldHeader::sort_mark(int field) const {
  const SortCodes& codes = pane_.presentation().sort_codes();
  const uint32_t code = codes[static_cast<size_t>(field)];
  if (code == 0) return {};
  const QString arrow = code < kDescendingSortCode ? QStringLiteral("↑") : QStringLiteral("↓");
  const auto keys = std::ranges::count_if(codes, [](uint32_t each) { return each != 0; });
  return keys > 1 ? QString::number(code % kAscendingSortCode) + arrow : arrow;
}

int FieldHeader::wanted_height() const {
  const int line = fontMetrics().height();
  const bool is_filtered = !pane_.document().criteria().criteria(model_.table()).empty();
  return line * (is_filtered ? 2 : 1) + 2 * kHeaderMargin;
}

int FieldHeader::wanted_width(int field) const {
  QFont bold = font();
  bold.setBold(true);
  const QString name = to_qt(model_.table().field(static_cast<size_t>(field)).name);
  const int mark = sort_mark(field).isEmpty() ? 0 : kArrowWidth + 12;
  return QFontMetrics(bold).horizontalAdvance(name) + kSignSide + 3 * kHeaderMargin + mark + 2;
}

// ---- drawing

void FieldHeader::draw_name(QPainter& painter, const QRect& rect, int field, bool is_current) {
  const Field& definition = model_.table().field(static_cast<size_t>(field));
  const QColor muted = palette().color(QPalette::Disabled, QPalette::Text);
  QRect place = rect;
  if (rect.width() > 3 * kSignSide) {
    draw_type_sign(painter,
                   QRect(rect.left(), rect.top() + (rect.height() - kSignSide) / 2, kSignSide, kSignSide),
                   definition, muted);
    place.setLeft(rect.left() + kSignSide + kHeaderMargin);
  }
  QFont name_font = font();
  name_font.setBold(is_current);
  name_font.setItalic(!definition.formula.empty());
  const QString mark = sort_mark(field);
  if (!mark.isEmpty()) {
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::Highlight));
    const QString rank = mark.chopped(1);
    const QRect arrow(place.right() - kArrowWidth + 1, place.top(), kArrowWidth, place.height());
    draw_arrow(painter, arrow, mark.endsWith(u'↓'));
    const int rank_width = fontMetrics().horizontalAdvance(rank);
    painter.drawText(QRect(arrow.left() - rank_width, place.top(), rank_width, place.height()),
                     Qt::AlignVCenter | Qt::AlignRight, rank);
    place.setRight(arrow.left() - rank_width - 3);
  }
  painter.setFont(name_font);
  painter.setPen(palette().color(QPalette::ButtonText));
  const QString name =
      QFontMetrics(name_font).elidedText(to_qt(definition.name), Qt::ElideRight, place.width());
  painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, name);
}

void FieldHeader::draw_place(QPainter& painter, int place) {
  const int field = layout_.field_at(place);
  const QRect rect(layout_.left(place), 0, layout_.width(place), height());
  const auto i = static_cast<size_t>(place);
  const bool is_selected = i < selected_.size() && selected_[i];
  const QColor ground = palette().color(QPalette::Button);
  const QColor accent = palette().color(QPalette::Highlight);
  if (is_selected || place == hovered_) {
    QColor tint = accent;
    tint.setAlphaF(is_selected ? 0.25F : 0.08F);
    painter.fillRect(rect, ground);
    painter.fillRect(rect, tint);
  }
  const int line = fontMetrics().height();
  draw_name(painter,
            QRect(rect.left() + kHeaderMargin, kHeaderMargin, rect.width() - 2 * kHeaderMargin, line), field,
            place == current_);
  const QString criterion = criterion_text(field);
  if (!criterion.isEmpty()) {
    painter.setFont(font());
    painter.setPen(accent);
    const QRect below(rect.left() + kHeaderMargin, kHeaderMargin + line, rect.width() - 2 * kHeaderMargin,
                      line);
    const QString text = fontMetrics().elidedText(criterion.simplified(), Qt::ElideRight, below.width());
    painter.drawText(below, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
  }
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(rect.topRight(), rect.bottomRight());
  if (place == current_) painter.fillRect(QRect(rect.left(), height() - 3, rect.width() - 1, 2), accent);
}

void FieldHeader::draw_places(QPainter& painter, int first, int end, const QRect& clip) {
  painter.setClipRect(clip);
  for (int place = first; place < end; ++place) draw_place(painter, place);
}

void FieldHeader::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Button));
  const int seam = layout_.frozen_width();
  const auto [first, end] = layout_.scrolled_places();
  draw_places(painter, first, end, QRect(seam, 0, width() - seam, height()));
  draw_places(painter, 0, layout_.frozen_places(), QRect(0, 0, seam, height()));
  painter.setClipping(false);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(0, height() - 1, width(), height() - 1);
  if (seam > 0) painter.fillRect(QRect(seam - 2, 0, 2, height()), palette().color(QPalette::Mid));
  if (drag_ == Drag::kMove && gap_ >= 0) {
    const int last = layout_.place_count() - 1;
    const int x = gap_ <= last ? layout_.left(gap_) : layout_.left(last) + layout_.width(last);
    painter.fillRect(QRect(x - 2, 0, 4, height()), palette().color(QPalette::Highlight));
  }
}

// ---- the mouse

int FieldHeader::border_at(int x) const {
  for (const int shift : {-kBorderReach, kBorderReach}) {
    const int place = layout_.place_at(x + shift);
    if (place >= 0 && std::abs(layout_.left(place) + layout_.width(place) - x) <= kBorderReach) return place;
  }
  const int last = layout_.place_count() - 1;
  const bool at_end = last >= 0 && std::abs(layout_.left(last) + layout_.width(last) - x) <= kBorderReach;
  return at_end ? last : -1;
}

// The place before which a dragged field would be dropped.
int FieldHeader::gap_at(int x) const {
  const int place = layout_.nearest_place(x);
  return x > layout_.left(place) + layout_.width(place) / 2 ? place + 1 : place;
}

void FieldHeader::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  pressed_ = event->position().toPoint();
  dragged_ = border_at(pressed_.x());
  if (dragged_ >= 0) {
    drag_ = Drag::kWidth;
    pressed_width_ = layout_.width(dragged_);
    return;
  }
  dragged_ = layout_.place_at(pressed_.x());
  if (dragged_ < 0) return;
  drag_ = Drag::kPressed;
  emit chosen(dragged_, event->modifiers());
}

void FieldHeader::mouseMoveEvent(QMouseEvent* event) {
  const QPoint point = event->position().toPoint();
  if (drag_ == Drag::kNone) {
    setCursor(border_at(point.x()) >= 0 ? Qt::SplitHCursor : Qt::ArrowCursor);
    hovered_ = layout_.place_at(point.x());
  } else if (drag_ == Drag::kWidth) {
    emit width_dragged(dragged_, std::max(pressed_width_ + point.x() - pressed_.x(), kLeastFieldWidth));
  } else if ((point - pressed_).manhattanLength() >= QApplication::startDragDistance()) {
    drag_ = Drag::kMove;
    gap_ = gap_at(point.x());
  }
  update();
}

void FieldHeader::mouseReleaseEvent(QMouseEvent*) {
  const Drag drag = std::exchange(drag_, Drag::kNone);
  const int gap = std::exchange(gap_, -1);
  if (drag == Drag::kWidth) emit width_chosen(dragged_);
  if (drag == Drag::kMove && gap >= 0 && gap != dragged_ && gap != dragged_ + 1)
    emit move_wanted(dragged_, gap);
  update();
}

void FieldHeader::mouseDoubleClickEvent(QMouseEvent* event) {
  const int place = border_at(event->position().toPoint().x());
  drag_ = Drag::kNone;
  if (place >= 0) emit fit_wanted(place);
}

void FieldHeader::leaveEvent(QEvent*) {
  hovered_ = -1;
  update();
}

void FieldHeader::contextMenuEvent(QContextMenuEvent* event) {
  const int place = layout_.place_at(event->pos().x());
  if (place < 0 || actions().isEmpty()) return;
  const auto i = static_cast<size_t>(place);
  if (i >= selected_.size() || !selected_[i]) emit chosen(place, Qt::NoModifier);
  QMenu::exec(actions(), event->globalPos(), nullptr, this);
}

bool FieldHeader::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const int place = layout_.place_at(help->pos().x());
  if (place < 0) return true;
  const int field = layout_.field_at(place);
  QString tip = model_.headerData(field, Qt::Horizontal, Qt::ToolTipRole).toString();
  const QString criterion = criterion_text(field);
  if (!criterion.isEmpty()) tip += "\n" + criterion;
  QToolTip::showText(help->globalPos(), tip, this);
  return true;
}

}  // namespace rowvane

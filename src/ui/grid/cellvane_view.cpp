// The view as a whole: its parts, where they stand and how it scrolls.
#include "ui/grid/cellvane_view.h"

#include <QEvent>
#include <QScrollBar>
#include <QToolButton>
#include <QWheelEvent>
#include <algorithm>
#include <limits>

#include "core/database/database.h"
#include "ui/grid/grid_accessible.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kLeastZoom = 50;
constexpr int kMostZoom = 300;
constexpr int kZoomStep = 10;
constexpr double kLeastPointSize = 9;
constexpr int kScrollPixels = 30;     // of one step sideways
constexpr int kMostFieldWidth = 800;  // that fitting gives a field

QFont table_font(const profile::Font& settings, QFont font) {
  font.setPointSizeF(settings.size > 0 ? settings.size : std::max(font.pointSizeF(), kLeastPointSize));
  if (!settings.name.empty()) font.setFamily(to_qt(settings.name));
  return font;
}

}  // namespace

CCellvaneView::CCellvaneView(DatabaseDocument& document, CWorkSheet& table, const profile::Settings& settings,
                             Dialogs& dialogs, QWidget* parent)
    : QAbstractItemView(parent),
      document_(document),
      settings_(settings),
      dialogs_(dialogs),
      model_(new TableModel(document, table, settings, this)),
      delegate_(new CellDelegate(document, *model_, settings, this)),
      field_header_(new FieldHeader(document, *model_, layout_, this)),
      record_header_(new RecordHeader(*model_, layout_, this)),
      corner_(new QToolButton(this)),
      summary_(new SelectionSummary(*model_, this)),
      normal_font_(table_font(settings.table_font, font())) {
  install_grid_accessibility();
  setModel(model_);
  setItemDelegate(delegate_);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
  setTabKeyNavigation(true);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  setAccessibleName(to_qt(table.name()));
  viewport()->setMouseTracking(true);
  corner_->setAutoRaise(true);
  corner_->setFocusPolicy(Qt::NoFocus);
  corner_->setAccessibleName(tr("Select All"));
  corner_->setToolTip(tr("Select all cells"));
  connect_parts();
  connect_headers();
  set_zoom(zoom_);
  if (is_usable()) go_to({0, 0});
}

// Its parts look at the layout to their end.
CCellvaneView::~CCellvaneView() {
  delete field_header_;
  delete record_header_;
}

void CCellvaneView::connect_parts() {
  connect(model_, &TableModel::told, this,
          [this](const QString& text) { dialogs_.show(to_utf8(text), MessageIcon::kWarning); });
  connect(model_, &TableModel::modelAboutToBeReset, this, &CCellvaneView::remember_place);
  connect(model_, &TableModel::modelReset, this, &CCellvaneView::find_place_again);
  connect(delegate_, &CellDelegate::left, this, &CCellvaneView::leave_editor);
  connect(&thumbnails_, &Thumbnails::ready, viewport(), qOverload<>(&QWidget::update));
  connect(summary_, &SelectionSummary::finished, this, &CCellvaneView::place_changed);
}

void CCellvaneView::connect_headers() {
  connect(corner_, &QToolButton::clicked, this, &CCellvaneView::selectAll);
  connect(field_header_, &FieldHeader::chosen, this, &CCellvaneView::select_fields);
  connect(field_header_, &FieldHeader::width_dragged, this, [this](int place, int width) {
    layout_.set_width(place, width);
    updateGeometries();
    viewport()->update();
  });
  connect(field_header_, &FieldHeader::width_chosen, this, &CCellvaneView::keep_width);
  connect(field_header_, &FieldHeader::fit_wanted, this, &CCellvaneView::fit_field);
  connect(field_header_, &FieldHeader::move_wanted, this, &CCellvaneView::move_field);
  connect(record_header_, &RecordHeader::chosen, this, &CCellvaneView::select_records);
  connect(record_header_, &RecordHeader::dragged_to, this, [this](int y) { drag_to({drag_point_.x(), y}); });
  connect(record_header_, &RecordHeader::released, this, [this] {
    dragging_ = false;
    drag_timer_.stop();
  });
}

void CCellvaneView::set_presentation(TablePresentation* presentation) {
  presentation_ = presentation;
  field_header_->set_presentation(presentation);
}

// ---- the layout

// Everything anew, as fields, records and options have it now.
void CCellvaneView::lay_out() {
  layout_.set_fields(table(), zoom_);
  layout_.set_row_count(model_->rowCount());
  const GridArrangement& arrangement = table().arrangement();
  layout_.set_lines(arrangement.lines, fontMetrics().height());
  layout_.freeze_places(arrangement.frozen_fields);
  layout_.freeze_rows(
      static_cast<int>(std::min<uint32_t>(arrangement.frozen_records, std::numeric_limits<int>::max())));
  updateGeometries();
  viewport()->update();
}

void CCellvaneView::set_scroll_ranges() {
  horizontalScrollBar()->setRange(0, layout_.last_x());
  horizontalScrollBar()->setPageStep(std::max(viewport()->width() - layout_.frozen_width(), 1));
  horizontalScrollBar()->setSingleStep(kScrollPixels);
  verticalScrollBar()->setRange(0, layout_.last_line());
  verticalScrollBar()->setPageStep(layout_.rows_of_page() * layout_.lines());
  verticalScrollBar()->setSingleStep(1);
  layout_.scroll_to(horizontalScrollBar()->value(), verticalScrollBar()->value());
}

void CCellvaneView::updateGeometries() {
  if (in_geometry_) return;
  in_geometry_ = true;
  const int left = record_header_->wanted_width();
  const int top = field_header_->wanted_height();
  setViewportMargins(left, top, 0, 0);
  const QRect cells = viewport()->geometry();
  layout_.set_viewport(cells.size());
  set_scroll_ranges();
  field_header_->setGeometry(cells.left(), cells.top() - top, cells.width(), top);
  record_header_->setGeometry(cells.left() - left, cells.top(), left, cells.height());
  corner_->setGeometry(cells.left() - left, cells.top() - top, left, top);
  field_header_->update();
  record_header_->update();
  QAbstractItemView::updateGeometries();
  in_geometry_ = false;
}

void CCellvaneView::scrollContentsBy(int, int) {
  layout_.scroll_to(horizontalScrollBar()->value(), verticalScrollBar()->value());
  updateEditorGeometries();
  viewport()->update();
  field_header_->update();
  record_header_->update();
}

void CCellvaneView::changeEvent(QEvent* event) {
  QAbstractItemView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) lay_out();
}

void CCellvaneView::set_zoom(int percent) {
  zoom_ = std::clamp(percent, kLeastZoom, kMostZoom);
  QFont scaled = normal_font_;
  scaled.setPointSizeF(normal_font_.pointSizeF() * zoom_ / 100.0);
  setFont(scaled);
  widths_.emplace(scaled);
  field_header_->setFont(scaled);
  record_header_->setFont(scaled);
  lay_out();
}

void CCellvaneView::arrange(const GridArrangement& arrangement) {
  table().change_arrangement(arrangement);
  lay_out();
}

void CCellvaneView::set_lines(int lines) {
  const int row = layout_.scrolled_rows().first;
  GridArrangement arrangement = table().arrangement();
  arrangement.lines = lines;
  arrange(arrangement);
  verticalScrollBar()->setValue((row - layout_.frozen_rows()) * layout_.lines());
}

void CCellvaneView::freeze_fields() {
  const int wanted = current_place().place + 1;
  horizontalScrollBar()->setValue(0);
  layout_.freeze_places(wanted);
  if (layout_.frozen_places() < wanted) return refuse_to_freeze("fields");
  GridArrangement arrangement = table().arrangement();
  arrangement.frozen_fields = static_cast<uint16_t>(wanted);
  arrange(arrangement);
}

void CCellvaneView::freeze_records() {
  const int wanted = current_place().row;
  verticalScrollBar()->setValue(0);
  layout_.freeze_rows(wanted);
  if (layout_.frozen_rows() < wanted) return refuse_to_freeze("records");
  GridArrangement arrangement = table().arrangement();
  arrangement.frozen_records = static_cast<uint32_t>(wanted);
  arrange(arrangement);
}

void CCellvaneView::refuse_to_freeze(const std::string& what) {
  lay_out();
  scrollTo(currentIndex());
  dialogs_.show("The window has no room for so many frozen " + what + ".", MessageIcon::kWarning);
}

void CCellvaneView::unfreeze() {
  GridArrangement arrangement = table().arrangement();
  arrangement.frozen_fields = 0;
  arrangement.frozen_records = 0;
  arrange(arrangement);
  scrollTo(currentIndex());
}

// ---- fields

void CCellvaneView::keep_width(int place) {
  const auto field = static_cast<size_t>(layout_.field_at(place));
  Field definition = table().field(field);
  definition.width = static_cast<uint16_t>(
      std::clamp<int>(layout_.width(place) * 100 / zoom_, kLeastColumnWidth, kMostColumnWidth));
  if (definition.width != table().field(field).width) report(table().change_field(field, definition));
  lay_out();
}

void CCellvaneView::fit_field(int place) {
  const int field = layout_.field_at(place);
  int width = field_header_->wanted_width(field);
  const auto fit = [&](int first, int end) {
    for (int row = first; row < end; ++row) {
      width = std::max(width, wanted_cell_width(model_->shown_cell(row, field), fontMetrics()));
    }
  };
  fit(0, layout_.frozen_rows());
  fit(layout_.scrolled_rows().first, layout_.scrolled_rows().second);
  layout_.set_width(place, std::min(width, kMostFieldWidth * zoom_ / 100));
  keep_width(place);
}

void CCellvaneView::move_field(int place, int before) {
  std::vector<int> fields;
  for (int each = 0; each < layout_.place_count(); ++each) fields.push_back(layout_.field_at(each));
  const int moved = fields[static_cast<size_t>(place)];
  fields.erase(fields.begin() + place);
  fields.insert(fields.begin() + (before > place ? before - 1 : before), moved);
  // Hidden fields stay behind the field that they stand behind now.
  std::vector<size_t> order;
  for (size_t i = 0; i < table().field_count(); ++i) order.push_back(i);
  std::ranges::stable_sort(order, {}, [this](size_t i) { return table().field(i).position; });
  auto next = fields.begin();
  for (size_t& field : order) {
    if (!table().field(field).hidden) field = static_cast<size_t>(*next++);
  }
  ErrorCode error = ErrorCode::kOk;
  {
    const ChangeGroup step(document_.database(), "Move Field");
    for (size_t position = 0; position < order.size() && error == ErrorCode::kOk; ++position) {
      Field definition = table().field(order[position]);
      if (definition.position == position) continue;
      definition.position = static_cast<uint16_t>(position);
      error = table().change_field(order[position], definition);
    }
  }
  report(error);
}

// ---- what the table does

void CCellvaneView::dataChanged(const QModelIndex&, const QModelIndex&, const QList<int>&) {
  const GridPlace former = current_place();
  lay_out();
  // A field that was hidden leaves its place to the next one.
  const QModelIndex current = currentIndex();
  if (current.isValid() && is_usable() && layout_.place_of(current.column()) < 0) {
    go_to({current.row(), std::min(former.place, layout_.place_count() - 1)});
  }
  show_headers();
  summary_->begin(cell_groups(selectionModel()->selection(), layout_));
  emit place_changed();
}

void CCellvaneView::remember_place() {
  const QModelIndex current = currentIndex();
  place_ = {};
  if (!current.isValid() || current.row() >= model_->rowCount()) return;
  place_.row = current.row();
  place_.record = model_->record_at(current.row());
  place_.field = current_field_id_;  // the table has changed already
  place_.rows_above = current.row() - layout_.scrolled_rows().first;
}

// The record, or what stands in its row now, at the same height in the window.
void CCellvaneView::find_place_again() {
  const Place place = place_;
  lay_out();
  if (!is_usable()) {
    summary_->begin({});
    show_headers();
    emit place_changed();
    return;
  }
  int row = place.record > 0 ? model_->row_of(place.record) : 0;
  if (row < 0) row = place.row;
  row = std::min(row, layout_.row_count() - 1);
  const auto field = table().find_field_with_id(place.field);
  const int column = field ? layout_.place_of(static_cast<int>(*field)) : 0;
  const int top = std::max(row - place.rows_above - layout_.frozen_rows(), 0);
  verticalScrollBar()->setValue(top * layout_.lines());
  go_to({row, std::max(column, 0)});
}

// ---- geometry for Qt

QRect CCellvaneView::visualRect(const QModelIndex& index) const {
  if (!index.isValid() || index.row() >= layout_.row_count()) return {};
  const int place = layout_.place_of(index.column());
  if (place < 0) return {};
  return {layout_.left(place), layout_.top(index.row()), layout_.width(place) - 1, layout_.row_height() - 1};
}

QModelIndex CCellvaneView::indexAt(const QPoint& point) const {
  const int row = layout_.row_at(point.y());
  const int place = layout_.place_at(point.x());
  return row >= 0 && place >= 0 ? index_of({row, place}) : QModelIndex();
}

void CCellvaneView::scrollTo(const QModelIndex& index, ScrollHint) {
  if (!index.isValid() || index.row() >= layout_.row_count()) return;
  const int place = layout_.place_of(index.column());
  if (place >= 0) horizontalScrollBar()->setValue(layout_.x_for(place));
  verticalScrollBar()->setValue(layout_.line_for(index.row()));
}

bool CCellvaneView::isIndexHidden(const QModelIndex& index) const {
  return layout_.place_of(index.column()) < 0;
}

QRegion CCellvaneView::visualRegionForSelection(const QItemSelection&) const {
  return viewport()->rect();
}

void CCellvaneView::wheelEvent(QWheelEvent* event) {
  const int steps = event->angleDelta().y();
  if (event->modifiers().testFlag(Qt::ControlModifier)) {
    if (steps != 0) set_zoom(zoom_ + (steps > 0 ? kZoomStep : -kZoomStep));
    event->accept();
    return;
  }
  if (settings_.toolbar_options.wheel_page_scroll && steps != 0 && event->modifiers() == Qt::NoModifier) {
    verticalScrollBar()->triggerAction(steps > 0 ? QAbstractSlider::SliderPageStepSub
                                                 : QAbstractSlider::SliderPageStepAdd);
    event->accept();
    return;
  }
  QAbstractItemView::wheelEvent(event);
}

}  // namespace rowvane

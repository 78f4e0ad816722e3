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

CCellvaneView::CCellvaneView(TablePane& pane)
    : QAbstractItemView(&pane),
      pane_(pane),
      model_(pane.model()),
      table_(pane.table()),
      settings_(pane.settings()),
      delegate_(new CellDelegate(pane.document(), model_, settings_, this)),
      field_header_(new FieldHeader(pane, layout_, this)),
      record_header_(new RecordHeader(model_, layout_, this)),
      corner_(new QToolButton(this)),
      normal_font_(table_font(settings_.table_font, font())) {
  install_grid_accessibility();
  set_zoom(zoom_);  // there may be a current cell already
  setModel(&model_);
  const std::unique_ptr<QItemSelectionModel> own_selection(selectionModel());
  setSelectionModel(&pane.selection());
  setItemDelegate(delegate_);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
  setTabKeyNavigation(true);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  addActions(pane.menus().cells);
  field_header_->addActions(pane.menus().fields);
  setAccessibleName(to_qt(table_.name()));
  viewport()->setMouseTracking(true);
  corner_->setAutoRaise(true);
  corner_->setFocusPolicy(Qt::NoFocus);
  corner_->setAccessibleName(tr("Select All"));
  corner_->setToolTip(tr("Select all cells"));
  connect_parts();
  connect_headers();
  begin_at_current();
}

// Its parts look at the layout to their end.
CCellvaneView::~CCellvaneView() {
  delete field_header_;
  delete record_header_;
}

void CCellvaneView::connect_parts() {
  connect(&model_, &TableModel::modelAboutToBeReset, this, &CCellvaneView::remember_height);
  connect(&model_, &TableModel::modelReset, this, &CCellvaneView::lay_out);
  connect(&model_, &TableModel::headerDataChanged, this, &CCellvaneView::lay_out);
  connect(&model_, &TableModel::settled, this, &CCellvaneView::show_headers);
  connect(delegate_, &CellDelegate::left, this, &CCellvaneView::leave_editor);
  connect(&thumbnails_, &Thumbnails::ready, viewport(), qOverload<>(&QWidget::update));
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

void CCellvaneView::refresh() {
  updateGeometries();
  viewport()->update();
}

// ---- the layout

// Everything anew, as fields, records and options have it now.
void CCellvaneView::lay_out() {
  layout_.set_fields(table_, zoom_);
  layout_.set_row_count(model_.rowCount());
  const GridArrangement& arrangement = table_.arrangement();
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

void CCellvaneView::zoom_in() {
  set_zoom(zoom_ + kZoomStep);
}

void CCellvaneView::zoom_out() {
  set_zoom(zoom_ - kZoomStep);
}

void CCellvaneView::reset_zoom() {
  set_zoom(100);
}

void CCellvaneView::arrange(const GridArrangement& arrangement) {
  table_.change_arrangement(arrangement);
  lay_out();
}

void CCellvaneView::set_lines(int lines) {
  const int row = layout_.scrolled_rows().first;
  GridArrangement arrangement = table_.arrangement();
  arrangement.lines = lines;
  arrange(arrangement);
  verticalScrollBar()->setValue((row - layout_.frozen_rows()) * layout_.lines());
}

void CCellvaneView::freeze_fields() {
  const int wanted = current_place().place + 1;
  horizontalScrollBar()->setValue(0);
  layout_.freeze_places(wanted);
  if (layout_.frozen_places() < wanted) return refuse_to_freeze("fields");
  GridArrangement arrangement = table_.arrangement();
  arrangement.frozen_fields = static_cast<uint16_t>(wanted);
  arrange(arrangement);
}

void CCellvaneView::freeze_records() {
  const int wanted = current_place().row;
  verticalScrollBar()->setValue(0);
  layout_.freeze_rows(wanted);
  if (layout_.frozen_rows() < wanted) return refuse_to_freeze("records");
  GridArrangement arrangement = table_.arrangement();
  arrangement.frozen_records = static_cast<uint32_t>(wanted);
  arrange(arrangement);
}

void CCellvaneView::refuse_to_freeze(const std::string& what) {
  lay_out();
  scrollTo(currentIndex());
  pane_.dialogs().show("The window has no room for so many frozen " + what + ".", MessageIcon::kWarning);
}

void CCellvaneView::unfreeze() {
  GridArrangement arrangement = table_.arrangement();
  arrangement.frozen_fields = 0;
  arrangement.frozen_records = 0;
  arrange(arrangement);
  scrollTo(currentIndex());
}

// ---- fields

void CCellvaneView::keep_width(int place) {
  const auto field = static_cast<size_t>(layout_.field_at(place));
  Field definition = table_.field(field);
  definition.width = static_cast<uint16_t>(
      std::clamp<int>(layout_.width(place) * 100 / zoom_, kLeastColumnWidth, kMostColumnWidth));
  if (definition.width != table_.field(field).width) pane_.report(table_.change_field(field, definition));
  lay_out();
}

void CCellvaneView::fit_field(int place) {
  const int field = layout_.field_at(place);
  int width = field_header_->wanted_width(field);
  const auto fit = [&](int first, int end) {
    for (int row = first; row < end; ++row) {
      width = std::max(width, wanted_cell_width(model_.shown_cell(row, field), fontMetrics()));
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
  for (size_t i = 0; i < table_.field_count(); ++i) order.push_back(i);
  std::ranges::stable_sort(order, {}, [this](size_t i) { return table_.field(i).position; });
  auto next = fields.begin();
  for (size_t& field : order) {
    if (!table_.field(field).hidden) field = static_cast<size_t>(*next++);
  }
  ErrorCode error = ErrorCode::kOk;
  {
    const ChangeGroup step(pane_.document().database(), "Move Field");
    for (size_t position = 0; position < order.size() && error == ErrorCode::kOk; ++position) {
      Field definition = table_.field(order[position]);
      if (definition.position == position) continue;
      definition.position = static_cast<uint16_t>(position);
      error = table_.change_field(order[position], definition);
    }
  }
  pane_.report(error);
}

// ---- what the table does

void CCellvaneView::remember_height() {
  const QModelIndex current = currentIndex();
  rows_above_.reset();
  if (current.isValid()) rows_above_ = current.row() - layout_.scrolled_rows().first;
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
    if (steps != 0) steps > 0 ? zoom_in() : zoom_out();
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

#include "ui/grid/cellvane_view.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QWheelEvent>
#include <algorithm>
#include <set>

#include "core/database.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr int kLeastZoom = 50;
constexpr int kMostZoom = 300;
constexpr int kZoomStep = 10;
constexpr size_t kMostCopiedCells = 20'000'000;

// As spreadsheets write a cell to the clipboard.
void append_clipboard_cell(const QString& text, QString& out) {
  if (!text.contains('\t') && !text.contains('\n') && !text.contains('"')) {
    out += text;
    return;
  }
  QString quoted = text;
  out += '"' + quoted.replace("\"", "\"\"") + '"';
}

}  // namespace

CCellvaneView::CCellvaneView(DatabaseDocument& document, CWorkSheet& table, const profile::Settings& settings,
                             Dialogs& dialogs, QWidget* parent)
    : QTableView(parent),
      document_(document),
      settings_(settings),
      dialogs_(dialogs),
      model_(new TableModel(document, table, this)),
      normal_font_size_(std::max(font().pointSize(), 9)) {
  setModel(model_);
  setWordWrap(false);
  setTabKeyNavigation(true);
  setAlternatingRowColors(true);
  setSelectionMode(ExtendedSelection);
  setHorizontalScrollMode(ScrollPerPixel);
  setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  horizontalHeader()->setSectionsMovable(true);
  horizontalHeader()->setHighlightSections(false);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  set_zoom(zoom_);
  connect(model_, &TableModel::refused, this,
          [this](const QString& text) { dialogs_.show(to_utf8(text), MessageIcon::kWarning); });
  connect(model_, &TableModel::modelReset, this, &CCellvaneView::lay_out_fields);
  connect(model_, &TableModel::dataChanged, this, &CCellvaneView::place_changed);
  connect(horizontalHeader(), &QHeaderView::sectionResized, this,
          [this](int field, int, int width) { keep_width(field, width); });
  lay_out_fields();
  if (model_->rowCount() > 0) setCurrentIndex(model_->index(0, 0));
}

// Widths, places and visibility as the fields have them.
void CCellvaneView::lay_out_fields() {
  laying_out_ = true;
  for (int i = 0; i < model_->columnCount(); ++i) {
    const Field& field = table().field(static_cast<size_t>(i));
    setColumnWidth(i, field.width * zoom_ / 100);
    setColumnHidden(i, field.hidden);
  }
  std::vector<int> order(static_cast<size_t>(model_->columnCount()));
  for (size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
  std::ranges::stable_sort(order, {},
                           [this](int i) { return table().field(static_cast<size_t>(i)).position; });
  for (int place = 0; place < static_cast<int>(order.size()); ++place) {
    const int from = horizontalHeader()->visualIndex(order[static_cast<size_t>(place)]);
    if (from != place) horizontalHeader()->moveSection(from, place);
  }
  laying_out_ = false;
}

void CCellvaneView::keep_width(int field, int width) {
  if (laying_out_ || width == 0 || QApplication::mouseButtons() == Qt::NoButton) return;
  Field definition = table().field(static_cast<size_t>(field));
  definition.width = static_cast<uint16_t>(std::clamp(width * 100 / zoom_, 10, 5000));
  static_cast<void>(table().change_field(static_cast<size_t>(field), definition));
}

void CCellvaneView::set_zoom(int percent) {
  zoom_ = std::clamp(percent, kLeastZoom, kMostZoom);
  QFont scaled = font();
  scaled.setPointSizeF(normal_font_size_ * zoom_ / 100.0);
  setFont(scaled);
  horizontalHeader()->setFont(scaled);
  verticalHeader()->setFont(scaled);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8 * zoom_ / 100);
  lay_out_fields();
}

// ---- the selection

std::optional<size_t> CCellvaneView::current_field() const {
  const QModelIndex current = currentIndex();
  if (!current.isValid()) return std::nullopt;
  return static_cast<size_t>(current.column());
}

// The rows and the columns with a selected cell, whatever the shape of the selection.
CellBlock CCellvaneView::selected_block() const {
  std::vector<std::pair<int, int>> rows;  // first and last
  std::set<int> places;
  QItemSelection selection = selectionModel()->selection();
  if (selection.isEmpty() && currentIndex().isValid()) selection.select(currentIndex(), currentIndex());
  for (const QItemSelectionRange& range : selection) {
    rows.emplace_back(range.top(), range.bottom());
    for (int column = range.left(); column <= range.right(); ++column) {
      if (!isColumnHidden(column)) places.insert(horizontalHeader()->visualIndex(column));
    }
  }
  CellBlock block;
  std::ranges::sort(rows);
  int next = 0;
  for (const auto& [first, last] : rows) {
    for (next = std::max(next, first); next <= last; ++next) block.records.push_back(model_->record_at(next));
  }
  for (const int place : places)
    block.fields.push_back(static_cast<size_t>(horizontalHeader()->logicalIndex(place)));
  return block;
}

std::vector<uint32_t> CCellvaneView::selected_positions() const {
  std::vector<uint32_t> positions = selected_block().records;
  for (uint32_t& position : positions) --position;
  std::ranges::sort(positions);
  return positions;
}

void CCellvaneView::select_record(uint32_t record, int column) {
  const int row = model_->row_of(record);
  if (row < 0) return;
  setCurrentIndex(model_->index(row, std::clamp(column, 0, model_->columnCount() - 1)));
  scrollTo(currentIndex());
}

void CCellvaneView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  emit place_changed();
}

void CCellvaneView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  emit place_changed();
}

// ---- changes

void CCellvaneView::report(const CellChanges& changes) {
  if (changes.refused == 0) return;
  const QString count = tr("%n cell(s) kept their values:", nullptr, static_cast<int>(changes.refused));
  dialogs_.show(to_utf8(count) + "\n" + std::string(error_text(changes.error)), MessageIcon::kWarning);
}

void CCellvaneView::report(ErrorCode error) {
  if (error != ErrorCode::kOk) dialogs_.show_error(error);
}

void CCellvaneView::copy() {
  const CellBlock block = selected_block();
  if (block.size() == 0 || block.size() > kMostCopiedCells) return;
  QString text;
  QString html = "<table>";
  for (const uint32_t record : block.records) {
    html += "<tr>";
    for (size_t i = 0; i < block.fields.size(); ++i) {
      const QString cell = model_->entry_text(record, block.fields[i]);
      if (i > 0) text += '\t';
      append_clipboard_cell(cell, text);
      html += "<td>" + cell.toHtmlEscaped() + "</td>";
    }
    text += '\n';
    html += "</tr>";
  }
  auto* copied = new QMimeData();
  copied->setText(text);
  copied->setHtml(html + "</table>");
  QApplication::clipboard()->setMimeData(copied);
}

void CCellvaneView::cut() {
  copy();
  clear();
}

void CCellvaneView::clear() {
  report(clear_cells(table(), selected_block()));
}

void CCellvaneView::fill_down() {
  report(rowvane::fill_down(table(), selected_block()));
}

// A single selected cell is the corner of what is written; a larger selection holds it.
void CCellvaneView::paste() {
  const auto rows = parse_clipboard_text(to_utf8(QApplication::clipboard()->text()));
  CellBlock block = selected_block();
  if (rows.empty() || block.size() == 0) return;
  if (block.size() == 1) {
    const int row = model_->row_of(block.records.front());
    const int last = std::min<int>(row + static_cast<int>(rows.size()), model_->rowCount());
    for (int next = row + 1; next < last; ++next) block.records.push_back(model_->record_at(next));
    const int place = horizontalHeader()->visualIndex(static_cast<int>(block.fields.front()));
    for (int next = place + 1; next < model_->columnCount(); ++next) {
      const int column = horizontalHeader()->logicalIndex(next);
      if (!isColumnHidden(column)) block.fields.push_back(static_cast<size_t>(column));
    }
    if (rows.size() == 1 && rows.front().size() == 1) block.fields.resize(1);
  }
  report(paste_cells(table(), block, rows, document_.region()));
}

void CCellvaneView::insert_records() {
  const std::vector<uint32_t> positions = selected_positions();
  const uint32_t before = positions.empty() ? 1 : positions.front() + 1;
  const auto count = static_cast<uint32_t>(std::max<size_t>(positions.size(), 1));
  const int column = currentIndex().column();
  report(table().insert_records(before, count));
  select_record(before, column);
}

void CCellvaneView::append_record() {
  const int column = currentIndex().column();
  report(table().insert_records(table().record_count() + 1, 1));
  select_record(table().record_count(), column);
}

void CCellvaneView::duplicate_records() {
  const std::vector<uint32_t> positions = selected_positions();
  if (positions.empty()) return;
  const int column = currentIndex().column();
  const uint32_t before = positions.back() + 2;
  {
    const ChangeGroup step(document_.database(), "Duplicate Records");
    const ErrorCode error = table().insert_records(before, static_cast<uint32_t>(positions.size()));
    if (error != ErrorCode::kOk) return report(error);
    std::vector<uint32_t> copies(positions.size());
    for (size_t i = 0; i < copies.size(); ++i) copies[i] = before - 1 + static_cast<uint32_t>(i);
    for (size_t field = 0; field < table().field_count(); ++field) {
      if (!table().field(field).formula.empty() || table().field(field).encrypted) continue;
      std::vector<RefusedValue> refused;
      static_cast<void>(
          table().set_values(field, copies, select_cells(table().column(field), positions), refused));
    }
  }
  select_record(before, column);
}

void CCellvaneView::delete_records() {
  const std::vector<uint32_t> positions = selected_positions();
  const int column = currentIndex().column();
  report(table().delete_records(positions));
  if (!positions.empty()) select_record(std::min(positions.front() + 1, table().record_count()), column);
}

// ---- keys

void CCellvaneView::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && state() != EditingState) {
    const int step = event->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1;
    const QModelIndex next = currentIndex().siblingAtRow(currentIndex().row() + step);
    if (next.isValid()) setCurrentIndex(next);
    return;
  }
  if (event->key() == Qt::Key_Escape && state() != EditingState) {
    emit escape_pressed();
    return;
  }
  QTableView::keyPressEvent(event);
}

// Enter goes on with the record below, as in a spreadsheet.
void CCellvaneView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  QTableView::closeEditor(editor, hint);
  if (hint != QAbstractItemDelegate::SubmitModelCache) return;
  const QModelIndex below = currentIndex().siblingAtRow(currentIndex().row() + 1);
  if (below.isValid()) setCurrentIndex(below);
}

void CCellvaneView::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) return QTableView::wheelEvent(event);
  set_zoom(zoom_ + (event->angleDelta().y() > 0 ? kZoomStep : -kZoomStep));
  event->accept();
}

}  // namespace rowvane

#include "ui/grid/grid_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>
#include <limits>

#include "ui/grid/cellvane_view.h"

namespace rowvane {
namespace {

constexpr int kHead = -1;  // the row of the heads of fields, and the column of those of records
constexpr qsizetype kMostKept = 20'000;
constexpr int kMostListed = 1000;  // of the selected cells

// A cell, or the head of a field or a record.
class CellAccessible final : public QAccessibleInterface, public QAccessibleTableCellInterface {
 public:
  CellAccessible(CCellvaneView* view, int row, int place) : view_(view), row_(row), place_(place) {}

  bool isValid() const override {
    return view_ != nullptr && row_ < view_->grid_layout().row_count() &&
           place_ < view_->grid_layout().place_count();
  }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return parent()->window(); }
  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(view_.data());
  }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }

  QAccessible::Role role() const override {
    if (row_ == kHead) return QAccessible::ColumnHeader;
    return place_ == kHead ? QAccessible::RowHeader : QAccessible::Cell;
  }
  QRect rect() const override;
  QString text(QAccessible::Text kind) const override;
  void setText(QAccessible::Text kind, const QString& text) override;
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type != QAccessible::TableCellInterface) return nullptr;
    return static_cast<QAccessibleTableCellInterface*>(this);
  }

  bool isSelected() const override {
    return is_cell() && isValid() && view_->selectionModel()->isSelected(index());
  }
  QList<QAccessibleInterface*> columnHeaderCells() const override {
    return {table()->tableInterface()->cellAt(kHead, place_)};
  }
  QList<QAccessibleInterface*> rowHeaderCells() const override {
    return {table()->tableInterface()->cellAt(row_, kHead)};
  }
  int columnIndex() const override { return place_; }
  int rowIndex() const override { return row_; }
  int columnExtent() const override { return 1; }
  int rowExtent() const override { return 1; }
  QAccessibleInterface* table() const override { return parent(); }

 private:
  bool is_cell() const { return row_ != kHead && place_ != kHead; }
  int field() const { return view_->grid_layout().field_at(place_); }
  QModelIndex index() const { return view_->model().index(row_, field()); }

  QPointer<CCellvaneView> view_;
  int row_;
  int place_;
};

QRect CellAccessible::rect() const {
  if (!isValid()) return {};
  const GridLayout& layout = view_->grid_layout();
  const QWidget& heads = view_->field_header();
  const QWidget& numbers = view_->record_header();
  if (row_ == kHead) {
    const int x = place_ == kHead ? 0 : layout.left(place_);
    return {heads.mapToGlobal(QPoint(x, 0)),
            QSize(place_ == kHead ? 1 : layout.width(place_), heads.height())};
  }
  if (place_ == kHead) {
    return {numbers.mapToGlobal(QPoint(0, layout.top(row_))), QSize(numbers.width(), layout.row_height())};
  }
  const QRect rect = view_->visualRect(index());
  return {view_->viewport()->mapToGlobal(rect.topLeft()), rect.size()};
}

QString CellAccessible::text(QAccessible::Text kind) const {
  if (!isValid()) return {};
  const TableModel& model = view_->model();
  if (row_ == kHead && place_ == kHead) return {};
  if (row_ == kHead) {
    if (kind == QAccessible::Name) return model.headerData(field(), Qt::Horizontal).toString();
    if (kind != QAccessible::Description) return {};
    const QString tip = model.headerData(field(), Qt::Horizontal, Qt::ToolTipRole).toString();
    const QString criterion = view_->field_header().criterion_text(field());
    return criterion.isEmpty() ? tip : tip + u'\n' + criterion;
  }
  if (place_ == kHead) {
    return kind == QAccessible::Name ? model.headerData(row_, Qt::Vertical).toString() : QString();
  }
  if (kind == QAccessible::Name || kind == QAccessible::Value) return index().data().toString();
  if (kind == QAccessible::Description) return model.headerData(field(), Qt::Horizontal).toString();
  return {};
}

void CellAccessible::setText(QAccessible::Text kind, const QString& text) {
  if (kind == QAccessible::Value && isValid() && is_cell()) view_->model().setData(index(), text);
}

QAccessible::State CellAccessible::state() const {
  QAccessible::State state;
  if (!isValid()) {
    state.invalid = true;
    return state;
  }
  state.selectable = true;
  state.multiSelectable = true;
  state.selected = isSelected();
  if (!is_cell()) return state;
  state.focusable = true;
  state.focused = view_->hasFocus() && view_->currentIndex() == index();
  state.editable = view_->model().is_typed(static_cast<size_t>(field()));
  state.readOnly = !state.editable;
  state.offscreen = !view_->viewport()->rect().intersects(view_->visualRect(index()));
  return state;
}

class GridAccessible final : public QAccessibleWidget, public QAccessibleTableInterface {
 public:
  explicit GridAccessible(CCellvaneView* view) : QAccessibleWidget(view, QAccessible::Table), view_(view) {}
  ~GridAccessible() override { forget_cells(); }

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TableInterface) return static_cast<QAccessibleTableInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  // All cells row by row, heads first, as far as an index reaches.
  int childCount() const override {
    const int64_t count = (int64_t{rowCount()} + 1) * (columnCount() + 1);
    return static_cast<int>(std::min<int64_t>(count, std::numeric_limits<int>::max()));
  }
  QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= childCount()) return nullptr;
    return cellAt(index / (columnCount() + 1) - 1, index % (columnCount() + 1) - 1);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    if (child == nullptr) return -1;
    const auto* cell = const_cast<QAccessibleInterface*>(child)->tableCellInterface();
    if (cell == nullptr) return -1;
    const int64_t index = (int64_t{cell->rowIndex()} + 1) * (columnCount() + 1) + cell->columnIndex() + 1;
    return index < childCount() ? static_cast<int>(index) : -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    const QModelIndex index = view_->indexAt(view_->viewport()->mapFromGlobal(QPoint(x, y)));
    return index.isValid() ? cellAt(index.row(), view_->grid_layout().place_of(index.column())) : nullptr;
  }
  QAccessibleInterface* focusChild() const override {
    const QModelIndex current = view_->currentIndex();
    return current.isValid() ? cellAt(current.row(), view_->current_place().place) : nullptr;
  }

  QAccessibleInterface* cellAt(int row, int column) const override;
  QAccessibleInterface* caption() const override { return nullptr; }
  QAccessibleInterface* summary() const override { return nullptr; }
  int columnCount() const override { return view_->grid_layout().place_count(); }
  int rowCount() const override { return view_->grid_layout().row_count(); }
  QString columnDescription(int column) const override {
    return view_->model().headerData(view_->grid_layout().field_at(column), Qt::Horizontal).toString();
  }
  QString rowDescription(int row) const override {
    return view_->model().headerData(row, Qt::Vertical).toString();
  }

  int selectedCellCount() const override {
    int64_t count = 0;
    for (const CellGroup& group : view_->selected_groups()) count += group.size();
    return static_cast<int>(std::min<int64_t>(count, std::numeric_limits<int>::max()));
  }
  QList<QAccessibleInterface*> selectedCells() const override;
  int selectedColumnCount() const override { return static_cast<int>(selectedColumns().size()); }
  int selectedRowCount() const override {
    return whole_rows() ? static_cast<int>(count_rows(selected_rows(view_->selectionModel()->selection())))
                        : 0;
  }
  QList<int> selectedColumns() const override;
  QList<int> selectedRows() const override;
  bool isColumnSelected(int column) const override { return selectedColumns().contains(column); }
  bool isRowSelected(int row) const override {
    if (!whole_rows()) return false;
    for (const RowRange& range : selected_rows(view_->selectionModel()->selection())) {
      if (row >= range.first && row <= range.last) return true;
    }
    return false;
  }
  bool selectRow(int row) override { return select(row, -1, Qt::ControlModifier); }
  bool selectColumn(int column) override { return select(-1, column, Qt::ControlModifier); }
  bool unselectRow(int row) override { return isRowSelected(row) && select(row, -1, Qt::ControlModifier); }
  bool unselectColumn(int column) override {
    return isColumnSelected(column) && select(-1, column, Qt::ControlModifier);
  }
  void modelChange(QAccessibleTableModelChangeEvent*) override { forget_cells(); }

 private:
  bool select(int row, int column, Qt::KeyboardModifiers modifiers) {
    if (row >= rowCount() || column >= columnCount()) return false;
    row >= 0 ? view_->select_records(row, modifiers) : view_->select_fields(column, modifiers);
    return true;
  }
  bool whole_rows() const {
    const std::vector<CellGroup> groups = view_->selected_groups();
    return groups.size() == 1 && static_cast<int>(groups[0].fields.size()) == columnCount();
  }
  void forget_cells() const {
    for (const QAccessible::Id id : std::as_const(cells_)) QAccessible::deleteAccessibleInterface(id);
    cells_.clear();
  }

  CCellvaneView* view_;
  mutable QHash<quint64, QAccessible::Id> cells_;
};

QAccessibleInterface* GridAccessible::cellAt(int row, int column) const {
  if (row < kHead || column < kHead || row >= rowCount() || column >= columnCount()) return nullptr;
  const quint64 key = (static_cast<quint64>(row + 1) << 32) | static_cast<quint64>(column + 1);
  const auto known = cells_.constFind(key);
  if (known != cells_.constEnd()) {
    if (QAccessibleInterface* cell = QAccessible::accessibleInterface(*known)) return cell;
  }
  if (cells_.size() >= kMostKept) forget_cells();
  auto* cell = new CellAccessible(view_, row, column);  // Qt deletes it with its id
  cells_.insert(key, QAccessible::registerAccessibleInterface(cell));
  return cell;
}

QList<QAccessibleInterface*> GridAccessible::selectedCells() const {
  QList<QAccessibleInterface*> cells;
  for (const CellGroup& group : view_->selected_groups()) {
    for (const RowRange& range : group.rows) {
      for (int row = range.first; row <= range.last; ++row) {
        for (const int field : group.fields) {
          if (cells.size() == kMostListed) return cells;
          cells << cellAt(row, view_->grid_layout().place_of(field));
        }
      }
    }
  }
  return cells;
}

QList<int> GridAccessible::selectedColumns() const {
  QList<int> columns;
  for (const CellGroup& group : view_->selected_groups()) {
    if (count_rows(group.rows) != rowCount()) continue;
    for (const int field : group.fields) columns << view_->grid_layout().place_of(field);
  }
  return columns;
}

QList<int> GridAccessible::selectedRows() const {
  QList<int> rows;
  if (!whole_rows()) return rows;
  for (const RowRange& range : selected_rows(view_->selectionModel()->selection())) {
    for (int row = range.first; row <= range.last && rows.size() < kMostListed; ++row) rows << row;
  }
  return rows;
}

QAccessibleInterface* make_accessible(const QString& class_name, QObject* object) {
  if (class_name != QLatin1String("rowvane::CCellvaneView")) return nullptr;
  return new GridAccessible(static_cast<CCellvaneView*>(object));
}

}  // namespace

void install_grid_accessibility() {
  static const bool installed = (QAccessible::installFactory(make_accessible), true);
  static_cast<void>(installed);
}

}  // namespace rowvane

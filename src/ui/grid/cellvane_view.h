// The grid of a table's records.
#pragma once

#include <QAbstractItemView>
#include <QBasicTimer>
#include <optional>

#include "ui/grid/cell_delegate.h"
#include "ui/grid/cell_painter.h"
#include "ui/grid/field_header.h"
#include "ui/grid/grid_keys.h"
#include "ui/grid/record_header.h"
#include "ui/pane/table_pane.h"

class QToolButton;

namespace rowvane {

// Selects and edits as spreadsheets do.
//
// Its columns are the fields and its rows the shown records (TableModel); what it draws and where is worked
// out by GridLayout, so that neither memory nor time depend on how many records there are.
class CCellvaneView final : public QAbstractItemView, public TableView, public GridCommands {
  Q_OBJECT

 public:
  // PANE must outlive the view.
  explicit CCellvaneView(TablePane& pane);
  ~CCellvaneView() override;

  TableModel& model() const { return model_; }
  const GridLayout& grid_layout() const { return layout_; }
  // Their actions are their context menus.
  FieldHeader& field_header() const { return *field_header_; }
  RecordHeader& record_header() const { return *record_header_; }

  // ---- as a view of its pane

  QWidget& widget() override { return *this; }
  void show_current() override { scrollTo(currentIndex()); }
  void refresh() override;
  void edit_current() override { edit(currentIndex(), EditKeyPressed, nullptr); }
  bool finish_editing() override;
  bool insert_into_editor(const QString& text) override;
  GridCommands* grid_commands() override { return this; }

  // ---- the selection (cellvane_view_selection.cpp)

  std::vector<CellGroup> selected_groups() const { return pane_.selected_groups(); }
  GridPlace current_place() const;
  void go_to(GridPlace place);
  void select_fields(int place, Qt::KeyboardModifiers modifiers);
  void select_records(int row, Qt::KeyboardModifiers modifiers);
  void select_fields_of_selection();
  void select_records_of_selection();
  void selectAll() override { pane_.select_all(); }

  // ---- the looks

  // Percent of the normal size, from 50 to 300.
  int zoom() const { return zoom_; }
  void set_zoom(int percent);
  void zoom_in() override;
  void zoom_out() override;
  void reset_zoom() override;
  void freeze_fields() override;
  void freeze_records() override;
  void unfreeze() override;
  bool is_frozen() const { return layout_.frozen_places() > 0 || layout_.frozen_rows() > 0; }
  // Lines of text in a record, from 1 to kMaxRecordLines.
  void set_lines(int lines);
  void more_lines() override { set_lines(layout_.lines() + 1); }
  void fewer_lines() override { set_lines(layout_.lines() - 1); }
  // The width that shows the heads and the records in view.
  void fit_field(int place);
  // As one undo step.
  void move_field(int place, int before);

  // ---- for Qt

  using QAbstractItemView::edit;
  QRect visualRect(const QModelIndex& index) const override;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  QModelIndex indexAt(const QPoint& point) const override;
  // The heads are told of each change as well, also where there are no records.
  void dataChanged(const QModelIndex&, const QModelIndex&, const QList<int>&) override {}

 protected:
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  int horizontalOffset() const override { return layout_.x(); }
  int verticalOffset() const override { return layout_.line(); }
  bool isIndexHidden(const QModelIndex& index) const override;
  void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
  QRegion visualRegionForSelection(const QItemSelection& selection) const override;
  void updateGeometries() override;
  void scrollContentsBy(int dx, int dy) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

 private:
  // What a selection grows by while it is being made.
  enum class Span { kCells, kFields, kRecords };

  void connect_parts();
  void connect_headers();
  void lay_out();
  void arrange(const GridArrangement& arrangement);
  void refuse_to_freeze(const std::string& what);
  void remember_height();
  void begin_at_current();
  void show_headers();
  void set_scroll_ranges();

  QModelIndex index_of(GridPlace place) const;
  GridPlace seen_place() const;
  bool is_usable() const { return layout_.row_count() > 0 && layout_.place_count() > 0; }
  void begin_selection(GridPlace place, Span span, Qt::KeyboardModifiers modifiers);
  void extend_selection(GridPlace to);
  void apply_selection();
  void drag_to(QPoint point);
  bool is_selected(GridPlace place) const;
  QItemSelection cells_between(RowRange rows, int first_place, int last_place) const;
  void tell_screen_readers();

  void draw_cells(QPainter& painter, CellPainter& cells, std::pair<int, int> rows, std::pair<int, int> places,
                  const QRect& clip) const;
  void draw_grounds(QPainter& painter, std::pair<int, int> rows, std::pair<int, int> places) const;
  void draw_cross(QPainter& painter, std::pair<int, int> rows, std::pair<int, int> places) const;
  void draw_selection(QPainter& painter, std::pair<int, int> rows, std::pair<int, int> places) const;
  void draw_current_cell(QPainter& painter) const;
  CellPainter::Look look() const;

  bool handle_command_key(QKeyEvent& event);
  bool handle_move_key(int key, Qt::KeyboardModifiers modifiers);
  void leave_editor(int key, Qt::KeyboardModifiers modifiers);
  bool fill_selection_with_typed();

  void keep_width(int place);

  TablePane& pane_;
  TableModel& model_;
  CWorkSheet& table_;
  const profile::Settings& settings_;
  GridLayout layout_;
  CellDelegate* delegate_;
  FieldHeader* field_header_;
  RecordHeader* record_header_;
  QToolButton* corner_;
  mutable Thumbnails thumbnails_;
  std::optional<TextWidths> widths_;  // of the font
  int zoom_ = 100;
  QFont normal_font_;
  bool in_geometry_ = false;

  GridPlace anchor_;  // where the selection that is being made begins
  GridPlace lead_;    // and where it ends
  Span span_ = Span::kCells;
  bool removes_ = false;  // the cells are taken out of the selection
  QItemSelection kept_;   // what was selected before it
  bool selecting_ = false;
  bool dragging_ = false;
  QPoint drag_point_;
  QBasicTimer drag_timer_;
  std::optional<int> rows_above_;  // the current row, which is found again at that height after a reset
};

}  // namespace rowvane

// The grid of a table's records.
#pragma once

#include <QAbstractItemView>
#include <QBasicTimer>
#include <optional>

#include "app/profile/profile_settings.h"
#include "ui/dialogs.h"
#include "ui/document/table_presentation.h"
#include "ui/grid/cell_block.h"
#include "ui/grid/cell_delegate.h"
#include "ui/grid/cell_painter.h"
#include "ui/grid/field_header.h"
#include "ui/grid/grid_keys.h"
#include "ui/grid/record_header.h"
#include "ui/grid/selection_summary.h"

class QToolButton;

namespace rowvane {

// Selects, edits and copies as spreadsheets do. All changes go to the table and can be undone.
//
// Its columns are the fields and its rows the shown records (TableModel); what it draws and where is worked
// out by GridLayout, so that neither memory nor time depend on how many records there are.
class CCellvaneView final : public QAbstractItemView {
  Q_OBJECT

 public:
  // All must outlive the view.
  CCellvaneView(DatabaseDocument& document, CWorkSheet& table, const profile::Settings& settings,
                Dialogs& dialogs, QWidget* parent = nullptr);
  ~CCellvaneView() override;

  TableModel& model() const { return *model_; }
  CWorkSheet& table() const { return model_->table(); }
  const GridLayout& grid_layout() const { return layout_; }
  // Their actions are their context menus.
  FieldHeader& field_header() const { return *field_header_; }
  RecordHeader& record_header() const { return *record_header_; }
  // The sort keys that the header shows and whether a filter hides records. Must outlive the view.
  void set_presentation(TablePresentation* presentation);

  // ---- the selection (cellvane_view_selection.cpp)

  // The selected cells, or the current one.
  std::vector<CellGroup> selected_groups() const;
  // The same as one block: the records and the fields with a selected cell.
  CellBlock selected_block() const;
  // Records with a selected cell, ascending 0-based positions.
  std::vector<uint32_t> selected_positions() const;
  // The field of the current cell, or the one that was chosen last; nothing where all are hidden.
  std::optional<size_t> current_field() const;
  GridPlace current_place() const;
  void go_to(GridPlace place);
  void select_fields(int place, Qt::KeyboardModifiers modifiers);
  void select_records(int row, Qt::KeyboardModifiers modifiers);
  void select_fields_of_selection();
  void select_records_of_selection();
  void selectAll() override;
  const SelectionSummary& summary() const { return *summary_; }

  // ---- commands (cellvane_view_commands.cpp)

  void copy();
  void cut();
  void paste();
  void clear();
  void fill_down();
  // Writes the dates in the text fields with a selected cell as standard date strings, in all records.
  void texts_to_dates();
  void insert_today();
  void copy_from_above();
  void insert_records();
  void append_record();
  void duplicate_records();
  void delete_records();
  void open_link();
  void edit_current() { edit(currentIndex(), EditKeyPressed, nullptr); }
  // Stores what is being typed. False when it was refused; the editor is still open then.
  bool finish_editing();

  // ---- the looks

  // A criterion is another one, though other records are not shown yet.
  void show_criteria() { updateGeometries(); }
  // Percent of the normal size, from 50 to 300.
  int zoom() const { return zoom_; }
  void set_zoom(int percent);
  // The first ones, to and with the current field; the records above the current one. Kept with the table,
  // as are the lines.
  void freeze_fields();
  void freeze_records();
  void unfreeze();
  bool is_frozen() const { return layout_.frozen_places() > 0 || layout_.frozen_rows() > 0; }
  // Lines of text in a record, from 1 to kMaxRecordLines.
  void set_lines(int lines);
  void more_lines() { set_lines(layout_.lines() + 1); }
  void fewer_lines() { set_lines(layout_.lines() - 1); }
  // The width that shows the heads and the records in view.
  void fit_field(int place);
  // As one undo step.
  void move_field(int place, int before);

  // ---- for Qt

  using QAbstractItemView::edit;
  QRect visualRect(const QModelIndex& index) const override;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  QModelIndex indexAt(const QPoint& point) const override;
  void dataChanged(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) override;

 signals:
  // The current cell or the selection is another one, or what they hold changed.
  void place_changed();
  void escape_pressed();
  // Ctrl+Enter outside of an editor.
  void search_wanted();

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

  // Where the user is, to be found again after a reset.
  struct Place {
    uint32_t record = 0;
    int row = 0;
    FieldId field = 0;
    int rows_above = 0;  // between the upper edge and the current row
  };

  void connect_parts();
  void connect_headers();
  void lay_out();
  void arrange(const GridArrangement& arrangement);
  void refuse_to_freeze(const std::string& what);
  void remember_place();
  void find_place_again();
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

  // Tells the user and answers false where the table can't be changed.
  bool may_change();
  bool is_read_only() const;
  void report(const CellChanges& changes, const QString& more = {});
  void report(ErrorCode error);
  std::optional<CellGroup> one_group();
  CellBlock block_of(const CellGroup& group) const;
  CellBlock paste_target(const ClipboardRows& rows, uint32_t& appended, int64_t& lost) const;
  uint32_t appendable_records() const;
  void copy_values(const std::vector<uint32_t>& originals, uint32_t first);
  QUrl link_at(const QModelIndex& index) const;
  void keep_width(int place);

  DatabaseDocument& document_;
  const profile::Settings& settings_;
  Dialogs& dialogs_;
  TablePresentation* presentation_ = nullptr;
  TableModel* model_;
  GridLayout layout_;
  CellDelegate* delegate_;
  FieldHeader* field_header_;
  RecordHeader* record_header_;
  QToolButton* corner_;
  SelectionSummary* summary_;
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
  int chosen_field_ = -1;
  FieldId current_field_id_ = 0;
  Place place_;
};

}  // namespace rowvane

// The grid of a table's records.
#pragma once

#include <QTableView>
#include <optional>

#include "app/profile_settings.h"
#include "ui/dialogs.h"
#include "ui/grid/cell_block.h"
#include "ui/grid/table_model.h"

namespace rowvane {

// Selects, edits and copies as spreadsheets do. All changes go to the table and can be undone.
class CCellvaneView final : public QTableView {
  Q_OBJECT

 public:
  // All must outlive the view.
  CCellvaneView(DatabaseDocument& document, CWorkSheet& table, const profile::Settings& settings,
                Dialogs& dialogs, QWidget* parent = nullptr);

  TableModel& model() const { return *model_; }
  CWorkSheet& table() const { return model_->table(); }

  // The selected cells, or the current one.
  CellBlock selected_block() const;
  // Records with a selected cell, ascending 0-based positions.
  std::vector<uint32_t> selected_positions() const;
  // The field of the current cell; nothing in a table without records.
  std::optional<size_t> current_field() const;

  void copy();
  void cut();
  void paste();
  void clear();
  void fill_down();
  void insert_records();
  void append_record();
  void duplicate_records();
  void delete_records();

  // Percent of the normal size, from 50 to 300.
  int zoom() const { return zoom_; }
  void set_zoom(int percent);

 signals:
  // The current cell or the selection is another one, or what they hold changed.
  void place_changed();
  void escape_pressed();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

 private:
  void lay_out_fields();
  void keep_width(int field, int width);
  void report(const CellChanges& changes);
  void report(ErrorCode error);
  void select_record(uint32_t record, int column);

  DatabaseDocument& document_;
  const profile::Settings& settings_;
  Dialogs& dialogs_;
  TableModel* model_;
  int zoom_ = 100;
  int normal_font_size_;
  bool laying_out_ = false;
};

}  // namespace rowvane

// A table in view: which of its records are shown, where the user is among them, and the commands on both.
#pragma once

#include <QAction>
#include <QItemSelectionModel>
#include <QUrl>
#include <QWidget>
#include <map>
#include <optional>

#include "app/profile/profile_settings.h"
#include "ui/dialogs.h"
#include "ui/document/table_presentation.h"
#include "ui/pane/cell_block.h"
#include "ui/pane/selection_summary.h"
#include "ui/pane/table_model.h"
#include "ui/pane/table_view.h"

namespace rowvane {

// Context menus of its views.
struct PaneMenus {
  QList<QAction*> cells;
  QList<QAction*> fields;  // of their heads
};

// The view may be any: all that commands need is the model, the current cell and the selection, which stay
// when another view takes over. Changes go to the table and can be undone, a command in one step.
class TablePane final : public QWidget {
  Q_OBJECT

 public:
  // All must outlive the pane.
  TablePane(DatabaseDocument& document, CWorkSheet& table, profile::Settings& settings, Dialogs& dialogs,
            const ViewMaker& make_view, PaneMenus menus = {}, QWidget* parent = nullptr);

  DatabaseDocument& document() const { return document_; }
  CWorkSheet& table() const { return table_; }
  const profile::Settings& settings() const { return settings_; }
  Dialogs& dialogs() const { return dialogs_; }
  const PaneMenus& menus() const { return menus_; }
  TableModel& model() { return model_; }
  const TableModel& model() const { return model_; }
  QItemSelectionModel& selection() { return selection_; }
  TablePresentation& presentation() { return presentation_; }

  TableView& view() const { return *view_; }
  // Not while the editor of the present view holds what is refused.
  void show_as(const ViewMaker& make_view);

  // ---- the place of the user (table_pane.cpp)

  // Invalid without records or shown fields.
  QModelIndex current() const { return selection_.currentIndex(); }
  // The field of the current cell, or the one that was chosen last; nothing where all are hidden.
  std::optional<size_t> current_field() const;
  // Makes a cell the current one and the only one selected, and has it shown. Nothing where there is none.
  void go_to(int row, size_t field);
  // For tables without records, which have no current cell.
  void choose_field(size_t field) { chosen_field_ = field; }
  void select_all();
  // The selected cells of shown fields, or the current one.
  std::vector<CellGroup> selected_groups() const;
  // The same as one block: the records and the fields with a selected cell.
  CellBlock selected_block() const;
  CellBlock block_of(const CellGroup& group) const;
  // Records with a selected cell: their rows, and their ascending 0-based positions.
  RowRanges selected_rows() const;
  std::vector<uint32_t> selected_positions() const;

  // "Record 3 of 12", "Filtered", the sort keys, and sum, mean and count of the selected numbers.
  QString place_text() const;
  QString filter_text() const;
  QString selection_text() const;
  // Nothing while they are being summed up.
  const std::optional<NumberSummary>& summary() const { return summary_.result(); }

  // ---- editing

  void edit_current() { view_->edit_current(); }
  bool finish_editing() { return view_->finish_editing(); }
  // Finishes what is being edited. False, after telling the user, where the table can't be changed.
  bool may_change();
  void report(ErrorCode error);

  // ---- fields (table_pane_fields.cpp)

  void insert_field();
  void field_properties();
  void rename_field();
  void delete_field();
  void hide_field();
  void show_all_fields();
  void encrypt_fields();
  void decrypt_fields();

  // ---- records (table_pane_records.cpp)

  void insert_records();
  void append_record();
  void duplicate_records();
  void delete_records();
  // TYPE is the number of a flag of the database, 0 takes the flag away.
  void flag_records(int type);

  // ---- cells (table_pane_cells.cpp)

  void copy();
  void cut();
  void paste();
  void clear();
  void fill_down();
  // Gives all selected cells what TEXT reads as.
  void fill_selection(const std::string& text);
  // Writes the dates in the text fields with a selected cell as standard date strings, in all records.
  void texts_to_dates();
  void insert_today();
  void copy_from_above();
  // Invalid where the cell holds none.
  QUrl link_at(const QModelIndex& index) const;
  void open_link();

  // ---- which records are shown, and in which order (table_pane_search.cpp)

  // With the filters and sort keys that are set.
  void search();
  void set_filter();
  void clear_filter();
  // Sets filters, by the number of the field, and searches.
  void filter_by(const std::map<size_t, Criterion>& filters);
  void find_by_value();
  void show_all_records();
  // Shows all records when it comes twice within a moment.
  void escape_pressed();
  void sort_by_current_field(bool descending, bool with_shift);
  void sort_by_nothing();

 signals:
  // What is said of this table in bars and menus may be another.
  void state_changed();

 private:
  // Where the user is, to be found again after a reset.
  struct Place {
    RecordNumber record;
    int row = 0;
    FieldId field = 0;
    size_t field_rank = 0;  // among the shown fields
  };

  void connect_parts();
  void remember_row();
  void remember_field(const QModelIndex& current);
  void find_place_again();
  QItemSelection selected_cells() const;
  // The current field in ROW, or in the last row.
  void go_to_row(int row);

  bool is_read_only() const;
  void report(const CellChanges& changes, const QString& more = {});
  using BlockChange = std::function<CellChanges(const CellBlock&)>;
  void change_selection(const char* caption, const BlockChange& change);
  // The selection where it is a block, if one with gaps; otherwise the user is told.
  std::optional<CellGroup> one_group();
  // Inserts COUNT records before record BEFORE, shown from ROW on.
  ErrorCode insert_shown_records(RecordNumber before, uint32_t count, int row);
  void copy_values(const std::vector<uint32_t>& originals, uint32_t first);
  CellBlock paste_target(const ClipboardRows& rows, uint32_t& appended, int64_t& lost) const;
  uint32_t appendable_records() const;

  DatabaseDocument& document_;
  CWorkSheet& table_;
  profile::Settings& settings_;
  Dialogs& dialogs_;
  PaneMenus menus_;
  TablePresentation presentation_;
  TableModel model_;
  QItemSelectionModel selection_;
  SelectionSummary summary_;
  std::vector<size_t> fields_;  // that are shown, in their order
  Place place_;
  size_t chosen_field_ = 0;
  bool is_filtered_ = false;  // what is shown now
  bool searching_ = false;
  qint64 last_escape_ = 0;  // milliseconds
  std::unique_ptr<TableView> view_;
};

}  // namespace rowvane

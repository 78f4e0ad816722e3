// The window of one database: its tree of tables beside the table in view.
#pragma once

#include <QWidget>
#include <map>
#include <memory>

#include "app/profile/profile_settings.h"
#include "ui/dialogs.h"
#include "ui/document/table_presentation.h"
#include "ui/explorer/database_explorer.h"
#include "ui/grid/cellvane_view.h"

class QSplitter;
class QStackedWidget;

namespace rowvane {

class CDatabaseWindow final : public QWidget {
  Q_OBJECT

 public:
  // SETTINGS, those of the profile, and DIALOGS must outlive the window.
  CDatabaseWindow(std::unique_ptr<DatabaseDocument> document, profile::Settings& settings, Dialogs& dialogs,
                  QWidget* parent = nullptr);
  ~CDatabaseWindow() override;

  DatabaseDocument& document() { return *document_; }
  // The table in view; null when there is none.
  CCellvaneView* view() const;
  void show_table(CWorkSheet& table);
  void set_explorer_visible(bool visible);

  // The tree with its commands.
  CDatabaseExplorer& explorer() { return *explorer_; }

  // The commands of fields.
  void insert_field();
  void field_properties();
  void rename_field();
  void delete_field();
  void hide_field();
  void show_all_fields();
  void encrypt_fields();
  void decrypt_fields();
  void edit_drop_down_lists();

  // Record flags: TYPE is the number of a flag of the database, 0 takes the flag away.
  void flag_records(int type);
  void edit_record_flag_types();

  // The commands that choose and order records.
  void set_filter();
  void clear_filter();
  void search() { present(); }
  // Sets the filters of the table in view, by the number of the field, and searches.
  void filter_by(const std::map<size_t, Criterion>& filters);
  void find_by_value();
  void show_all_records();
  void sort_by_current_field(bool descending, bool with_shift);
  void sort_by_nothing();

  // "Record 3 of 12", "Filtered", the sort keys, and sum, mean and count of the selected numbers.
  QString place_text() const;
  QString filter_text() const;
  QString selection_text() const;

 signals:
  // What the frame shows of this window may be another.
  void state_changed();

 private:
  // A table that has been looked at.
  struct Pane {
    CCellvaneView* view = nullptr;
    std::unique_ptr<TablePresentation> presentation;
    bool is_filtered = false;  // what it shows now
  };

  void follow(const CWorkSheet* changed);
  void drop_missing_tables();
  Pane& pane_of(CWorkSheet& table);
  Pane* current_pane();
  const Pane* current_pane() const;
  // Of the table in view.
  std::optional<size_t> current_field() const;
  // Works out the shown records of the table in view and shows them.
  void present();
  void report(ErrorCode error);

  std::unique_ptr<DatabaseDocument> document_;
  profile::Settings& settings_;
  Dialogs& dialogs_;
  QSplitter* splitter_;
  CDatabaseExplorer* explorer_;
  QStackedWidget* views_;
  std::map<CWorkSheet*, Pane> panes_;
  CWorkSheet* current_table_ = nullptr;
  bool presenting_ = false;
};

}  // namespace rowvane

// The window of one database: its tree of tables beside the table in view.
#pragma once

#include <QWidget>
#include <map>
#include <memory>

#include "ui/dialogs.h"
#include "ui/explorer/database_explorer.h"
#include "ui/pane/table_pane.h"

class QSplitter;
class QStackedWidget;

namespace rowvane {

class CDatabaseWindow final : public QWidget {
  Q_OBJECT

 public:
  // SETTINGS, those of the profile, and DIALOGS must outlive the window.
  CDatabaseWindow(std::unique_ptr<DatabaseDocument> document, profile::Settings& settings, Dialogs& dialogs,
                  PaneMenus menus = {}, QWidget* parent = nullptr);
  ~CDatabaseWindow() override;

  DatabaseDocument& document() { return *document_; }
  // The table in view; null when there is none.
  TablePane* pane() const { return pane_; }
  void show_table(CWorkSheet& table);
  void set_explorer_visible(bool visible);

  // The tree with its commands.
  CDatabaseExplorer& explorer() { return *explorer_; }

  // The dialogs of what all tables share.
  void edit_drop_down_lists();
  void edit_record_flag_types();

 signals:
  // What the frame shows of this window may be another.
  void state_changed();

 private:
  void follow(const CWorkSheet* changed);
  void drop_missing_tables();
  TablePane& pane_of(CWorkSheet& table);

  std::unique_ptr<DatabaseDocument> document_;
  profile::Settings& settings_;
  Dialogs& dialogs_;
  QSplitter* splitter_;
  CDatabaseExplorer* explorer_;
  PaneMenus menus_;
  QStackedWidget* stack_;
  std::map<CWorkSheet*, TablePane*> panes_;  // of the tables that have been looked at
  TablePane* pane_ = nullptr;
};

}  // namespace rowvane

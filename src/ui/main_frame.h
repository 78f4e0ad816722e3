// The main frame: tabs of database windows under one menu bar.
#pragma once

#include <QMainWindow>
#include <functional>
#include <map>
#include <memory>

#include "app/profile/engine_options.h"
#include "app/profile/program_profile.h"
#include "ui/actions.h"
#include "ui/database_window.h"
#include "ui/dialogs.h"
#include "ui/document/document_files.h"
#include "ui/document/recovery_folder.h"
#include "ui/document/recovery_saver.h"
#include "ui/find_bar.h"

class QLabel;
class QTabWidget;

namespace rowvane {

class CMainFrame final : public QMainWindow {
  Q_OBJECT

 public:
  // Both must outlive the frame.
  // RECOVERY_FOLDER keeps unsaved work in case the program is killed; without one, nothing does.
  CMainFrame(ProgramProfile& profile, Dialogs& dialogs, const QString& recovery_folder = {});
  ~CMainFrame() override;

  Actions& actions() { return actions_; }
  // The database in view; null when none is open.
  CDatabaseWindow* current_window() const;
  int window_count() const;

  // Opens PATH in a new tab, or goes to the tab where it is open. False after telling the user why not.
  // A text is read with TEXT, or as its name suggests.
  bool open_file(const QString& path, const std::optional<TextFileSettings>& text = std::nullopt);
  // Adds a tab for a new database.
  void new_database();
  // What the Uninstall command does; true when the program is to end.
  void set_uninstall(std::function<bool()> uninstall) { uninstall_ = std::move(uninstall); }
  // Offers what a program that was killed left behind.
  void offer_recovery();
  RecoverySaver& recovery() { return recovery_; }

  // Where the frame stands, as the profile keeps it.
  void restore_placement();
  void keep_placement();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  using Step = void (CDatabaseWindow::*)();
  using TreeStep = void (CDatabaseExplorer::*)();
  using PaneStep = void (TablePane::*)();
  using GridStep = void (GridCommands::*)();

  void make_menus();
  void make_toolbar();
  void make_status_bar();
  void connect_commands();
  void connect_file_commands();
  void connect_edit_commands();
  void connect_table_commands();
  void connect_records_commands();
  void connect_search_commands();
  void connect_view_commands();
  void connect_help_commands();
  // Lets COMMAND do RUN, or the step of the window, its tree, its pane or its grid, when there is one.
  void on(Command command, const std::function<void()>& run);
  void on(Command command, Step step);
  void on(Command command, TreeStep step);
  void on(Command command, PaneStep step);
  void on(Command command, GridStep step);

  void update_state();
  QString tab_text(const DatabaseDocument& document) const;
  PaneMenus pane_menus() const;
  TablePane* current_pane() const;
  GridCommands* current_grid() const;
  bool has(Needs needs) const;
  void update_recent_files();
  void open_chosen_file();
  void open_chosen_text_file();
  // True when PATH is open already.
  bool go_to_window_of(const QString& path);
  CDatabaseWindow* window_at(int index) const;
  void add_window(std::unique_ptr<DatabaseDocument> document, const QString& recovery_copy = {});
  void close_window(int index);
  // Stores what is being typed in WINDOW, which may be null. False when it was refused.
  static bool finish_editing(CDatabaseWindow* window);
  void auto_save();
  void update_formulas();
  void load_profile();
  void edit_options();
  // The settings of the profile are others.
  void show_switches();
  void follow_settings();
  void fill_flags();
  void save_profile_as();
  void sort(bool descending);

  ProgramProfile& profile_;
  Dialogs& dialogs_;
  DocumentFiles files_;
  RecoveryFolder recovery_folder_;
  RecoverySaver recovery_;
  Actions actions_;
  std::function<bool()> uninstall_;
  QTabWidget* tabs_;
  CFindBar* find_bar_;
  QMenu* recent_files_ = nullptr;
  QMenu* flags_ = nullptr;
  QLabel* place_ = nullptr;
  QLabel* filter_ = nullptr;
  QLabel* selection_ = nullptr;
  int minutes_since_save_ = 0;
};

}  // namespace rowvane

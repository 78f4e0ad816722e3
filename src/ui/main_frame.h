// The main frame: tabs of database windows under one menu bar.
#pragma once

#include <QMainWindow>
#include <functional>
#include <memory>

#include "app/engine_options.h"
#include "app/program_profile.h"
#include "ui/actions.h"
#include "ui/database_window.h"
#include "ui/dialogs.h"

class QLabel;
class QTabWidget;

namespace rowvane {

class CMainFrame final : public QMainWindow {
  Q_OBJECT

 public:
  // Both must outlive the frame.
  CMainFrame(ProgramProfile& profile, Dialogs& dialogs);
  ~CMainFrame() override;

  Actions& actions() { return actions_; }
  // The database in view; null when none is open.
  CDatabaseWindow* current_window() const;
  int window_count() const;

  // Opens PATH in a new tab, or goes to the tab where it is open. False after telling the user why not.
  bool open_file(const QString& path);
  // As open_file, a text file read with SETTINGS.
  bool open_text_file(const QString& path, const TextFileSettings& settings);
  // Adds a tab for a new database.
  void new_database();

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
  using ViewStep = void (CCellvaneView::*)();

  void make_menus();
  void make_toolbar();
  void make_status_bar();
  void connect_commands();
  void on(Command command, const std::function<void()>& run);
  void on(Command command, Step step);
  void on(Command command, TreeStep step);
  void on(Command command, ViewStep step);

  void update_state();
  bool has(Needs needs) const;
  void update_recent_files();
  void remember_file(const QString& path);

  void open_chosen_file();
  void open_chosen_text_file();
  bool open_with(const QString& path, const TextImport& text);
  void add_window(std::unique_ptr<DatabaseDocument> document);
  // Asks about unsaved changes. False when the user wants to go on with the database.
  bool may_close(CDatabaseWindow& window);
  void close_window(int index);
  bool save(CDatabaseWindow& window);
  bool save_as(CDatabaseWindow& window, bool as_copy);
  bool save_to(CDatabaseWindow& window, const QString& path, bool as_copy);
  void import_table();
  void export_table();
  void compact();
  void update_formulas();
  void load_profile();
  void save_profile_as();
  void escape_pressed();
  void sort(bool descending);
  void show_notices(const std::vector<Notice>& notices);

  ProgramProfile& profile_;
  Dialogs& dialogs_;
  Actions actions_;
  QTabWidget* tabs_;
  QMenu* recent_files_ = nullptr;
  QLabel* place_ = nullptr;
  QLabel* filter_ = nullptr;
  QLabel* selection_ = nullptr;
  qint64 last_escape_ = 0;  // milliseconds
};

}  // namespace rowvane

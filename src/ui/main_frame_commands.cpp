// The menus and bars of the main frame, and what their commands do.
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>

#include "app/start/file_type_registration.h"
#include "platform/folders.h"
#include "ui/dialogs/keyboard_dlg.h"
#include "ui/dialogs/profile_protect_dlg.h"
#include "ui/dialogs/protect_dlg.h"
#include "ui/dialogs/record_flag_types_dlg.h"
#include "ui/main_frame.h"
#include "ui/text.h"
#include "ui/theme.h"

namespace rowvane {

void CMainFrame::make_menus() {
  std::map<QString, QMenu*> menus;
  for (const CommandText& command : command_texts()) {
    QString wanted = QString::fromLatin1(command.menu);
    const bool new_group = wanted.endsWith('|');
    if (new_group) wanted.chop(1);
    QMenu*& menu = menus[wanted];
    if (menu == nullptr) {
      QMenu* const outer = menus[wanted.section('>', 0, 0)];
      const QString title = tr(wanted.section('>', -1).toLatin1().constData());
      menu = outer != nullptr ? outer->addMenu(title) : menuBar()->addMenu(title);
    } else if (new_group) {
      menu->addSeparator();
    }
    menu->addAction(actions_.of(command.command));
    if (command.command == Command::kOpenTextFile) recent_files_ = menu->addMenu(tr("Recent &Files"));
    if (command.command == Command::kDeleteRecords) flags_ = menu->addMenu(tr("&Flag"));
  }
}

// The flags of the database, for the selected records.
void CMainFrame::fill_flags() {
  flags_->clear();
  CDatabaseWindow* window = current_window();
  const bool has_records = has(Needs::kRecords);
  const auto add = [&](const QIcon& flag, const QString& text, int type) {
    flags_->addAction(flag, text, this, [pane = current_pane(), type] { pane->flag_records(type); })
        ->setEnabled(has_records);
  };
  int number = 0;
  if (window != nullptr) {
    for (const RecordFlagType& type : window->document().database().settings().record_flag_types)
      add(flag_icon(type.color), to_qt(type.name).replace("&", "&&"), ++number);
  }
  add({}, tr("&No Flag"), 0);
}

void CMainFrame::make_toolbar() {
  QToolBar* bar = addToolBar(tr("Commands"));
  bar->setObjectName("commands");
  bar->setMovable(false);
  bar->setIconSize({20, 20});
  const std::initializer_list<std::initializer_list<Command>> groups = {
      {Command::kNew, Command::kOpen, Command::kSave},
      {Command::kUndo, Command::kRedo},
      {Command::kCut, Command::kCopy, Command::kPaste},
      {Command::kInsertRecords, Command::kDeleteRecords, Command::kInsertField},
      {Command::kFind, Command::kSetFilter, Command::kFindByValue, Command::kSortAscending,
       Command::kSortDescending},
      {Command::kImport, Command::kExport},
  };
  for (const auto& group : groups) {
    if (!bar->actions().isEmpty()) bar->addSeparator();
    for (const Command command : group) bar->addAction(actions_.of(command));
  }
}

void CMainFrame::make_status_bar() {
  for (QLabel** label : {&place_, &filter_, &selection_}) {
    *label = new QLabel(this);
    (*label)->setTextFormat(Qt::PlainText);
  }
  statusBar()->addWidget(place_);
  statusBar()->addWidget(filter_);
  statusBar()->addPermanentWidget(selection_);
}

void CMainFrame::on(Command command, const std::function<void()>& run) {
  connect(actions_.of(command), &QAction::triggered, this, [this, command, run] {
    // What is being typed is stored first; these two write into it.
    const bool writes = command == Command::kInsertToday || command == Command::kCopyFromAbove;
    if (writes || finish_editing(current_window())) run();
  });
}

void CMainFrame::on(Command command, Step step) {
  on(command, [this, step] {
    if (CDatabaseWindow* window = current_window()) (window->*step)();
  });
}

void CMainFrame::on(Command command, TreeStep step) {
  on(command, [this, step] {
    if (CDatabaseWindow* window = current_window()) (window->explorer().*step)();
  });
}

void CMainFrame::on(Command command, PaneStep step) {
  on(command, [this, step] {
    if (TablePane* pane = current_pane()) (pane->*step)();
  });
}

void CMainFrame::on(Command command, GridStep step) {
  on(command, [this, step] {
    if (GridCommands* grid = current_grid()) (grid->*step)();
  });
}

void CMainFrame::connect_commands() {
  connect_file_commands();
  connect_edit_commands();
  connect_table_commands();
  connect_records_commands();
  connect_search_commands();
  connect_view_commands();
  connect_help_commands();
}

void CMainFrame::connect_file_commands() {
  on(Command::kNew, [this] { new_database(); });
  on(Command::kOpen, [this] { open_chosen_file(); });
  on(Command::kOpenTextFile, [this] { open_chosen_text_file(); });
  on(Command::kClose, [this] { close_window(tabs_->currentIndex()); });
  on(Command::kSave, [this] { files_.save(current_window()->document()); });
  on(Command::kSaveAs, [this] { files_.save_as(current_window()->document()); });
  on(Command::kSaveCopyAs, [this] { files_.save_copy_as(current_window()->document()); });
  on(Command::kImport, [this] {
    CDatabaseWindow* window = current_window();
    std::map<size_t, Criterion> filters;
    CWorkSheet* table = files_.import_table(window->document(), filters);
    if (table == nullptr) return;
    window->show_table(*table);
    window->pane()->filter_by(filters);
  });
  on(Command::kExport, [this] {
    TablePane* pane = current_pane();
    files_.export_table(pane->document(), pane->table(), pane->model().records());
  });
  on(Command::kProtect, [this] {
    protect_database(current_window()->document(), dialogs_, this);
    update_state();
  });
  on(Command::kCompact, [this] { files_.compact(current_window()->document()); });
  on(Command::kLoadProfile, [this] { load_profile(); });
  on(Command::kSaveProfileAs, [this] { save_profile_as(); });
  on(Command::kProtectProfile, [this] { protect_profile(profile_.file(), dialogs_, this); });
  on(Command::kExit, [this] { close(); });
}

void CMainFrame::connect_edit_commands() {
  on(Command::kUndo, [this] { current_window()->document().undo(); });
  on(Command::kRedo, [this] { current_window()->document().redo(); });
  on(Command::kCut, &TablePane::cut);
  on(Command::kCopy, &TablePane::copy);
  on(Command::kPaste, &TablePane::paste);
  on(Command::kClear, &TablePane::clear);
  on(Command::kFillDown, &TablePane::fill_down);
  on(Command::kSelectAll, &TablePane::select_all);
  on(Command::kEditCell, &TablePane::edit_current);
  on(Command::kInsertToday, &TablePane::insert_today);
  on(Command::kCopyFromAbove, &TablePane::copy_from_above);
  on(Command::kOpenLink, &TablePane::open_link);
  on(Command::kTextToDates, &TablePane::texts_to_dates);
}

void CMainFrame::connect_table_commands() {
  on(Command::kNewTable, &CDatabaseExplorer::new_table);
  on(Command::kNewFolder, &CDatabaseExplorer::new_folder);
  on(Command::kRenameItem, &CDatabaseExplorer::rename_item);
  on(Command::kDeleteItem, &CDatabaseExplorer::delete_item);
  on(Command::kInsertField, &TablePane::insert_field);
  on(Command::kFieldProperties, &TablePane::field_properties);
  on(Command::kRenameField, &TablePane::rename_field);
  on(Command::kDeleteField, &TablePane::delete_field);
  on(Command::kHideField, &TablePane::hide_field);
  on(Command::kShowAllFields, &TablePane::show_all_fields);
  on(Command::kEncryptFields, &TablePane::encrypt_fields);
  on(Command::kDecryptFields, &TablePane::decrypt_fields);
  on(Command::kDropDownLists, &CDatabaseWindow::edit_drop_down_lists);
}

void CMainFrame::connect_records_commands() {
  on(Command::kInsertRecords, &TablePane::insert_records);
  on(Command::kAppendRecord, &TablePane::append_record);
  on(Command::kDuplicateRecords, &TablePane::duplicate_records);
  on(Command::kDeleteRecords, &TablePane::delete_records);
  on(Command::kRecordFlagTypes, &CDatabaseWindow::edit_record_flag_types);
  on(Command::kUpdateFormulas, [this] { update_formulas(); });
}

void CMainFrame::connect_search_commands() {
  on(Command::kFind, [this] { find_bar_->open(); });
  on(Command::kFindNext, [this] { find_bar_->find_next(); });
  on(Command::kFindPrevious, [this] { find_bar_->find_previous(); });
  on(Command::kSetFilter, &TablePane::set_filter);
  on(Command::kClearFilter, &TablePane::clear_filter);
  on(Command::kSearch, &TablePane::search);
  on(Command::kFindByValue, &TablePane::find_by_value);
  on(Command::kShowAllRecords, &TablePane::show_all_records);
  on(Command::kSortAscending, [this] { sort(false); });
  on(Command::kSortDescending, [this] { sort(true); });
  on(Command::kNoSorting, &TablePane::sort_by_nothing);
}

void CMainFrame::connect_view_commands() {
  on(Command::kShowExplorer, [this] {
    const bool shown = actions_.of(Command::kShowExplorer)->isChecked();
    for (int i = 0; i < tabs_->count(); ++i)
      static_cast<CDatabaseWindow*>(tabs_->widget(i))->set_explorer_visible(shown);
  });
  on(Command::kShowFindToolbar, [this] {
    const bool shown = actions_.of(Command::kShowFindToolbar)->isChecked();
    profile_.settings().check_box_options.show_find_toolbar = shown;
    find_bar_->setVisible(shown);
  });
  on(Command::kZoomIn, &GridCommands::zoom_in);
  on(Command::kZoomOut, &GridCommands::zoom_out);
  on(Command::kZoomReset, &GridCommands::reset_zoom);
  on(Command::kFreezeFields, &GridCommands::freeze_fields);
  on(Command::kFreezeRecords, &GridCommands::freeze_records);
  on(Command::kUnfreeze, &GridCommands::unfreeze);
  on(Command::kMoreLines, &GridCommands::more_lines);
  on(Command::kFewerLines, &GridCommands::fewer_lines);
  on(Command::kDarkMode, [this] {
    const bool dark = actions_.of(Command::kDarkMode)->isChecked();
    profile_.settings().toolbar_options.dark_mode = dark;
    set_dark_colors(dark);
  });
  on(Command::kOptions, [this] { edit_options(); });
}

void CMainFrame::connect_help_commands() {
  on(Command::kKeyboard, [this] { CKeyboardDlg(this).exec(); });
  on(Command::kRegisterFileType, [this] {
    dialogs_.show(register_database_files(platform::known_folders().program_file).text(),
                  MessageIcon::kInformation);
  });
  on(Command::kUnregisterFileType, [this] {
    dialogs_.show(unregister_database_files(platform::known_folders().program_file).text(),
                  MessageIcon::kInformation);
  });
  on(Command::kUninstall, [this] {
    if (!uninstall_ || !uninstall_()) return;
    profile_.forget_path();
    close();
  });
  on(Command::kAbout, [this] {
    dialogs_.show(to_utf8(program_title()) + "\n\nA desktop database.\nGPL-3.0-or-later",
                  MessageIcon::kInformation);
  });
}

}  // namespace rowvane

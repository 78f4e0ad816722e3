#include "ui/main_frame.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include "app/file_type_registration.h"
#include "platform/file.h"
#include "platform/folders.h"
#include "ui/dialogs/keyboard_dlg.h"
#include "ui/dialogs/open_text_file_dlg.h"
#include "ui/dialogs/options_dlg.h"
#include "ui/dialogs/profile_protect_dlg.h"
#include "ui/dialogs/protect_dlg.h"
#include "ui/dialogs/record_flag_types_dlg.h"
#include "ui/icons.h"
#include "ui/long_task.h"
#include "ui/text.h"
#include "ui/theme.h"

namespace rowvane {
namespace {

constexpr int kSecondEscapeMilliseconds = 800;

QString shown_path(const QString& path) {
  return QDir::toNativeSeparators(path);
}

}  // namespace

CMainFrame::CMainFrame(ProgramProfile& profile, Dialogs& dialogs, const QString& recovery_folder)
    : profile_(profile),
      dialogs_(dialogs),
      files_(profile.settings(), dialogs, *this),
      recovery_folder_(recovery_folder),
      recovery_(recovery_folder_),
      tabs_(new QTabWidget(this)) {
  setWindowTitle(program_title());
  setWindowIcon(program_icon());
  setAcceptDrops(true);
  resize(1100, 700);
  tabs_->setDocumentMode(true);
  tabs_->setTabsClosable(true);
  tabs_->setMovable(true);
  find_bar_ = new CFindBar(profile.settings(), dialogs, this);
  auto* center = new QWidget(this);
  auto* layout = new QVBoxLayout(center);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(tabs_, 1);
  layout->addWidget(find_bar_);
  setCentralWidget(center);
  connect(find_bar_, &CFindBar::left, this, [this] {
    find_bar_->setVisible(profile_.settings().check_box_options.show_find_toolbar);
    if (current_window() != nullptr && current_window()->view() != nullptr)
      current_window()->view()->setFocus();
  });
  make_menus();
  make_toolbar();
  make_status_bar();
  connect_commands();
  connect(flags_, &QMenu::aboutToShow, this, &CMainFrame::fill_flags);
  connect(tabs_, &QTabWidget::currentChanged, this, &CMainFrame::update_state);
  connect(tabs_, &QTabWidget::tabCloseRequested, this, &CMainFrame::close_window);
  actions_.of(Command::kShowExplorer)->setChecked(true);
  show_switches();
  auto* minute = new QTimer(this);
  connect(minute, &QTimer::timeout, this, &CMainFrame::auto_save);
  minute->start(std::chrono::minutes(1));
  update_recent_files();
  update_state();
}

CMainFrame::~CMainFrame() {
  disconnect(tabs_, nullptr, this, nullptr);
}

// ---- menus

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
    flags_->addAction(flag, text, this, [window, type] { window->flag_records(type); })
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
    recovery_.stop();
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

void CMainFrame::on(Command command, ViewStep step) {
  on(command, [this, step] {
    CDatabaseWindow* window = current_window();
    if (window != nullptr && window->view() != nullptr) (window->view()->*step)();
  });
}

void CMainFrame::connect_commands() {
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
    window->filter_by(filters);
  });
  on(Command::kExport, [this] {
    CDatabaseWindow* window = current_window();
    files_.export_table(window->document(), window->view()->table(), window->view()->model().records());
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
  on(Command::kUndo, [this] { current_window()->document().undo(); });
  on(Command::kRedo, [this] { current_window()->document().redo(); });
  on(Command::kCut, &CCellvaneView::cut);
  on(Command::kCopy, &CCellvaneView::copy);
  on(Command::kPaste, &CCellvaneView::paste);
  on(Command::kClear, &CCellvaneView::clear);
  on(Command::kFillDown, &CCellvaneView::fill_down);
  on(Command::kTextToDates, &CCellvaneView::texts_to_dates);
  on(Command::kSelectAll, [this] { current_window()->view()->selectAll(); });
  on(Command::kEditCell, &CCellvaneView::edit_current);
  on(Command::kInsertToday, &CCellvaneView::insert_today);
  on(Command::kCopyFromAbove, &CCellvaneView::copy_from_above);
  on(Command::kOpenLink, &CCellvaneView::open_link);
  on(Command::kInsertRecords, &CCellvaneView::insert_records);
  on(Command::kAppendRecord, &CCellvaneView::append_record);
  on(Command::kDuplicateRecords, &CCellvaneView::duplicate_records);
  on(Command::kDeleteRecords, &CCellvaneView::delete_records);
  on(Command::kInsertField, &CDatabaseWindow::insert_field);
  on(Command::kFieldProperties, &CDatabaseWindow::field_properties);
  on(Command::kRenameField, &CDatabaseWindow::rename_field);
  on(Command::kDeleteField, &CDatabaseWindow::delete_field);
  on(Command::kHideField, &CDatabaseWindow::hide_field);
  on(Command::kShowAllFields, &CDatabaseWindow::show_all_fields);
  on(Command::kEncryptFields, &CDatabaseWindow::encrypt_fields);
  on(Command::kDecryptFields, &CDatabaseWindow::decrypt_fields);
  on(Command::kRecordFlagTypes, &CDatabaseWindow::edit_record_flag_types);
  on(Command::kDropDownLists, &CDatabaseWindow::edit_drop_down_lists);
  on(Command::kNewTable, &CDatabaseExplorer::new_table);
  on(Command::kNewFolder, &CDatabaseExplorer::new_folder);
  on(Command::kRenameItem, &CDatabaseExplorer::rename_item);
  on(Command::kDeleteItem, &CDatabaseExplorer::delete_item);
  on(Command::kFind, [this] { find_bar_->open(); });
  on(Command::kFindNext, [this] { find_bar_->find_next(); });
  on(Command::kFindPrevious, [this] { find_bar_->find_previous(); });
  on(Command::kSetFilter, &CDatabaseWindow::set_filter);
  on(Command::kClearFilter, &CDatabaseWindow::clear_filter);
  on(Command::kSearch, &CDatabaseWindow::search);
  on(Command::kFindByValue, &CDatabaseWindow::find_by_value);
  on(Command::kShowAllRecords, &CDatabaseWindow::show_all_records);
  on(Command::kSortAscending, [this] { sort(false); });
  on(Command::kSortDescending, [this] { sort(true); });
  on(Command::kNoSorting, &CDatabaseWindow::sort_by_nothing);
  on(Command::kUpdateFormulas, [this] { update_formulas(); });
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
  on(Command::kZoomIn, [this] { current_window()->view()->set_zoom(current_window()->view()->zoom() + 10); });
  on(Command::kZoomOut,
     [this] { current_window()->view()->set_zoom(current_window()->view()->zoom() - 10); });
  on(Command::kZoomReset, [this] { current_window()->view()->set_zoom(100); });
  on(Command::kFreezeFields, &CCellvaneView::freeze_fields);
  on(Command::kFreezeRecords, &CCellvaneView::freeze_records);
  on(Command::kUnfreeze, &CCellvaneView::unfreeze);
  on(Command::kMoreLines, &CCellvaneView::more_lines);
  on(Command::kFewerLines, &CCellvaneView::fewer_lines);
  on(Command::kDarkMode, [this] {
    const bool dark = actions_.of(Command::kDarkMode)->isChecked();
    profile_.settings().toolbar_options.dark_mode = dark;
    set_dark_colors(dark);
  });
  on(Command::kOptions, [this] { edit_options(); });
  on(Command::kRegisterFileType, [this] {
    const Notice notice = register_database_files(platform::known_folders().program_file);
    files_.show_notices({notice});
  });
  on(Command::kUnregisterFileType, [this] {
    const Notice notice = unregister_database_files(platform::known_folders().program_file);
    files_.show_notices({notice});
  });
  on(Command::kKeyboard, [this] { CKeyboardDlg(this).exec(); });
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

// ---- the state of the commands and the bars

CDatabaseWindow* CMainFrame::current_window() const {
  return static_cast<CDatabaseWindow*>(tabs_->currentWidget());
}

int CMainFrame::window_count() const {
  return tabs_->count();
}

bool CMainFrame::has(Needs needs) const {
  CDatabaseWindow* window = current_window();
  if (needs == Needs::kNothing) return true;
  if (window == nullptr) return false;
  switch (needs) {
    case Needs::kTable:
      return window->view() != nullptr;
    case Needs::kRecords:
      return window->view() != nullptr && window->view()->model().rowCount() > 0;
    case Needs::kUndo:
      return window->document().database().undo_log().can_undo();
    case Needs::kRedo:
      return window->document().database().undo_log().can_redo();
    default:
      return true;
  }
}

QString CMainFrame::tab_text(const DatabaseDocument& document) const {
  QString text = document.title();
  const int limit = profile_.settings().check_box_options.tabbed_names_limit;
  if (text.size() > limit) text = text.left(limit) + QChar(0x2026);
  if (document.file().is_read_only()) text += ' ' + tr("(read-only)");
  return document.is_modified() ? text + '*' : text;
}

void CMainFrame::update_state() {
  actions_.update([this](Needs needs) { return has(needs); });
  for (int i = 0; i < tabs_->count(); ++i) {
    DatabaseDocument& document = static_cast<CDatabaseWindow*>(tabs_->widget(i))->document();
    tabs_->setTabText(i, tab_text(document));
    tabs_->setTabToolTip(i, shown_path(to_qt(document.database().file_path())));
  }
  CDatabaseWindow* window = current_window();
  find_bar_->set_view(window != nullptr ? window->view() : nullptr,
                      window != nullptr ? &window->document() : nullptr);
  if (window != nullptr && window->view() != nullptr) prepare_view(*window->view());
  place_->setText(window != nullptr ? window->place_text() : QString());
  filter_->setText(window != nullptr ? window->filter_text() : QString());
  selection_->setText(window != nullptr ? window->selection_text() : QString());
  setWindowTitle(window != nullptr ? window->document().title() + "[*] - " + program_title()
                                   : program_title());
  setWindowModified(window != nullptr && window->document().is_modified());
}

// Views are made when their tables are first shown.
void CMainFrame::prepare_view(CCellvaneView& view) {
  if (!view.actions().isEmpty()) return;
  connect(&view, &CCellvaneView::escape_pressed, this, &CMainFrame::escape_pressed);
  connect(&view, &CCellvaneView::search_wanted, actions_.of(Command::kSearch), &QAction::trigger);
  for (const Command command :
       {Command::kCut, Command::kCopy, Command::kPaste, Command::kClear, Command::kFillDown,
        Command::kFindByValue, Command::kOpenLink, Command::kInsertRecords, Command::kDuplicateRecords,
        Command::kDeleteRecords}) {
    view.addAction(actions_.of(command));
  }
  for (const Command command :
       {Command::kSetFilter, Command::kClearFilter, Command::kSortAscending, Command::kSortDescending,
        Command::kNoSorting, Command::kFreezeFields, Command::kUnfreeze, Command::kHideField,
        Command::kShowAllFields, Command::kRenameField, Command::kInsertField, Command::kDeleteField}) {
    view.field_header().addAction(actions_.of(command));
  }
}

void CMainFrame::update_recent_files() {
  recent_files_->clear();
  const auto& files = profile_.settings().recent_files;
  int number = 0;
  for (const RecentFile& file : files) {
    const QString path = to_qt(file.path);
    QAction* action = recent_files_->addAction(QString("&%1 %2").arg(++number).arg(shown_path(path)));
    connect(action, &QAction::triggered, this, [this, path] { open_file(path); });
  }
  recent_files_->setEnabled(!files.empty());
}

// ---- opening

CDatabaseWindow* CMainFrame::window_at(int index) const {
  return static_cast<CDatabaseWindow*>(tabs_->widget(index));
}

void CMainFrame::add_window(std::unique_ptr<DatabaseDocument> document, const QString& recovery_copy) {
  auto* window = new CDatabaseWindow(std::move(document), profile_.settings(), dialogs_, tabs_);
  connect(window, &CDatabaseWindow::state_changed, this, &CMainFrame::update_state);
  connect(&window->document(), &DatabaseDocument::changed, this, &CMainFrame::update_state);
  connect(&window->document(), &DatabaseDocument::saved, this, &CMainFrame::update_state);
  window->document().search_options() = search_options(profile_.settings());
  recovery_.watch_recovered(window->document(), recovery_copy);
  window->set_explorer_visible(actions_.of(Command::kShowExplorer)->isChecked());
  tabs_->setCurrentIndex(tabs_->addTab(window, icon("table"), window->document().title()));
  if (window->view() != nullptr) window->view()->setFocus();
  update_recent_files();
  update_state();
}

void CMainFrame::new_database() {
  add_window(std::make_unique<DatabaseDocument>(engine_options(profile_.settings())));
}

bool CMainFrame::go_to_window_of(const QString& path) {
  for (int i = 0; i < tabs_->count(); ++i) {
    const std::string& open = window_at(i)->document().database().file_path();
    if (open.empty() || !platform::is_same_file(open, to_utf8(path))) continue;
    tabs_->setCurrentIndex(i);
    return true;
  }
  return false;
}

bool CMainFrame::open_file(const QString& path, const std::optional<TextFileSettings>& text) {
  if (go_to_window_of(path)) return true;
  std::unique_ptr<DatabaseDocument> document = files_.open(path, text);
  if (document == nullptr) return false;
  add_window(std::move(document));
  return true;
}

void CMainFrame::open_chosen_file() {
  const QString path = files_.choose_file_to_open();
  if (!path.isEmpty()) open_file(path);
}

void CMainFrame::open_chosen_text_file() {
  const QString path = files_.choose_text_file(tr("Open Text File"));
  if (path.isEmpty()) return;
  COpenTextFileDlg dialog(path, profile_.settings(), dialogs_, this);
  if (dialog.exec() == QDialog::Accepted && open_file(path, dialog.settings()))
    current_window()->filter_by(dialog.filters());
}

void CMainFrame::offer_recovery() {
  const std::vector<RecoveryCopy> copies = recovery_folder_.take_left_behind();
  if (copies.empty()) return;
  QString question = tr("Rowvane did not end properly. Changes that were not saved can be restored:");
  question += "\n";
  for (const RecoveryCopy& copy : copies)
    question += "\n" + copy.title + "   " + QLocale().toString(copy.time, QLocale::ShortFormat);
  const int answer = dialogs_.choose(question, {tr("&Restore"), tr("&Discard"), tr("&Later")});
  for (const RecoveryCopy& copy : copies) {
    if (answer == 1) RecoveryFolder::remove(copy.path);
    if (answer != 0) continue;
    if (std::unique_ptr<DatabaseDocument> document = files_.open_copy(copy))
      add_window(std::move(document), copy.path);
  }
}

// ---- saving and closing

bool CMainFrame::finish_editing(CDatabaseWindow* window) {
  return window == nullptr || window->view() == nullptr || window->view()->finish_editing();
}

void CMainFrame::close_window(int index) {
  CDatabaseWindow* window = window_at(index);
  if (window == nullptr) return;
  recovery_.stop();
  if (!finish_editing(window) || !files_.may_close(window->document())) return;
  recovery_.forget(window->document());
  tabs_->removeTab(index);
  delete window;
  update_state();
}

void CMainFrame::closeEvent(QCloseEvent* event) {
  recovery_.stop();
  for (int i = 0; i < tabs_->count(); ++i) {
    tabs_->setCurrentIndex(i);
    if (finish_editing(current_window()) && files_.may_close(current_window()->document())) continue;
    event->ignore();
    return;
  }
  for (int i = 0; i < tabs_->count(); ++i) recovery_.forget(window_at(i)->document());
  keep_placement();
  event->accept();
}

// Databases without a file are left to the recovery copies: a box out of nowhere would disturb.
void CMainFrame::auto_save() {
  const int minutes = profile_.settings().general_options.auto_save;
  if (minutes == 0 || ++minutes_since_save_ < minutes) return;
  if (is_long_task_running() || QApplication::activeModalWidget() != nullptr) return;
  minutes_since_save_ = 0;
  recovery_.stop();
  for (int i = 0; i < tabs_->count(); ++i) {
    DatabaseDocument& document = window_at(i)->document();
    const bool has_file = document.database().file_format() == FileFormat::kNative;
    if (has_file && document.is_modified() && !document.file().is_read_only()) files_.save(document);
  }
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void CMainFrame::dropEvent(QDropEvent* event) {
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) open_file(url.toLocalFile());
  }
}

// ---- records

void CMainFrame::update_formulas() {
  DatabaseDocument& document = current_window()->document();
  Recalculation settings;
  settings.threads = document.options().used_processor_cores;
  const RecalculationCheck check =
      check_recalculation(document.database(), settings, document.formula_settings());
  if (!check.refusal.empty()) return dialogs_.show(check.refusal, MessageIcon::kWarning);
  if (!check.question.empty() && !dialogs_.ask(check.question)) return;
  RecalculationResult result;
  run_long_change(tabs_, tr("Update All Calculated Fields"), document, [&](Progress& progress) {
    result = recalculate(document.database(), settings, document.formula_settings(), progress);
  });
  if (result.error != ErrorCode::kOk) dialogs_.show_error(result.error);
}

void CMainFrame::sort(bool descending) {
  const bool with_shift = QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier);
  if (CDatabaseWindow* window = current_window()) window->sort_by_current_field(descending, with_shift);
}

void CMainFrame::escape_pressed() {
  const qint64 now = QDateTime::currentMSecsSinceEpoch();
  const bool second = now - last_escape_ < kSecondEscapeMilliseconds;
  last_escape_ = second ? 0 : now;
  if (second && current_window() != nullptr) current_window()->show_all_records();
}

// ---- the profile

void CMainFrame::load_profile() {
  const QString path =
      dialogs_.choose_file_to_open({to_qt(kLoadProfileTitle), to_qt(kProfileFilter), {}, {}});
  if (path.isEmpty()) return;
  const ErrorCode error = profile_.load_other(to_utf8(path));
  if (error != ErrorCode::kOk) return dialogs_.show_error(error);
  follow_settings();
}

void CMainFrame::edit_options() {
  if (COptionsDlg(profile_.settings(), dialogs_, this).exec() == QDialog::Accepted) follow_settings();
}

void CMainFrame::show_switches() {
  const profile::Settings& settings = profile_.settings();
  const bool find_toolbar = settings.check_box_options.show_find_toolbar;
  actions_.of(Command::kDarkMode)->setChecked(settings.toolbar_options.dark_mode);
  actions_.of(Command::kShowFindToolbar)->setChecked(find_toolbar);
  find_bar_->setVisible(find_toolbar);
}

void CMainFrame::follow_settings() {
  const profile::Settings& settings = profile_.settings();
  update_recent_files();
  show_switches();
  set_dark_colors(settings.toolbar_options.dark_mode);
  for (int i = 0; i < tabs_->count(); ++i) {
    window_at(i)->document().take_options(engine_options(settings));
    if (window_at(i)->view() != nullptr) window_at(i)->view()->viewport()->update();
  }
}

void CMainFrame::save_profile_as() {
  const QString path =
      dialogs_.choose_file_to_save({to_qt(kSaveProfileTitle), to_qt(kProfileFilter), "settings.xml", "xml"});
  if (path.isEmpty()) return;
  const ErrorCode error = profile_.save_as(to_utf8(path));
  if (error != ErrorCode::kOk) dialogs_.show_error(error);
}

void CMainFrame::restore_placement() {
  const profile::ApplicationWindow& kept = profile_.settings().application_window;
  const profile::FramePlacement& placement = kept.position;
  if (placement.show_state == profile::FramePlacement::kMaximized) return showMaximized();
  if (placement.show_state == profile::FramePlacement::kMinimized) return showMinimized();
  const QRect rectangle(QPoint(placement.left, placement.top),
                        QPoint(placement.right - 1, placement.bottom - 1));
  // A screen may have gone since.
  const bool is_on_screen = QGuiApplication::screenAt(rectangle.center()) != nullptr;
  if (!placement.starts_at_default() && is_on_screen) setGeometry(rectangle);
  show();
}

void CMainFrame::keep_placement() {
  profile::FramePlacement& placement = profile_.settings().application_window.position;
  placement.show_state = isMaximized()   ? profile::FramePlacement::kMaximized
                         : isMinimized() ? profile::FramePlacement::kMinimized
                                         : profile::FramePlacement::kNormal;
  const QRect rectangle = normalGeometry();
  placement.left = rectangle.left();
  placement.top = rectangle.top();
  placement.right = rectangle.right() + 1;
  placement.bottom = rectangle.bottom() + 1;
}

}  // namespace rowvane

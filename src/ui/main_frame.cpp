#include "ui/main_frame.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>

#include "app/file_type_registration.h"
#include "core/messages.h"
#include "exchange/text_export.h"
#include "platform/folders.h"
#include "ui/dialogs/open_text_file_dlg.h"
#include "ui/dialogs/protect_dlg.h"
#include "ui/dialogs/save_text_file_dlg.h"
#include "ui/icons.h"
#include "ui/long_task.h"
#include "ui/text.h"
#include "ui/theme.h"

namespace rowvane {
namespace {

constexpr int kSecondEscapeMilliseconds = 800;
constexpr size_t kMostRecentFiles = 16;

const QString kDatabaseFilter = QStringLiteral("Rowvane database (*.rvb)");
const QString kOpenFilter = QStringLiteral(
    "All that can be opened (*.rvb *.zip *.csv *.tsv *.tab *.txt);;Rowvane database (*.zip;*.rvb);;"
    "Text files (*.csv *.tsv *.tab *.txt);;All files (*)");
const QString kTextFilter = QStringLiteral("Text files (*.csv *.tsv *.tab *.txt);;All files (*)");

QString shown_path(const QString& path) {
  return QDir::toNativeSeparators(path);
}

}  // namespace

CMainFrame::CMainFrame(ProgramProfile& profile, Dialogs& dialogs)
    : profile_(profile), dialogs_(dialogs), tabs_(new QTabWidget(this)) {
  setWindowTitle(program_title());
  setWindowIcon(icon("rowvane"));
  setAcceptDrops(true);
  resize(1100, 700);
  tabs_->setDocumentMode(true);
  tabs_->setTabsClosable(true);
  tabs_->setMovable(true);
  setCentralWidget(tabs_);
  make_menus();
  make_toolbar();
  make_status_bar();
  connect_commands();
  connect(tabs_, &QTabWidget::currentChanged, this, &CMainFrame::update_state);
  connect(tabs_, &QTabWidget::tabCloseRequested, this, &CMainFrame::close_window);
  actions_.of(Command::kDarkMode)->setChecked(profile_.settings().toolbar_options.dark_mode);
  actions_.of(Command::kShowExplorer)->setChecked(true);
  update_recent_files();
  update_state();
}

CMainFrame::~CMainFrame() {
  disconnect(tabs_, nullptr, this, nullptr);
}

// ---- menus

void CMainFrame::make_menus() {
  QMenu* menu = nullptr;
  QString title;
  for (const CommandText& command : command_texts()) {
    QString wanted = QString::fromLatin1(command.menu);
    const bool new_group = wanted.endsWith('|');
    if (new_group) wanted.chop(1);
    if (wanted != title) {
      menu = menuBar()->addMenu(tr(wanted.toLatin1().constData()));
      title = wanted;
    } else if (new_group) {
      menu->addSeparator();
    }
    menu->addAction(actions_.of(command.command));
    if (command.command == Command::kOpenTextFile) recent_files_ = menu->addMenu(tr("Recent &Files"));
  }
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
      {Command::kFindByValue, Command::kSortAscending, Command::kSortDescending},
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
    CCellvaneView* view = current_window() != nullptr ? current_window()->view() : nullptr;
    if (writes || view == nullptr || view->finish_editing()) run();
  });
}

void CMainFrame::on(Command command, Step step) {
  on(command, [this, step] {
    if (CDatabaseWindow* window = current_window()) (window->*step)();
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
  on(Command::kSave, [this] { save(*current_window()); });
  on(Command::kSaveAs, [this] { save_as(*current_window(), false); });
  on(Command::kSaveCopyAs, [this] { save_as(*current_window(), true); });
  on(Command::kImport, [this] { import_table(); });
  on(Command::kExport, [this] { export_table(); });
  on(Command::kProtect, [this] {
    protect_database(current_window()->document(), dialogs_, this);
    update_state();
  });
  on(Command::kCompact, [this] { compact(); });
  on(Command::kLoadProfile, [this] { load_profile(); });
  on(Command::kSaveProfileAs, [this] { save_profile_as(); });
  on(Command::kExit, [this] { close(); });
  on(Command::kUndo, [this] { current_window()->document().undo(); });
  on(Command::kRedo, [this] { current_window()->document().redo(); });
  on(Command::kCut, &CCellvaneView::cut);
  on(Command::kCopy, &CCellvaneView::copy);
  on(Command::kPaste, &CCellvaneView::paste);
  on(Command::kClear, &CCellvaneView::clear);
  on(Command::kFillDown, &CCellvaneView::fill_down);
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
  on(Command::kRenameField, &CDatabaseWindow::rename_field);
  on(Command::kDeleteField, &CDatabaseWindow::delete_field);
  on(Command::kHideField, &CDatabaseWindow::hide_field);
  on(Command::kShowAllFields, &CDatabaseWindow::show_all_fields);
  on(Command::kNewTable, &CDatabaseWindow::new_table);
  on(Command::kNewFolder, &CDatabaseWindow::new_folder);
  on(Command::kRenameItem, &CDatabaseWindow::rename_item);
  on(Command::kDeleteItem, &CDatabaseWindow::delete_item);
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
    actions_.update_icons();
  });
  on(Command::kRegisterFileType, [this] {
    const Notice notice = register_database_files(platform::known_folders().program_file);
    show_notices({notice});
  });
  on(Command::kUnregisterFileType, [this] {
    const Notice notice = unregister_database_files(platform::known_folders().program_file);
    show_notices({notice});
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

void CMainFrame::update_state() {
  actions_.update([this](Needs needs) { return has(needs); });
  for (int i = 0; i < tabs_->count(); ++i) {
    DatabaseDocument& document = static_cast<CDatabaseWindow*>(tabs_->widget(i))->document();
    tabs_->setTabText(i, document.title() + (document.is_modified() ? "*" : ""));
    tabs_->setTabToolTip(i, shown_path(to_qt(document.database().file_path())));
  }
  CDatabaseWindow* window = current_window();
  if (window != nullptr && window->view() != nullptr) prepare_view(*window->view());
  place_->setText(window != nullptr ? window->place_text() : QString());
  filter_->setText(window != nullptr ? window->filter_text() : QString());
  selection_->setText(window != nullptr ? window->selection_text() : QString());
  setWindowTitle(window != nullptr ? window->document().title() + " - " + program_title() : program_title());
  setWindowModified(window != nullptr && window->document().is_modified());
}

// Views are made when their tables are first shown.
void CMainFrame::prepare_view(CCellvaneView& view) {
  if (!view.actions().isEmpty()) return;
  connect(&view, &CCellvaneView::escape_pressed, this, &CMainFrame::escape_pressed);
  for (const Command command :
       {Command::kCut, Command::kCopy, Command::kPaste, Command::kClear, Command::kFillDown,
        Command::kFindByValue, Command::kOpenLink, Command::kInsertRecords, Command::kDuplicateRecords,
        Command::kDeleteRecords}) {
    view.addAction(actions_.of(command));
  }
  for (const Command command :
       {Command::kSortAscending, Command::kSortDescending, Command::kNoSorting, Command::kFreezeFields,
        Command::kUnfreeze, Command::kHideField, Command::kShowAllFields, Command::kRenameField,
        Command::kInsertField, Command::kDeleteField}) {
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

void CMainFrame::remember_file(const QString& path) {
  add_recent_file(profile_.settings().recent_files, {to_utf8(QFileInfo(path).absoluteFilePath()), 0},
                  kMostRecentFiles);
  update_recent_files();
}

void CMainFrame::show_notices(const std::vector<Notice>& notices) {
  for (const Notice& notice : notices) dialogs_.show(notice_text(notice), MessageIcon::kInformation);
}

// ---- opening

void CMainFrame::add_window(std::unique_ptr<DatabaseDocument> document) {
  auto* window = new CDatabaseWindow(std::move(document), profile_.settings(), dialogs_, tabs_);
  connect(window, &CDatabaseWindow::state_changed, this, &CMainFrame::update_state);
  connect(&window->document(), &DatabaseDocument::changed, this, &CMainFrame::update_state);
  window->set_explorer_visible(actions_.of(Command::kShowExplorer)->isChecked());
  tabs_->setCurrentIndex(tabs_->addTab(window, window->document().title()));
  if (window->view() != nullptr) window->view()->setFocus();
  update_state();
}

void CMainFrame::new_database() {
  add_window(std::make_unique<DatabaseDocument>(engine_options(profile_.settings())));
}

bool CMainFrame::open_file(const QString& path) {
  TextImport text;
  text.region = platform::user_regional_settings();
  text.text = suggested_text_settings(to_utf8(path));
  return open_with(path, text);
}

bool CMainFrame::open_text_file(const QString& path, const TextFileSettings& settings) {
  TextImport text;
  text.region = platform::user_regional_settings();
  text.text = settings;
  return open_with(path, text);
}

bool CMainFrame::open_with(const QString& path, const TextImport& text) {
  const std::string file = to_utf8(QFileInfo(path).absoluteFilePath());
  for (int i = 0; i < tabs_->count(); ++i) {
    if (static_cast<CDatabaseWindow*>(tabs_->widget(i))->document().database().file_path() != file) continue;
    tabs_->setCurrentIndex(i);
    return true;
  }
  const Options options = engine_options(profile_.settings());
  std::shared_ptr<const Secret> password;
  while (true) {
    OpenedDatabase opened;
    run_long_task(this, tr("Opening Database"), [&](Progress& progress) {
      opened = open_document(file, text, options, nullptr, progress, password);
    });
    if (opened.cancelled) return false;
    if (opened.error == ErrorCode::kInvalidPassword) {
      if (password != nullptr) dialogs_.show_error(opened.error);
      auto entered = dialogs_.ask_password(file);
      if (!entered) return false;
      password = std::make_shared<const Secret>(*std::move(entered));
      continue;
    }
    if (opened.error != ErrorCode::kOk) {
      dialogs_.show_error(opened.error);
      return false;
    }
    const std::vector<Notice> notices = opened.notices;
    add_window(std::make_unique<DatabaseDocument>(std::move(opened), options));
    remember_file(path);
    show_notices(notices);
    return true;
  }
}

void CMainFrame::open_chosen_file() {
  const QString path = dialogs_.choose_file_to_open({tr("Open"), kOpenFilter, {}, {}});
  if (!path.isEmpty()) open_file(path);
}

void CMainFrame::open_chosen_text_file() {
  const QString path = dialogs_.choose_file_to_open({tr("Open Text File"), kTextFilter, {}, {}});
  if (path.isEmpty()) return;
  COpenTextFileDlg dialog(path, this);
  if (dialog.exec() == QDialog::Accepted) open_text_file(path, dialog.settings());
}

// ---- saving and closing

bool CMainFrame::save(CDatabaseWindow& window) {
  DatabaseDocument& document = window.document();
  if (!document.has_own_file()) return save_as(window, false);
  return save_to(window, to_qt(document.database().file_path()), false);
}

bool CMainFrame::save_as(CDatabaseWindow& window, bool as_copy) {
  const QString present = to_qt(window.document().database().file_path());
  const QFileInfo info(present.isEmpty() ? to_qt(window.document().database().name()) : present);
  const FileChoice choice{as_copy ? tr("Save Database Copy As") : tr("Save As"), kDatabaseFilter,
                          QDir(info.path()).filePath(info.completeBaseName() + ".rvb"), "rvb"};
  const QString path = dialogs_.choose_file_to_save(choice);
  return !path.isEmpty() && save_to(window, path, as_copy);
}

bool CMainFrame::save_to(CDatabaseWindow& window, const QString& path, bool as_copy) {
  DatabaseDocument& document = window.document();
  SaveSettings settings;
  settings.as_copy = as_copy;
  SaveResult result;
  run_long_task(this, tr("Saving Database"), [&](Progress& progress) {
    result = document.file().save(to_utf8(QFileInfo(path).absoluteFilePath()), settings, document.options(),
                                  progress);
  });
  if (result.error != ErrorCode::kOk) dialogs_.show_error(result.error);
  const bool saved = result.error == ErrorCode::kOk && !result.cancelled;
  if (saved && !as_copy) remember_file(path);
  show_notices(result.notices);
  update_state();
  return saved;
}

bool CMainFrame::may_close(CDatabaseWindow& window) {
  if (!window.document().is_modified()) return true;
  const std::string name = to_utf8(window.document().title());
  switch (dialogs_.ask_save(to_qt(fill_inserts("Save changes to %1!s!?", {std::string_view(name)})))) {
    case SaveAnswer::kSave:
      return save(window);
    case SaveAnswer::kDiscard:
      return true;
    case SaveAnswer::kCancel:
      break;
  }
  return false;
}

void CMainFrame::close_window(int index) {
  auto* window = static_cast<CDatabaseWindow*>(tabs_->widget(index));
  if (window == nullptr || !may_close(*window)) return;
  tabs_->removeTab(index);
  delete window;
  update_state();
}

void CMainFrame::closeEvent(QCloseEvent* event) {
  for (int i = 0; i < tabs_->count(); ++i) {
    tabs_->setCurrentIndex(i);
    if (may_close(*current_window())) continue;
    event->ignore();
    return;
  }
  keep_placement();
  event->accept();
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void CMainFrame::dropEvent(QDropEvent* event) {
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) open_file(url.toLocalFile());
  }
}

// ---- exchange

void CMainFrame::import_table() {
  const QString path = dialogs_.choose_file_to_open({tr("Import Table"), kTextFilter, {}, {}});
  if (path.isEmpty()) return;
  COpenTextFileDlg dialog(path, this);
  if (dialog.exec() != QDialog::Accepted) return;
  CDatabaseWindow& window = *current_window();
  Database& database = window.document().database();
  TextImport settings;
  settings.region = window.document().region();
  settings.text = dialog.settings();
  settings.table_name = database.free_name(database.root(), to_utf8(QFileInfo(path).completeBaseName()));
  settings.max_records = database.max_records();
  settings.threads = window.document().options().used_processor_cores;
  TextImportResult result;
  run_long_task(this, tr("Import Table"),
                [&](Progress& progress) { result = import_text_file(to_utf8(path), settings, progress); });
  if (result.status == Status::kCancelled) return;
  ErrorCode error = result.error;
  if (result.table != nullptr) {
    CWorkSheet* table = result.table.get();
    error = database.add_table(database.root(), result.table);
    if (error == ErrorCode::kOk) window.show_table(*table);
  }
  if (error != ErrorCode::kOk) dialogs_.show_error(error);
  show_notices(result.notices);
}

void CMainFrame::export_table() {
  CCellvaneView* view = current_window()->view();
  DatabaseDocument& document = current_window()->document();
  CSaveTextFileDlg dialog(view->table(), document.options().text_export_row_limit, this);
  if (dialog.exec() != QDialog::Accepted) return;
  const QString name = to_qt(view->table().name()) + ".csv";
  const QString path = dialogs_.choose_file_to_save({tr("Export Table"), kTextFilter, name, "csv"});
  if (path.isEmpty()) return;
  TextExport settings = dialog.settings();
  settings.positions = view->model().records();
  settings.numbers = {document.region().decimal_separator, std::string()};
  settings.threads = document.options().used_processor_cores;
  TextExportResult result;
  run_long_task(this, tr("Export Table"), [&](Progress& progress) {
    result = export_text(view->table(), to_utf8(path), settings, progress);
  });
  if (result.error != ErrorCode::kOk) dialogs_.show_error(result.error);
  show_notices(result.notices);
}

void CMainFrame::compact() {
  DatabaseDocument& document = current_window()->document();
  CompactResult result;
  run_long_task(this, tr("Compact Database"), [&](Progress& progress) {
    result = compact_database(document.database(), document.file(), document.options(), progress);
  });
  if (result.save.cancelled) return;
  if (result.save.error != ErrorCode::kOk) return dialogs_.show_error(result.save.error);
  dialogs_.show(message(result.message), MessageIcon::kInformation);
  update_state();
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
  // On this thread: the results change what is in view.
  const RecalculationResult result =
      recalculate(document.database(), settings, document.formula_settings(), Progress::none());
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
  update_recent_files();
  actions_.of(Command::kDarkMode)->setChecked(profile_.settings().toolbar_options.dark_mode);
  set_dark_colors(profile_.settings().toolbar_options.dark_mode);
  actions_.update_icons();
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

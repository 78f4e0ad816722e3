#include "ui/main_frame.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "platform/file.h"
#include "ui/dialogs/open_text_file_dlg.h"
#include "ui/dialogs/options_dlg.h"
#include "ui/icons.h"
#include "ui/long_task.h"
#include "ui/text.h"
#include "ui/theme.h"

namespace rowvane {
namespace {

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
    if (current_pane() != nullptr) current_pane()->setFocus();
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

// ---- the state of the commands and the bars

CDatabaseWindow* CMainFrame::current_window() const {
  return static_cast<CDatabaseWindow*>(tabs_->currentWidget());
}

TablePane* CMainFrame::current_pane() const {
  const CDatabaseWindow* window = current_window();
  return window != nullptr ? window->pane() : nullptr;
}

GridCommands* CMainFrame::current_grid() const {
  const TablePane* pane = current_pane();
  return pane != nullptr ? pane->view().grid_commands() : nullptr;
}

int CMainFrame::window_count() const {
  return tabs_->count();
}

bool CMainFrame::has(Needs needs) const {
  CDatabaseWindow* window = current_window();
  const TablePane* pane = current_pane();
  const bool has_records = pane != nullptr && pane->model().rowCount() > 0;
  if (needs == Needs::kNothing) return true;
  if (window == nullptr) return false;
  switch (needs) {
    case Needs::kTable:
      return pane != nullptr;
    case Needs::kRecords:
      return has_records;
    case Needs::kGrid:
      return current_grid() != nullptr;
    case Needs::kGridRecords:
      return has_records && current_grid() != nullptr;
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
  TablePane* pane = current_pane();
  find_bar_->set_pane(pane);
  place_->setText(pane != nullptr ? pane->place_text() : QString());
  filter_->setText(pane != nullptr ? pane->filter_text() : QString());
  selection_->setText(pane != nullptr ? pane->selection_text() : QString());
  setWindowTitle(window != nullptr ? window->document().title() + "[*] - " + program_title()
                                   : program_title());
  setWindowModified(window != nullptr && window->document().is_modified());
}

PaneMenus CMainFrame::pane_menus() const {
  const auto actions = [this](std::initializer_list<Command> commands) {
    QList<QAction*> menu;
    for (const Command command : commands) menu << actions_.of(command);
    return menu;
  };
  return {actions({Command::kCut, Command::kCopy, Command::kPaste, Command::kClear, Command::kFillDown,
                   Command::kFindByValue, Command::kOpenLink, Command::kInsertRecords,
                   Command::kDuplicateRecords, Command::kDeleteRecords}),
          actions({Command::kSetFilter, Command::kClearFilter, Command::kSortAscending,
                   Command::kSortDescending, Command::kNoSorting, Command::kFreezeFields, Command::kUnfreeze,
                   Command::kHideField, Command::kShowAllFields, Command::kRenameField, Command::kInsertField,
                   Command::kDeleteField})};
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
  auto* window = new CDatabaseWindow(std::move(document), profile_.settings(), dialogs_, pane_menus(), tabs_);
  connect(window, &CDatabaseWindow::state_changed, this, &CMainFrame::update_state);
  connect(&window->document(), &DatabaseDocument::changed, this, &CMainFrame::update_state);
  connect(&window->document(), &DatabaseDocument::saved, this, &CMainFrame::update_state);
  window->document().search_options() = search_options(profile_.settings());
  recovery_.watch_recovered(window->document(), recovery_copy);
  window->set_explorer_visible(actions_.of(Command::kShowExplorer)->isChecked());
  tabs_->setCurrentIndex(tabs_->addTab(window, icon("table"), window->document().title()));
  if (window->pane() != nullptr) window->pane()->setFocus();
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
    current_pane()->filter_by(dialog.filters());
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
  return window == nullptr || window->pane() == nullptr || window->pane()->finish_editing();
}

void CMainFrame::close_window(int index) {
  CDatabaseWindow* window = window_at(index);
  if (window == nullptr) return;
  if (!finish_editing(window) || !files_.may_close(window->document())) return;
  recovery_.forget(window->document());
  tabs_->removeTab(index);
  delete window;
  update_state();
}

void CMainFrame::closeEvent(QCloseEvent* event) {
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
  for (int i = 0; i < tabs_->count(); ++i) {
    DatabaseDocument& document = window_at(i)->document();
    if (document.open().has_database_file() && document.is_modified() && !document.file().is_read_only())
      files_.save(document);
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
  if (!dialogs_.accept(check_recalculation(document.database(), settings, document.formula_settings())))
    return;
  RecalculationResult result;
  run_long_change(tabs_, tr("Update All Calculated Fields"), document, [&](Progress& progress) {
    result = recalculate(document.database(), settings, document.formula_settings(), progress);
  });
  dialogs_.report(result);
}

void CMainFrame::sort(bool descending) {
  const bool with_shift = QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier);
  if (TablePane* pane = current_pane()) pane->sort_by_current_field(descending, with_shift);
}

// ---- the profile

void CMainFrame::load_profile() {
  const QString path =
      dialogs_.choose_file_to_open({to_qt(kLoadProfileTitle), to_qt(kProfileFilter), {}, {}});
  if (path.isEmpty()) return;
  if (dialogs_.report(profile_.load_other(to_utf8(path)))) follow_settings();
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
    if (TablePane* pane = window_at(i)->pane()) pane->view().refresh();
  }
}

void CMainFrame::save_profile_as() {
  const QString path =
      dialogs_.choose_file_to_save({to_qt(kSaveProfileTitle), to_qt(kProfileFilter), "settings.xml", "xml"});
  if (path.isEmpty()) return;
  dialogs_.report(profile_.save_as(to_utf8(path)));
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

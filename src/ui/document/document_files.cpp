#include "ui/document/document_files.h"

#include <QDir>
#include <QFileInfo>
#include <array>
#include <utility>

#include "app/profile/engine_options.h"
#include "core/messages/messages.h"
#include "exchange/text/text_export.h"
#include "exchange/text/text_import.h"
#include "ui/dialogs/open_text_file_dlg.h"
#include "ui/dialogs/save_text_file_dlg.h"
#include "ui/document/field_widths.h"
#include "ui/long_task.h"
#include "ui/text.h"

namespace rowvane {
namespace {

constexpr size_t kMostRecentFiles = 16;
// Of the filters of a database that is saved.
constexpr std::array kFilterVariants = {SaveVariant::kAuto, SaveVariant::kZip64, SaveVariant::kZip32};

QString tr(const char* text) {
  return QObject::tr(text);
}

// In the system's own writing, as the rest of the program has paths.
std::string absolute_path(const QString& path) {
  return to_utf8(QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath()));
}

QString database_filters() {
  return tr("Rowvane database (*.rvb)") + ";;" + tr("Rowvane database, ZIP64 (*.rvb)") + ";;" +
         tr("Rowvane database, ZIP32 (*.rvb)");
}

// "*.csv *.txt"
QString patterns_of(const FileFormat& format) {
  QStringList patterns;
  for (const std::string_view extension : format.extensions) patterns << "*." + to_qt(extension);
  return patterns.join(' ');
}

// "Text files (*.csv *.txt)"
QString filter_of(const FileFormat& format) {
  return tr(std::string(format.caption).c_str()) + " (" + patterns_of(format) + ")";
}

QString text_filter() {
  return filter_of(text_format()) + ";;" + tr("All files (*)");
}

QString open_filters() {
  QStringList all;
  QStringList filters;
  for (const FileFormat& format : file_formats()) {
    if (!format.can_open()) continue;
    all << patterns_of(format);
    filters << filter_of(format);
  }
  filters.prepend(tr("All that can be opened") + " (" + all.join(' ') + ")");
  filters << tr("All files (*)");
  return filters.join(";;");
}

}  // namespace

// ---- opening

QString DocumentFiles::choose_file_to_open() {
  return dialogs_.choose_file_to_open({tr("Open"),
                                       open_filters(),
                                       to_qt(settings_.file_dialogs.recent_document_folder),
                                       {},
                                       &settings_.file_dialogs.open_database_file_index});
}

QString DocumentFiles::choose_text_file(const QString& title) {
  return dialogs_.choose_file_to_open(
      {title, text_filter(), to_qt(settings_.file_dialogs.recent_document_folder), {}});
}

void DocumentFiles::remember_file(const QString& path) {
  settings_.file_dialogs.recent_document_folder = absolute_path(QFileInfo(path).path());
  if (settings_.check_box_options.add_recently_used_files)
    add_recent_file(settings_.recent_files, {absolute_path(path), 0}, kMostRecentFiles);
}

std::shared_ptr<const Secret> DocumentFiles::ask_password(const std::string& path) {
  std::optional<Secret> entered = dialogs_.ask_password(path);
  return entered ? std::make_shared<const Secret>(*std::move(entered)) : nullptr;
}

void DocumentFiles::run(const QString& caption, const std::function<void(Progress&)>& work) {
  const bool shown = settings_.check_box_options.show_save_load_progress;
  run_long_task(&window_, caption, work, shown ? ProgressBox::kShown : ProgressBox::kHidden);
}

// A file that anyone may read is opened read-only when the user has no password for it.
DatabaseOpening DocumentFiles::open_with(const RecognizedFile& file, const std::string& shown_path) {
  const Options options = engine_options(settings_);
  std::shared_ptr<const Secret> password;
  while (true) {
    DatabaseOpening opened;
    QuestionsOnWindow questions(dialogs_, window_);
    run(tr("Opening Database"), [&](Progress& progress) {
      opened = OpenDatabase::open(file, options, &questions, progress, password);
    });
    if (opened.cancelled) return opened;
    const bool is_locked = opened.failure == ErrorCode::kInvalidPassword;
    if (!is_locked && (opened.database == nullptr || !opened.database->is_read_only())) return opened;
    if (password != nullptr) dialogs_.report(ErrorCode::kInvalidPassword);
    password = ask_password(shown_path);
    if (password != nullptr) continue;
    opened.cancelled = opened.database == nullptr;
    return opened;
  }
}

void DocumentFiles::ask_about_container(OpenDatabase& database) {
  if (database.has_older_container() && dialogs_.ask(message(MessageId::kConvertToZip64)))
    database.set_save_variant(SaveVariant::kZip64);
}

std::unique_ptr<DatabaseDocument> DocumentFiles::open(const QString& path,
                                                      const std::optional<TextFileSettings>& text) {
  RecognizedFile file = recognize_file(absolute_path(path));
  if (text) {
    file.take_as(text_format());
    file.text = *text;
  }
  DatabaseOpening opened = open_with(file, file.path);
  if (opened.database != nullptr) {
    if (!opened.database->has_database_file() && settings_.check_box_options.auto_col_width_on_import)
      fit_field_widths(opened.database->database(), window_.font());
    remember_file(path);
    ask_about_container(*opened.database);
  }
  return dialogs_.report(opened) ? std::make_unique<DatabaseDocument>(std::move(opened.database)) : nullptr;
}

// Of a file that the user did not choose, only a failure is told.
std::unique_ptr<DatabaseDocument> DocumentFiles::open_copy(const RecoveryCopy& copy) {
  DatabaseOpening opened = open_with(recognize_file(to_utf8(copy.path)), to_utf8(copy.title));
  opened.notices.clear();
  if (!dialogs_.report(opened)) return nullptr;
  opened.database->restore_origin(to_utf8(copy.original), format_named(to_utf8(copy.format)));
  return std::make_unique<DatabaseDocument>(std::move(opened.database));
}

// ---- saving

void DocumentFiles::run_save(DatabaseDocument& document, const QString& caption,
                             const std::function<void(Progress&)>& work) {
  document.database().before_change();
  document.database().clean_pools();
  run(caption, work);
}

bool DocumentFiles::save(DatabaseDocument& document) {
  if (!document.open().can_save_back()) return save_as(document);
  const Check check = document.open().check_save_back();
  if (!check.passes()) return dialogs_.ask(check.refusal.text()) && save_as(document);
  if (!dialogs_.accept(check)) return false;
  const bool as_database = document.open().has_database_file();
  Outcome outcome;
  run_save(document, as_database ? tr("Saving Database") : tr("Saving Text File"),
           [&](Progress& progress) { outcome = document.open().save_back(progress); });
  const bool saved = tell_result(document, outcome);
  if (saved && as_database) remember_file(to_qt(document.open().path()));
  return saved;
}

std::optional<DocumentFiles::Target> DocumentFiles::choose_target(const DatabaseDocument& document,
                                                                  const QString& title) {
  const std::string& path = document.database().file_path();
  const QFileInfo info(path.empty() ? QDir(to_qt(settings_.file_dialogs.recent_document_folder))
                                          .filePath(to_qt(document.database().name()))
                                    : to_qt(path));
  const QString name = QDir(info.path()).filePath(info.completeBaseName() + ".rvb");
  int& filter = settings_.file_dialogs.save_database_file_index;
  Target target;
  target.path = dialogs_.choose_file_to_save({title, database_filters(), name, "rvb", &filter});
  if (target.path.isEmpty()) return std::nullopt;
  const size_t chosen = static_cast<size_t>(filter) - 1;
  target.variant = chosen < kFilterVariants.size() ? kFilterVariants[chosen] : SaveVariant::kAuto;
  return dialogs_.accept(check_save_variant(target.variant)) ? std::optional(target) : std::nullopt;
}

bool DocumentFiles::save_as(DatabaseDocument& document) {
  const std::optional<Target> target = choose_target(document, tr("Save As"));
  return target && save_to(document, *target, false);
}

bool DocumentFiles::save_copy_as(DatabaseDocument& document) {
  const std::optional<Target> target = choose_target(document, tr("Save Database Copy As"));
  return target && save_to(document, *target, true);
}

bool DocumentFiles::save_to(DatabaseDocument& document, const Target& target, bool as_copy) {
  SaveSettings settings;
  settings.as_copy = as_copy;
  settings.variant = target.variant;
  Outcome outcome;
  run_save(document, tr("Saving Database"), [&](Progress& progress) {
    outcome = document.open().save(absolute_path(target.path), settings, progress);
  });
  const bool saved = tell_result(document, outcome);
  if (saved && !as_copy) remember_file(target.path);
  return saved;
}

bool DocumentFiles::tell_result(DatabaseDocument& document, const Outcome& outcome) {
  if (outcome.is_done()) document.tell_saved();
  return dialogs_.report(outcome);
}

bool DocumentFiles::may_close(DatabaseDocument& document) {
  if (!document.is_modified()) return true;
  const std::string name = to_utf8(document.title());
  switch (dialogs_.ask_save(to_qt(fill_inserts("Save changes to %1!s!?", {std::string_view(name)})))) {
    case SaveAnswer::kSave:
      return save(document);
    case SaveAnswer::kDiscard:
      return true;
    case SaveAnswer::kCancel:
      break;
  }
  return false;
}

void DocumentFiles::compact(DatabaseDocument& document) {
  CompactResult result;
  run_save(document, tr("Compact Database"),
           [&](Progress& progress) { result = document.open().compact(progress); });
  if (!dialogs_.report(result)) return;
  dialogs_.show(message(result.message), MessageIcon::kInformation);
  document.tell_saved();
}

// ---- tables in and out

CWorkSheet* DocumentFiles::import_table(DatabaseDocument& document, std::map<size_t, Criterion>& filters) {
  const QString path = choose_text_file(tr("Import Table"));
  if (path.isEmpty()) return nullptr;
  COpenTextFileDlg dialog(path, settings_, dialogs_, &window_);
  if (dialog.exec() != QDialog::Accepted) return nullptr;
  filters = dialog.filters();
  Database& database = document.database();
  TextImport settings;
  settings.region = document.region();
  settings.text = dialog.settings();
  settings.table_name = database.free_name(database.root(), to_utf8(QFileInfo(path).completeBaseName()));
  settings.max_records = database.max_records();
  settings.threads = document.options().used_processor_cores;
  TextImportResult result;
  run(tr("Import Table"),
      [&](Progress& progress) { result = import_text_file(absolute_path(path), settings, progress); });
  if (result.cancelled) return nullptr;
  CWorkSheet* added = result.table.get();
  if (added != nullptr && settings_.check_box_options.auto_col_width_on_import)
    fit_field_widths(*added, window_.font());
  if (added != nullptr) result.failure = database.add_table(database.root(), result.table);
  return dialogs_.report(result) ? added : nullptr;
}

void DocumentFiles::export_table(DatabaseDocument& document, const CWorkSheet& table,
                                 std::optional<std::vector<uint32_t>> records) {
  const bool is_protected = document.file().protection() != nullptr;
  if (!dialogs_.accept(check_other_format(is_protected, true))) return;
  CSaveTextFileDlg dialog(table, settings_, dialogs_, &window_);
  if (dialog.exec() != QDialog::Accepted) return;
  const QString name =
      QDir(to_qt(settings_.file_dialogs.recent_document_folder)).filePath(to_qt(table.name()) + ".csv");
  const QString path = dialogs_.choose_file_to_save({tr("Export Table"), text_filter(), name, "csv"});
  if (path.isEmpty()) return;
  const std::string target = absolute_path(path);
  const ExportTarget named = export_target(target);
  if (!dialogs_.accept(named.refusal)) return;
  TableExport settings;
  settings.text = dialog.settings();
  settings.fields = settings.text.fields;
  settings.positions = std::move(records);
  settings.text.numbers = {document.region().decimal_separator, std::string()};
  settings.threads = document.options().used_processor_cores;
  TableExportResult result;
  run(tr("Export Table"),
      [&](Progress& progress) { result = named.format->export_table(table, target, settings, progress); });
  dialogs_.report(result);
}

}  // namespace rowvane

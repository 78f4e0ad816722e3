#include "app/database/open_database.h"

#include "exchange/text/text_export.h"
#include "file/document.h"
#include "platform/paths.h"

namespace rowvane {
namespace {

OpenedDatabase new_database(const Options& options, std::string name) {
  OpenedDatabase made;
  made.database = std::make_unique<Database>(std::move(name), options);
  made.file = std::make_unique<DatabaseFile>(*made.database);
  return made;
}

}  // namespace

OpenDatabase::OpenDatabase(const Options& options, std::string name)
    : OpenDatabase(new_database(options, std::move(name)), options, TextFileSettings()) {}

OpenDatabase::OpenDatabase(OpenedDatabase opened, const Options& options, const TextFileSettings& text)
    : options_(options),
      region_(platform::user_regional_settings()),
      database_(std::move(opened.database)),
      file_(std::move(opened.file)),
      formulas_(
          std::make_unique<FormulaHooks>(*database_, FormulaSettings(), options_, DisplayRegion(region_))),
      criteria_(std::make_unique<CurrentCriteria>(*database_)),
      notices_(std::move(opened.notices)),
      text_settings_(text) {
  // A question about saving, see has_older_container.
  std::erase(notices_, UserText(MessageId::kConvertToZip64));
  database_->set_hooks(formulas_.get());
}

OpenDatabase::~OpenDatabase() {
  database_->set_hooks(nullptr);
}

DatabaseOpening OpenDatabase::open(const std::string& path, const TextFileSettings& text,
                                   const Options& options, Questions* questions, Progress& progress,
                                   std::shared_ptr<const Secret> password) {
  TextImport import;
  import.text = text;
  import.region = platform::user_regional_settings();
  OpenedDatabase opened = open_document(path, import, options, questions, progress, std::move(password));
  DatabaseOpening result;
  result.failure = opened.failure;
  result.cancelled = opened.cancelled;
  if (!opened.is_done()) return result;
  result.database.reset(new OpenDatabase(std::move(opened), options, text));
  result.notices = result.database->notices();
  return result;
}

std::unique_ptr<OpenDatabase> OpenDatabase::create(const std::string& path, const Options& options) {
  auto made = std::make_unique<OpenDatabase>(options, platform::file_stem(path));
  made->database_->set_file(path, FileFormat::kNative);
  return made;
}

void OpenDatabase::take_options(const Options& options) {
  options_ = options;
  database_->undo_log().set_limit(options.undo_level);
  formulas_->set_options(options);
}

std::string OpenDatabase::title() const {
  return path().empty() ? database_->name() : platform::file_name(path());
}

Outcome OpenDatabase::save(const std::string& path, SaveSettings settings, Progress& progress) {
  if (settings.variant == SaveVariant::kAuto) settings.variant = save_variant_;
  Outcome outcome = file_->save(path, settings, options_, progress);
  if (outcome.is_done() && !settings.as_copy) save_variant_ = SaveVariant::kAuto;
  return outcome;
}

CompactResult OpenDatabase::compact(Progress& progress) {
  return compact_database(*database_, *file_, options_, progress);
}

Check OpenDatabase::check_save_back() const {
  if (has_database_file()) return {};
  if (file_->protection() != nullptr) return MessageId::kUseNativeFormat;
  return check_text_export(*database_->tables().front());
}

Outcome OpenDatabase::save_back(Progress& progress) {
  return has_database_file() ? save(path(), {}, progress) : save_as_text(progress);
}

// The first table is the one that came from the file.
Outcome OpenDatabase::save_as_text(Progress& progress) {
  TextExport settings;
  settings.text = text_settings_;
  settings.numbers = {region_.decimal_separator, std::string()};
  settings.threads = options_.used_processor_cores;
  TextExportResult exported = export_text(*database_->tables().front(), path(), settings, progress);
  if (exported.is_done()) database_->mark_saved();
  return std::move(exported.outcome());
}

void OpenDatabase::restore_origin(const std::string& original, FileFormat format) {
  database_->set_file(original, original.empty() ? FileFormat::kNone : format);
  database_->set_name(original.empty() ? "New Database" : platform::file_stem(original));
  database_->mark_modified();
  text_settings_ = suggested_text_settings(original);
}

}  // namespace rowvane

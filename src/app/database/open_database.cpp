#include "app/database/open_database.h"

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
    : OpenDatabase(new_database(options, std::move(name)), options, nullptr, TextFileSettings()) {}

OpenDatabase::OpenDatabase(OpenedDatabase opened, const Options& options, const FileFormat* format,
                           const TextFileSettings& text)
    : options_(options),
      region_(platform::user_regional_settings()),
      database_(std::move(opened.database)),
      file_(std::move(opened.file)),
      formulas_(
          std::make_unique<FormulaHooks>(*database_, FormulaSettings(), options_, DisplayRegion(region_))),
      criteria_(std::make_unique<CurrentCriteria>(*database_)),
      format_(format),
      notices_(std::move(opened.notices)),
      text_settings_(text) {
  // A question about saving, see has_older_container.
  std::erase(notices_, UserText(MessageId::kConvertToZip64));
  database_->set_hooks(formulas_.get());
}

OpenDatabase::~OpenDatabase() {
  database_->set_hooks(nullptr);
}

DatabaseOpening OpenDatabase::open(const RecognizedFile& file, const Options& options, Questions* questions,
                                   Progress& progress, std::shared_ptr<const Secret> password) {
  DatabaseOpening result;
  if (!file.refusal.empty()) {
    result.failure = file.refusal;
    return result;
  }
  OpenedDatabase opened = file.format->open({file, options, questions, progress, std::move(password)});
  result.failure = opened.failure;
  result.cancelled = opened.cancelled;
  if (!opened.is_done()) return result;
  result.database.reset(new OpenDatabase(std::move(opened), options, file.format, file.text));
  result.notices = result.database->notices();
  return result;
}

std::unique_ptr<OpenDatabase> OpenDatabase::create(const std::string& path, const Options& options) {
  auto made = std::make_unique<OpenDatabase>(options, platform::file_stem(path));
  made->database_->set_file_path(path);
  made->format_ = &database_format();
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
  if (!outcome.is_done() || settings.as_copy) return outcome;
  save_variant_ = SaveVariant::kAuto;
  if (database_->file_path() == path) format_ = &database_format();
  return outcome;
}

CompactResult OpenDatabase::compact(Progress& progress) {
  return compact_database(*database_, *file_, options_, progress);
}

Check OpenDatabase::check_save_back() const {
  if (file_->protection() != nullptr && !has_database_file()) return MessageId::kUseNativeFormat;
  return format_->check_save(*this);
}

Outcome OpenDatabase::save_back(Progress& progress) {
  return format_->save(*this, progress);
}

void OpenDatabase::restore_origin(const std::string& original, const FileFormat* format) {
  database_->set_file_path(original);
  format_ = original.empty() ? nullptr : format;
  database_->set_name(original.empty() ? "New Database" : platform::file_stem(original));
  database_->mark_modified();
  text_settings_ = recognize_file(original).text;
}

}  // namespace rowvane

#include "file/document.h"

#include <array>

#include "platform/paths.h"

namespace rowvane {

TextFileSettings suggested_text_settings(const std::string& path) {
  TextFileSettings settings;
  const std::string extension = platform::extension(path);
  if (extension == "tsv" || extension == "tab") settings.separator = '\t';
  return settings;
}

bool is_database_file(const std::string& path) {
  constexpr std::string_view kZipStart = "PK";
  platform::InputFile file;
  std::array<char, 2> start{};
  size_t count = 0;
  return file.open(path) == platform::FileStatus::kOk &&
         file.read_at(0, std::as_writable_bytes(std::span(start)), count) == platform::FileStatus::kOk &&
         std::string_view(start.data(), count) == kZipStart;
}

namespace {

OpenedDatabase open_text(const std::string& path, const TextImport& text, const Options& options,
                         Progress& progress) {
  OpenedDatabase opened;
  TextImport settings = text;
  settings.table_name = platform::file_stem(path);
  settings.max_records = options.max_records;
  settings.threads = options.used_processor_cores;
  progress.begin("Opening Text File");
  TextImportResult imported = import_text_file(path, settings, progress);
  std::unique_ptr<CWorkSheet> table = std::move(imported.table);
  opened.outcome() = std::move(imported);
  if (!opened.is_done()) return opened;
  opened.database = std::make_unique<Database>(platform::file_stem(path), options);
  opened.failure = opened.database->add_table(opened.database->root(), table);
  opened.database->undo_log().clear();
  opened.database->mark_saved();
  opened.database->set_file(path, FileFormat::kText);
  opened.file = std::make_unique<DatabaseFile>(*opened.database);
  return opened;
}

}  // namespace

OpenedDatabase open_document(const std::string& path, const TextImport& text, const Options& options,
                             Questions* questions, Progress& progress,
                             std::shared_ptr<const Secret> password) {
  const std::string extension = platform::extension(path);
  const bool database = extension == "rvb" || extension == "zip" || is_database_file(path);
  return database ? open_database(path, options, questions, progress, std::move(password))
                  : open_text(path, text, options, progress);
}

}  // namespace rowvane

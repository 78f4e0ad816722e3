#include "app/formats/text_format.h"

#include "app/database/open_database.h"
#include "exchange/text/text_import.h"
#include "platform/paths.h"

namespace rowvane {
namespace {

TextExport text_export_of(const TableExport& settings) {
  TextExport text = settings.text;
  text.fields = settings.fields;
  text.positions = settings.positions;
  text.threads = settings.threads;
  return text;
}

}  // namespace

TextFileSettings text_settings_of_name(const std::string& path) {
  TextFileSettings settings;
  const std::string extension = platform::extension(path);
  if (extension == "tsv" || extension == "tab") settings.separator = '\t';
  return settings;
}

OpenedDatabase open_text_file(const OpenRequest& request) {
  const std::string& path = request.file.path;
  TextImport settings;
  settings.text = request.file.text;
  settings.region = platform::user_regional_settings();
  settings.table_name = platform::file_stem(path);
  settings.max_records = request.options.max_records;
  settings.threads = request.options.used_processor_cores;
  request.progress.begin("Opening Text File");
  TextImportResult imported = import_text_file(path, settings, request.progress);
  std::unique_ptr<CWorkSheet> table = std::move(imported.table);
  OpenedDatabase opened;
  opened.outcome() = imported.outcome();
  if (!opened.is_done()) return opened;
  opened.database = std::make_unique<Database>(platform::file_stem(path), request.options);
  opened.failure = opened.database->add_table(opened.database->root(), table);
  opened.database->undo_log().clear();
  opened.database->mark_saved();
  opened.database->set_file_path(path);
  opened.file = std::make_unique<DatabaseFile>(*opened.database);
  return opened;
}

Check check_save_as_text(const OpenDatabase& open) {
  return check_text_export(*open.database().tables().front());
}

Outcome save_as_text(OpenDatabase& open, Progress& progress) {
  TextExport settings;
  settings.text = open.text_settings();
  settings.numbers = {open.region().decimal_separator, std::string()};
  settings.threads = open.options().used_processor_cores;
  TextExportResult exported = export_text(*open.database().tables().front(), open.path(), settings, progress);
  if (exported.is_done()) open.database().mark_saved();
  return std::move(exported.outcome());
}

Check check_export_as_text(const CWorkSheet& table, const TableExport& settings) {
  return check_text_export_settings(table, text_export_of(settings));
}

TableExportResult export_as_text(const CWorkSheet& table, const std::string& target,
                                 const TableExport& settings, Progress& progress) {
  return export_text(table, target, text_export_of(settings), progress);
}

}  // namespace rowvane

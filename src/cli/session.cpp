#include "cli/session.h"

#include <CLI/CLI.hpp>

#include "cli/report.h"
#include "platform/paths.h"

namespace rowvane::cli {

void SaveOptions::add_to(CLI::App& command) {
  command.add_option("-o,--output", output, "Save here and leave DATABASE as it was")->group("Saving");
  command.add_option("--container", container, "auto, zip64 or zip32")
      ->check(CLI::IsMember({"auto", "zip64", "zip32"}))
      ->group("Saving");
  command.add_option("--level", level, "How hard to compress, 1 (fast) to 9 (small)")
      ->check(CLI::Range(1, 9))
      ->group("Saving");
}

int text_import_for(const std::string& path, const TextOptions& text, TextImport& settings) {
  settings.region = platform::user_regional_settings();
  settings.text = suggested_text_settings(path);
  const std::string wrong = text.apply(settings.text);
  return wrong.empty() ? kDone : fail_usage(wrong);
}

int Session::open(const std::string& path, const TextOptions& text) {
  TextImport settings;
  if (const int status = text_import_for(path, text, settings); status != kDone) return status;
  return adopt(open_document(path, settings, options_, &questions_, progress_, global_.password));
}

int Session::open_or_create(const std::string& path, const TextOptions& text) {
  if (platform::file_exists(path)) return open(path, text);
  database_ = std::make_unique<Database>(platform::file_stem(path), options_);
  file_ = std::make_unique<DatabaseFile>(*database_);
  database_->set_file(path, FileFormat::kNative);
  attach_formulas();
  is_new_ = true;
  return kDone;
}

int Session::adopt(OpenedDatabase opened) {
  if (opened.cancelled) return fail(Status::kCancelled);
  if (opened.error != ErrorCode::kOk) return fail(opened.error);
  // Whether to convert an older container is asked when saving.
  std::erase(opened.notices, Notice(MessageId::kConvertToZip64));
  warn(opened.notices);
  database_ = std::move(opened.database);
  file_ = std::move(opened.file);
  attach_formulas();
  return kDone;
}

void Session::attach_formulas() {
  formulas_ = std::make_unique<FormulaHooks>(*database_, FormulaSettings(), options_,
                                             DisplayRegion(platform::user_regional_settings()));
  database_->set_hooks(formulas_.get());
}

CWorkSheet* Session::take_table(std::vector<std::string>& arguments) {
  CWorkSheet* named = arguments.empty() ? nullptr : database_->find_table(arguments.front());
  if (named != nullptr) {
    arguments.erase(arguments.begin());
    return named;
  }
  const std::vector<CWorkSheet*> tables = database_->tables();
  if (tables.size() == 1) return tables.front();
  if (arguments.empty()) {
    fail("name a table: the database holds " + std::to_string(tables.size()));
  } else {
    fail(ErrorCode::kInvalidPath);
  }
  return nullptr;
}

int Session::find_fields(const CWorkSheet& table, const std::vector<std::string>& names,
                         std::vector<size_t>& fields) {
  for (const std::string& name : names) {
    const auto found = table.find_field(name);
    if (!found) return fail("there is no field \"" + name + "\" in " + table.path());
    fields.push_back(*found);
  }
  for (size_t i = 0; names.empty() && i < table.field_count(); ++i) fields.push_back(i);
  return kDone;
}

// Whether a file of the older container becomes a ZIP64 one.
bool Session::is_to_be_converted(const SaveOptions& save) {
  return save.container == "auto" && !is_new_ && database_->file_format() == FileFormat::kNative &&
         file_->variant() == ZipVariant::kZip32 && questions_.ask(message(MessageId::kConvertToZip64));
}

int Session::save(const SaveOptions& save) {
  if (save.output.empty() && database_->file_format() != FileFormat::kNative) {
    return fail("the database comes from a file of another format: name the file to save with -o");
  }
  if (file_->is_read_only()) warn("the database is open read-only: saving it needs its password");
  SaveSettings settings;
  settings.level = save.level;
  if (save.container == "zip32") settings.variant = SaveVariant::kZip32;
  if (save.container == "zip64" || is_to_be_converted(save)) settings.variant = SaveVariant::kZip64;
  const std::string question = check_save_variant(settings.variant);
  if (!question.empty() && !questions_.ask(question)) return fail("not saved: " + question);
  database_->clean_pools();
  const std::string& path = save.output.empty() ? database_->file_path() : save.output;
  const SaveResult result = file_->save(path, settings, options_, progress_);
  if (result.cancelled) return fail(Status::kCancelled);
  if (result.error != ErrorCode::kOk) return fail(result.error);
  warn(result.notices);
  return kDone;
}

}  // namespace rowvane::cli

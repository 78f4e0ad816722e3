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

int Session::open(const std::string& path, const TextOptions& text) {
  RecognizedFile file = recognize_file(path);
  if (const std::string wrong = text.apply(file); !wrong.empty()) return fail_usage(wrong);
  DatabaseOpening opened = OpenDatabase::open(file, options_, &questions_, progress_, global_.password);
  open_ = std::move(opened.database);
  return report(opened);
}

int Session::open_or_create(const std::string& path, const TextOptions& text) {
  if (platform::file_exists(path)) return open(path, text);
  open_ = OpenDatabase::create(path, options_);
  return kDone;
}

CWorkSheet* Session::take_table(std::vector<std::string>& arguments) {
  CWorkSheet* named = arguments.empty() ? nullptr : database().find_table(arguments.front());
  if (named != nullptr) {
    arguments.erase(arguments.begin());
    return named;
  }
  const std::vector<CWorkSheet*> tables = database().tables();
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

int Session::save(const SaveOptions& save) {
  if (save.output.empty() && !open_->has_database_file()) {
    return fail("the database comes from a file of another format: name the file to save with -o");
  }
  if (open_->is_read_only()) warn("the database is open read-only: saving it needs its password");
  SaveSettings settings;
  settings.level = save.level;
  if (save.container == "zip32") settings.variant = SaveVariant::kZip32;
  const bool converts = save.container == "auto" && open_->has_older_container() &&
                        questions_.ask(message(MessageId::kConvertToZip64));
  if (save.container == "zip64" || converts) settings.variant = SaveVariant::kZip64;
  const int status = accept(check_save_variant(settings.variant), questions_, "not saved");
  if (status != kDone) return status;
  open_->database().clean_pools();
  const std::string path = save.output.empty() ? open_->path() : save.output;
  return report(open_->save(path, settings, progress_));
}

}  // namespace rowvane::cli

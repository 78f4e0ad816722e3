#include <cstdio>
#include <memory>
#include <optional>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/report.h"
#include "cli/session.h"
#include "cli/sort_options.h"
#include "cli/where_option.h"
#include "crypto/protection.h"
#include "platform/paths.h"

namespace rowvane::cli {
namespace {

struct ImportArguments {
  std::string database;
  std::string source;
  std::string table;
  TextOptions text;
  SaveOptions save;
};

// Takes the tables of SOURCE into TARGET: each under its own path, or the only one under PATH.
int take_tables(Database& source, Database& target, const std::string& path, bool quiet) {
  const std::vector<CWorkSheet*> tables = source.tables();
  if (!path.empty() && tables.size() != 1) return fail("--table needs a source with one table");
  for (CWorkSheet* table : tables) {
    const std::string wanted = path.empty() ? table->path() : path;
    const std::string name = platform::file_name(wanted);
    const std::string folder_path =
        name.size() < wanted.size() ? wanted.substr(0, wanted.size() - name.size() - 1) : "";
    Folder* folder = nullptr;
    if (const ErrorCode error = target.make_folders(folder_path, &folder); error != ErrorCode::kOk)
      return fail(error);
    const std::string free = path.empty() ? target.free_name(*folder, name) : name;
    auto taken = std::make_unique<CWorkSheet>(free, table->data());
    CWorkSheet* added = taken.get();
    if (const ErrorCode error = target.add_table(*folder, taken); error != ErrorCode::kOk) return fail(error);
    if (!quiet) {
      std::printf("%s: %u records, %zu fields\n", added->path().c_str(), added->record_count(),
                  added->field_count());
    }
  }
  return kDone;
}

int run_import(const GlobalOptions& global, ImportArguments& arguments) {
  Session source(global);
  if (const int status = source.open(arguments.source, arguments.text); status != kDone) return status;
  Session target(global);
  if (const int status = target.open_or_create(arguments.database, TextOptions()); status != kDone)
    return status;
  const int status = take_tables(source.database(), target.database(), arguments.table, global.quiet);
  return status == kDone ? target.save(arguments.save) : status;
}

struct ExportArguments {
  std::string database;
  std::vector<std::string> places;  // [TABLE] TARGET
  std::string as;
  std::vector<std::string> fields;
  bool files_zip = false;
  bool long_text_zip = false;
  std::optional<uint64_t> row_limit;
  WhereArguments where;
  SortArguments sort;
  TextOptions text;
};

// The records to write, in their order; none chosen: all of them.
int choose_records(Session& session, const ExportArguments& arguments, const CWorkSheet& table,
                   std::optional<RecordSet>& chosen) {
  if (arguments.where.empty() && arguments.sort.keys.empty()) return kDone;
  chosen.emplace();
  if (const int status = arguments.where.search(session, table, *chosen); status != kDone) return status;
  return arguments.sort.sort(session, table, *chosen);
}

int run_export(const GlobalOptions& global, ExportArguments& arguments) {
  const std::string target = arguments.places.back();
  arguments.places.pop_back();
  const ExportTarget named = export_target(target);
  const FileFormat* format = arguments.as.empty() ? named.format : format_named(arguments.as);
  if (format == &database_format())
    return fail("to make a database of it, use: rvb import " + target + " " + arguments.database);
  if (!format->can_export()) return fail(named.refusal);
  Session session(global);
  if (const int status = session.open(arguments.database, TextOptions()); status != kDone) return status;
  CWorkSheet* table = session.take_table(arguments.places);
  if (table == nullptr || !arguments.places.empty())
    return table == nullptr ? kFailed : fail(ErrorCode::kInvalidPath);
  const platform::RegionalSettings region = platform::user_regional_settings();
  TableExport settings;
  settings.text.text = named.text;
  if (const std::string wrong = arguments.text.apply(settings.text.text); !wrong.empty())
    return fail_usage(wrong);
  if (const int status = session.find_fields(*table, arguments.fields, settings.fields); status != kDone)
    return status;
  if (const int status = choose_records(session, arguments, *table, settings.positions); status != kDone)
    return status;
  settings.text.numbers.decimal = region.decimal_separator;
  settings.text.save_files = arguments.files_zip;
  settings.text.save_long_texts = arguments.long_text_zip;
  settings.text.row_limit = arguments.row_limit.value_or(session.options().text_export_row_limit);
  settings.threads = session.options().used_processor_cores;
  const bool is_protected = session.file().protection() != nullptr;
  for (const Check& check :
       {format->check_export(*table, settings), check_other_format(is_protected, true)}) {
    if (const int status = accept(check, session.questions()); status != kDone) return status;
  }
  const TableExportResult result = format->export_table(*table, target, settings, session.progress());
  if (const int status = report(result); status != kDone) return status;
  if (result.replaced_characters) warn("some characters are not in the code page and were replaced");
  for (size_t i = 0; i < result.files.size() && !global.quiet; ++i)
    std::printf("%s\n", result.files[i].c_str());
  return kDone;
}

}  // namespace

void add_import_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<ImportArguments>();
  CLI::App* command = app.add_subcommand("import", "Add the tables of a file to a database");
  command->footer(
      "Examples:\n  rvb import shop.rvb orders.csv\n  rvb import shop.rvb list.txt --table sales/list "
      "--separator tab --encoding 1252");
  command->add_option("DATABASE", arguments->database, "Database; made when there is no such file")
      ->required();
  command->add_option("SOURCE", arguments->source, "File to take the tables from")->required();
  command->add_option("--table", arguments->table, "Path for the table; the default is the name of the file");
  arguments->text.add_to(*command, true);
  arguments->save.add_to(*command);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_import(context.global, *arguments); };
  });
}

void add_export_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<ExportArguments>();
  CLI::App* command = app.add_subcommand("export", "Write a table to a file of another format");
  command->footer(
      "Examples:\n  rvb export shop.rvb products products.csv\n  rvb export shop.rvb sales/orders "
      "orders.txt --separator tab --fields Number,Date\n  rvb export shop.rvb sales/orders open.csv --where "
      "Status:d:open");
  command->add_option("DATABASE", arguments->database, "Database, or any file with tables")->required();
  command->add_option("TABLE TARGET", arguments->places, "Path of the table, and the file to write")
      ->required()
      ->expected(1, 2);
  command->add_option("--as", arguments->as, "Write this format, whatever the name of TARGET tells")
      ->check(CLI::IsMember(format_names(&FileFormat::can_export)));
  command->add_option("--fields", arguments->fields, "Fields to write, in this order")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option("--row-limit", arguments->row_limit, "Go on in further files after so many records");
  command->add_flag("--files-zip", arguments->files_zip, "Save images and files to a zip file beside TARGET");
  command->add_flag("--long-text-zip", arguments->long_text_zip,
                    "Save long texts to a zip file beside TARGET");
  arguments->where.add_to(*command);
  arguments->sort.add_to(*command);
  arguments->text.add_to(*command, false);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_export(context.global, *arguments); };
  });
}

}  // namespace rowvane::cli

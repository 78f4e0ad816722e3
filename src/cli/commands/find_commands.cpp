#include <cstdio>
#include <memory>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/record_printer.h"
#include "cli/report.h"
#include "cli/session.h"
#include "recordset/find/replace_text.h"

namespace rowvane::cli {
namespace {

struct FindArguments {
  std::string database;
  std::vector<std::string> words;  // [TABLE] TEXT, and NEW of replace
  FindPattern pattern;
  bool match_case = false;
  bool all_tables = false;
  std::vector<std::string> fields;
  std::vector<std::string> shown;
  std::string format;
  uint32_t limit = UINT32_MAX;
  SaveOptions save;
  TextOptions text;
};

// Takes the last COUNT words away from [TABLE] WORD..., into TEXTS. kWrongArguments when they are not so
// many.
int take_texts(FindArguments& arguments, size_t count, std::vector<std::string>& texts) {
  auto& words = arguments.words;
  const size_t most = arguments.all_tables ? count : count + 1;
  if (words.size() < count || words.size() > most) {
    return fail_usage(arguments.all_tables ? "with --all-tables no table is named; quote texts with blanks"
                                           : "give the table, when there are several, and the text");
  }
  texts.assign(words.end() - static_cast<std::ptrdiff_t>(count), words.end());
  words.resize(words.size() - count);
  return kDone;
}

// The tables that are looked at; none after a report.
std::vector<CWorkSheet*> take_tables(Session& session, FindArguments& arguments) {
  if (arguments.all_tables) return session.database().tables();
  CWorkSheet* table = session.take_table(arguments.words);
  if (table != nullptr && !arguments.words.empty()) {
    fail(ErrorCode::kInvalidPath);
    table = nullptr;
  }
  return table == nullptr ? std::vector<CWorkSheet*>() : std::vector{table};
}

int find_settings(Session& session, const FindArguments& arguments, const CWorkSheet& table,
                  const std::string& text, FindText& settings) {
  settings.pattern = arguments.pattern;
  settings.pattern.text = text;
  settings.pattern.caseless = !arguments.match_case;
  settings.threads = session.options().used_processor_cores;
  settings.region = DisplayRegion(platform::user_regional_settings());
  if (arguments.fields.empty()) return kDone;
  if (arguments.all_tables) return fail_usage("--fields needs a table");
  return session.find_fields(table, arguments.fields, settings.fields);
}

int print_found(Session& session, const FindArguments& arguments, const CWorkSheet& table,
                const RecordSet& records, bool first) {
  PrintOptions options;
  if (const int status = session.find_fields(table, arguments.shown, options.fields); status != kDone)
    return status;
  const bool json = arguments.format == "json" || (arguments.format.empty() && session.global().json);
  options.format = json                        ? PrintFormat::kJson
                   : arguments.format == "csv" ? PrintFormat::kCsv
                                               : PrintFormat::kTable;
  options.records = &records;
  options.count = static_cast<uint32_t>(records.size());
  options.with_path = arguments.all_tables;
  if (!first && !json) std::printf("\n");
  const ErrorCode error = print_records(table, options);
  return error == ErrorCode::kOk ? kDone : fail(error);
}

int run_find(const GlobalOptions& global, FindArguments& arguments) {
  std::vector<std::string> texts;
  if (const int status = take_texts(arguments, 1, texts); status != kDone) return status;
  Session session(global);
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  const std::vector<CWorkSheet*> tables = take_tables(session, arguments);
  if (tables.empty()) return kFailed;
  FindText settings;
  if (const int status = find_settings(session, arguments, *tables[0], texts[0], settings); status != kDone)
    return status;
  bool first = true;
  for (const CWorkSheet* table : tables) {
    const Check check = check_find(*table, settings);
    if (const int status = accept(check, session.questions()); status != kDone) return status;
    TextFinder finder(*table, settings);
    const FoundRecords found = finder.find(all_records(*table), 0, arguments.limit, session.progress());
    if (const int status = report(found); status != kDone) return status;
    if (arguments.all_tables && found.records.empty()) continue;
    if (const int status = print_found(session, arguments, *table, found.records, first); status != kDone)
      return status;
    first = false;
  }
  return kDone;
}

int run_replace(const GlobalOptions& global, FindArguments& arguments) {
  std::vector<std::string> texts;
  if (const int status = take_texts(arguments, 2, texts); status != kDone) return status;
  Session session(global);
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  const std::vector<CWorkSheet*> tables = take_tables(session, arguments);
  if (tables.empty()) return kFailed;
  ReplaceText settings;
  settings.replacement = texts[1];
  settings.region = platform::user_regional_settings();
  int status = find_settings(session, arguments, *tables[0], texts[0], settings.find);
  for (size_t i = 0; i < tables.size() && status == kDone; ++i) {
    status = accept(check_replace(*tables[i], settings), session.questions());
  }
  if (status != kDone) return status;
  const ReplaceResult result =
      arguments.all_tables ? replace_in_all_tables(session.database(), settings, session.progress())
                           : replace_all(*tables[0], settings, all_records(*tables[0]), session.progress());
  if (status = report(result); status != kDone) return status;
  if (global.json) {
    std::printf("{\"matches\": %llu, \"cells\": %llu, \"refused\": %llu}\n",
                static_cast<unsigned long long>(result.matches),
                static_cast<unsigned long long>(result.cells),
                static_cast<unsigned long long>(result.refused.total()));
  } else if (!global.quiet) {
    std::printf("%s\n", replace_report(result).c_str());
  }
  return result.cells > 0 || !arguments.save.output.empty() ? session.save(arguments.save) : kDone;
}

void add_pattern_options(CLI::App& command, const std::shared_ptr<FindArguments>& arguments) {
  command.add_flag("--regex", arguments->pattern.regular_expression, "TEXT is a regular expression");
  command.add_flag("--similar", arguments->pattern.similar, "Look for similar texts");
  command.add_flag("--match-case", arguments->match_case, "Letter case matters");
  command.add_flag("--empty-matches", arguments->pattern.empty_matches,
                   "The regular expression may match an empty text");
  command
      .add_option("--fields", arguments->fields,
                  "Fields that are looked at; the default is all that are shown")
      ->delimiter(',')
      ->allow_extra_args(false);
  command.add_flag("--all-tables", arguments->all_tables, "Look at all tables; none is named then");
}

}  // namespace

void add_find_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<FindArguments>();
  CLI::App* command = app.add_subcommand("find", "Print the records that show a text in any field");
  command->footer(
      "Cells are looked at as they are shown: numbers in their display formats, long texts without "
      "formatting,\n"
      "files by their names.\n\nExamples:\n  rvb find shop.rvb products lamp\n  rvb find orders.csv "
      "'^2025-0[1-3]' "
      "--regex --fields Date\n  rvb find shop.rvb --all-tables --similar 'Jonson'");
  command->add_option("DATABASE", arguments->database, "Database, or any file with tables")->required();
  command->add_option("TABLE TEXT", arguments->words,
                      "Path of the table (needed when there are several), then the text");
  add_pattern_options(*command, arguments);
  command->add_option("--show", arguments->shown, "Fields to print, in this order; the default is all")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option("--limit", arguments->limit, "Print at most so many records of a table");
  command->add_option("--format", arguments->format, "table, csv or json")
      ->check(CLI::IsMember({"table", "csv", "json"}));
  arguments->text.add_to(*command, true);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_find(context.global, *arguments); };
  });
}

void add_replace_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<FindArguments>();
  CLI::App* command = app.add_subcommand("replace", "Replace a text in all records");
  command->footer(
      "With --regex NEW may name what groups matched: $1 or \\1 to $99, $0 for the whole match; $$ and \\\\ "
      "are the\n"
      "signs themselves. Cells that would no longer fit their field stay as they are and are counted.\n\n"
      "Examples:\n  rvb replace shop.rvb products lamp light --match-case\n  rvb replace shop.rvb customers "
      "--regex "
      "--fields Name '^(\\w+), (\\w+)$' '$2 $1'\n  rvb replace shop.rvb --all-tables Haus House");
  command->add_option("DATABASE", arguments->database, "Database, or any file with tables (needs -o)")
      ->required();
  command->add_option("TABLE TEXT NEW", arguments->words,
                      "Path of the table (needed when there are several), the text, and what replaces it");
  add_pattern_options(*command, arguments);
  arguments->save.add_to(*command);
  arguments->text.add_to(*command, true);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_replace(context.global, *arguments); };
  });
}

}  // namespace rowvane::cli

// The commands that find records by comparing them with each other.
#include <cstdio>
#include <memory>
#include <optional>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/json.h"
#include "cli/print_arguments.h"
#include "cli/report.h"
#include "cli/session.h"
#include "cli/sort_options.h"
#include "cli/where_option.h"
#include "core/values/number_text.h"
#include "recordset/compare/duplicates.h"
#include "recordset/compare/quartiles.h"
#include "recordset/compare/unique_values.h"

namespace rowvane::cli {
namespace {

struct CompareArguments {
  TableArguments table;
  PrintArguments print;
  WhereArguments where;
  CollationOptions texts;
  std::vector<std::string> by;
  int mode = 0;
  bool sort = false;
  std::string frequencies;  // the field to save them in; empty: none
  bool statistics = false;
  bool entire_table = false;  // quartiles and mean are those of all records
  SaveOptions save;
};

// What a command works on.
struct Opened {
  CWorkSheet* table = nullptr;
  std::vector<size_t> fields;  // of --by
  RecordSet scope;
  SortOptions texts;
};

int open(Session& session, CompareArguments& arguments, Opened& opened) {
  if (const int status = arguments.table.open(session, &opened.table); status != kDone) return status;
  if (const int status = session.find_fields(*opened.table, arguments.by, opened.fields); status != kDone)
    return status;
  for (const size_t field : opened.fields) {
    if (opened.table->field(field).encrypted) return fail(ErrorCode::kEncryptedField);
  }
  const int status = arguments.where.search(session, *opened.table, opened.scope);
  return status == kDone ? arguments.texts.apply(session, opened.texts) : status;
}

int run_duplicates(const GlobalOptions& global, CompareArguments& arguments) {
  Session session(global);
  Opened opened;
  if (const int status = open(session, arguments, opened); status != kDone) return status;
  const DuplicatesSearch search{.fields = opened.fields,
                                .sort_results = arguments.sort,
                                .mode = static_cast<DuplicatesMode>(arguments.mode)};
  const Check check = check_duplicates(*opened.table, search);
  if (const int status = accept(check, session.questions()); status != kDone) return status;
  const RecordSetResult result = find_duplicates(*opened.table, opened.scope, search, opened.texts,
                                                 session.options(), session.progress());
  if (const int status = report(result); status != kDone) return status;
  return arguments.print.print(session, *opened.table, result.records);
}

int run_unique(const GlobalOptions& global, CompareArguments& arguments) {
  Session session(global);
  Opened opened;
  if (const int status = open(session, arguments, opened); status != kDone) return status;
  UniqueSearch search{.fields = opened.fields,
                      .sort_results = arguments.sort,
                      .mode = static_cast<UniqueMode>(arguments.mode),
                      .save_frequencies = !arguments.frequencies.empty()};
  if (search.save_frequencies) {
    std::vector<size_t> target;
    const int status = session.find_fields(*opened.table, {arguments.frequencies}, target);
    if (status != kDone) return status;
    search.frequency_field = target.front();
  }
  const Check check = check_unique_values(*opened.table, search);
  if (const int status = accept(check, session.questions()); status != kDone) return status;
  const UniqueResult result = find_unique_values(*opened.table, opened.scope, search, opened.texts,
                                                 session.options(), session.progress());
  if (const int status = report(result); status != kDone) return status;
  if (search.save_frequencies) {
    const ErrorCode error = save_frequencies(*opened.table, search, result);
    if (error != ErrorCode::kOk) return fail(error);
    if (const int status = session.save(arguments.save); status != kDone) return status;
  }
  return arguments.print.print(session, *opened.table, result.records);
}

int print_statistics(const FieldStatistics& statistics, bool json) {
  const std::pair<std::string_view, double> figures[] = {{"mean", statistics.mean},
                                                         {"1st quartile", statistics.quartiles[0]},
                                                         {"2nd quartile", statistics.quartiles[1]},
                                                         {"3rd quartile", statistics.quartiles[2]}};
  std::string out = json ? "{\"count\": " : "count: ";
  out += std::to_string(statistics.count);
  for (const auto& [name, value] : figures) {
    out += json ? ", \"" + std::string(name) + "\": " : "\n" + std::string(name) + ": ";
    if (statistics.count > 0) append_number(value, ".", out);
    if (statistics.count == 0 && json) out += "null";
  }
  std::printf("%s\n", (json ? out + "}" : out).c_str());
  return kDone;
}

int run_quartiles(const GlobalOptions& global, CompareArguments& arguments) {
  Session session(global);
  Opened opened;
  if (const int status = open(session, arguments, opened); status != kDone) return status;
  if (opened.fields.size() != 1) return fail_usage("quartiles are those of one field");
  const QuartileSearch search{.whole_table = arguments.where.empty(),
                              .whole_table_statistics = arguments.entire_table,
                              .field = opened.fields.front(),
                              .mode = static_cast<uint8_t>(arguments.mode)};
  const Check check = check_quartiles(*opened.table, search);
  if (const int status = accept(check, session.questions()); status != kDone) return status;
  const QuartileResult result =
      find_quartiles(*opened.table, opened.scope, search, session.options(), session.progress());
  if (const int status = report(result); status != kDone) return status;
  if (arguments.statistics) return print_statistics(result.statistics, global.json);
  return arguments.print.print(session, *opened.table, result.records);
}

// "0: Show all ...; 1: ..."
template <typename Texts>
std::string mode_help(const Texts& texts) {
  std::string help;
  for (size_t i = 0; i < texts.size(); ++i) {
    help += (i > 0 ? "; " : "") + std::to_string(i) + ": " + std::string(texts[i]);
  }
  return help;
}

std::string quartile_help() {
  std::string help = "Sum of: ";
  for (size_t i = 0; i < kQuartileBandTexts.size(); ++i) {
    help += std::to_string(1 << i) + " (" + std::string(kQuartileBandTexts[i]) + "), ";
  }
  return help + "or one of: " + std::to_string(kBelowMean) + " (" + std::string(kMeanTexts[0]) + "), " +
         std::to_string(kFromMean) + " (" + std::string(kMeanTexts[1]) + ")";
}

// Adds what the commands share.
CLI::App& add_command(CLI::App& app, CommandContext& context,
                      const std::shared_ptr<CompareArguments>& arguments, const std::string& name,
                      const std::string& description, int (*run)(const GlobalOptions&, CompareArguments&)) {
  CLI::App* command = app.add_subcommand(name, description);
  arguments->table.add_to(*command);
  command->add_option("--by", arguments->by, "Fields to compare")
      ->required()
      ->delimiter(',')
      ->allow_extra_args(false);
  arguments->print.add_to(*command);
  arguments->where.add_to(*command);
  command->callback([&context, arguments, run] {
    context.run = [&context, arguments, run] { return run(context.global, *arguments); };
  });
  return *command;
}

void add_sorting(CLI::App& command, CompareArguments& arguments) {
  command.add_flag("--sort", arguments.sort, "Sort results by this key: the fields of --by, ascending")
      ->group("Sorting");
  arguments.texts.add_to(command);
}

}  // namespace

void add_duplicates_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<CompareArguments>();
  CLI::App& command = add_command(app, context, arguments, "duplicates",
                                  "Print records with the same values in some fields", run_duplicates);
  command.footer(
      "Examples:\n  rvb duplicates shop.rvb customers --by Name,City --sort\n"
      "  rvb duplicates orders.csv --by Number --mode 3");
  command.add_option("--mode", arguments->mode, mode_help(kDuplicatesModeTexts))->check(CLI::Range(0, 4));
  add_sorting(command, *arguments);
}

void add_unique_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<CompareArguments>();
  CLI::App& command = add_command(app, context, arguments, "unique",
                                  "Print one record of each value of some fields", run_unique);
  command.footer(
      "Examples:\n  rvb unique shop.rvb products --by Category --fields Category --sort\n"
      "  rvb unique shop.rvb products --by Category --save-frequencies Count");
  command.add_option("--mode", arguments->mode, mode_help(kUniqueModeTexts))->check(CLI::Range(0, 1));
  add_sorting(command, *arguments);
  command.add_option("--save-frequencies", arguments->frequencies,
                     "Store in this number field of each printed record how many have its values");
  arguments->save.add_to(command);
}

void add_quartiles_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<CompareArguments>();
  arguments->mode = kBelowFirstQuartile;
  CLI::App& command = add_command(app, context, arguments, "quartiles",
                                  "Print records by the quartiles or the mean of a field", run_quartiles);
  command.footer(
      "Examples:\n  rvb quartiles shop.rvb products --by Price --mode 8\n  rvb quartiles shop.rvb products "
      "--by Price --statistics");
  command.add_option("--mode", arguments->mode, quartile_help())->check(CLI::Range(1, 63));
  command.add_flag("--statistics", arguments->statistics, "Print the mean and the quartiles, no records");
  command.add_flag("--entire-table", arguments->entire_table,
                   "Quartiles and mean of the entire table, also where --where or --key choose records");
}

}  // namespace rowvane::cli

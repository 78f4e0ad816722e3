#include <cstdio>
#include <memory>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/record_printer.h"
#include "cli/report.h"
#include "cli/session.h"

namespace rowvane::cli {
namespace {

struct ShowArguments {
  std::string database;
  std::vector<std::string> table;
  std::vector<std::string> fields;
  std::string format;
  uint32_t limit = UINT32_MAX;
  uint32_t offset = 0;
  TextOptions text;
};

PrintFormat print_format(const ShowArguments& arguments, bool json) {
  if (arguments.format == "csv") return PrintFormat::kCsv;
  return arguments.format == "json" || (json && arguments.format.empty()) ? PrintFormat::kJson
                                                                          : PrintFormat::kTable;
}

// Opens the database and finds the one table of the arguments.
int open_table(Session& session, ShowArguments& arguments, CWorkSheet** table) {
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  *table = session.take_table(arguments.table);
  if (*table == nullptr) return kFailed;
  return arguments.table.empty() ? kDone : fail(ErrorCode::kInvalidPath);
}

int run_show(const GlobalOptions& global, ShowArguments& arguments) {
  Session session(global);
  CWorkSheet* table = nullptr;
  if (const int status = open_table(session, arguments, &table); status != kDone) return status;
  PrintOptions options;
  if (const int status = session.find_fields(*table, arguments.fields, options.fields); status != kDone)
    return status;
  options.format = print_format(arguments, global.json);
  options.first = std::min(arguments.offset, table->record_count());
  options.count = std::min(arguments.limit, table->record_count() - options.first);
  const ErrorCode error = print_records(*table, options);
  return error == ErrorCode::kOk ? kDone : fail(error);
}

int run_count(const GlobalOptions& global, ShowArguments& arguments) {
  Session session(global);
  CWorkSheet* table = nullptr;
  if (const int status = open_table(session, arguments, &table); status != kDone) return status;
  std::printf("%u\n", table->record_count());
  return kDone;
}

void add_table_arguments(CLI::App& command, ShowArguments& arguments) {
  command.add_option("DATABASE", arguments.database, "Database, or any file with tables")->required();
  command.add_option("TABLE", arguments.table, "Path of the table")->expected(0, 1);
  arguments.text.add_to(command, true);
}

}  // namespace

void add_show_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<ShowArguments>();
  CLI::App* command = app.add_subcommand("show", "Print records");
  command->footer(
      "Examples:\n  rvb show shop.rvb products --fields Name,Price --limit 10\n  rvb show orders.csv "
      "--format json");
  add_table_arguments(*command, *arguments);
  command->add_option("--fields", arguments->fields, "Fields to print, in this order")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option("--limit", arguments->limit, "Print at most so many records");
  command->add_option("--offset", arguments->offset, "Leave out so many records at the start");
  command->add_option("--format", arguments->format, "table, csv or json")
      ->check(CLI::IsMember({"table", "csv", "json"}));
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_show(context.global, *arguments); };
  });
}

void add_count_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<ShowArguments>();
  CLI::App* command = app.add_subcommand("count", "Print the number of records");
  command->footer("Example:\n  rvb count shop.rvb sales/orders");
  add_table_arguments(*command, *arguments);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_count(context.global, *arguments); };
  });
}

}  // namespace rowvane::cli

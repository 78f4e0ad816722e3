#include <cstdio>
#include <memory>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/print_arguments.h"
#include "cli/report.h"
#include "cli/session.h"
#include "cli/sort_options.h"
#include "cli/where_option.h"

namespace rowvane::cli {
namespace {

struct ShowArguments {
  TableArguments table;
  PrintArguments print;
  WhereArguments where;
  SortArguments sort;
};

int run_show(const GlobalOptions& global, ShowArguments& arguments) {
  Session session(global);
  CWorkSheet* table = nullptr;
  if (const int status = arguments.table.open(session, &table); status != kDone) return status;
  RecordSet records;
  if (const int status = arguments.where.search(session, *table, records); status != kDone) return status;
  if (const int status = arguments.sort.sort(session, *table, records); status != kDone) return status;
  return arguments.print.print(session, *table, records);
}

struct CountArguments {
  TableArguments table;
  WhereArguments where;
};

int run_count(const GlobalOptions& global, CountArguments& arguments) {
  Session session(global);
  CWorkSheet* table = nullptr;
  if (const int status = arguments.table.open(session, &table); status != kDone) return status;
  RecordSet records;
  if (const int status = arguments.where.search(session, *table, records); status != kDone) return status;
  std::printf("%zu\n", records.size());
  return kDone;
}

}  // namespace

void add_show_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<ShowArguments>();
  CLI::App* command = app.add_subcommand("show", "Print records");
  command->footer(
      "Examples:\n  rvb show shop.rvb products --fields Name,Price --limit 10\n  rvb show shop.rvb products "
      "--sort Category,-Price\n  rvb show shop.rvb products --where 'Price:h:50 100' --where Name:c:desk\n"
      "  rvb show orders.csv --format json");
  arguments->table.add_to(*command);
  arguments->print.add_to(*command);
  arguments->where.add_to(*command);
  arguments->sort.add_to(*command);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_show(context.global, *arguments); };
  });
}

void add_count_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<CountArguments>();
  CLI::App* command = app.add_subcommand("count", "Print the number of records");
  command->footer(
      "Examples:\n  rvb count shop.rvb sales/orders\n  rvb count orders.csv --where Status:d:open");
  arguments->table.add_to(*command);
  arguments->where.add_to(*command);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_count(context.global, *arguments); };
  });
}

}  // namespace rowvane::cli

#include <algorithm>
#include <cstdio>
#include <memory>

#include <CLI/CLI.hpp>

#include "cli/cell_input.h"
#include "cli/commands/commands.h"
#include "cli/report.h"
#include "cli/session.h"
#include "cli/where_option.h"

namespace rowvane::cli {
namespace {

struct EditArguments {
  std::string database;
  std::vector<std::string> words;  // [TABLE] and what follows
  uint32_t count = 1;
  uint32_t before = 0;  // the number of a record, 0: at the end
  WhereArguments where;
  SaveOptions save;
  TextOptions text;
};

int open_for_editing(Session& session, EditArguments& arguments, CWorkSheet** table) {
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  *table = session.take_table(arguments.words);
  return *table != nullptr ? kDone : kFailed;
}

int store(CWorkSheet& table, RecordNumber record, const std::vector<Assignment>& assignments) {
  for (const Assignment& assignment : assignments) {
    const ErrorCode error = table.set_value(record, assignment.field, assignment.value);
    if (error != ErrorCode::kOk) return fail(error);
  }
  return kDone;
}

int run_set(const GlobalOptions& global, EditArguments& arguments) {
  Session session(global);
  CWorkSheet* table = nullptr;
  if (const int status = open_for_editing(session, arguments, &table); status != kDone) return status;
  if (arguments.words.size() < 2) return fail_usage("set needs a record number and at least one FIELD=VALUE");
  const auto positions = read_record_list(arguments.words.front(), table->record_count());
  if (positions.empty())
    return fail("there is no record " + arguments.words.front() + " in " + table->path());
  arguments.words.erase(arguments.words.begin());
  std::vector<Assignment> assignments;
  if (const int status = read_assignments(*table, arguments.words, assignments); status != kDone)
    return status;
  for (const uint32_t position : positions) {
    if (const int status = store(*table, record_number(position), assignments); status != kDone)
      return status;
  }
  return session.save(arguments.save);
}

int run_insert(const GlobalOptions& global, EditArguments& arguments) {
  Session session(global);
  CWorkSheet* table = nullptr;
  if (const int status = open_for_editing(session, arguments, &table); status != kDone) return status;
  std::vector<Assignment> assignments;
  if (const int status = read_assignments(*table, arguments.words, assignments); status != kDone)
    return status;
  RecordNumber record = arguments.before > 0 ? RecordNumber(arguments.before) : table->end_record();
  if (record > table->end_record()) {
    return fail("there is no record " + std::to_string(record.number()) + " in " + table->path());
  }
  const ErrorCode error = table->insert_records(record, arguments.count);
  if (error != ErrorCode::kOk) return fail(error);
  for (uint32_t i = 0; i < arguments.count; ++i, ++record) {
    if (const int status = store(*table, record, assignments); status != kDone) return status;
  }
  return session.save(arguments.save);
}

// The ascending positions of the records that the arguments name or --where finds.
int records_to_delete(Session& session, const EditArguments& arguments, const CWorkSheet& table,
                      RecordSet& positions) {
  const bool named = arguments.words.size() == 1;
  if (arguments.words.size() > 1 || named != arguments.where.empty())
    return fail_usage("delete needs record numbers such as 1,5-9, or --where");
  if (!named) {
    const int status = arguments.where.search(session, table, positions);
    std::ranges::sort(positions);
    return status;
  }
  positions = read_record_list(arguments.words.front(), table.record_count());
  if (!positions.empty()) return kDone;
  return fail("there are no records " + arguments.words.front() + " in " + table.path());
}

int run_delete(const GlobalOptions& global, EditArguments& arguments) {
  Session session(global);
  CWorkSheet* table = nullptr;
  if (const int status = open_for_editing(session, arguments, &table); status != kDone) return status;
  RecordSet positions;
  if (const int status = records_to_delete(session, arguments, *table, positions); status != kDone)
    return status;
  const ErrorCode error = table->delete_records(positions);
  if (error != ErrorCode::kOk) return fail(error);
  if (!global.quiet) std::printf("%zu deleted\n", positions.size());
  return positions.empty() ? kDone : session.save(arguments.save);
}

// Adds a command whose words are checked by RUN, because the table may be left out.
void add_edit_command(CLI::App& command, CommandContext& context,
                      const std::shared_ptr<EditArguments>& arguments, const std::string& words,
                      int (*run)(const GlobalOptions&, EditArguments&)) {
  command.add_option("DATABASE", arguments->database, "Database, or any file with tables (needs -o)")
      ->required();
  command.add_option(words, arguments->words,
                     "Path of the table (needed when there are several), then the rest");
  arguments->save.add_to(command);
  arguments->text.add_to(command, true);
  command.callback([&context, arguments, run] {
    context.run = [&context, arguments, run] { return run(context.global, *arguments); };
  });
}

}  // namespace

void add_set_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<EditArguments>();
  CLI::App* command = app.add_subcommand("set", "Change values of a record");
  command->footer(
      "Examples:\n  rvb set shop.rvb products 3 Price=12.5 \"Name=Desk lamp\"\n  rvb set shop.rvb products "
      "3 Notes=@notes.txt \"Photo=lamp.png;link:/data/lamp.pdf\"");
  add_edit_command(*command, context, arguments, "TABLE RECORD FIELD=VALUE", run_set);
}

void add_insert_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<EditArguments>();
  CLI::App* command = app.add_subcommand("insert", "Add records");
  command->footer(
      "Examples:\n  rvb insert shop.rvb products Name=Stool Price=39\n  rvb insert shop.rvb products "
      "--before 1 --count 10");
  add_edit_command(*command, context, arguments, "TABLE FIELD=VALUE", run_insert);
  command->add_option("--count", arguments->count, "How many")->check(CLI::Range(1u, kDefaultMaxRecords));
  command->add_option("--before", arguments->before, "Insert before this record; the default is at the end");
}

void add_delete_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<EditArguments>();
  CLI::App* command = app.add_subcommand("delete", "Delete records");
  command->footer(
      "Examples:\n  rvb delete shop.rvb products 3,7-9\n  rvb delete shop.rvb products --where Name:k");
  add_edit_command(*command, context, arguments, "TABLE RECORDS", run_delete);
  arguments->where.add_to(*command);
}

}  // namespace rowvane::cli

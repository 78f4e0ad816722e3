#include <memory>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/report.h"
#include "cli/session.h"
#include "exchange/text/standard_dates.h"

namespace rowvane::cli {
namespace {

struct DatesArguments {
  std::string database;
  std::vector<std::string> table;
  std::vector<std::string> fields;
  SaveOptions save;
  TextOptions text;
};

int run_dates(const GlobalOptions& global, DatesArguments& arguments) {
  Session session(global);
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  CWorkSheet* table = session.take_table(arguments.table);
  if (table == nullptr) return kFailed;
  if (!arguments.table.empty()) return fail(ErrorCode::kInvalidPath);
  DateConversionSettings settings;
  settings.region = platform::user_regional_settings();
  if (const int status = session.find_fields(*table, arguments.fields, settings.fields); status != kDone)
    return status;
  const int status = accept(check_date_conversion(*table, settings), session.questions());
  if (status != kDone) return status;
  const DateConversionResult result =
      convert_to_standard_dates(session.database(), *table, settings, session.progress());
  if (!result.is_done()) return report(result);
  if (result.other_texts > 0)
    warn(std::to_string(result.other_texts) + " value(s) are no dates and stay as they are");
  return session.save(arguments.save);
}

}  // namespace

void add_dates_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<DatesArguments>();
  CLI::App* command = app.add_subcommand(
      "dates", "Write the dates in text fields as standard date strings, YYYY-MM-DD(T...)");
  command->footer("Example:\n  rvb dates shop.rvb orders --fields Ordered,Sent");
  command->add_option("DATABASE", arguments->database, "Database, or any file with tables (needs -o)")
      ->required();
  command->add_option("TABLE", arguments->table, "Path of the table (needed when there are several)")
      ->expected(0, 1);
  command->add_option("--fields", arguments->fields, "Text fields to convert")
      ->required()
      ->delimiter(',')
      ->allow_extra_args(false);
  arguments->save.add_to(*command);
  arguments->text.add_to(*command, true);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_dates(context.global, *arguments); };
  });
}

}  // namespace rowvane::cli

#include "cli/print_arguments.h"

#include <algorithm>

#include <CLI/CLI.hpp>

#include "cli/record_printer.h"
#include "cli/report.h"
#include "cli/session.h"

namespace rowvane::cli {
namespace {

PrintFormat print_format(const std::string& format, bool json) {
  if (format == "csv") return PrintFormat::kCsv;
  return format == "json" || (json && format.empty()) ? PrintFormat::kJson : PrintFormat::kTable;
}

}  // namespace

void TableArguments::add_to(CLI::App& command) {
  command.add_option("DATABASE", database, "Database, or any file with tables")->required();
  command.add_option("TABLE", table, "Path of the table")->expected(0, 1);
  text.add_to(command, true);
}

int TableArguments::open(Session& session, CWorkSheet** found) {
  if (const int status = session.open(database, text); status != kDone) return status;
  *found = session.take_table(table);
  if (*found == nullptr) return kFailed;
  return table.empty() ? kDone : fail(ErrorCode::kInvalidPath);
}

void PrintArguments::add_to(CLI::App& command) {
  command.add_option("--fields", fields, "Fields to print, in this order")
      ->delimiter(',')
      ->allow_extra_args(false);
  command.add_option("--limit", limit, "Print at most so many records");
  command.add_option("--offset", offset, "Leave out so many records at the start");
  command.add_option("--format", format, "table, csv or json")
      ->check(CLI::IsMember({"table", "csv", "json"}));
}

int PrintArguments::print(Session& session, const CWorkSheet& table, const RecordSet& records) const {
  PrintOptions options;
  if (const int status = session.find_fields(table, fields, options.fields); status != kDone) return status;
  options.format = print_format(format, session.global().json);
  const auto count = static_cast<uint32_t>(records.size());
  options.records = &records;
  options.first = std::min(offset, count);
  options.count = std::min(limit, count - options.first);
  const ErrorCode error = print_records(table, options);
  return error == ErrorCode::kOk ? kDone : fail(error);
}

}  // namespace rowvane::cli

#include <charconv>
#include <cstdio>
#include <memory>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/json.h"
#include "cli/report.h"
#include "cli/session.h"
#include "formula/evaluation/formula_evaluator.h"
#include "formula/passes/field_results.h"

namespace rowvane::cli {
namespace {

struct EvalArguments {
  std::string formula;
  std::string database;
  std::vector<std::string> words;  // [TABLE] [RECORD]
  TextOptions text;
};

void append_json_scalar(const Scalar& value, std::string& out) {
  if (value.is_error()) {
    out += "{\"error\": \"" + std::string(formula_error_text(value.error)) + "\"}";
  } else if (value.is_text()) {
    append_json_string(value.text, out);
  } else if (value.is_number()) {
    append_number(value.number, ".", out);
  } else {
    out += "null";
  }
}

void append_text_scalar(const Scalar& value, const ScalarContext& context, std::string& out) {
  out += value.is_error() ? formula_error_text(value.error) : to_text(value, context).text;
}

// One row a line, its elements separated by tabs; as JSON an array of rows.
std::string array_text(const ArrayView& array, bool json, const ScalarContext& context) {
  std::string out = json ? "[" : "";
  for (size_t row = 0; row < array.rows; ++row) {
    if (row > 0) out += json ? ", " : "\n";
    if (json) out += '[';
    for (size_t column = 0; column < array.columns; ++column) {
      if (column > 0) out += json ? ", " : "\t";
      if (json) {
        append_json_scalar(array.at(row, column), out);
      } else {
        append_text_scalar(array.at(row, column), context, out);
      }
    }
    if (json) out += ']';
  }
  return json ? out + "]" : out;
}

int print_value(FormulaEvaluator& evaluator, const std::string& formula, bool json) {
  const Kind kind = evaluator.evaluate(formula);
  if (kind == Kind::kError && evaluator.error() == FormulaError::kSyntax &&
      !is_valid_formula(formula, evaluator.table(), FormulaSettings())) {
    return fail(texts::kInvalidFormula);
  }
  std::string out;
  if (kind == Kind::kArray) {
    out = array_text(evaluator.array_result(), json, evaluator.context());
  } else if (json) {
    append_json_scalar(evaluator.result(), out);
  } else {
    append_text_scalar(evaluator.result(), evaluator.context(), out);
  }
  out += '\n';
  std::fwrite(out.data(), 1, out.size(), stdout);
  return kDone;
}

int choose_record(const CWorkSheet& table, const std::vector<std::string>& words,
                  FormulaEvaluator& evaluator) {
  if (words.empty()) return kDone;
  const std::string& text = words.front();
  uint32_t record = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), record);
  const bool number = read.ec == std::errc() && read.ptr == text.data() + text.size();
  if (words.size() > 1 || !number || record < 1 || record > table.record_count()) {
    return fail("there is no record " + words.back() + " in " + table.path());
  }
  evaluator.set_record(RecordNumber(record).position());
  return kDone;
}

int run_eval(const GlobalOptions& global, EvalArguments& arguments) {
  const FormulaSettings settings;
  const auto evaluator = std::make_unique<FormulaEvaluator>(settings);
  if (arguments.database.empty()) return print_value(*evaluator, arguments.formula, global.json);
  Session session(global);
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  const CWorkSheet* table = session.take_table(arguments.words);
  if (table == nullptr) return kFailed;
  evaluator->set_table(table);
  if (const int status = choose_record(*table, arguments.words, *evaluator); status != kDone) return status;
  return print_value(*evaluator, arguments.formula, global.json);
}

struct RecalcArguments {
  std::string database;
  std::vector<std::string> words;  // [TABLE]
  SaveOptions save;
  TextOptions text;
};

int run_recalc(const GlobalOptions& global, RecalcArguments& arguments) {
  Session session(global);
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  Recalculation settings;
  settings.threads = global.threads;
  if (!arguments.words.empty()) {
    settings.table = session.database().find_table(arguments.words.front());
    if (settings.table == nullptr) return fail(ErrorCode::kInvalidPath);
  }
  const FormulaSettings formulas;
  const Check check = check_recalculation(session.database(), settings, formulas);
  if (const int status = accept(check, session.questions()); status != kDone) return status;
  const RecalculationResult result = recalculate(session.database(), settings, formulas, session.progress());
  if (const int status = report(result); status != kDone) return status;
  if (!global.quiet) std::printf("%zu field%s calculated\n", result.fields, result.fields == 1 ? "" : "s");
  // What was up to date needs no saving.
  const bool to_save = session.database().is_modified() || !arguments.save.output.empty();
  return to_save ? session.save(arguments.save) : kDone;
}

}  // namespace

void add_eval_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<EvalArguments>();
  CLI::App* command = app.add_subcommand("eval", "Print the value of a formula");
  command->footer(
      "Examples:\n  rvb eval '=2*(3+4)'\n  rvb eval '=Price*1.19' shop.rvb products 3\n  rvb eval "
      "'=sum(products!Price)' shop.rvb products");
  command->add_option("FORMULA", arguments->formula, "Formula, beginning with = or +")->required();
  command->add_option("DATABASE", arguments->database, "Database, or any file with tables");
  command->add_option("TABLE RECORD", arguments->words,
                      "Path of the table (needed when there are several) and the number of a record");
  arguments->text.add_to(*command, true);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_eval(context.global, *arguments); };
  });
}

void add_recalc_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<RecalcArguments>();
  CLI::App* command = app.add_subcommand("recalc", "Update all calculated fields");
  command->footer("Examples:\n  rvb recalc shop.rvb\n  rvb recalc shop.rvb sales/orders");
  command->add_option("DATABASE", arguments->database, "Database")->required();
  command->add_option("TABLE", arguments->words, "Path of the table; all tables when there is none")
      ->expected(0, 1);
  arguments->save.add_to(*command);
  arguments->text.add_to(*command, true);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_recalc(context.global, *arguments); };
  });
}

}  // namespace rowvane::cli

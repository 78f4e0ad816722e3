#include <array>
#include <memory>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/report.h"
#include "cli/session.h"
#include "core/field_conversion.h"
#include "core/names.h"
#include "formula/format_style_text.h"
#include "formula/number_format.h"

namespace rowvane::cli {
namespace {

struct FieldArguments {
  std::string database;
  std::vector<std::string> words;  // [TABLE] ACTION NAME [NEW NAME]
  std::string type;
  std::optional<std::string> default_value;
  std::optional<std::string> formula;
  std::optional<std::string> validation;
  std::optional<std::string> format;
  SaveOptions save;
  TextOptions text;
};

struct NamedType {
  std::string_view name;
  FieldType type;
  bool link;
};
constexpr std::array<NamedType, 6> kTypes = {{{"text", FieldType::kText, false},
                                              {"link", FieldType::kText, true},
                                              {"number", FieldType::kNumber, false},
                                              {"longtext", FieldType::kLongText, false},
                                              {"files", FieldType::kFiles, false},
                                              {"code", FieldType::kCode, false}}};

const NamedType& named_type(const std::string& name) {
  return *std::find_if(kTypes.begin(), kTypes.end(),
                       [&name](const NamedType& type) { return type.name == name; });
}

int check_name(const CWorkSheet& table, const std::string& name, std::optional<size_t> own) {
  if (!is_valid_field_name(name)) return fail(MessageId::kFieldNameNeedsLetter);
  const auto taken = table.find_field(name);
  return taken && taken != own ? fail(MessageId::kFieldNameExists) : kDone;
}

int done(ErrorCode error) {
  return error == ErrorCode::kOk ? kDone : fail(error);
}

// FORMULA as the field definition stores it, into STORED.
int read_formula(const CWorkSheet& table, const std::optional<std::string>& formula, std::string& stored) {
  if (!formula) return kDone;
  const FormulaEntry entry = check_formula_entry(*formula);
  if (entry.warning) warn(texts::kEntryTruncated);
  if (!entry.text.empty() && !is_valid_formula(entry.text, &table, FormulaSettings()))
    return fail(kInvalidFormula);
  stored = entry.text;
  return kDone;
}

int read_formulas(const CWorkSheet& table, const FieldArguments& arguments, Field& field) {
  if (const int status = read_formula(table, arguments.formula, field.formula); status != kDone)
    return status;
  if (!field.formula.empty() && !can_be_calculated(field))
    return fail("only Text and Number fields can be calculated");
  return read_formula(table, arguments.validation, field.validation);
}

// The format code of the typed style, into FIELD. Dates take the user's separator and order.
int read_format(const std::optional<std::string>& typed, Field& field) {
  if (!typed) return kDone;
  const platform::RegionalSettings region = platform::user_regional_settings();
  const StyleEntry entry = read_format_style(*typed, region.currency_symbol);
  if (!entry.problem.empty()) return fail(entry.problem);
  const std::string code = entry.style.kind == FormatKind::kCustom
                               ? *typed
                               : build_format_code(entry.style, stored_format_separators(region));
  const FormatCode check(code);
  if (!check.problem().empty()) return fail(check.problem());
  if (!code.empty() && field.type != FieldType::kNumber)
    return fail("only Number fields have a display format");
  field.format = code;
  return kDone;
}

// Formulas that need each other's results are refused before anything is saved.
int check_circles(Session& session) {
  const RecalculationCheck check =
      check_recalculation(session.database(), Recalculation(), FormulaSettings());
  return check.refusal.empty() ? kDone : fail(check.refusal);
}

int add_field(CWorkSheet& table, const FieldArguments& arguments, const std::string& name) {
  if (const int status = check_name(table, name, std::nullopt); status != kDone) return status;
  const NamedType& type = named_type(arguments.type.empty() ? "text" : arguments.type);
  Field field;
  field.name = name;
  field.type = type.type;
  field.link = type.link;
  field.default_value = arguments.default_value.value_or("");
  field.position = static_cast<uint16_t>(table.field_count());
  if (const int status = read_formulas(table, arguments, field); status != kDone) return status;
  if (const int status = read_format(arguments.format, field); status != kDone) return status;
  return done(table.insert_field(table.field_count(), std::move(field)));
}

int convert(Session& session, CWorkSheet& table, size_t index, const NamedType& type) {
  FieldConversion settings;
  settings.field = index;
  settings.type = type.type;
  settings.link = type.link;
  const ConversionCheck check = check_conversion(table, settings);
  if (!check.refusal.empty()) return fail(check.refusal);
  if (!check.question.empty() && !session.questions().ask(check.question))
    return fail("not changed: " + check.question);
  session.progress().begin("Converting Field Data");
  const ConversionResult result = convert_field(table, settings, session.progress());
  for (const std::string& text : result.messages) warn(text);
  return done(result.error);
}

int change_field(Session& session, CWorkSheet& table, const FieldArguments& arguments, size_t index) {
  if (!arguments.type.empty()) {
    const int status = convert(session, table, index, named_type(arguments.type));
    if (status != kDone) return status;
  }
  Field definition = table.field(index);
  if (arguments.default_value) definition.default_value = *arguments.default_value;
  if (const int status = read_formulas(table, arguments, definition); status != kDone) return status;
  if (const int status = read_format(arguments.format, definition); status != kDone) return status;
  return done(table.change_field(index, std::move(definition)));
}

int rename_field(CWorkSheet& table, const std::vector<std::string>& words, size_t index) {
  if (words.size() != 3) return fail_usage("field rename needs the name and the new name");
  if (const int status = check_name(table, words[2], index); status != kDone) return status;
  return done(table.rename_field(index, words[2]));
}

int run_action(Session& session, CWorkSheet& table, const FieldArguments& arguments) {
  const std::vector<std::string>& words = arguments.words;
  if (words.size() < 2)
    return fail_usage("field needs add, change, rename or delete, and the name of a field");
  const std::string& action = words[0];
  if (action == "add") return add_field(table, arguments, words[1]);
  std::vector<size_t> fields;
  if (const int status = session.find_fields(table, {words[1]}, fields); status != kDone) return status;
  if (action == "change") return change_field(session, table, arguments, fields[0]);
  if (action == "rename") return rename_field(table, words, fields[0]);
  if (action == "delete") return done(table.delete_field(fields[0]));
  return fail_usage("field knows add, change, rename and delete, not \"" + action + "\"");
}

int run_field(const GlobalOptions& global, FieldArguments& arguments) {
  Session session(global);
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  CWorkSheet* table = session.take_table(arguments.words);
  if (table == nullptr) return kFailed;
  int status = run_action(session, *table, arguments);
  if (status == kDone && arguments.formula) status = check_circles(session);
  return status == kDone ? session.save(arguments.save) : status;
}

}  // namespace

void add_field_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<FieldArguments>();
  CLI::App* command = app.add_subcommand("field", "Add, change, rename or delete a field");
  command->footer(
      "Examples:\n  rvb field shop.rvb products add Weight --type number\n  rvb field "
      "shop.rvb 'sales/order lines' add Total --type number --formula '=Quantity*Unit price'\n  rvb field "
      "shop.rvb products "
      "change Notes --type longtext\n  rvb field shop.rvb products change Price --format 'currency "
      "decimals=2'\n  "
      "rvb field shop.rvb sales/orders change Paid --format dd.mm.yyyy\n  rvb field shop.rvb products rename "
      "Name Title\n  rvb field shop.rvb "
      "products delete Weight");
  command->add_option("DATABASE", arguments->database, "Database, or any file with tables (needs -o)")
      ->required();
  command->add_option(
      "TABLE ACTION NAME", arguments->words,
      "Path of the table (needed when there are several); add, change, rename or delete; the field, and "
      "its new name");
  command->add_option("--type", arguments->type, "text, link, number, longtext, files or code")
      ->check(CLI::IsMember({"text", "link", "number", "longtext", "files", "code"}));
  command->add_option("--default", arguments->default_value, "Value that new records get");
  command->add_option("--formula", arguments->formula, "Formula that calculates the values; empty: none");
  command->add_option("--validation", arguments->validation,
                      "Formula that entered values must satisfy; empty: none");
  command->add_option("--format", arguments->format,
                      "How numbers are shown: default, general, currency, accounting, date, time, date/time, "
                      "percent, fraction or scientific with options, or a format code (doc/formats.md)");
  arguments->save.add_to(*command);
  arguments->text.add_to(*command, true);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_field(context.global, *arguments); };
  });
}

}  // namespace rowvane::cli

#include <array>
#include <memory>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/report.h"
#include "cli/session.h"
#include "formula/fields/field_entry.h"
#include "formula/fields/formula_hooks.h"
#include "formula/formats/format_style_text.h"

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
  std::optional<uint16_t> width;
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

// FORMULA, cut to what fields can hold, into STORED.
void read_formula(const std::optional<std::string>& formula, std::string& stored) {
  if (!formula) return;
  TextEntry entry = read_formula_entry(*formula);
  if (!entry.warning.empty()) warn(entry.warning);
  stored = std::move(entry.text);
}

// The format code of the typed style, into FIELD. Dates take the user's separator and order.
int read_format(const std::optional<std::string>& typed, Field& field) {
  if (!typed) return kDone;
  const platform::RegionalSettings region = platform::user_regional_settings();
  const StyleEntry entry = read_format_style(*typed, region.currency_symbol);
  if (!entry.check.passes()) return fail(entry.check.refusal);
  field.format = entry.style.kind == FormatKind::kCustom
                     ? *typed
                     : build_format_code(entry.style, stored_format_separators(region));
  return kDone;
}

int read_arguments(const FieldArguments& arguments, Field& field) {
  if (!arguments.type.empty()) {
    const NamedType& type = named_type(arguments.type);
    field.type = type.type;
    field.link = type.link;
  }
  if (arguments.default_value) field.default_value = *arguments.default_value;
  if (arguments.width) field.width = *arguments.width;
  read_formula(arguments.formula, field.formula);
  read_formula(arguments.validation, field.validation);
  return read_format(arguments.format, field);
}

// Asks about the values that the change would lose.
int accept_loss(Session& session, const CWorkSheet& table, const FieldEntry& entry) {
  session.progress().begin("Reading the field");
  const ConversionLoss loss = find_entry_loss(table, entry, session.progress());
  session.progress().begin("Changing the field");
  const int status = report(loss);
  return status == kDone ? accept(loss.check, session.questions()) : status;
}

// Inserts or changes a field as ENTRY says.
int apply(Session& session, CWorkSheet& table, const FieldEntry& entry) {
  const FormulaSettings formulas;
  int status = accept(check_field_entry(table, entry, formulas), session.questions());
  if (status == kDone) status = accept_loss(session, table, entry);
  if (status != kDone) return status;
  return report(apply_field_entry(table, entry, formulas, session.progress()));
}

int add_field(Session& session, CWorkSheet& table, const FieldArguments& arguments, const std::string& name) {
  FieldEntry entry;
  entry.before = table.field_count();
  entry.field.name = name;
  entry.field.position = static_cast<uint16_t>(table.field_count());
  if (const int status = read_arguments(arguments, entry.field); status != kDone) return status;
  return apply(session, table, entry);
}

int change_field(Session& session, CWorkSheet& table, const FieldArguments& arguments, size_t index) {
  FieldEntry entry;
  entry.index = index;
  entry.field = table.field(index);
  // A format of numbers goes with them.
  if (!arguments.type.empty() && named_type(arguments.type).type != FieldType::kNumber)
    entry.field.format.clear();
  if (const int status = read_arguments(arguments, entry.field); status != kDone) return status;
  return apply(session, table, entry);
}

int rename_field(Session& session, CWorkSheet& table, const std::vector<std::string>& words, size_t index) {
  if (words.size() != 3) return fail_usage("field rename needs the name and the new name");
  FieldEntry entry;
  entry.index = index;
  entry.field = table.field(index);
  entry.field.name = words[2];
  return apply(session, table, entry);
}

int run_action(Session& session, CWorkSheet& table, const FieldArguments& arguments) {
  const std::vector<std::string>& words = arguments.words;
  if (words.size() < 2)
    return fail_usage("field needs add, change, rename or delete, and the name of a field");
  const std::string& action = words[0];
  if (action == "add") return add_field(session, table, arguments, words[1]);
  std::vector<size_t> fields;
  if (const int status = session.find_fields(table, {words[1]}, fields); status != kDone) return status;
  if (action == "change") return change_field(session, table, arguments, fields[0]);
  if (action == "rename") return rename_field(session, table, words, fields[0]);
  if (action == "delete") return report(table.delete_field(fields[0]));
  return fail_usage("field knows add, change, rename and delete, not \"" + action + "\"");
}

int run_field(const GlobalOptions& global, FieldArguments& arguments) {
  Session session(global);
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  CWorkSheet* table = session.take_table(arguments.words);
  if (table == nullptr) return kFailed;
  const int status = run_action(session, *table, arguments);
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
  command->add_option("--width", arguments->width, "How wide the window shows it, in pixels")
      ->check(CLI::Range(kLeastColumnWidth, kMostColumnWidth));
  arguments->save.add_to(*command);
  arguments->text.add_to(*command, true);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_field(context.global, *arguments); };
  });
}

}  // namespace rowvane::cli

#include <cstdio>
#include <memory>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/json.h"
#include "cli/report.h"
#include "cli/session.h"
#include "crypto/field_encryption.h"

namespace rowvane::cli {
namespace {

struct InfoArguments {
  std::string database;
  std::vector<std::string> table;
  TextOptions text;
};

std::string_view format_name(Session& session) {
  return session.open_database().format()->name;
}

std::string_view container_name(Session& session) {
  if (!session.open_database().has_database_file()) return "";
  return session.file().variant() == ZipVariant::kZip64 ? "zip64" : "zip32";
}

void append_json_member(std::string_view key, std::string_view text, std::string& out) {
  append_json_string(key, out);
  out += ": ";
  append_json_string(text, out);
}

void append_json_field(const Field& field, std::string& out) {
  out += '{';
  append_json_member("name", field.name, out);
  out += ", ";
  append_json_member("type", field_type_name(plain_type(field)), out);
  out += field.link ? ", \"link\": true" : ", \"link\": false";
  for (const auto& [key, text] :
       {std::pair("formula", &field.formula), std::pair("validation", &field.validation),
        std::pair("default", &field.default_value), std::pair("format", &field.format)}) {
    out += ", ";
    append_json_member(key, *text, out);
  }
  out += ", \"width\": " + std::to_string(field.width);
  out += field.encrypted ? ", \"encrypted\": true}" : ", \"encrypted\": false}";
}

void print_json(Session& session, const std::vector<CWorkSheet*>& tables) {
  std::string out = "{\"tables\": [";
  for (const CWorkSheet* table : tables) {
    if (table != tables.front()) out += ", ";
    out += '{';
    append_json_member("path", table->path(), out);
    out += ", \"records\": " + std::to_string(table->record_count()) + ", \"fields\": [";
    for (size_t i = 0; i < table->field_count(); ++i) {
      if (i > 0) out += ", ";
      append_json_field(table->field(i), out);
    }
    out += "]}";
  }
  out += "], ";
  append_json_member("format", format_name(session), out);
  out += ", ";
  append_json_member("container", container_name(session), out);
  const Protection* protection = session.file().protection();
  if (protection != nullptr) {
    out += ", \"protected\": true, ";
    append_json_member("algorithm", cipher_name(protection->algorithm), out);
    out += protection->read_only_open ? ", \"read_only_open\": true" : ", \"read_only_open\": false";
    out += session.file().is_read_only() ? ", \"read_only\": true}\n" : ", \"read_only\": false}\n";
  } else {
    out += ", \"protected\": false}\n";
  }
  std::fwrite(out.data(), 1, out.size(), stdout);
}

void print_field(const Field& field) {
  Field plain = field;
  plain.type = plain_type(field);
  std::string line = "  " + field_list_text(plain);
  if (!field.formula.empty()) line += "  " + field.formula;
  if (!field.default_value.empty()) line += "  default " + field.default_value;
  if (!field.format.empty()) line += "  format " + field.format;
  if (!field.validation.empty()) line += "  valid when " + field.validation;
  if (field.encrypted) line += "  encrypted";
  std::printf("%s\n", line.c_str());
}

std::string protection_text(Session& session) {
  const Protection* protection = session.file().protection();
  if (protection == nullptr) return "not protected";
  std::string text = "protected with " + std::string(cipher_name(protection->algorithm));
  if (protection->read_only_open) text += ", anyone may read";
  if (session.file().is_read_only()) text += ", open read-only";
  return text;
}

void print_text(Session& session, const std::vector<CWorkSheet*>& tables) {
  const std::string container(container_name(session));
  std::printf("%s: %s%s, %zu table%s, %s\n", session.database().name().c_str(),
              std::string(format_name(session)).c_str(), container.empty() ? "" : (", " + container).c_str(),
              tables.size(), tables.size() == 1 ? "" : "s", protection_text(session).c_str());
  for (const CWorkSheet* table : tables) {
    std::printf("\n%s: %u record%s, %zu field%s\n", table->path().c_str(), table->record_count(),
                table->record_count() == 1 ? "" : "s", table->field_count(),
                table->field_count() == 1 ? "" : "s");
    for (const Field& field : table->data().fields) print_field(field);
  }
}

int run_info(const GlobalOptions& global, InfoArguments& arguments) {
  Session session(global);
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  std::vector<CWorkSheet*> tables = session.database().tables();
  if (!arguments.table.empty()) {
    CWorkSheet* table = session.take_table(arguments.table);
    if (table == nullptr || !arguments.table.empty())
      return table == nullptr ? kFailed : fail(ErrorCode::kInvalidPath);
    tables = {table};
  }
  if (global.json) {
    print_json(session, tables);
  } else {
    print_text(session, tables);
  }
  return kDone;
}

}  // namespace

void add_info_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<InfoArguments>();
  CLI::App* command = app.add_subcommand("info", "Show the tables of a database and their fields");
  command->footer(
      "Examples:\n  rvb info shop.rvb\n  rvb info shop.rvb sales/orders\n  rvb --json info orders.csv");
  command->add_option("DATABASE", arguments->database, "Database, or any file with tables")->required();
  command->add_option("TABLE", arguments->table, "Path of the table")->expected(0, 1);
  arguments->text.add_to(*command, true);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_info(context.global, *arguments); };
  });
}

}  // namespace rowvane::cli

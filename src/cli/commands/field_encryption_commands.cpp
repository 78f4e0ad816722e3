#include <memory>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/password_input.h"
#include "cli/report.h"
#include "cli/session.h"
#include "core/parallel_blocks.h"
#include "crypto/field_encryption.h"

namespace rowvane::cli {
namespace {

struct FieldEncryptionArguments {
  std::string database;
  std::vector<std::string> table;
  std::vector<std::string> fields;
  std::string password_file;
  SaveOptions save;
  TextOptions text;
};

int open_table(Session& session, FieldEncryptionArguments& arguments, CWorkSheet** table) {
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  *table = session.take_table(arguments.table);
  if (*table == nullptr) return kFailed;
  return arguments.table.empty() ? kDone : fail(ErrorCode::kInvalidPath);
}

int finish(Session& session, const FieldEncryptionArguments& arguments, const Outcome& outcome) {
  const int status = report(outcome);
  return status == kDone ? session.save(arguments.save) : status;
}

int run_encrypt(const GlobalOptions& global, FieldEncryptionArguments& arguments) {
  Session session(global);
  CWorkSheet* table = nullptr;
  if (const int status = open_table(session, arguments, &table); status != kDone) return status;
  if (arguments.fields.empty()) return fail_usage("encrypt-fields needs --fields");
  FieldEncryptionSettings settings;
  settings.threads = thread_count(session.options().used_processor_cores);
  if (const int status = session.find_fields(*table, arguments.fields, settings.fields); status != kDone)
    return status;
  const PasswordPlace place{arguments.password_file, "RVB_NEW_PASSWORD", "Password of the fields: "};
  if (const int status = read_password(place, settings.password, &settings.repeated); status != kDone)
    return status;
  const int status = accept(check_encrypt_fields(*table, settings), session.questions());
  if (status != kDone) return status;
  return finish(session, arguments, encrypt_fields(*table, settings, session.progress()));
}

// The fields that are named; all encrypted ones when none is.
int find_encrypted(Session& session, const CWorkSheet& table, const std::vector<std::string>& names,
                   std::vector<size_t>& fields) {
  if (const int status = session.find_fields(table, names, fields); status != kDone) return status;
  if (names.empty()) std::erase_if(fields, [&table](size_t index) { return !table.field(index).encrypted; });
  for (const size_t index : fields) {
    if (!table.field(index).encrypted)
      return fail("the field \"" + table.field(index).name + "\" is not encrypted");
  }
  return fields.empty() ? fail("no field of " + table.path() + " is encrypted") : kDone;
}

int run_decrypt(const GlobalOptions& global, FieldEncryptionArguments& arguments) {
  Session session(global);
  CWorkSheet* table = nullptr;
  if (const int status = open_table(session, arguments, &table); status != kDone) return status;
  FieldEncryptionSettings settings;
  settings.threads = thread_count(session.options().used_processor_cores);
  if (const int status = find_encrypted(session, *table, arguments.fields, settings.fields); status != kDone)
    return status;
  const PasswordPlace place{arguments.password_file, "RVB_FIELD_PASSWORD", "Password of the fields: "};
  if (const int status = read_password(place, settings.password); status != kDone) return status;
  if (settings.password.empty() && global.password != nullptr)
    settings.password = Secret(global.password->view());
  const int status = accept(check_decrypt_fields(*table, settings), session.questions());
  if (status != kDone) return status;
  return finish(session, arguments, decrypt_fields(*table, settings, session.progress()));
}

void add_common_options(CLI::App& command, const std::shared_ptr<FieldEncryptionArguments>& arguments) {
  command.add_option("DATABASE", arguments->database, "Database, or any file with tables (needs -o)")
      ->required();
  command.add_option("TABLE", arguments->table, "Path of the table (needed when there are several)")
      ->expected(0, 1);
  arguments->save.add_to(command);
  arguments->text.add_to(command, true);
}

}  // namespace

void add_encrypt_fields_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<FieldEncryptionArguments>();
  CLI::App* command = app.add_subcommand("encrypt-fields", "Encrypt the values of fields with a password");
  command->footer(
      "Example:\n  rvb encrypt-fields shop.rvb customers --fields Phone,Notes --new-password-file -");
  add_common_options(*command, arguments);
  command->add_option("--fields", arguments->fields, "Fields to encrypt")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option(
      "--new-password-file", arguments->password_file,
      "File whose first line is the password of the fields; - asks for it. Without this option the "
      "environment variable RVB_NEW_PASSWORD is used");
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_encrypt(context.global, *arguments); };
  });
}

void add_decrypt_fields_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<FieldEncryptionArguments>();
  CLI::App* command = app.add_subcommand("decrypt-fields", "Give encrypted fields their values back");
  command->footer(
      "Examples:\n  rvb decrypt-fields shop.rvb customers --field-password-file -\n  RVB_FIELD_PASSWORD=... "
      "rvb "
      "decrypt-fields shop.rvb customers --fields Phone");
  add_common_options(*command, arguments);
  command
      ->add_option("--fields", arguments->fields, "Fields to decrypt; the default is all that are encrypted")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option(
      "--field-password-file", arguments->password_file,
      "File whose first line is the password of the fields; - asks for it. Without this option the "
      "environment variable RVB_FIELD_PASSWORD is used, without that the password of the database");
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_decrypt(context.global, *arguments); };
  });
}

}  // namespace rowvane::cli

#include <memory>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/password_input.h"
#include "cli/report.h"
#include "cli/session.h"
#include "crypto/protection.h"

namespace rowvane::cli {
namespace {

struct ProtectArguments {
  std::string database;
  std::string algorithm;
  bool read_only_open = false;
  std::string new_password_file;
  SaveOptions save;
  TextOptions text;
};

// What is not given stays as it is in a database that is protected already.
int read_settings(const Session& session, const ProtectArguments& arguments, ProtectionSettings& settings) {
  const PasswordPlace place{arguments.new_password_file, "RVB_NEW_PASSWORD", "New password: "};
  const int status = read_password(place, settings.password, &settings.repeated);
  if (status != kDone) return status;
  const Protection* present = session.file().protection();
  if (present != nullptr) {
    settings.algorithm = present->algorithm;
    if (settings.password.empty() && present->password != nullptr) {
      settings.password = Secret(present->password->view());
      settings.repeated = Secret(present->password->view());
    }
  }
  if (!arguments.algorithm.empty()) {
    settings.algorithm =
        arguments.algorithm == "blowfish" ? CipherAlgorithm::kBlowfishCfb : CipherAlgorithm::kTwofishCfb;
  }
  settings.read_only_open = arguments.read_only_open;
  return kDone;
}

int run_protect(const GlobalOptions& global, ProtectArguments& arguments) {
  Session session(global);
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  ProtectionSettings settings;
  if (const int status = read_settings(session, arguments, settings); status != kDone) return status;
  const Check check = check_protection(settings);
  if (const int status = accept(check, session.questions()); status != kDone) return status;
  const int status = report(session.file().set_protection(make_protection(std::move(settings))));
  return status == kDone ? session.save(arguments.save) : status;
}

int run_unprotect(const GlobalOptions& global, ProtectArguments& arguments) {
  Session session(global);
  if (const int status = session.open(arguments.database, arguments.text); status != kDone) return status;
  const int status = report(session.file().set_protection(std::nullopt));
  return status == kDone ? session.save(arguments.save) : status;
}

}  // namespace

void add_protect_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<ProtectArguments>();
  CLI::App* command = app.add_subcommand(
      "protect", "Encrypt a database with a password, or change its password or how it is encrypted");
  command->footer(
      "Examples:\n  rvb protect shop.rvb --new-password-file -\n  RVB_NEW_PASSWORD=... rvb protect shop.rvb "
      "--algorithm blowfish --read-only-open --yes\n  rvb --password-file old.txt protect shop.rvb "
      "--new-password-file new.txt");
  command->add_option("DATABASE", arguments->database, "Database, or any file with tables (needs -o)")
      ->required();
  command->add_option("--algorithm", arguments->algorithm, "blowfish or twofish; the default is twofish")
      ->check(CLI::IsMember({"blowfish", "twofish"}));
  command->add_flag("--read-only-open", arguments->read_only_open,
                    "Anyone may open the database read-only, without the password");
  command->add_option("--new-password-file", arguments->new_password_file,
                      "File whose first line is the new password; - asks for it. Without this option the "
                      "environment variable RVB_NEW_PASSWORD is used");
  arguments->save.add_to(*command);
  arguments->text.add_to(*command, true);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_protect(context.global, *arguments); };
  });
}

void add_unprotect_command(CLI::App& app, CommandContext& context) {
  auto arguments = std::make_shared<ProtectArguments>();
  CLI::App* command =
      app.add_subcommand("unprotect", "Take the password away: the file is no longer encrypted");
  command->footer(
      "Examples:\n  rvb --password-file - unprotect shop.rvb\n  RVB_PASSWORD=... rvb unprotect shop.rvb "
      "-o plain.rvb");
  command->add_option("DATABASE", arguments->database, "Database")->required();
  arguments->save.add_to(*command);
  command->callback([&context, arguments] {
    context.run = [&context, arguments] { return run_unprotect(context.global, *arguments); };
  });
}

}  // namespace rowvane::cli

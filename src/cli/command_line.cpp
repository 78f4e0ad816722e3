#include "cli/command_line.h"

#include <cstdio>
#include <new>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/password_input.h"
#include "cli/profile_option.h"
#include "cli/report.h"
#include "core/log.h"
#include "core/messages/messages.h"

namespace rowvane::cli {
namespace {

void add_global_options(CLI::App& app, GlobalOptions& global) {
  app.add_flag("--json", global.json, "Print machine-readable output");
  app.add_flag("--quiet", global.quiet, "Show no progress and no report");
  app.add_flag_callback(
      "--verbose", [] { set_log_categories("all"); },
      "Tell developers on the standard error stream what is read, written and worked out, and in how "
      "many milliseconds; the environment variable ROWVANE_LOG chooses from it");
  app.add_flag("--yes", global.yes, "Answer Yes to all questions");
  app.add_option("--threads", global.threads, "Threads to use, 1 to 16")->check(CLI::Range(1, 16));
  app.add_option("--profile", global.profile_path, "Settings profile that steers the engine; only read");
  app.add_option(
      "--password-file", global.password_file,
      "File whose first line is the password of the database; - asks for it. Without this option the "
      "environment variable RVB_PASSWORD is used");
  app.set_version_flag("--version", std::string(message_text(MessageId::kProgramTitle)));
}

int read_database_password(GlobalOptions& global) {
  Secret password;
  const int status = read_password({global.password_file, "RVB_PASSWORD", "Password: "}, password);
  if (!password.empty()) global.password = std::make_shared<const Secret>(std::move(password));
  return status;
}

int report_usage(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) return app.exit(error);
  return fail_usage(std::string(error.what()) + " (rvb --help shows the commands)");
}

int run(int count, const char* const* arguments) {
  set_log_categories_from_environment();
  CLI::App app(
      "Works on Rowvane databases, and on any file that Rowvane can open, from a terminal or a script.",
      "rvb");
  app.allow_windows_style_options(false);  // "/name" is a path on either system
  CommandContext context;
  add_global_options(app, context.global);
  app.fallthrough();  // global options may follow the command; commands inherit this when they are added
  add_info_command(app, context);
  add_show_command(app, context);
  add_count_command(app, context);
  add_find_command(app, context);
  add_replace_command(app, context);
  add_keys_command(app, context);
  add_duplicates_command(app, context);
  add_unique_command(app, context);
  add_quartiles_command(app, context);
  add_import_command(app, context);
  add_export_command(app, context);
  add_field_command(app, context);
  add_set_command(app, context);
  add_insert_command(app, context);
  add_delete_command(app, context);
  add_eval_command(app, context);
  add_dates_command(app, context);
  add_recalc_command(app, context);
  add_compact_command(app, context);
  add_protect_command(app, context);
  add_unprotect_command(app, context);
  add_encrypt_fields_command(app, context);
  add_decrypt_fields_command(app, context);
  app.require_subcommand(1);
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    return report_usage(app, error);
  }
  if (const int status = load_profile(context.global); status != kDone) return status;
  const int status = read_database_password(context.global);
  return status == kDone ? context.run() : status;
}

}  // namespace

int run_command_line(int count, const char* const* arguments) {
  try {
    const int status = run(count, arguments);
    if (std::fflush(stdout) != 0 && status == kDone) return fail(ErrorCode::kFileWrite);
    return status;
  } catch (const std::bad_alloc&) {
    return fail(ErrorCode::kOutOfMemory);
  }
}

}  // namespace rowvane::cli

#include <cstdio>
#include <memory>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/report.h"
#include "cli/session.h"

namespace rowvane::cli {
namespace {

int run_compact(const GlobalOptions& global, const std::string& path) {
  Session session(global);
  if (const int status = session.open(path, TextOptions()); status != kDone) return status;
  if (!session.open_database().has_database_file()) return fail(ErrorCode::kInvalidBinaryFormat);
  const CompactResult result = session.open_database().compact(session.progress());
  if (const int status = report(result); status != kDone) return status;
  if (!global.quiet) std::printf("%s\n", message(result.message).c_str());
  return kDone;
}

}  // namespace

void add_compact_command(CLI::App& app, CommandContext& context) {
  auto path = std::make_shared<std::string>();
  CLI::App* command = app.add_subcommand("compact", "Drop what no record of a database uses from its file");
  command->footer("Example:\n  rvb compact shop.rvb");
  command->add_option("DATABASE", *path, "Database file")->required();
  command->callback(
      [&context, path] { context.run = [&context, path] { return run_compact(context.global, *path); }; });
}

}  // namespace rowvane::cli

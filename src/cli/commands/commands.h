// The commands of the terminal program. Each function adds one command with its arguments, options and help
// to the parser; when the command is the one that was typed, its work is put into `context.run`.
#pragma once

#include <functional>

#include "cli/global_options.h"

namespace CLI {
class App;
}

namespace rowvane::cli {

struct CommandContext {
  GlobalOptions global;
  std::function<int()> run;  // answers the exit status
};

void add_info_command(CLI::App& app, CommandContext& context);
void add_show_command(CLI::App& app, CommandContext& context);
void add_count_command(CLI::App& app, CommandContext& context);
void add_find_command(CLI::App& app, CommandContext& context);
void add_replace_command(CLI::App& app, CommandContext& context);
void add_keys_command(CLI::App& app, CommandContext& context);
void add_duplicates_command(CLI::App& app, CommandContext& context);
void add_unique_command(CLI::App& app, CommandContext& context);
void add_quartiles_command(CLI::App& app, CommandContext& context);
void add_import_command(CLI::App& app, CommandContext& context);
void add_export_command(CLI::App& app, CommandContext& context);
void add_field_command(CLI::App& app, CommandContext& context);
void add_set_command(CLI::App& app, CommandContext& context);
void add_insert_command(CLI::App& app, CommandContext& context);
void add_delete_command(CLI::App& app, CommandContext& context);
void add_eval_command(CLI::App& app, CommandContext& context);
void add_dates_command(CLI::App& app, CommandContext& context);
void add_recalc_command(CLI::App& app, CommandContext& context);
void add_compact_command(CLI::App& app, CommandContext& context);
void add_protect_command(CLI::App& app, CommandContext& context);
void add_unprotect_command(CLI::App& app, CommandContext& context);
void add_encrypt_fields_command(CLI::App& app, CommandContext& context);
void add_decrypt_fields_command(CLI::App& app, CommandContext& context);

}  // namespace rowvane::cli

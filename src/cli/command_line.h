// The command line of the terminal program.
#pragma once

namespace rowvane::cli {

// Runs the command that the arguments name; answers the exit status: 0 done, 1 failed, 2 wrong arguments.
int run_command_line(int count, char** arguments);

}  // namespace rowvane::cli

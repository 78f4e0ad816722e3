// The command line of the terminal program.
#pragma once

namespace rowvane::cli {

// Runs the command that the COUNT ARGUMENTS name, texts in UTF-8 with the program's name first; answers the
// exit status: 0 done, 1 failed, 2 wrong arguments.
int run_command_line(int count, const char* const* arguments);

}  // namespace rowvane::cli

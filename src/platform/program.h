// Where a program starts.
#pragma once

namespace rowvane::platform {

// A program's main function: each program that links rowvane_program defines it. ARGUMENTS are COUNT texts in
// UTF-8, the program's own name first. Standard output and standard error take bytes as they are, on a
// terminal UTF-8. Answers the exit status.
int program_main(int count, const char* const* arguments);

}  // namespace rowvane::platform

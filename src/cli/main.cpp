#include "cli/command_line.h"
#include "platform/program.h"

int rowvane::platform::program_main(int count, const char* const* arguments) {
  return cli::run_command_line(count, arguments);
}

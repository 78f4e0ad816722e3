#include "cli/command_line.h"

int main(int count, char** arguments) {
  return rowvane::cli::run_command_line(count, arguments);
}

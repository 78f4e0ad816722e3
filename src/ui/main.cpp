#include "platform/program.h"
#include "ui/window_program.h"

int rowvane::platform::program_main(int count, const char* const* arguments) {
  return run_window_program(count, arguments);
}

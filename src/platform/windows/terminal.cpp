#include "platform/terminal.h"

#include <windows.h>

#include "platform/terminal_columns.h"

namespace rowvane::platform {
namespace {

bool is_console(DWORD stream) {
  DWORD mode = 0;
  return ::GetConsoleMode(::GetStdHandle(stream), &mode) != 0;
}

}  // namespace

bool is_output_terminal() {
  return is_console(STD_OUTPUT_HANDLE);
}
bool is_error_terminal() {
  return is_console(STD_ERROR_HANDLE);
}
bool is_input_terminal() {
  return is_console(STD_INPUT_HANDLE);
}

std::optional<int> terminal_width() {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &info) == 0) return std::nullopt;
  if (const std::optional<int> columns = columns_from_environment()) return columns;
  return info.srWindow.Right - info.srWindow.Left + 1;
}

}  // namespace rowvane::platform

#include "platform/command_text.h"

#include <string_view>

#include <windows.h>

#include "platform/windows/wide.h"

namespace rowvane::platform {

std::optional<std::string> command_text() {
  std::wstring_view text = ::GetCommandLineW();
  // The program's name ends at a blank outside double quotes.
  bool quoted = false;
  size_t end = 0;
  while (end < text.size() && (quoted || (text[end] != L' ' && text[end] != L'\t'))) {
    if (text[end] == L'"') quoted = !quoted;
    ++end;
  }
  text.remove_prefix(end);
  return to_utf8(text);
}

}  // namespace rowvane::platform

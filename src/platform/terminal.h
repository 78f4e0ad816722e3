// What stands behind the standard streams.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace rowvane::platform {

bool is_output_terminal();
bool is_error_terminal();
bool is_input_terminal();

// Shows PROMPT on the terminal and reads one line from it, without showing what is typed, whatever the
// standard streams are. LINE gets it without its end, at most kMaxHiddenLine bytes of UTF-8; no other copy of
// it is left in memory. False when there is no terminal, or when the user ends the input instead.
inline constexpr size_t kMaxHiddenLine = 1000;
bool ask_hidden(std::string_view prompt, std::string& line);

// Width in columns of the terminal on standard output, or nothing when it is not a terminal or does not tell.
// The environment variable COLUMNS goes before what the terminal says.
std::optional<int> terminal_width();

}  // namespace rowvane::platform

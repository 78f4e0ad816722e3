// What stands behind the standard streams.
#pragma once

#include <optional>
#include <string_view>

namespace rowvane::platform {

bool is_output_terminal();
bool is_error_terminal();
bool is_input_terminal();

// Width in columns of the terminal on standard output, or nothing when it is not a terminal or does not tell.
// The environment variable COLUMNS goes before what the terminal says.
std::optional<int> terminal_width();

// Number of terminal columns that the UTF-8 TEXT takes: wide characters two, combining marks and control
// characters none.
int display_width(std::string_view text);

}  // namespace rowvane::platform

// The command line as one text.
#pragma once

#include <optional>
#include <string>

namespace rowvane::platform {

// Everything behind the program's name, as it was typed. Nothing on systems where the shell hands over single
// arguments (Linux): the arguments of `main` are all there is.
std::optional<std::string> command_text();

}  // namespace rowvane::platform

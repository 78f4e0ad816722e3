// The width of the terminal as the environment gives it.
#pragma once

#include <optional>

namespace rowvane::platform {

// The value of the environment variable COLUMNS when it is a width that a terminal can have.
std::optional<int> columns_from_environment();

}  // namespace rowvane::platform

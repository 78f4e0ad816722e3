// The environment variables of the process.
#pragma once

#include <string>

namespace rowvane::platform {

// The value of the variable NAME as UTF-8; false when there is none. No other copy of the value is made
// beside that of the system.
bool read_environment(const std::string& name, std::string& value);

}  // namespace rowvane::platform

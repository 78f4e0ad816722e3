#include "platform/environment_variables.h"

#include <cstdlib>

namespace rowvane::platform {

bool read_environment(const std::string& name, std::string& value) {
  const char* const found = std::getenv(name.c_str());
  if (found == nullptr) return false;
  value = found;
  return true;
}

}  // namespace rowvane::platform

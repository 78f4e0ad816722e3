#include "platform/linux/environment_locale.h"

#include <cstdlib>

namespace rowvane::platform {

std::string locale_from_environment(const char* category) {
  for (const char* const variable : {"LC_ALL", category, "LANG"}) {
    const char* const value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return "C";
}

}  // namespace rowvane::platform

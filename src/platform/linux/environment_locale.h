// The locales that the environment sets.
#pragma once

#include <string>

namespace rowvane::platform {

// The name that the environment gives for CATEGORY, such as "LC_TIME": LC_ALL goes before it, LANG behind.
// "C" when none is set.
std::string locale_from_environment(const char* category);

}  // namespace rowvane::platform

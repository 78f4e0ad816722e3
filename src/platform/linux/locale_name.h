// Names of locales as POSIX writes them, and the ones that the environment sets.
#pragma once

#include <string>
#include <string_view>

namespace rowvane::platform {

// The parts of "language[_TERRITORY][.charset][@modifier]"; "-" may stand for "_".
struct LocaleName {
  std::string language;   // "de"; empty for the "C" and "POSIX" locales
  std::string script;     // "Latn" or "Cyrl" where the name asks for it
  std::string territory;  // "DE"

  // "sr_Latn_RS", without the parts that are empty.
  std::string joined() const;
};

LocaleName parse_locale_name(std::string_view name);

// The name that the environment gives for CATEGORY, such as "LC_TIME": LC_ALL goes before it, LANG behind.
// "C" when none is set.
std::string locale_from_environment(const char* category);

}  // namespace rowvane::platform

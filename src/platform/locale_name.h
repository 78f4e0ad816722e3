// The parts of a locale's name, however the system or the user writes it.
#pragma once

#include <string>
#include <string_view>

namespace rowvane::platform {

// The parts of "language[_Script][_TERRITORY][.charset][@modifier]"; "-" may stand for "_".
struct LocaleName {
  std::string language;   // "de"; empty for the "C" and "POSIX" locales
  std::string script;     // "Latn" or "Cyrl" where the name asks for it
  std::string territory;  // "DE"

  // "sr_Latn_RS", without the parts that are empty.
  std::string joined(char separator = '_') const;
};

LocaleName parse_locale_name(std::string_view name);

}  // namespace rowvane::platform

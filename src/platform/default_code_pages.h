// The ANSI and OEM code pages of the user.
#pragma once

namespace rowvane::platform {

struct DefaultCodePages {
  unsigned ansi = 1252;
  unsigned oem = 850;
};

// On Linux the pair that Windows has for the language of LC_ALL, LC_CTYPE or LANG.
DefaultCodePages user_code_pages();

}  // namespace rowvane::platform

// The ANSI and OEM code pages of a locale.
#pragma once

#include "platform/linux/locale_name.h"

namespace rowvane::platform {

struct DefaultCodePages {
  unsigned ansi = 1252;
  unsigned oem = 850;
};

// The pair of pages that a desktop in LOCALE would use.
DefaultCodePages default_code_pages_of(const LocaleName& locale);

}  // namespace rowvane::platform

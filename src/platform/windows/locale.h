// What Windows knows of a language and a region.
#pragma once

#include <string>

#include <windows.h>

#include "platform/locale_name.h"

namespace rowvane::platform {

// The system's name for NAME, such as "de-DE"; empty when it has no data for the language.
std::wstring system_locale_of(const LocaleName& name);

// The text of TYPE, one of the LOCALE_ constants, for the locale called NAME; empty when there is none.
std::string locale_text(const wchar_t* name, LCTYPE type);

}  // namespace rowvane::platform

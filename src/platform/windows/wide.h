// Texts as the calls of Windows take them and answer them.
#pragma once

#include <string>
#include <string_view>

namespace rowvane::platform {

// UTF-8 as UTF-16. Broken sequences become U+FFFD.
std::wstring to_wide(std::string_view utf8);

// UTF-16 as UTF-8. Lone surrogates become U+FFFD.
std::string to_utf8(std::wstring_view wide);

}  // namespace rowvane::platform

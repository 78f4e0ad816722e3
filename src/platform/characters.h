// Properties of Unicode characters.
#pragma once

#include <string>
#include <string_view>

namespace rowvane::platform {

// True for a letter of any script.
bool is_letter(char32_t character);

// The UTF-8 TEXT folded so that two texts which differ only in letter case become equal.
std::string fold_case(std::string_view text);

}  // namespace rowvane::platform

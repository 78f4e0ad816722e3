// Properties of Unicode characters.
#pragma once

#include <string>
#include <string_view>

namespace rowvane::platform {

// True for a letter of any script.
bool is_letter(char32_t character);
// True for an accent or a vowel sign that joins the letter before it.
bool is_mark(char32_t character);

// The UTF-8 TEXT folded so that two texts which differ only in letter case become equal. Broken
// sequences stay as they are.
std::string fold_case(std::string_view text);

// The UTF-8 TEXT in capitals, by the rules that hold in every language. Broken sequences stay as they are.
std::string upper_case(std::string_view text);

}  // namespace rowvane::platform

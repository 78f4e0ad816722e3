// Characters that Windows has no calls for: those above U+FFFF, and the width of all.
#pragma once

namespace rowvane::platform {

// True for letters above U+FFFF. Marks and unassigned characters between letters count with them.
bool is_supplementary_letter(char32_t character);

// The lower case of a letter above U+FFFF, or CHARACTER itself.
char32_t supplementary_lower_case(char32_t character);

// True for characters of the East Asian widths "wide" and "fullwidth".
bool is_in_wide_range(char32_t character);

// True for characters that only steer how others are shown.
bool is_format_character(char32_t character);

}  // namespace rowvane::platform

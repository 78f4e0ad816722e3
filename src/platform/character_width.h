// What the system knows of the width of a character.
#pragma once

namespace rowvane::platform {

// True for controls, for characters that only steer how others are shown, and for marks that stand on another
// one.
bool takes_no_column(char32_t character);
// True for those that East Asian texts set in the square of an ideograph, and for emoji.
bool is_wide(char32_t character);

}  // namespace rowvane::platform

// The values of the profile as text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/profile/profile_settings.h"

namespace rowvane::profile {

// "true" or "false". Reading takes yes, no, on, off, 1 and 0 too, in any letter case.
std::string flag_text(bool value);
std::optional<bool> parse_flag(std::string_view text);

// "%d". Reading takes blanks around the number; nothing for a value outside RANGE.
std::string number_text(int64_t value);
std::optional<int64_t> parse_number(std::string_view text, NumberRange range);

// "#%02X%02X%02X" of 0xRRGGBB.
std::string color_text(uint32_t value);
std::optional<uint32_t> parse_color(std::string_view text);

// "%d %d %d %d %d %d": flags, show state, left, top, right, bottom.
std::string placement_text(const FramePlacement& value);
std::optional<FramePlacement> parse_placement(std::string_view text);

// File extensions with blanks between them. Reading takes commas, semicolons, "*." and "." too and makes them
// lower case; nothing when one is no extension.
std::string words_text(const std::vector<std::string>& words);
std::optional<std::vector<std::string>> parse_words(std::string_view text);

// Nothing for broken UTF-8 and for more than kMaxBufferBytes.
std::optional<std::string> parse_text(std::string_view text);

}  // namespace rowvane::profile

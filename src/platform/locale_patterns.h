// What can be read from the patterns in which a locale writes dates and times, such as "d. MMMM yyyy".
//
// Letters of ASCII stand for fields ("d" day, "M" or "L" month, "y" or "u" year), except between "'" and "'";
// all else stands for itself.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/regional_settings.h"

namespace rowvane::platform {

// TEXT without blanks and without the invisible marks that steer the direction of writing.
std::string visible_part(std::string_view text);

DateOrder date_order_in(std::string_view pattern);

// What stands between the first two fields of PATTERN when it is a single sign, otherwise FALLBACK.
std::string first_separator(std::string_view pattern, std::string_view fallback);

// The words of PATTERN that stand for themselves: "de", "г", "年".
std::vector<std::string> literal_words(std::string_view pattern);

}  // namespace rowvane::platform

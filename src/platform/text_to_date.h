// Reads dates and times as people in the user's region write them.
#pragma once

#include <optional>
#include <string_view>

#include "platform/regional_settings.h"

namespace rowvane::platform {

// The day number of the UTF-8 TEXT with day 0 at 1899-12-30 and the time of day as the fraction, or nothing when
// TEXT as a whole is not a date, a time, or a date with a time. A time alone lies on day 0. Numeric dates follow
// the day, month and year order of SETTINGS; year-month-day ("2024-03-01", also with "T" before the time) is read
// everywhere. Two-digit years are taken as 1930 to 2029. Years run from 100 to 9999.
std::optional<double> text_to_date(std::string_view text, const RegionalSettings& settings);

}  // namespace rowvane::platform

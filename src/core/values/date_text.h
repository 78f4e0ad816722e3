// Dates as day numbers: day 0 is 1899-12-30, the time of day is the fraction.
#pragma once

#include <string>

namespace rowvane {

// The days of the years 100 to 9999, which dates are shown and read in.
inline constexpr double kFirstDay = -657'434;
inline constexpr double kBehindLastDay = 2'958'466;

// The standard date text: "YYYY-MM-DD", with "Thh:mm:ss" behind it when DAY has a time of day (rounded to
// seconds). DAY must lie in the years 100 to 9999, also when rounded.
std::string standard_date_text(double day);

}  // namespace rowvane

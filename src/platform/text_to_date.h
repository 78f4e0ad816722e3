// Reads dates and times as people in the user's region write them.
#pragma once

#include <optional>
#include <string_view>

#include "platform/regional_settings.h"

namespace rowvane::platform {

// The day number of the UTF-8 TEXT with day 0 at 1899-12-30 plus the time of day as a fraction of the day (so
// 6:00 on the day before day 0 is -0.75), or nothing when TEXT as a whole is not a date, a time, or both. A
// time alone lies on day 0. Years run from 100 to 9999; two digits mean 1930 to 2029, and one digit is no
// year.
//
// Numeric dates have three numbers between two equal signs: "/", "-", "." or the date separator of SETTINGS.
// They follow the day, month and year order of SETTINGS; where that gives no date, month-day-year,
// day-month-year and year-month-day are tried in turn. A first number of three or four digits is always the
// year of year-month-day.
//
// Months may be named in the language of SETTINGS or in English, in full or shortened: "3 March 2024",
// "Mar. 3rd, 2024", "3-Mar-24". A weekday before the date is read over and not compared with it.
//
// Times are "h:mm", "h:mm:ss" with or without a fraction, and "h", each with AM or PM; those without run to
// 23:59:59. Where the time separator of SETTINGS is a point, "h.mm" is read behind a date. "T" may join a
// time to a "yyyy-mm-dd" date, and "Z" may end it; the time is taken as written. Offsets such as "+01:00" are
// refused.
//
// A number alone, a date without a year and a month without a day are not dates.
//
// The reading is the program's own on both systems; only the words are the system's. VarDateFromStr of
// Windows is not asked: it takes "1.5" and "12/25" for days of the current year, so that numbers would turn
// into dates and a text into another date next year, and it refuses "2024-03-01T12:00" and the long dates of
// several languages. A test on Windows lists where the two differ.
std::optional<double> text_to_date(std::string_view text, const RegionalSettings& settings);

}  // namespace rowvane::platform

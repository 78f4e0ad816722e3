// The user's regional settings.
#pragma once

#include <string>

namespace rowvane::platform {

enum class DateOrder { kMonthDayYear, kDayMonthYear, kYearMonthDay };

struct RegionalSettings {
  std::string locale;             // "de_DE" on both systems; "C" for the generic settings
  std::string decimal_separator;  // UTF-8, at least one byte
  std::string group_separator;    // thousands; UTF-8, empty when numbers are not grouped
  std::string list_separator;     // Linux knows none: ";" where the decimal separator is ",", otherwise ","
  std::string date_separator;     // one sign, such as "." or "/"
  std::string time_separator;
  std::string currency_symbol;
  DateOrder date_order = DateOrder::kMonthDayYear;

  // Point for decimals, no grouping, year first: for files and scripts, the same on every machine.
  static RegionalSettings generic();
};

// The settings of the current user: on Windows those of the control panel; on Linux LC_ALL, LC_NUMERIC,
// LC_TIME, LC_MONETARY and LANG choose them in the usual order, and the "C" and "POSIX" locales answer
// generic().
RegionalSettings user_regional_settings();
// The settings of a named locale ("de_DE", also "de-DE" or "de_DE.UTF-8"), without what the user changed in
// them, for tests and for options that name one. generic() for one that is not known.
RegionalSettings regional_settings_of(const std::string& locale);

}  // namespace rowvane::platform

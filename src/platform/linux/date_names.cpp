#include "platform/date_names.h"

#include <unicode/dtfmtsym.h>
#include <unicode/locid.h>

#include "platform/locale_name.h"

namespace rowvane::platform {
namespace {

using icu::DateFormatSymbols;

// Copies COUNT names, the first of which has the index FIRST in NAMES; an empty one leaves what is there.
template <size_t count>
void copy_names(const icu::UnicodeString* names, int32_t total, int32_t first,
                std::array<std::string, count>& out) {
  for (size_t i = 0; i < count; ++i) {
    const int32_t place = first + static_cast<int32_t>(i);
    if (place >= total || names[place].isEmpty()) continue;
    out[i].clear();
    names[place].toUTF8String(out[i]);
  }
}

template <size_t count>
void copy_months(const DateFormatSymbols& symbols, DateFormatSymbols::DtContextType context,
                 DateFormatSymbols::DtWidthType width, std::array<std::string, count>& out) {
  int32_t total = 0;
  const icu::UnicodeString* const names = symbols.getMonths(total, context, width);
  copy_names(names, total, 0, out);
}

// The system numbers weekdays from 1, Sunday.
template <size_t count>
void copy_weekdays(const DateFormatSymbols& symbols, DateFormatSymbols::DtWidthType width,
                   std::array<std::string, count>& out) {
  int32_t total = 0;
  const icu::UnicodeString* const names = symbols.getWeekdays(total, DateFormatSymbols::FORMAT, width);
  copy_names(names, total, 1, out);
}

}  // namespace

DateNames DateNames::of(const std::string& locale) {
  DateNames names = english();
  const LocaleName name = parse_locale_name(locale);
  if (name.language.empty() || name.language == "en") return names;
  UErrorCode error = U_ZERO_ERROR;
  icu::Locale system_locale(name.joined().c_str());
  system_locale.setKeywordValue("calendar", "gregorian", error);
  const DateFormatSymbols symbols(system_locale, error);
  if (U_FAILURE(error)) return names;
  copy_months(symbols, DateFormatSymbols::FORMAT, DateFormatSymbols::WIDE, names.months);
  copy_months(symbols, DateFormatSymbols::FORMAT, DateFormatSymbols::ABBREVIATED, names.short_months);
  copy_months(symbols, DateFormatSymbols::STANDALONE, DateFormatSymbols::WIDE, names.lone_months);
  copy_weekdays(symbols, DateFormatSymbols::WIDE, names.weekdays);
  copy_weekdays(symbols, DateFormatSymbols::ABBREVIATED, names.short_weekdays);
  std::array<std::string, 2> halves{names.morning, names.afternoon};
  int32_t total = 0;
  const icu::UnicodeString* const half_names = symbols.getAmPmStrings(total);
  copy_names(half_names, total, 0, halves);
  names.morning = halves[0];
  names.afternoon = halves[1];
  return names;
}

}  // namespace rowvane::platform

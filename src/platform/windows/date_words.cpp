#include "platform/date_words.h"

#include "platform/locale_name.h"
#include "platform/locale_patterns.h"
#include "platform/windows/locale.h"

namespace rowvane::platform {
namespace {

constexpr int kMonths = 12;
constexpr int kWeekdays = 7;

void add_months(const wchar_t* locale, LCTYPE first, DateWordsBuilder& builder) {
  for (int i = 0; i < kMonths; ++i) {
    const LCTYPE type = first + static_cast<LCTYPE>(i);
    // The genitive is the form that stands in dates: "1 марта" but "март".
    for (const LCTYPE form : {LCTYPE{LOCALE_RETURN_GENITIVE_NAMES}, LCTYPE{0}}) {
      const std::string name = locale_text(locale, type | form);
      if (!name.empty()) builder.add_month(name, i + 1);
    }
  }
}

void add_weekdays(const wchar_t* locale, LCTYPE first, DateWordsBuilder& builder) {
  for (int i = 0; i < kWeekdays; ++i) {
    const std::string name = locale_text(locale, first + static_cast<LCTYPE>(i));
    if (!name.empty()) builder.add_weekday(name);
  }
}

void add_half(const wchar_t* locale, LCTYPE type, DayHalf half, DateWordsBuilder& builder) {
  const std::string name = locale_text(locale, type);
  if (!name.empty()) builder.add_half(name, half);
}

}  // namespace

void add_words_of_locale(const std::string& locale, DateWordsBuilder& builder) {
  const std::wstring system_name = system_locale_of(parse_locale_name(locale));
  if (system_name.empty()) return;
  const wchar_t* const name = system_name.c_str();
  for (const LCTYPE first : {LOCALE_SMONTHNAME1, LOCALE_SABBREVMONTHNAME1}) add_months(name, first, builder);
  for (const LCTYPE first : {LOCALE_SDAYNAME1, LOCALE_SABBREVDAYNAME1}) add_weekdays(name, first, builder);
  add_half(name, LOCALE_S1159, DayHalf::kMorning, builder);
  add_half(name, LOCALE_S2359, DayHalf::kAfternoon, builder);
  for (const std::string& word : literal_words(locale_text(name, LOCALE_SLONGDATE))) builder.add_filler(word);
}

}  // namespace rowvane::platform

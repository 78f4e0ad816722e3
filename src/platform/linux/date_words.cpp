#include "platform/date_words.h"

#include <memory>

#include <unicode/dtfmtsym.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>

#include "platform/locale_name.h"
#include "platform/locale_patterns.h"

namespace rowvane::platform {
namespace {

std::string utf8_of(const icu::UnicodeString& text) {
  std::string utf8;
  return text.toUTF8String(utf8);
}

void add_names(const icu::DateFormatSymbols& symbols, icu::DateFormatSymbols::DtContextType context,
               icu::DateFormatSymbols::DtWidthType width, DateWordsBuilder& builder) {
  int32_t count = 0;
  const icu::UnicodeString* names = symbols.getMonths(count, context, width);
  for (int32_t i = 0; i < count && i < 12; ++i) builder.add_month(utf8_of(names[i]), i + 1);
  names = symbols.getWeekdays(count, context, width);
  for (int32_t i = 0; i < count; ++i) {
    if (!names[i].isEmpty()) builder.add_weekday(utf8_of(names[i]));
  }
}

}  // namespace

void add_words_of_locale(const std::string& locale, DateWordsBuilder& builder) {
  using icu::DateFormatSymbols;
  const LocaleName name = parse_locale_name(locale);
  if (name.language.empty()) return;
  UErrorCode error = U_ZERO_ERROR;
  icu::Locale system_locale(name.joined().c_str());
  system_locale.setKeywordValue("calendar", "gregorian", error);
  const DateFormatSymbols symbols(system_locale, error);
  if (U_FAILURE(error)) return;
  for (const auto context : {DateFormatSymbols::FORMAT, DateFormatSymbols::STANDALONE}) {
    for (const auto width : {DateFormatSymbols::WIDE, DateFormatSymbols::ABBREVIATED}) {
      add_names(symbols, context, width, builder);
    }
  }
  int32_t count = 0;
  const icu::UnicodeString* const halves = symbols.getAmPmStrings(count);
  if (count == 2) {
    builder.add_half(utf8_of(halves[0]), DayHalf::kMorning);
    builder.add_half(utf8_of(halves[1]), DayHalf::kAfternoon);
  }
  const std::unique_ptr<icu::DateFormat> format(
      icu::DateFormat::createDateInstance(icu::DateFormat::kLong, system_locale));
  icu::UnicodeString pattern;
  if (const auto* const simple = dynamic_cast<icu::SimpleDateFormat*>(format.get()))
    simple->toPattern(pattern);
  for (const std::string& word : literal_words(utf8_of(pattern))) builder.add_filler(word);
}

}  // namespace rowvane::platform

#include "platform/date_words.h"

#include "platform/characters.h"
#include "platform/locale_name.h"
#include "platform/utf8.h"
#include "platform/windows/locale.h"

namespace rowvane::platform {
namespace {

void add_month(const wchar_t* name, LCTYPE type, int month, DateWordsBuilder& builder) {
  for (const LCTYPE form : {type | LOCALE_RETURN_GENITIVE_NAMES, type}) {
    const std::string text = locale_text(name, form);
    if (!text.empty()) builder.add_month(text, month);
  }
}

// The literal words of PATTERN: those in quotes and those in letters that no field uses.
void add_fillers(std::string_view pattern, DateWordsBuilder& builder) {
  std::string word;
  bool in_quotes = false;
  for (size_t position = 0; position <= pattern.size();) {
    const bool at_end = position == pattern.size();
    const char32_t c = at_end ? U' ' : next_utf8(pattern, position);
    if (at_end) ++position;
    if (c == U'\'') in_quotes = !in_quotes;
    if ((in_quotes || c >= 0x80) && is_letter(c)) {
      append_utf8(c, word);
    } else if (!word.empty()) {
      builder.add_filler(word);
      word.clear();
    }
  }
}

void add_half(const wchar_t* name, LCTYPE type, DayHalf half, DateWordsBuilder& builder) {
  const std::string text = locale_text(name, type);
  if (!text.empty()) builder.add_half(text, half);
}

}  // namespace

void add_words_of_locale(const std::string& locale, DateWordsBuilder& builder) {
  const std::wstring system_name = system_locale_of(parse_locale_name(locale));
  if (system_name.empty()) return;
  const wchar_t* const name = system_name.c_str();
  for (DWORD i = 0; i < 12; ++i) {
    // The constants of the twelve months, and of the seven days, follow each other.
    add_month(name, LOCALE_SMONTHNAME1 + i, static_cast<int>(i) + 1, builder);
    add_month(name, LOCALE_SABBREVMONTHNAME1 + i, static_cast<int>(i) + 1, builder);
  }
  for (DWORD i = 0; i < 7; ++i) {
    for (const LCTYPE type : {LOCALE_SDAYNAME1 + i, LOCALE_SABBREVDAYNAME1 + i}) {
      const std::string text = locale_text(name, type);
      if (!text.empty()) builder.add_weekday(text);
    }
  }
  add_half(name, LOCALE_S1159, DayHalf::kMorning, builder);
  add_half(name, LOCALE_S2359, DayHalf::kAfternoon, builder);
  add_fillers(locale_text(name, LOCALE_SLONGDATE), builder);
}

}  // namespace rowvane::platform

#include "platform/locale_patterns.h"

#include <algorithm>
#include <utility>

#include "platform/ascii.h"
#include "platform/characters.h"
#include "platform/utf8.h"

namespace rowvane::platform {
namespace {

bool is_blank(char32_t character) {
  return character == U' ' || character == U'\t' || character == 0xA0 || character == 0x202F ||
         (character >= 0x2000 && character <= 0x200A) || character == 0x3000;
}

bool is_direction_mark(char32_t character) {
  return character == 0x061C || character == 0x200E || character == 0x200F ||
         (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

bool is_separating_sign(std::string_view text) {
  if (text.empty() || text == "'") return false;
  size_t position = 0;
  const char32_t sign = next_character(text, position);
  return position == text.size() && !is_letter(sign);
}

}  // namespace

std::string visible_part(std::string_view text) {
  std::string visible;
  for (size_t position = 0; position < text.size();) {
    const char32_t character = next_character(text, position);
    if (!is_blank(character) && !is_direction_mark(character)) append_character(character, visible);
  }
  return visible;
}

DateOrder date_order_in(std::string_view pattern) {
  // Where a field is missing, npos puts it last.
  const size_t year = pattern.find_first_of("yu");
  const size_t month = pattern.find_first_of("ML");
  const size_t day = pattern.find('d');
  if (year < day && year < month) return DateOrder::kYearMonthDay;
  return day < month ? DateOrder::kDayMonthYear : DateOrder::kMonthDayYear;
}

std::string first_separator(std::string_view pattern, std::string_view fallback) {
  const auto* const first = std::ranges::find_if(pattern, ascii::is_letter);
  const auto* const start = std::find_if_not(first, pattern.end(), ascii::is_letter);
  const auto* const end = std::find_if(start, pattern.end(), ascii::is_letter);
  std::string separator = visible_part({start, end});
  return is_separating_sign(separator) ? separator : std::string(fallback);
}

std::vector<std::string> literal_words(std::string_view pattern) {
  std::vector<std::string> words;
  std::string word;
  bool is_quoted = false;
  for (size_t position = 0; position < pattern.size();) {
    const char32_t character = next_character(pattern, position);
    if (character == U'\'') is_quoted = !is_quoted;
    if ((is_quoted || character >= 0x80) && is_letter(character)) {
      append_character(character, word);
    } else if (!word.empty()) {
      words.push_back(std::exchange(word, {}));
    }
  }
  if (!word.empty()) words.push_back(word);
  return words;
}

}  // namespace rowvane::platform

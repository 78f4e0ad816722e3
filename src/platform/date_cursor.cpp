#include "platform/date_cursor.h"

#include "platform/ascii.h"
#include "platform/characters.h"
#include "platform/utf8.h"

namespace rowvane::platform {
namespace {

constexpr std::string_view kNoBreakBlanks[] = {"\u00A0", "\u202F"};

}  // namespace

bool DateCursor::accept(char sign) {
  if (at_end() || text_[position_] != sign) return false;
  ++position_;
  return true;
}

char DateCursor::accept_any(std::string_view signs) {
  if (at_end() || signs.find(text_[position_]) == std::string_view::npos) return '\0';
  return text_[position_++];
}

bool DateCursor::skip_blanks() {
  const size_t start = position_;
  while (!at_end()) {
    if (accept_any(" \t") != '\0') continue;
    const size_t before = position_;
    for (const std::string_view blank : kNoBreakBlanks) {
      if (text_.substr(position_).starts_with(blank)) position_ += blank.size();
    }
    if (position_ == before) break;
  }
  return position_ > start;
}

std::optional<DateNumber> DateCursor::read_number(int most_digits) {
  DateNumber number;
  size_t end = position_;
  for (; end < text_.size() && ascii::is_digit(text_[end]); ++end) {
    if (++number.digits > most_digits) return std::nullopt;
    number.value = number.value * 10 + (text_[end] - '0');
  }
  if (number.digits == 0) return std::nullopt;
  position_ = end;
  return number;
}

std::string_view DateCursor::read_word() {
  const size_t start = position_;
  size_t end = start;
  while (const size_t length = letter_length(end)) {
    end += length;
    const bool is_inner_point = end < text_.size() && text_[end] == '.' && letter_length(end + 1) > 0;
    if (is_inner_point) ++end;
  }
  position_ = end;
  return text_.substr(start, end - start);
}

std::optional<double> DateCursor::read_fraction() {
  double fraction = 0;
  double place = 1;
  const size_t start = position_;
  for (; ascii::is_digit(peek()); ++position_) {
    place /= 10;
    fraction += place * (text_[position_] - '0');
  }
  if (position_ == start) return std::nullopt;
  return fraction;
}

// Bytes of the letter or the accent at POSITION, 0 when there is none.
size_t DateCursor::letter_length(size_t position) const {
  if (position >= text_.size()) return 0;
  size_t end = position;
  const char32_t character = next_character(text_, end);
  return is_letter(character) || is_mark(character) ? end - position : 0;
}

}  // namespace rowvane::platform

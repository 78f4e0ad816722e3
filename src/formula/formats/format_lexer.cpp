#include "formula/formats/format_lexer.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "core/values/number_text.h"
#include "platform/ascii.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

struct NamedColor {
  std::string_view name;
  FormatColor color;
};
constexpr std::array<NamedColor, 8> kColors = {{{"black", FormatColor::kBlack},
                                                {"white", FormatColor::kWhite},
                                                {"red", FormatColor::kRed},
                                                {"green", FormatColor::kGreen},
                                                {"blue", FormatColor::kBlue},
                                                {"yellow", FormatColor::kYellow},
                                                {"magenta", FormatColor::kMagenta},
                                                {"cyan", FormatColor::kCyan}}};

struct NamedComparison {
  std::string_view sign;
  FormatComparison comparison;
};
// The longer of two that begin alike goes first.
constexpr std::array<NamedComparison, 6> kComparisons = {{{"<=", FormatComparison::kLessOrEqual},
                                                          {"<>", FormatComparison::kNotEqual},
                                                          {">=", FormatComparison::kGreaterOrEqual},
                                                          {"<", FormatComparison::kLess},
                                                          {">", FormatComparison::kGreater},
                                                          {"=", FormatComparison::kEqual}}};

FormatPartKind kind_of_letter(char letter) {
  switch (letter) {
    case 'y':
      return FormatPartKind::kYear;
    case 'm':
      return FormatPartKind::kMonth;
    case 'd':
      return FormatPartKind::kDay;
    case 'h':
      return FormatPartKind::kHour;
    default:
      return FormatPartKind::kSecond;
  }
}

}  // namespace

bool FormatLexer::read_section(FormatSection& section) {
  section_ = &section;
  has_more_ = false;
  while (!at_end()) {
    if (code_[position_] == ';') {
      ++position_;
      has_more_ = true;
      return true;
    }
    if (!read_part()) return false;
  }
  return true;
}

bool FormatLexer::read_part() {
  const size_t start = position_;
  if (accept(separators_.decimal)) {
    add(FormatPartKind::kPoint, start, position_ - start);
    return true;
  }
  if (accept(separators_.group)) {
    add(FormatPartKind::kGroup, start, position_ - start);
    return true;
  }
  switch (code_[position_]) {
    case '"':
      return read_quoted();
    case '\\':
      return read_escaped();
    case '_':
      return read_sign_behind(FormatPartKind::kBlank);
    case '*':
      return read_sign_behind(FormatPartKind::kFill);
    case '[':
      return read_brackets();
    case '0':
    case '#':
    case '?':
      add(FormatPartKind::kPlace, position_, 1, code_[position_]);
      ++position_;
      return true;
    case '%':
      add(FormatPartKind::kPercent, position_++, 1);
      return true;
    case '@':
      add(FormatPartKind::kEntered, position_++, 1);
      return true;
    case '/':
      add(FormatPartKind::kSlash, position_++, 1);
      return true;
    default:
      break;
  }
  if (ascii::is_digit(code_[position_])) {
    read_digits();
    return true;
  }
  if (ascii::is_letter(code_[position_])) return read_word();
  const size_t length = character_length(position_);
  add(FormatPartKind::kText, position_, length);
  position_ += length;
  return true;
}

bool FormatLexer::read_quoted() {
  const size_t start = position_ + 1;
  const size_t end = code_.find('"', start);
  if (end == std::string_view::npos) return fail("the quotes are not closed", position_);
  add(FormatPartKind::kText, start, end - start);
  position_ = end + 1;
  return true;
}

bool FormatLexer::read_escaped() {
  const size_t start = ++position_;
  if (at_end()) return fail("a character must follow \"\\\"", start - 1);
  position_ += character_length(start);
  // "Percent" escapes its sign: it is a percentage all the same. Quoted, "%" is a text.
  add(code_[start] == '%' ? FormatPartKind::kPercent : FormatPartKind::kText, start, position_ - start);
  return true;
}

bool FormatLexer::read_sign_behind(FormatPartKind kind) {
  const size_t start = ++position_;
  if (at_end()) return fail(std::string("a character must follow \"") + code_[start - 1] + '"', start - 1);
  position_ += character_length(start);
  add(kind, start, position_ - start);
  return true;
}

bool FormatLexer::read_brackets() {
  const size_t start = position_;
  const size_t end = code_.find(']', start);
  if (end == std::string_view::npos) return fail("the bracket is not closed", start);
  const std::string_view inside = code_.substr(start + 1, end - start - 1);
  position_ = end + 1;
  if (inside.starts_with('$')) {  // a currency symbol, perhaps with the number of a language
    add(FormatPartKind::kText, start + 2, std::min(inside.find('-'), inside.size()) - 1);
    return true;
  }
  return read_condition(inside) || read_color(inside) || read_elapsed(inside) ||
         fail("the brackets hold no colour, condition or elapsed time", start);
}

bool FormatLexer::read_condition(std::string_view inside) {
  for (const auto& [sign, comparison] : kComparisons) {
    if (!inside.starts_with(sign)) continue;
    const auto limit = parse_number(inside.substr(sign.size()), {separators_.decimal, ""});
    if (!limit) return false;
    section_->comparison = comparison;
    section_->limit = *limit;
    return true;
  }
  return false;
}

bool FormatLexer::read_color(std::string_view inside) {
  for (const auto& [name, color] : kColors) {
    if (!ascii::equal_ignoring_case(inside, name)) continue;
    section_->color = static_cast<uint8_t>(color);
    return true;
  }
  constexpr std::string_view kNumbered = "color";
  if (inside.size() <= kNumbered.size() ||
      !ascii::equal_ignoring_case(inside.substr(0, kNumbered.size()), kNumbered))
    return false;
  const std::string_view digits = inside.substr(kNumbered.size());
  int number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (result.ec != std::errc() || result.ptr != digits.data() + digits.size()) return false;
  if (number < 1 || number > kLastFormatColor) return false;
  section_->color = static_cast<uint8_t>(number);
  return true;
}

bool FormatLexer::read_elapsed(std::string_view inside) {
  if (inside.empty()) return false;
  const char letter = ascii::to_lower(inside.front());
  if (!std::ranges::all_of(inside, [letter](char c) { return ascii::to_lower(c) == letter; })) return false;
  if (letter != 'h' && letter != 'm' && letter != 's') return false;
  const FormatPartKind kind = letter == 'h'   ? FormatPartKind::kElapsedHours
                              : letter == 'm' ? FormatPartKind::kElapsedMinutes
                                              : FormatPartKind::kElapsedSeconds;
  add(kind, position_, 0, 0, inside.size());
  return true;
}

bool FormatLexer::read_word() {
  const size_t start = position_;
  if (accept_word("general")) {
    add(FormatPartKind::kGeneral, start, 0);
  } else if (accept_word("am/pm")) {
    add(FormatPartKind::kHalf, start, 0);
  } else if (accept_word("a/p")) {
    add(FormatPartKind::kHalf, start, 0, 1);
  } else if (accept_word("e+") || accept_word("e-")) {
    add(FormatPartKind::kExponent, start, 1, code_[start + 1]);
  } else if (std::string_view("ymdhs").find(ascii::to_lower(code_[start])) != std::string_view::npos) {
    read_date_letters();
  } else {
    return fail("a letter that means nothing must stand in quotes", start);
  }
  return true;
}

void FormatLexer::read_date_letters() {
  const size_t start = position_;
  const char letter = ascii::to_lower(code_[start]);
  while (!at_end() && ascii::to_lower(code_[position_]) == letter) ++position_;
  add(kind_of_letter(letter), start, 0, 0, position_ - start);
}

// Behind the "/" of a fraction a whole number; elsewhere each digit but 0 is a text.
void FormatLexer::read_digits() {
  const size_t start = position_++;
  const bool behind_slash = !section_->parts.empty() && section_->parts.back().kind == FormatPartKind::kSlash;
  while (behind_slash && !at_end() && ascii::is_digit(code_[position_])) ++position_;
  add(behind_slash ? FormatPartKind::kDigits : FormatPartKind::kText, start, position_ - start);
}

bool FormatLexer::accept(std::string_view what) {
  if (what.empty() || !code_.substr(position_).starts_with(what)) return false;
  position_ += what.size();
  return true;
}

bool FormatLexer::accept_word(std::string_view lower_case) {
  if (!ascii::equal_ignoring_case(code_.substr(position_, lower_case.size()), lower_case)) return false;
  position_ += lower_case.size();
  return true;
}

void FormatLexer::add(FormatPartKind kind, size_t start, size_t length, char sign, size_t width) {
  section_->parts.push_back({kind, sign, static_cast<uint16_t>(width), static_cast<uint16_t>(start),
                             static_cast<uint16_t>(length)});
}

size_t FormatLexer::character_length(size_t position) const {
  size_t end = position;
  next_character(code_, end);
  return end - position;
}

bool FormatLexer::fail(std::string_view what, size_t position) {
  problem_ = "The format code can't be used: " + std::string(what) + " (at byte " +
             std::to_string(position + 1) + ")";
  return false;
}

}  // namespace rowvane

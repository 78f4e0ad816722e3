#include "formula/formats/typed_value.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "core/values/number_text.h"
#include "platform/date_words.h"
#include "platform/text_to_date.h"

namespace rowvane {
namespace {

constexpr size_t kLongestText = 400;  // bytes
// No-break space, thin space, narrow no-break space: what regions group digits with besides a blank.
constexpr std::array<std::string_view, 3> kBlanks = {"\u00A0", "\u2009", "\u202F"};
constexpr std::array<std::string_view, 4> kSymbols = {"$", "€", "£", "¥"};

// TEXT with plain blanks only, none at the ends.
std::string with_plain_blanks(std::string_view text) {
  std::string plain(text);
  for (const std::string_view blank : kBlanks) {
    for (size_t at = plain.find(blank); at != std::string::npos; at = plain.find(blank, at))
      plain.replace(at, blank.size(), " ");
  }
  plain.erase(plain.find_last_not_of(' ') + 1);
  plain.erase(0, std::min(plain.find_first_not_of(' '), plain.size()));
  return plain;
}

bool take_prefix(std::string_view& text, std::string_view what) {
  if (what.empty() || !text.starts_with(what)) return false;
  text.remove_prefix(what.size());
  while (text.starts_with(' ')) text.remove_prefix(1);
  return true;
}

bool take_suffix(std::string_view& text, std::string_view what) {
  if (what.empty() || !text.ends_with(what)) return false;
  text.remove_suffix(what.size());
  while (text.ends_with(' ')) text.remove_suffix(1);
  return true;
}

bool take_sign(std::string_view& text) {
  if (take_prefix(text, "-")) return true;
  take_prefix(text, "+");
  return false;
}

std::optional<int64_t> take_whole(std::string_view& text) {
  int64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || text.starts_with('-')) return std::nullopt;
  text.remove_prefix(static_cast<size_t>(result.ptr - text.data()));
  return number;
}

class TypedReader {
 public:
  TypedReader(std::string_view text, const platform::RegionalSettings& region)
      : text_(text), region_(region) {
    const FormatSeparators own = format_separators_of(region);
    separators_ = {own.decimal, own.group};
    for (const std::string_view blank : kBlanks) {
      if (separators_.group == blank) separators_.group = " ";
    }
  }

  std::optional<TypedValue> read() const {
    if (const auto number = parse_number(text_, separators_)) return {{*number, FormatKind::kGeneral}};
    if (const auto value = read_percentage()) return value;
    if (const auto value = read_amount()) return value;
    if (const auto value = read_fraction()) return value;
    if (const auto date = platform::text_to_date(without_last_weekday(), region_))
      return {{*date, kind_of_date(*date)}};
    return read_length_of_time();
  }

 private:
  // Shifting the decimal digits rounds once, as a division by 100 would not.
  std::optional<TypedValue> read_percentage() const {
    std::string_view rest = text_;
    const bool negative = take_sign(rest);
    if (take_prefix(rest, "%") == take_suffix(rest, "%") || rest.empty()) return std::nullopt;
    if (rest.find_first_of("eE+-") != std::string_view::npos) return std::nullopt;
    const auto number = parse_number(std::string(rest) + "e-2", separators_);
    if (!number) return std::nullopt;
    return {{negative ? -*number : *number, FormatKind::kPercent}};
  }

  std::optional<TypedValue> read_amount() const {
    std::string_view rest = text_;
    const bool in_parentheses = rest.starts_with('(') && rest.ends_with(')') && rest.size() > 2;
    if (in_parentheses) {
      take_prefix(rest, "(");
      take_suffix(rest, ")");
    }
    bool negative = !in_parentheses && take_sign(rest);
    const bool has_symbol = take_symbol(rest);
    if (has_symbol && !in_parentheses && !negative) negative = take_sign(rest);
    if (!has_symbol && !in_parentheses) return std::nullopt;
    if (rest.starts_with('-') || rest.starts_with('+')) return std::nullopt;
    const auto number = parse_number(rest, separators_);
    if (!number) return std::nullopt;
    return {{negative || in_parentheses ? -*number : *number,
             has_symbol ? FormatKind::kCurrency : FormatKind::kGeneral}};
  }

  bool take_symbol(std::string_view& text) const {
    if (take_prefix(text, region_.currency_symbol) || take_suffix(text, region_.currency_symbol)) return true;
    for (const std::string_view symbol : kSymbols) {
      if (take_prefix(text, symbol) || take_suffix(text, symbol)) return true;
    }
    return false;
  }

  std::optional<TypedValue> read_fraction() const {
    std::string_view rest = text_;
    const bool negative = take_sign(rest);
    auto numerator = take_whole(rest);
    int64_t whole = 0;
    if (numerator && take_prefix(rest, " ")) {
      whole = *numerator;
      numerator = take_whole(rest);
    }
    if (!numerator || !take_prefix(rest, "/")) return std::nullopt;
    const auto denominator = take_whole(rest);
    if (!denominator || *denominator == 0 || !rest.empty()) return std::nullopt;
    const double size =
        static_cast<double>(whole) + static_cast<double>(*numerator) / static_cast<double>(*denominator);
    return {{negative ? -size : size, FormatKind::kFraction}};
  }

  // Where the year goes first, formats with weekdays put these behind the date: "2024, Feb 29, Thu".
  std::string_view without_last_weekday() const {
    const size_t comma = text_.rfind(", ");
    if (comma == std::string_view::npos) return text_;
    const platform::DateWords& words = platform::DateWords::of(region_.locale);
    return words.find(text_.substr(comma + 2)).is_weekday ? text_.substr(0, comma) : text_;
  }

  // Day 0 is where times without a date lie.
  static FormatKind kind_of_date(double date) {
    if (date >= 0 && date < 1) return FormatKind::kTime;
    return date == std::floor(date) ? FormatKind::kDate : FormatKind::kDateTime;
  }

  std::optional<TypedValue> read_length_of_time() const {
    std::string_view rest = text_;
    const std::string_view separator =
        region_.time_separator == "." ? ":" : std::string_view(region_.time_separator);
    const bool negative = take_sign(rest);
    const auto hours = take_whole(rest);
    if (!hours || *hours > 1'000'000'000 || !(take_prefix(rest, ":") || take_prefix(rest, separator)))
      return std::nullopt;
    const auto minutes = take_whole(rest);
    if (!minutes || *minutes > 59) return std::nullopt;
    double seconds = static_cast<double>(*hours * 3600 + *minutes * 60);
    if (take_prefix(rest, ":") || take_prefix(rest, separator)) {
      if (rest.empty() || rest.find_first_not_of("0123456789.,") != std::string_view::npos)
        return std::nullopt;
      const auto last = parse_number(rest, {separators_.decimal, ""});
      if (!last || *last >= 60) return std::nullopt;
      seconds += *last;
      rest = {};
    }
    if (!rest.empty()) return std::nullopt;
    constexpr double kSecondsInDay = 86'400;
    return {{(negative ? -seconds : seconds) / kSecondsInDay, FormatKind::kTime}};
  }

  std::string_view text_;
  const platform::RegionalSettings& region_;
  NumberSeparators separators_;
};

}  // namespace

std::optional<TypedValue> read_typed_value(std::string_view text, const platform::RegionalSettings& region) {
  if (text.size() > kLongestText) return std::nullopt;
  const std::string plain = with_plain_blanks(text);
  return TypedReader(plain, region).read();
}

}  // namespace rowvane

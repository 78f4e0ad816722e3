#include "core/values/number_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "core/values/number_cell.h"
#include "platform/ascii.h"

namespace rowvane {
namespace {

constexpr size_t kMaxNumberText = 400;  // longer digit runs are no numbers that anybody computes with

std::string_view trim_blanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// The parts of a number's text, all digits, with separators taken out.
struct NumberParts {
  bool negative = false;
  bool plus = false;
  std::string_view integer;
  std::string_view fraction;
  std::string_view exponent;  // with its sign; empty when there is none
};

// Takes the digits at the front of REST.
std::string_view take_digits(std::string_view& rest) {
  size_t n = 0;
  while (n < rest.size() && ascii::is_digit(rest[n])) ++n;
  const std::string_view digits = rest.substr(0, n);
  rest.remove_prefix(n);
  return digits;
}

bool take(std::string_view& rest, std::string_view what) {
  if (what.empty() || !rest.starts_with(what)) return false;
  rest.remove_prefix(what.size());
  return true;
}

// Splits TEXT into its parts; false when it has not the form of a number.
bool split_number(std::string_view rest, std::string_view decimal, NumberParts& parts) {
  parts.negative = take(rest, "-");
  parts.plus = !parts.negative && take(rest, "+");
  parts.integer = take_digits(rest);
  if (take(rest, decimal)) parts.fraction = take_digits(rest);
  if (parts.integer.empty() && parts.fraction.empty()) return false;
  if (!rest.empty() && (rest.front() == 'e' || rest.front() == 'E')) {
    rest.remove_prefix(1);
    const char* start = rest.data();
    if (!take(rest, "-")) take(rest, "+");
    if (take_digits(rest).empty()) return false;
    parts.exponent = std::string_view(start, static_cast<size_t>(rest.data() - start));
  }
  return rest.empty();
}

// Takes the group separators out of TEXT into OUT; false when they do not stand between groups of three.
bool remove_groups(std::string_view text, const NumberSeparators& separators, std::string& out) {
  std::string_view rest = text;
  if (!rest.empty() && (rest.front() == '-' || rest.front() == '+')) {
    out += rest.front();
    rest.remove_prefix(1);
  }
  std::string_view group = take_digits(rest);
  out += group;
  for (bool first = true; take(rest, separators.group); first = false) {
    if (first && (group.empty() || group.size() > 3)) return false;
    group = take_digits(rest);
    if (group.size() != 3) return false;
    out += group;
  }
  out += rest;
  return out.find(separators.group) == std::string::npos;
}

// Reads generic text without blanks or plus sign.
std::optional<double> read_generic(std::string_view text) {
  double number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return number;
}

struct Decimal {
  std::array<char, kMaxNumberText> digits;  // significant digits, none of the zeros around them
  size_t count = 0;
  long exponent = 0;  // the value is 0.DIGITS * 10^exponent
};

// False when the exponent is beyond any double.
bool to_decimal(const NumberParts& parts, Decimal& decimal) {
  decimal.exponent = static_cast<long>(parts.integer.size());
  for (const std::string_view run : {parts.integer, parts.fraction}) {
    for (const char digit : run) {
      if (decimal.count == 0 && digit == '0') {
        --decimal.exponent;
      } else {
        decimal.digits[decimal.count++] = digit;
      }
    }
  }
  while (decimal.count > 0 && decimal.digits[decimal.count - 1] == '0') --decimal.count;
  if (decimal.count == 0) {
    decimal.exponent = 0;
    return true;
  }
  if (parts.exponent.empty()) return true;
  long exponent = 0;
  const std::string_view text = parts.exponent.substr(parts.exponent.front() == '+' ? 1 : 0);
  if (std::from_chars(text.data(), text.data() + text.size(), exponent).ec != std::errc()) return false;
  decimal.exponent += exponent;
  return exponent >= -100'000 && exponent <= 100'000;
}

bool same_decimal(const NumberParts& parts, double number) {
  std::array<char, 32> shortest;
  const auto end = std::to_chars(shortest.data(), shortest.data() + shortest.size(), number).ptr;
  NumberParts own;
  if (!split_number({shortest.data(), static_cast<size_t>(end - shortest.data())}, ".", own)) return false;
  Decimal given;
  Decimal kept;
  if (!to_decimal(parts, given) || !to_decimal(own, kept)) return false;
  return given.count == kept.count && given.exponent == kept.exponent &&
         std::memcmp(given.digits.data(), kept.digits.data(), given.count) == 0;
}

bool begins_with_idle_zero(std::string_view integer) {
  return integer.size() > 1 && integer.front() == '0';
}

// The common case: an optional minus and at most 15 digits with at most one point. Exact, because both the
// digits and the power of ten are exact doubles and the quotient is rounded once. Answers 1 for a number, 0
// for text, -1 when the general path has to decide.
int parse_short_number(const char* first, const char* end, double& number) {
  static constexpr double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const bool negative = first < end && *first == '-';
  const char* digits = first + (negative ? 1 : 0);
  if (end - digits > 16) return -1;
  uint64_t mantissa = 0;
  const char* point = nullptr;
  for (const char* p = digits; p < end; ++p) {
    if (ascii::is_digit(*p)) {
      mantissa = mantissa * 10 + static_cast<uint64_t>(*p - '0');
    } else if (*p == '.' && point == nullptr) {
      point = p;
    } else {
      return *p == 'e' || *p == 'E' ? -1 : 0;
    }
  }
  const auto length = end - digits - (point != nullptr ? 1 : 0);
  if (length == 0) return 0;
  if (length > 15) return -1;
  if (*digits == '0' && digits + 1 < end && ascii::is_digit(digits[1])) return 0;
  double value = static_cast<double>(mantissa);
  if (point != nullptr) value /= kPowers[end - point - 1];
  number = negative ? -value : value;
  return 1;
}

}  // namespace

bool parse_plain_number_exactly(const char* first, const char* end, double& number) {
  const int quick = parse_short_number(first, end, number);
  if (quick >= 0) return quick == 1;
  const std::string_view text(first, static_cast<size_t>(end - first));
  NumberParts parts;
  if (text.size() > kMaxNumberText || !split_number(text, ".", parts)) return false;
  if (parts.plus || begins_with_idle_zero(parts.integer)) return false;
  const auto value = read_generic(text);
  if (!value || !same_decimal(parts, *value)) return false;
  if (*value != 0 && std::fpclassify(*value) == FP_SUBNORMAL) return false;
  number = *value;
  return true;
}

namespace {

// TEXT, trimmed, in generic separators; VIEW points into it or into STORAGE.
bool to_generic(std::string_view text, const NumberSeparators& separators, std::string& storage,
                std::string_view& view) {
  view = trim_blanks(text);
  if (view.empty() || view.size() > kMaxNumberText) return false;
  if (separators.is_generic()) return true;
  if (!separators.group.empty() && view.find(separators.group) != std::string_view::npos) {
    if (!remove_groups(view, separators, storage)) return false;
  } else {
    storage = view;
  }
  if (separators.decimal != ".") {
    if (storage.find('.') != std::string::npos) return false;
    const size_t place = storage.find(separators.decimal);
    if (place != std::string::npos) storage.replace(place, separators.decimal.size(), ".");
  }
  view = storage;
  return true;
}

}  // namespace

std::optional<double> parse_number(std::string_view text, const NumberSeparators& separators) {
  std::string storage;
  std::string_view view;
  NumberParts parts;
  if (!to_generic(text, separators, storage, view) || !split_number(view, ".", parts)) return std::nullopt;
  if (parts.plus) view.remove_prefix(1);
  return read_generic(view);
}

std::optional<double> parse_number_exactly(std::string_view text, const NumberSeparators& separators) {
  std::string storage;
  std::string_view view;
  double number = 0;
  if (!to_generic(text, separators, storage, view)) return std::nullopt;
  if (!parse_plain_number_exactly(view.data(), view.data() + view.size(), number)) return std::nullopt;
  return number;
}

void append_number(double number, std::string_view decimal_separator, std::string& out) {
  constexpr double kFixedFrom = 1e-5;
  constexpr double kFixedBelow = 1e15;
  std::array<char, 48> buffer;
  char* const first = buffer.data();
  char* const last = first + buffer.size();
  const double size = std::abs(number);
  const auto whole = static_cast<int64_t>(size < kFixedBelow ? number : 0);
  if (whole != 0 && static_cast<double>(whole) == number) {
    out.append(first, std::to_chars(first, last, whole).ptr);
    return;
  }
  const bool fixed = size >= kFixedFrom && size < kFixedBelow;
  const auto end = fixed ? std::to_chars(first, last, number, std::chars_format::fixed).ptr
                         : std::to_chars(first, last, number).ptr;
  const size_t start = out.size();
  out.append(first, end);
  if (decimal_separator != ".") {
    const size_t point = out.find('.', start);
    if (point != std::string::npos) out.replace(point, 1, decimal_separator);
  }
}

std::string number_to_text(double number, const NumberSeparators& separators) {
  std::string out;
  append_number(number, separators.decimal, out);
  return out;
}

std::string number_cell_text(double cell, const NumberSeparators& separators) {
  if (is_empty_number(cell)) return {};
  const FormulaError error = error_of_number(cell);
  return error == FormulaError::kNone ? number_to_text(cell, separators)
                                      : std::string(formula_error_text(error));
}

}  // namespace rowvane

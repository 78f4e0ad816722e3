#include "formula/formats/format_style_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <optional>

#include "platform/ascii.h"

namespace rowvane {
namespace {

std::string_view take_word(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
  const size_t end = std::min(rest.find(' '), rest.size());
  const std::string_view word = rest.substr(0, end);
  rest.remove_prefix(end);
  return word;
}

// "general" alone is the style; in "General;-General" it begins a code.
std::optional<FormatKind> kind_of_name(std::string_view name) {
  for (int kind = 0; kind < kFormatKinds; ++kind) {
    if (ascii::equal_ignoring_case(name, format_kind_name(static_cast<FormatKind>(kind))))
      return static_cast<FormatKind>(kind);
  }
  return std::nullopt;
}

constexpr std::array<std::string_view, 4> kNegativeForms = {"plain", "red", "parentheses", "red-parentheses"};

class OptionReader {
 public:
  explicit OptionReader(FormatStyle& style) : style_(style) {}

  // False for an option that is not known or does not fit.
  bool read(std::string_view option) {
    const size_t equals = std::min(option.find('='), option.size());
    const std::string_view name = option.substr(0, equals);
    value_ = equals < option.size() ? option.substr(equals + 1) : std::string_view();
    if (ascii::equal_ignoring_case(name, "thousands")) {
      style_.thousands = equals == option.size();
      return style_.thousands;
    }
    if (ascii::equal_ignoring_case(name, "negative")) return read_negative_form();
    if (ascii::equal_ignoring_case(name, "symbol")) {
      style_.symbol = value_;
      return true;
    }
    return read_numeric(name);
  }

 private:
  bool read_numeric(std::string_view name) {
    const auto result = std::from_chars(value_.data(), value_.data() + value_.size(), number_);
    if (result.ec != std::errc() || result.ptr != value_.data() + value_.size()) return false;
    if (ascii::equal_ignoring_case(name, "decimals")) return set(style_.decimals);
    if (ascii::equal_ignoring_case(name, "zeros")) return set(style_.leading_zeros);
    if (ascii::equal_ignoring_case(name, "digits")) return set(style_.fraction_digits);
    if (ascii::equal_ignoring_case(name, "time")) return set(style_.time_form);
    if (ascii::equal_ignoring_case(name, "form"))
      return set(style_.kind == FormatKind::kTime ? style_.time_form : style_.date_form);
    if (ascii::equal_ignoring_case(name, "denominator")) {
      style_.fraction_denominator = number_;
      return number_ > 0;
    }
    if (ascii::equal_ignoring_case(name, "placement")) {
      style_.placement = static_cast<SymbolPlacement>(number_ & 3);
      return number_ >= 0 && number_ <= 3;
    }
    return ascii::equal_ignoring_case(name, "exponent") && read_exponent();
  }

  bool read_negative_form() {
    const auto found = std::ranges::find_if(
        kNegativeForms, [this](std::string_view form) { return ascii::equal_ignoring_case(form, value_); });
    if (found == kNegativeForms.end()) return false;
    style_.negative = static_cast<NegativeForm>(found - kNegativeForms.begin());
    return true;
  }

  bool read_exponent() {
    const bool is_negative = value_.starts_with('-');
    style_.exponent_form = is_negative ? ExponentForm::kFixedNegative : ExponentForm::kFixedPositive;
    style_.exponent = std::abs(number_);
    return std::abs(number_) <= kMaxFixedExponent;
  }

  bool set(int& option) const {
    option = number_;
    return true;
  }

  FormatStyle& style_;
  std::string_view value_;
  int number_ = 0;
};

}  // namespace

StyleEntry read_format_style(std::string_view text, std::string_view symbol) {
  StyleEntry entry;
  std::string_view rest = text;
  const std::string_view name = take_word(rest);
  const auto kind = name.empty() ? FormatKind::kDefault : kind_of_name(name);
  entry.style.kind = kind.value_or(FormatKind::kCustom);
  if (!kind) return entry;
  if (*kind == FormatKind::kCurrency || *kind == FormatKind::kAccounting) {
    entry.style.symbol = symbol;
    entry.style.decimals = 2;
    entry.style.thousands = true;
  }
  OptionReader reader(entry.style);
  for (std::string_view option = take_word(rest); !option.empty(); option = take_word(rest)) {
    if (reader.read(option)) continue;
    entry.check = "\"" + std::string(option) + "\" is no option of a display format";
    return entry;
  }
  entry.check = check_format_style(entry.style);
  return entry;
}

}  // namespace rowvane

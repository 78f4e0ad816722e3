// Display formats as people choose them: a style with a few options, from which a format code is built.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/messages/check.h"
#include "platform/regional_settings.h"

namespace rowvane {

// In the order of the list of styles. kDefault and kCustom build no code.
enum class FormatKind : uint8_t {
  kDefault = 0,
  kGeneral = 1,
  kCurrency = 2,
  kAccounting = 3,
  kDate = 4,
  kTime = 5,
  kDateTime = 6,
  kPercent = 7,
  kFraction = 8,
  kScientific = 9,
  kCustom = 10,  // a code that was typed
};
inline constexpr int kFormatKinds = 10;  // those of the list

// "Default", "General", "Currency", "Accounting", "Date", "Time", "Date/Time", "Percent", "Fraction",
// "Scientific".
std::string_view format_kind_name(FormatKind kind);

// How negative numbers look, in "General" and "Currency".
enum class NegativeForm : uint8_t { kPlain = 0, kRed = 1, kParentheses = 2, kRedParentheses = 3 };

// "$1.1", "$ 1.1", "1.1$", "1.1 $".
enum class SymbolPlacement : uint8_t { kBefore = 0, kBeforeBlank = 1, kAfter = 2, kAfterBlank = 3 };

// How "Scientific" writes its exponent: e+00 as large as the number needs, or a fixed one.
enum class ExponentForm : uint8_t { kFree = 0, kFixedPositive = 1, kFixedNegative = 2 };

inline constexpr int kMaxFormatPlaces = 30;  // decimal places, and the width of leading zeros
inline constexpr int kMaxAccountingDashPlaces = 15;
inline constexpr size_t kMaxCurrencySymbolBytes = 32;
inline constexpr int kLastDateForm = 10;  // a higher one is form 0
inline constexpr int kLastTimeForm = 9;   // a higher one is form 0
inline constexpr int kMaxFractionDigits = 7;
inline constexpr int64_t kMaxDenominator = 9'999'999;
inline constexpr int kMaxFixedExponent = 99;

// The separators that a code is written with, and the order of its dates.
struct FormatSeparators {
  std::string decimal = ".";
  std::string group = ",";
  std::string date = "-";
  std::string time = ":";
  platform::DateOrder order = platform::DateOrder::kYearMonthDay;
};

// The user's own separators. A missing thousands separator is "," (or "." where "," separates decimals).
FormatSeparators format_separators_of(const platform::RegionalSettings& region);
// Those of a code that is stored with a field: a point and a comma for numbers on every machine, the user's
// own signs and order in dates.
FormatSeparators stored_format_separators(const platform::RegionalSettings& region);

struct FormatStyle {
  FormatKind kind = FormatKind::kDefault;
  int decimals = 0;
  NegativeForm negative = NegativeForm::kPlain;
  bool thousands = false;
  int leading_zeros = 0;  // digits before the decimal separator at least; 0: not filled up
  std::string symbol;     // of the currency
  SymbolPlacement placement = SymbolPlacement::kBefore;
  int date_form = 0;
  int time_form = 0;
  int fraction_digits = 1;           // of the denominator, at most
  int64_t fraction_denominator = 0;  // 0: the one that fits best
  ExponentForm exponent_form = ExponentForm::kFree;
  int exponent = 0;  // the fixed one, without its sign

  bool operator==(const FormatStyle&) const = default;
};

// Whether a code can be built from STYLE.
Check check_format_style(const FormatStyle& style);

// The format code of STYLE; empty for kDefault and kCustom. Dates follow the order of SEPARATORS.
std::string build_format_code(const FormatStyle& style, const FormatSeparators& separators);

}  // namespace rowvane

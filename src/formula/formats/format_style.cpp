#include "formula/formats/format_style.h"

#include <algorithm>
#include <array>

namespace rowvane {
namespace {

using platform::DateOrder;

constexpr std::array<std::string_view, kFormatKinds> kKindNames = {
    "Default", "General",   "Currency", "Accounting", "Date",
    "Time",    "Date/Time", "Percent",  "Fraction",   "Scientific"};

std::string times(int count, char sign) {
  return std::string(static_cast<size_t>(std::max(count, 0)), sign);
}

// The decimal separator and the zeros behind it; nothing without decimal places.
std::string decimal_part(int decimals, const FormatSeparators& separators) {
  return decimals > 0 ? separators.decimal + times(decimals, '0') : std::string();
}

std::string grouped(const FormatSeparators& separators) {
  return "#" + separators.group + "##0";
}

std::string with_negative_form(const std::string& code, NegativeForm form) {
  switch (form) {
    case NegativeForm::kPlain:
      return code;
    case NegativeForm::kRed:
      return code + ";[red]" + code;
    case NegativeForm::kParentheses:
      return code + ";(" + code + ")";
    case NegativeForm::kRedParentheses:
      return code + ";[red](" + code + ")";
  }
  return code;
}

std::string general_code(const FormatStyle& style, const FormatSeparators& separators) {
  std::string whole = "0";
  if (style.leading_zeros > 0) {
    whole = times(style.leading_zeros, '0');
  } else if (style.thousands) {
    whole = grouped(separators);
  }
  return with_negative_form(whole + decimal_part(style.decimals, separators), style.negative);
}

std::string quoted(const std::string& text) {
  return '"' + text + '"';
}

std::string currency_code(const FormatStyle& style, const FormatSeparators& separators) {
  const std::string number = grouped(separators) + decimal_part(style.decimals, separators);
  std::string code;
  switch (style.placement) {
    case SymbolPlacement::kBefore:
      code = quoted(style.symbol) + number;
      break;
    case SymbolPlacement::kBeforeBlank:
      code = quoted(style.symbol + " ") + number;
      break;
    case SymbolPlacement::kAfter:
      code = number + quoted(style.symbol);
      break;
    case SymbolPlacement::kAfterBlank:
      code = number + quoted(" " + style.symbol);
      break;
  }
  return with_negative_form(code, style.negative);
}

// Symbols stand at the left edge of the column, numbers at the right one.
std::string accounting_code(const FormatStyle& style, const FormatSeparators& separators) {
  const std::string symbol = quoted(style.symbol) + "* ";
  const std::string number = grouped(separators) + decimal_part(style.decimals, separators);
  const std::string dash = "-" + times(std::min(style.decimals, kMaxAccountingDashPlaces), '?');
  return "_(" + symbol + number + "_);\\(" + symbol + number + "\\);_(" + symbol + dash + "_);_(@_)";
}

// By order; "/" stands for the date separator.
struct DateForm {
  std::string_view day_first;
  std::string_view year_first;
  std::string_view month_first;
};
constexpr std::array<DateForm, kLastDateForm + 1> kDateForms = {{
    {"d/m/yyyy", "yyyy/m/d", "m/d/yyyy"},
    {"dd/mm/yyyy", "yyyy/mm/dd", "mm/dd/yyyy"},
    {"d/m/yy", "yy/m/d", "m/d/yy"},
    {"dd/mm/yy", "yy/mm/dd", "mm/dd/yy"},
    {"d/m", "m/d", "m/d"},
    {"mm/yy", "yy/mm", "mm/yy"},
    {"d mmm yyyy", "yyyy mmm d", "mmm d, yyyy"},
    {"d mmmm yyyy", "yyyy mmmm d", "mmmm d, yyyy"},
    {"mmmm yyyy", "yyyy mmmm", "mmmm yyyy"},
    {"ddd, dd mmm yyyy", "yyyy, mmm dd, ddd", "ddd, mmm dd, yyyy"},
    {"dddd, dd mmmm, yyyy", "yyyy, mmmm dd, dddd", "dddd, mmmm dd, yyyy"},
}};

// By time form; ":" stands for the time separator.
constexpr std::array<std::string_view, kLastTimeForm + 1> kTimeForms = {
    "h:mm",          "h:mm AM/PM", "hh:mm",          "hh:mm AM/PM", "h:mm:ss",
    "h:mm:ss AM/PM", "hh:mm:ss",   "hh:mm:ss AM/PM", "[m]:ss:00",   "[h]:mm:ss"};

std::string with_separator(std::string_view form, char place, const std::string& separator) {
  std::string code;
  for (const char sign : form) {
    if (sign == place) {
      code += separator;
    } else {
      code += sign;
    }
  }
  return code;
}

std::string date_code(const FormatStyle& style, const FormatSeparators& separators) {
  const bool is_known = style.date_form >= 0 && style.date_form <= kLastDateForm;
  const DateForm& form = kDateForms[is_known ? static_cast<size_t>(style.date_form) : 0];
  const std::string_view ordered = separators.order == DateOrder::kDayMonthYear   ? form.day_first
                                   : separators.order == DateOrder::kYearMonthDay ? form.year_first
                                                                                  : form.month_first;
  return with_separator(ordered, '/', separators.date);
}

std::string time_code(const FormatStyle& style, const FormatSeparators& separators) {
  const bool is_known = style.time_form >= 0 && style.time_form <= kLastTimeForm;
  return with_separator(kTimeForms[is_known ? static_cast<size_t>(style.time_form) : 0], ':',
                        separators.time);
}

std::string percent_code(const FormatStyle& style, const FormatSeparators& separators) {
  return grouped(separators) + (style.decimals > 0 ? separators.decimal + "#" : "") + "\\%";
}

std::string fraction_code(const FormatStyle& style) {
  if (style.fraction_denominator == 0) {
    const std::string places = times(style.fraction_digits, '?');
    return "?\\ " + places + "/" + places;
  }
  const std::string denominator = std::to_string(style.fraction_denominator);
  return "?\\ " + times(static_cast<int>(denominator.size()), '?') + "/" + quoted(denominator);
}

std::string scientific_code(const FormatStyle& style, const FormatSeparators& separators) {
  const std::string mantissa = style.decimals > 0 ? "0" + separators.decimal + "#" : "0";
  const std::string exponent = (style.exponent < 10 ? "0" : "") + std::to_string(style.exponent);
  switch (style.exponent_form) {
    case ExponentForm::kFixedPositive:
      return mantissa + "e+" + quoted(exponent);
    case ExponentForm::kFixedNegative:
      return mantissa + "e-" + quoted(exponent);
    case ExponentForm::kFree:
      break;
  }
  return mantissa + "e+00";
}

std::string out_of_range(std::string_view what, int64_t first, int64_t last) {
  return std::string(what) + " must be " + std::to_string(first) + " to " + std::to_string(last);
}

bool is_within(int64_t value, int64_t first, int64_t last) {
  return value >= first && value <= last;
}

}  // namespace

std::string_view format_kind_name(FormatKind kind) {
  const auto index = static_cast<size_t>(kind);
  return index < kKindNames.size() ? kKindNames[index] : std::string_view();
}

FormatSeparators format_separators_of(const platform::RegionalSettings& region) {
  FormatSeparators separators = stored_format_separators(region);
  if (!region.decimal_separator.empty()) separators.decimal = region.decimal_separator;
  separators.group = region.group_separator;
  if (separators.group.empty() || separators.group == separators.decimal)
    separators.group = separators.decimal == "," ? "." : ",";
  return separators;
}

FormatSeparators stored_format_separators(const platform::RegionalSettings& region) {
  FormatSeparators separators;
  if (!region.date_separator.empty()) separators.date = region.date_separator;
  if (!region.time_separator.empty()) separators.time = region.time_separator;
  separators.order = region.date_order;
  return separators;
}

Check check_format_style(const FormatStyle& style) {
  if (!is_within(style.decimals, 0, kMaxFormatPlaces))
    return out_of_range("The number of decimal places", 0, kMaxFormatPlaces);
  if (!is_within(style.leading_zeros, 0, kMaxFormatPlaces))
    return out_of_range("The number of leading zeros", 0, kMaxFormatPlaces);
  if (style.symbol.size() > kMaxCurrencySymbolBytes) return "The currency symbol is too long";
  if (style.symbol.find('"') != std::string::npos) return "The currency symbol can't hold quotes";
  if (style.date_form < 0) return "The date form can't be negative";
  if (style.time_form < 0) return "The time form can't be negative";
  if (!is_within(style.fraction_digits, 1, kMaxFractionDigits))
    return out_of_range("The number of digits of the denominator", 1, kMaxFractionDigits);
  if (!is_within(style.fraction_denominator, 0, kMaxDenominator))
    return out_of_range("The denominator", 0, kMaxDenominator);
  if (!is_within(style.exponent, 0, kMaxFixedExponent))
    return out_of_range("The exponent", 0, kMaxFixedExponent);
  return {};
}

std::string build_format_code(const FormatStyle& style, const FormatSeparators& separators) {
  switch (style.kind) {
    case FormatKind::kGeneral:
      return general_code(style, separators);
    case FormatKind::kCurrency:
      return currency_code(style, separators);
    case FormatKind::kAccounting:
      return accounting_code(style, separators);
    case FormatKind::kDate:
      return date_code(style, separators);
    case FormatKind::kTime:
      return time_code(style, separators);
    case FormatKind::kDateTime:
      return date_code(style, separators) + "\\ " + time_code(style, separators);
    case FormatKind::kPercent:
      return percent_code(style, separators);
    case FormatKind::kFraction:
      return fraction_code(style);
    case FormatKind::kScientific:
      return scientific_code(style, separators);
    case FormatKind::kDefault:
    case FormatKind::kCustom:
      break;
  }
  return {};
}

}  // namespace rowvane

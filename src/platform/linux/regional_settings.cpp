#include "platform/regional_settings.h"

#include <algorithm>
#include <memory>
#include <optional>

#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>

#include "platform/linux/environment_locale.h"
#include "platform/locale_name.h"
#include "platform/locale_patterns.h"

namespace rowvane::platform {
namespace {

std::string to_utf8(const icu::UnicodeString& text) {
  std::string utf8;
  return text.toUTF8String(utf8);
}

bool is_known_language(const std::string& language) {
  int32_t count = 0;
  const icu::Locale* const locales = icu::Locale::getAvailableLocales(count);
  return std::any_of(locales, locales + count,
                     [&](const icu::Locale& locale) { return language == locale.getLanguage(); });
}

// Western digits and the Gregorian calendar: those that the program itself writes. Nothing when the system
// has no data for the language.
std::optional<icu::Locale> find_locale(const LocaleName& name) {
  if (!is_known_language(name.language)) return std::nullopt;
  UErrorCode error = U_ZERO_ERROR;
  icu::Locale locale(name.joined().c_str());
  if (name.territory.empty()) locale.addLikelySubtags(error);
  locale.setKeywordValue("numbers", "latn", error);
  locale.setKeywordValue("calendar", "gregorian", error);
  if (U_FAILURE(error)) return std::nullopt;
  return locale;
}

void read_number_settings(const icu::Locale& locale, RegionalSettings& settings) {
  using Symbols = icu::DecimalFormatSymbols;
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::NumberFormat> format(icu::NumberFormat::createInstance(locale, error));
  const Symbols symbols(locale, error);
  if (U_FAILURE(error)) return;
  settings.decimal_separator = to_utf8(symbols.getConstSymbol(Symbols::kDecimalSeparatorSymbol));
  settings.group_separator.clear();
  if (format->isGroupingUsed()) {
    settings.group_separator = to_utf8(symbols.getConstSymbol(Symbols::kGroupingSeparatorSymbol));
  }
  settings.list_separator.assign(1, settings.decimal_separator == "," ? ';' : ',');
}

void read_currency(const icu::Locale& locale, RegionalSettings& settings) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::DecimalFormatSymbols symbols(locale, error);
  if (U_FAILURE(error)) return;
  settings.currency_symbol =
      visible_part(to_utf8(symbols.getConstSymbol(icu::DecimalFormatSymbols::kCurrencySymbol)));
}

std::string short_pattern(const icu::Locale& locale, bool of_date) {
  using icu::DateFormat;
  const std::unique_ptr<DateFormat> format(of_date
                                               ? DateFormat::createDateInstance(DateFormat::kShort, locale)
                                               : DateFormat::createTimeInstance(DateFormat::kShort, locale));
  icu::UnicodeString pattern;
  if (const auto* const simple = dynamic_cast<icu::SimpleDateFormat*>(format.get()))
    simple->toPattern(pattern);
  return to_utf8(pattern);
}

void read_date_settings(const icu::Locale& locale, RegionalSettings& settings) {
  const std::string date_pattern = short_pattern(locale, true);
  if (date_pattern.empty()) return;
  settings.date_separator = first_separator(date_pattern, settings.date_separator);
  settings.date_order = date_order_in(date_pattern);
  settings.time_separator = first_separator(short_pattern(locale, false), ":");
}

}  // namespace

RegionalSettings user_regional_settings() {
  RegionalSettings settings = RegionalSettings::generic();
  const LocaleName time_name = parse_locale_name(locale_from_environment("LC_TIME"));
  const std::optional<icu::Locale> number_locale =
      find_locale(parse_locale_name(locale_from_environment("LC_NUMERIC")));
  const std::optional<icu::Locale> money_locale =
      find_locale(parse_locale_name(locale_from_environment("LC_MONETARY")));
  if (number_locale) read_number_settings(*number_locale, settings);
  if (money_locale) read_currency(*money_locale, settings);
  if (const std::optional<icu::Locale> time_locale = find_locale(time_name)) {
    read_date_settings(*time_locale, settings);
    settings.locale = time_name.joined();
  }
  return settings;
}

RegionalSettings regional_settings_of(const std::string& locale) {
  RegionalSettings settings = RegionalSettings::generic();
  const LocaleName name = parse_locale_name(locale);
  const std::optional<icu::Locale> found = find_locale(name);
  if (!found) return settings;
  settings.locale = name.joined();
  read_number_settings(*found, settings);
  read_currency(*found, settings);
  read_date_settings(*found, settings);
  return settings;
}

}  // namespace rowvane::platform

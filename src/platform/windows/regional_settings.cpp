#include "platform/regional_settings.h"

#include <utility>

#include "platform/locale_name.h"
#include "platform/locale_patterns.h"
#include "platform/windows/locale.h"

namespace rowvane::platform {
namespace {

bool groups_digits(const wchar_t* locale, LCTYPE flags) {
  const std::string grouping = locale_text(locale, LOCALE_SGROUPING | flags);
  return !grouping.empty() && grouping != "0" && grouping != "0;0";
}

// FLAGS: 0, or LOCALE_NOUSEROVERRIDE for what the locale has before the user changed it.
RegionalSettings settings_of(const wchar_t* locale, LCTYPE flags, std::string name) {
  RegionalSettings settings = RegionalSettings::generic();
  const auto text = [&](LCTYPE type, const std::string& fallback) {
    const std::string found = locale_text(locale, type | flags);
    return found.empty() ? fallback : found;
  };
  settings.locale = std::move(name);
  settings.decimal_separator = text(LOCALE_SDECIMAL, settings.decimal_separator);
  if (groups_digits(locale, flags)) settings.group_separator = text(LOCALE_STHOUSAND, "");
  settings.list_separator = text(LOCALE_SLIST, settings.list_separator);
  // Nothing keeps the user from choosing the same sign for both.
  if (settings.list_separator == settings.decimal_separator)
    settings.list_separator = settings.decimal_separator == ";" ? "," : ";";
  settings.currency_symbol = visible_part(text(LOCALE_SCURRENCY, ""));
  const std::string date_pattern = text(LOCALE_SSHORTDATE, "yyyy-MM-dd");
  settings.date_separator = first_separator(date_pattern, settings.date_separator);
  settings.date_order = date_order_in(date_pattern);
  settings.time_separator = first_separator(text(LOCALE_STIMEFORMAT, "HH:mm:ss"), ":");
  return settings;
}

std::string user_locale_name() {
  return parse_locale_name(locale_text(LOCALE_NAME_USER_DEFAULT, LOCALE_SNAME)).joined();
}

}  // namespace

RegionalSettings user_regional_settings() {
  return settings_of(LOCALE_NAME_USER_DEFAULT, 0, user_locale_name());
}

RegionalSettings regional_settings_of(const std::string& locale) {
  const LocaleName name = parse_locale_name(locale);
  const std::wstring system_name = system_locale_of(name);
  if (system_name.empty()) return RegionalSettings::generic();
  return settings_of(system_name.c_str(), LOCALE_NOUSEROVERRIDE, name.joined());
}

}  // namespace rowvane::platform

#include "platform/regional_settings.h"

#include "platform/locale_name.h"
#include "platform/utf8.h"
#include "platform/windows/locale.h"

namespace rowvane::platform {
namespace {

constexpr char32_t kLeftToRightMark = 0x200E;
constexpr char32_t kRightToLeftMark = 0x200F;

// The order of the letters of the fields in a pattern such as "dd.MM.yyyy".
DateOrder order_in(const std::string& pattern) {
  const size_t year = pattern.find('y');
  const size_t month = pattern.find('M');
  const size_t day = pattern.find('d');
  if (year < day && year < month) return DateOrder::kYearMonthDay;
  return day < month ? DateOrder::kDayMonthYear : DateOrder::kMonthDayYear;
}

// SEPARATOR without blanks and without the invisible marks that steer the direction of writing: "." of the ".
// " in "2024. 3. 1.".
std::string sign_of(const std::string& separator, const std::string& fallback) {
  std::string sign;
  for (size_t position = 0; position < separator.size();) {
    const char32_t character = next_utf8(separator, position);
    const bool is_invisible =
        character == U' ' || character == kLeftToRightMark || character == kRightToLeftMark;
    if (!is_invisible) append_utf8(character, sign);
  }
  return sign.empty() ? fallback : sign;
}

RegionalSettings settings_of(const wchar_t* name, std::string locale) {
  RegionalSettings settings = RegionalSettings::generic();
  settings.locale = std::move(locale);
  settings.decimal_separator = sign_of(locale_text(name, LOCALE_SDECIMAL), ".");
  // "3;0" groups by thousands, "0" not at all.
  const bool has_groups = !locale_text(name, LOCALE_SGROUPING).starts_with("0");
  settings.group_separator = has_groups ? locale_text(name, LOCALE_STHOUSAND) : std::string();
  settings.list_separator = sign_of(locale_text(name, LOCALE_SLIST), ",");
  settings.date_separator = sign_of(locale_text(name, LOCALE_SDATE), "/");
  settings.time_separator = sign_of(locale_text(name, LOCALE_STIME), ":");
  settings.currency_symbol = locale_text(name, LOCALE_SCURRENCY);
  settings.date_order = order_in(locale_text(name, LOCALE_SSHORTDATE));
  return settings;
}

}  // namespace

RegionalSettings user_regional_settings() {
  const std::string name = locale_text(LOCALE_NAME_USER_DEFAULT, LOCALE_SNAME);
  return settings_of(LOCALE_NAME_USER_DEFAULT, parse_locale_name(name).joined());
}

RegionalSettings regional_settings_of(const std::string& locale) {
  const LocaleName name = parse_locale_name(locale);
  const std::wstring system_name = system_locale_of(name);
  if (system_name.empty()) return RegionalSettings::generic();
  return settings_of(system_name.c_str(), name.joined());
}

}  // namespace rowvane::platform

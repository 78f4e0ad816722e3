#include "platform/date_names.h"

#include "platform/windows/locale.h"

namespace rowvane::platform {
namespace {

// The texts of TYPE and of the types that follow it; one that the system does not have leaves what is there.
template <size_t count>
void copy_names(const wchar_t* locale, LCTYPE type, LCTYPE form, std::array<std::string, count>& out) {
  for (size_t i = 0; i < count; ++i) {
    std::string name = locale_text(locale, (type + static_cast<LCTYPE>(i)) | form);
    if (!name.empty()) out[i] = std::move(name);
  }
}

void copy_name(const wchar_t* locale, LCTYPE type, std::string& out) {
  std::string name = locale_text(locale, type);
  if (!name.empty()) out = std::move(name);
}

// The system counts weekdays from Monday on.
void copy_weekdays(const wchar_t* locale, LCTYPE type, std::array<std::string, 7>& out) {
  std::array<std::string, 7> from_monday;
  copy_names(locale, type, 0, from_monday);
  for (size_t i = 0; i < from_monday.size(); ++i) {
    if (!from_monday[i].empty()) out[(i + 1) % out.size()] = std::move(from_monday[i]);
  }
}

}  // namespace

DateNames DateNames::of(const std::string& locale) {
  DateNames names = english();
  const LocaleName parts = parse_locale_name(locale);
  const std::wstring system_name = parts.language == "en" ? std::wstring() : system_locale_of(parts);
  if (system_name.empty()) return names;
  const wchar_t* const name = system_name.c_str();
  copy_names(name, LOCALE_SMONTHNAME1, LOCALE_RETURN_GENITIVE_NAMES, names.months);
  copy_names(name, LOCALE_SABBREVMONTHNAME1, 0, names.short_months);
  copy_names(name, LOCALE_SMONTHNAME1, 0, names.lone_months);
  copy_weekdays(name, LOCALE_SDAYNAME1, names.weekdays);
  copy_weekdays(name, LOCALE_SABBREVDAYNAME1, names.short_weekdays);
  copy_name(name, LOCALE_S1159, names.morning);
  copy_name(name, LOCALE_S2359, names.afternoon);
  return names;
}

}  // namespace rowvane::platform

#include "platform/windows/locale.h"

#include "platform/windows/wide.h"

namespace rowvane::platform {
namespace {

struct LocaleSearch {
  std::wstring language;
  bool found = false;
};

BOOL CALLBACK compare_language(wchar_t* locale, DWORD, LPARAM search_address) {
  LocaleSearch& search = *reinterpret_cast<LocaleSearch*>(search_address);
  const std::wstring_view name(locale);
  search.found = name.substr(0, name.find(L'-')) == search.language;
  return search.found ? FALSE : TRUE;
}

// Windows makes up settings for names that it does not know, as long as they are well formed.
bool is_known_language(const std::wstring& language) {
  LocaleSearch search{language};
  ::EnumSystemLocalesEx(compare_language, LOCALE_ALL, reinterpret_cast<LPARAM>(&search), nullptr);
  return search.found;
}

}  // namespace

std::wstring system_locale_of(const LocaleName& name) {
  if (name.language.empty() || !is_known_language(to_wide(name.language))) return {};
  for (const std::string& form : {name.joined('-'), name.language + "-" + name.territory, name.language}) {
    std::wstring system_name = to_wide(form);
    if (::IsValidLocaleName(system_name.c_str()) != 0) return system_name;
  }
  return {};
}

std::string locale_text(const wchar_t* name, LCTYPE type) {
  wchar_t text[256];
  const int length = ::GetLocaleInfoEx(name, type, text, 256);
  return length <= 1 ? std::string() : to_utf8(std::wstring_view(text, static_cast<size_t>(length) - 1));
}

}  // namespace rowvane::platform

#include "platform/default_code_pages.h"

#include <algorithm>
#include <string_view>

#include "platform/linux/environment_locale.h"
#include "platform/locale_name.h"

namespace rowvane::platform {
namespace {

struct LanguagePages {
  std::string_view language;
  DefaultCodePages pages;
};

// Languages that the western pair does not serve.
constexpr LanguagePages kPagesByLanguage[] = {
    {"ar", {1256, 720}}, {"az", {1254, 857}}, {"be", {1251, 866}}, {"bg", {1251, 866}},  {"bs", {1250, 852}},
    {"cs", {1250, 852}}, {"el", {1253, 737}}, {"et", {1257, 775}}, {"fa", {1256, 720}},  {"he", {1255, 862}},
    {"hr", {1250, 852}}, {"hu", {1250, 852}}, {"iw", {1255, 862}}, {"ja", {932, 932}},   {"kk", {1251, 866}},
    {"ko", {949, 949}},  {"ky", {1251, 866}}, {"lt", {1257, 775}}, {"lv", {1257, 775}},  {"mk", {1251, 866}},
    {"mn", {1251, 866}}, {"pl", {1250, 852}}, {"ro", {1250, 852}}, {"ru", {1251, 866}},  {"sk", {1250, 852}},
    {"sl", {1250, 852}}, {"sq", {1250, 852}}, {"sr", {1251, 855}}, {"th", {874, 874}},   {"tr", {1254, 857}},
    {"tt", {1251, 866}}, {"uk", {1251, 866}}, {"ur", {1256, 720}}, {"vi", {1258, 1258}},
};

bool is_traditional_chinese(const LocaleName& locale) {
  if (!locale.script.empty()) return locale.script == "Hant";
  return locale.territory == "TW" || locale.territory == "HK" || locale.territory == "MO";
}

DefaultCodePages default_code_pages_of(const LocaleName& locale) {
  if (locale.language == "zh") {
    const unsigned page = is_traditional_chinese(locale) ? 950 : 936;
    return {page, page};
  }
  if (locale.language == "sr" && locale.script == "Latn") return {1250, 852};
  if (locale.language == "en" && (locale.territory == "US" || locale.territory.empty())) return {1252, 437};
  const auto* const entry = std::ranges::find(kPagesByLanguage, locale.language, &LanguagePages::language);
  return entry == std::end(kPagesByLanguage) ? DefaultCodePages{} : entry->pages;
}

}  // namespace

DefaultCodePages user_code_pages() {
  return default_code_pages_of(parse_locale_name(locale_from_environment("LC_CTYPE")));
}

}  // namespace rowvane::platform

#include "platform/regional_settings.h"

#include <gtest/gtest.h>

#include "platform/environment.h"

namespace rowvane::platform {
namespace {

TEST(RegionalSettings, OfWellKnownLocales) {
  struct Case {
    const char* locale;
    const char* decimal;
    const char* group;
    const char* list;
    const char* date;
    const char* currency;
    DateOrder order;
  };
  const Case cases[] = {
      {"en_US", ".", ",", ",", "/", "$", DateOrder::kMonthDayYear},
      {"en_GB", ".", ",", ",", "/", "£", DateOrder::kDayMonthYear},
      {"de_DE", ",", ".", ";", ".", "€", DateOrder::kDayMonthYear},
      {"sv_SE", ",", "\u00A0", ";", "-", "kr", DateOrder::kYearMonthDay},
      {"hu_HU", ",", "\u00A0", ";", ".", "Ft", DateOrder::kYearMonthDay},
      {"ja_JP", ".", ",", ",", "/", "￥", DateOrder::kYearMonthDay},
#ifdef _WIN32
      // Windows has list separators of its own, older blanks between thousands and other signs of money.
      {"de_CH", ".", "’", ";", ".", "CHF", DateOrder::kDayMonthYear},
      {"fr_FR", ",", "\u00A0", ";", "/", "€", DateOrder::kDayMonthYear},
      {"ar_EG", ".", ",", ";", "/", "E£", DateOrder::kDayMonthYear},
      {"fa_IR", ".", ",", "؛", "/", "ریال", DateOrder::kYearMonthDay},
#else
      {"de_CH", ".", "’", ",", ".", "CHF", DateOrder::kDayMonthYear},
      {"fr_FR", ",", "\u202F", ";", "/", "€", DateOrder::kDayMonthYear},
      {"ar_EG", ".", ",", ",", "/", "ج.م.", DateOrder::kDayMonthYear},
      {"fa_IR", ".", ",", ",", "/", "ریال", DateOrder::kYearMonthDay},
#endif
  };
  for (const Case& expected : cases) {
    const RegionalSettings settings = regional_settings_of(expected.locale);
    EXPECT_EQ(settings.locale, expected.locale);
    EXPECT_EQ(settings.decimal_separator, expected.decimal) << expected.locale;
    EXPECT_EQ(settings.group_separator, expected.group) << expected.locale;
    EXPECT_EQ(settings.list_separator, expected.list) << expected.locale;
    EXPECT_EQ(settings.date_separator, expected.date) << expected.locale;
    EXPECT_EQ(settings.currency_symbol, expected.currency) << expected.locale;
    EXPECT_EQ(settings.date_order, expected.order) << expected.locale;
  }
  EXPECT_EQ(regional_settings_of("fi_FI").time_separator, ".");
  EXPECT_EQ(regional_settings_of("en_US").time_separator, ":");
}

TEST(RegionalSettings, TakesOtherSpellingsOfALocale) {
  for (const char* const name : {"de-DE", "de_DE.UTF-8", "de_DE@euro", "de_DE.ISO-8859-15@euro", "DE_de"}) {
    const RegionalSettings settings = regional_settings_of(name);
    EXPECT_EQ(settings.locale, "de_DE") << name;
    EXPECT_EQ(settings.decimal_separator, ",") << name;
  }
  EXPECT_EQ(regional_settings_of("de").currency_symbol, "€");
}

TEST(RegionalSettings, UnknownLocalesAreGeneric) {
  for (const char* const name : {"", "C", "C.UTF-8", "POSIX", "xx_YY", "../../etc", "!"}) {
    const RegionalSettings settings = regional_settings_of(name);
    EXPECT_EQ(settings.locale, "C") << name;
    EXPECT_EQ(settings.decimal_separator, ".") << name;
    EXPECT_EQ(settings.group_separator, "") << name;
    EXPECT_EQ(settings.date_order, DateOrder::kYearMonthDay) << name;
  }
}

#ifndef _WIN32
TEST(RegionalSettings, TheEnvironmentChoosesByCategory) {
  const ScopedEnvironment all("LC_ALL", "");
  const ScopedEnvironment numeric("LC_NUMERIC", "de_DE.UTF-8");
  const ScopedEnvironment time("LC_TIME", nullptr);
  const ScopedEnvironment monetary("LC_MONETARY", "en_GB.UTF-8");
  const ScopedEnvironment lang("LANG", "en_US.UTF-8");
  const RegionalSettings mixed = user_regional_settings();
  EXPECT_EQ(mixed.decimal_separator, ",");
  EXPECT_EQ(mixed.list_separator, ";");
  EXPECT_EQ(mixed.date_order, DateOrder::kMonthDayYear);
  EXPECT_EQ(mixed.currency_symbol, "£");
  EXPECT_EQ(mixed.locale, "en_US");

  const ScopedEnvironment all_generic("LC_ALL", "C.UTF-8");
  EXPECT_EQ(user_regional_settings().decimal_separator, ".");
  EXPECT_EQ(user_regional_settings().locale, "C");
}
#endif

}  // namespace
}  // namespace rowvane::platform

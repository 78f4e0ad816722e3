#include "platform/regional_settings.h"

#include <gtest/gtest.h>

#include "platform/this_system.h"

namespace rowvane::platform {
namespace {

const char* of_system(const char* usual, const char* on_windows) {
  return kIsWindows && on_windows != nullptr ? on_windows : usual;
}

// The settings are data of the system, so a few of them differ.
TEST(RegionalSettings, OfWellKnownLocales) {
  struct Case {
    const char* locale;
    const char* decimal;
    const char* group;
    const char* date;
    const char* currency;
    DateOrder order;
    const char* group_on_windows = nullptr;  // where it differs
    const char* currency_on_windows = nullptr;
  };
  const Case cases[] = {
      {"en_US", ".", ",", "/", "$", DateOrder::kMonthDayYear},
      {"en_GB", ".", ",", "/", "£", DateOrder::kDayMonthYear},
      {"de_DE", ",", ".", ".", "€", DateOrder::kDayMonthYear},
      {"de_CH", ".", "’", ".", "CHF", DateOrder::kDayMonthYear},
      {"fr_FR", ",", "\u202F", "/", "€", DateOrder::kDayMonthYear, "\u00A0"},
      {"sv_SE", ",", "\u00A0", "-", "kr", DateOrder::kYearMonthDay},
      {"hu_HU", ",", "\u00A0", ".", "Ft", DateOrder::kYearMonthDay},
      {"ja_JP", ".", ",", "/", "￥", DateOrder::kYearMonthDay},
      {"ar_EG", ".", ",", "/", "ج.م.", DateOrder::kDayMonthYear, nullptr, "E£"},
      {"fa_IR", ".", ",", "/", "ریال", DateOrder::kYearMonthDay},
  };
  for (const Case& expected : cases) {
    const RegionalSettings settings = regional_settings_of(expected.locale);
    EXPECT_EQ(settings.locale, expected.locale);
    EXPECT_EQ(settings.decimal_separator, expected.decimal) << expected.locale;
    EXPECT_EQ(settings.group_separator, of_system(expected.group, expected.group_on_windows))
        << expected.locale;
    EXPECT_NE(settings.list_separator, settings.decimal_separator) << expected.locale;
    EXPECT_EQ(settings.date_separator, expected.date) << expected.locale;
    EXPECT_EQ(settings.currency_symbol, of_system(expected.currency, expected.currency_on_windows))
        << expected.locale;
    EXPECT_EQ(settings.date_order, expected.order) << expected.locale;
  }
  EXPECT_EQ(regional_settings_of("de_DE").list_separator, ";");
  EXPECT_EQ(regional_settings_of("en_US").list_separator, ",");
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

}  // namespace
}  // namespace rowvane::platform

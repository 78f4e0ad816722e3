#include "platform/regional_settings.h"

#include <gtest/gtest.h>

#include "platform/environment.h"

namespace rowvane::platform {
namespace {

TEST(RegionalSettingsOnLinux, TheEnvironmentChoosesByCategory) {
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

TEST(RegionalSettingsOnLinux, TheListSeparatorFollowsTheDecimalSeparator) {
  for (const char* const locale : {"en_US", "de_DE", "de_CH", "ar_EG", "fa_IR", "fr_FR"}) {
    const RegionalSettings settings = regional_settings_of(locale);
    EXPECT_EQ(settings.list_separator, settings.decimal_separator == "," ? ";" : ",") << locale;
  }
}

}  // namespace
}  // namespace rowvane::platform

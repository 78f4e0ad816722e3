#include "formula/formats/typed_value.h"

#include <cmath>

#include <gtest/gtest.h>

#include "formula/formats/format_style_text.h"
#include "formula/formats/number_format.h"

namespace rowvane {
namespace {

using platform::regional_settings_of;

struct TypedCase {
  const char* locale;
  const char* text;
  double number;
  FormatKind kind;
};

TEST(TypedValue, ReadsWhatPeopleType) {
  const TypedCase cases[] = {
      {"C", " 1.5 ", 1.5, FormatKind::kGeneral},
      {"en_US", "-1,234.5", -1234.5, FormatKind::kGeneral},
      {"de_DE", "1.234,5", 1234.5, FormatKind::kGeneral},
      {"fr_FR", "1 234,5", 1234.5, FormatKind::kGeneral},
      {"fr_FR", "1\u00A0234\u202F567", 1234567, FormatKind::kGeneral},
      {"C", "0.07%", 0.0007, FormatKind::kPercent},
      {"de_DE", "-12,5 %", -0.125, FormatKind::kPercent},
      {"C", "% 5", 0.05, FormatKind::kPercent},
      {"en_US", "$1,234.50", 1234.5, FormatKind::kCurrency},
      {"en_US", "-$ 2", -2, FormatKind::kCurrency},
      {"de_DE", "3,50 €", 3.5, FormatKind::kCurrency},
      {"C", "£5", 5, FormatKind::kCurrency},
      {"en_US", "($4.00)", -4, FormatKind::kCurrency},
      {"C", "(4)", -4, FormatKind::kGeneral},
      {"C", "1/2", 0.5, FormatKind::kFraction},
      {"C", "-3 1/4", -3.25, FormatKind::kFraction},
      {"C", "2024-02-29", 45351, FormatKind::kDate},
      {"de_DE", "29.2.2024", 45351, FormatKind::kDate},
      {"en_US", "2/29/2024 6:00 PM", 45351.75, FormatKind::kDateTime},
      {"C", "12:00", 0.5, FormatKind::kTime},
      {"C", "36:30", 36.5 / 24, FormatKind::kTime},
      {"de_DE", "-1:30:00,5", -5400.5 / 86400, FormatKind::kTime},
  };
  for (const TypedCase& typed : cases) {
    const auto value = read_typed_value(typed.text, regional_settings_of(typed.locale));
    ASSERT_TRUE(value) << typed.locale << ": " << typed.text;
    EXPECT_DOUBLE_EQ(value->number, typed.number) << typed.text;
    EXPECT_EQ(value->kind, typed.kind) << typed.text;
  }
}

TEST(TypedValue, RefusesWhatIsNoValue) {
  for (const char* text :
       {"",   " ",    "abc", "1,2,3", "%",   "5%%",  "%5%",     "--5", "$",   "$-",         "-$-5",
        "()", "(-5)", "1/0", "1/2/",  "1 2", "1:60", "1:30:60", "25:", "5kg", "2024-13-01", "1e5%"}) {
    EXPECT_FALSE(read_typed_value(text, regional_settings_of("en_US"))) << text;
  }
  EXPECT_FALSE(read_typed_value(std::string(1000, '1'), regional_settings_of("C")));
}

// What a style shows reads as the same value again, and as a value of that style.
TEST(TypedValue, ReadsWhatStylesShow) {
  struct Trip {
    const char* style;
    double number;
    double tolerance;
    FormatKind kind;
  };
  const Trip trips[] = {
      {"general decimals=2 thousands", -1234567.25, 0, FormatKind::kGeneral},
      {"general decimals=1 negative=red-parentheses", -2.5, 0, FormatKind::kGeneral},
      {"currency placement=3", 1234.5, 0, FormatKind::kCurrency},
      {"currency negative=parentheses", -1234.5, 0, FormatKind::kCurrency},
      {"percent decimals=1", 0.125, 0, FormatKind::kPercent},
      {"fraction digits=2", 3.25, 0, FormatKind::kFraction},
      {"fraction denominator=16", -2.3125, 0, FormatKind::kFraction},
      {"scientific decimals=1", 1.2e-7, 0, FormatKind::kGeneral},
      {"date", 45351, 0, FormatKind::kDate},
      {"date form=3", 45351, 0, FormatKind::kDate},
      {"date form=7", 45351, 0, FormatKind::kDate},
      {"date form=9", 45351, 0, FormatKind::kDate},
      {"date form=10", 45351, 0, FormatKind::kDate},
      {"time form=7", 0.75, 1e-9, FormatKind::kTime},
      {"time form=9", 1.5, 1e-9, FormatKind::kTime},
      {"date/time form=1 time=6", 45351.75, 1e-9, FormatKind::kDateTime},
  };
  for (const char* locale : {"C", "en_US", "de_DE", "fr_FR", "sv_SE"}) {
    const auto region = regional_settings_of(locale);
    for (const Trip& trip : trips) {
      const StyleEntry entry =
          read_format_style(trip.style, region.currency_symbol.empty() ? "$" : region.currency_symbol);
      ASSERT_EQ(entry.check, Check()) << trip.style;
      const NumberFormat format(build_format_code(entry.style, stored_format_separators(region)),
                                DisplayRegion(region));
      ASSERT_EQ(format.problem(), "");
      std::string text;
      format.append(trip.number, text);
      const auto value = read_typed_value(text, region);
      ASSERT_TRUE(value) << locale << ", " << trip.style << ": " << text;
      EXPECT_NEAR(value->number, trip.number, trip.tolerance) << locale << ", " << trip.style << ": " << text;
      EXPECT_EQ(value->kind, trip.kind) << locale << ", " << trip.style << ": " << text;
    }
  }
}

}  // namespace
}  // namespace rowvane

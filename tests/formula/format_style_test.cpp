#include "formula/formats/format_style.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "formula/formats/format_code.h"
#include "formula/formats/format_style_text.h"

namespace rowvane {
namespace {

FormatSeparators english() {
  return {".", ",", "/", ":", platform::DateOrder::kMonthDayYear};
}

std::string code_of(std::string_view text, const FormatSeparators& separators = english()) {
  const StyleEntry entry = read_format_style(text, "$");
  return entry.check.passes() ? build_format_code(entry.style, separators) : entry.check.refusal.text();
}

TEST(FormatStyle, BuildsTheCodesOfNumbers) {
  EXPECT_EQ(code_of("default"), "");
  EXPECT_EQ(code_of("General"), "0");
  EXPECT_EQ(code_of("general decimals=2 thousands negative=red"), "#,##0.00;[red]#,##0.00");
  EXPECT_EQ(code_of("general zeros=5 decimals=1 negative=red-parentheses"), "00000.0;[red](00000.0)");
  EXPECT_EQ(code_of("general zeros=3 thousands"), "000");
  EXPECT_EQ(code_of("general negative=parentheses"), "0;(0)");
  EXPECT_EQ(code_of("currency"), "\"$\"#,##0.00");
  EXPECT_EQ(code_of("currency placement=1 decimals=0 negative=parentheses"), "\"$ \"#,##0;(\"$ \"#,##0)");
  EXPECT_EQ(code_of("currency placement=2"), "#,##0.00\"$\"");
  EXPECT_EQ(code_of("currency placement=3 symbol=kr negative=red-parentheses"),
            "#,##0.00\" kr\";[red](#,##0.00\" kr\")");
  EXPECT_EQ(code_of("accounting decimals=0"), "_(\"$\"* #,##0_);\\(\"$\"* #,##0\\);_(\"$\"* -_);_(@_)");
  EXPECT_EQ(code_of("accounting"),
            "_(\"$\"* #,##0.00_);\\(\"$\"* #,##0.00\\);_(\"$\"* -?"
            "?_);_(@_)");
  EXPECT_EQ(std::ranges::count(code_of("accounting decimals=20"), '?'), 15);
  EXPECT_EQ(code_of("percent"), "#,##0\\%");
  EXPECT_EQ(code_of("percent decimals=3"), "#,##0.#\\%");
  EXPECT_EQ(code_of("fraction digits=2"),
            "?\\ ?"
            "?/?"
            "?");
  EXPECT_EQ(code_of("fraction denominator=16"),
            "?\\ ?"
            "?/\"16\"");
  EXPECT_EQ(code_of("scientific"), "0e+00");
  EXPECT_EQ(code_of("scientific decimals=1"), "0.#e+00");
  EXPECT_EQ(code_of("scientific decimals=1 exponent=3"), "0.#e+\"03\"");
  EXPECT_EQ(code_of("scientific exponent=-12"), "0e-\"12\"");
}

TEST(FormatStyle, BuildsTheCodesOfDates) {
  FormatSeparators separators = english();
  EXPECT_EQ(code_of("date", separators), "m/d/yyyy");
  EXPECT_EQ(code_of("date form=10", separators), "dddd, mmmm dd, yyyy");
  separators.order = platform::DateOrder::kDayMonthYear;
  separators.date = ".";
  EXPECT_EQ(code_of("date form=1", separators), "dd.mm.yyyy");
  EXPECT_EQ(code_of("date form=11", separators), "d.m.yyyy");
  EXPECT_EQ(code_of("date form=5", separators), "mm.yy");
  separators.order = platform::DateOrder::kYearMonthDay;
  EXPECT_EQ(code_of("date form=4", separators), "m.d");
  EXPECT_EQ(code_of("time form=9", separators), "[h]:mm:ss");
  EXPECT_EQ(code_of("time form=12", separators), "h:mm");
  separators.time = ".";
  EXPECT_EQ(code_of("date/time form=3 time=7", separators), "yy.mm.dd\\ hh.mm.ss AM/PM");
  EXPECT_EQ(code_of("time form=8", separators), "[m].ss.00");
}

// Whatever the options, a code that is built can be used.
TEST(FormatStyle, BuildsCodesThatCanBeUsed) {
  for (const char* locale : {"C", "en_US", "de_DE", "fi_FI", "fr_CH", "ja_JP"}) {
    const FormatSeparators separators = format_separators_of(platform::regional_settings_of(locale));
    for (int kind = 1; kind < kFormatKinds; ++kind) {
      for (int option = 0; option <= 11; ++option) {
        FormatStyle style;
        style.kind = static_cast<FormatKind>(kind);
        style.decimals = option * 3 % kMaxFormatPlaces;
        style.negative = static_cast<NegativeForm>(option % 4);
        style.symbol = "kr\\%";
        style.placement = static_cast<SymbolPlacement>(option % 4);
        style.date_form = style.time_form = option;
        style.fraction_digits = option % kMaxFractionDigits + 1;
        style.exponent_form = static_cast<ExponentForm>(option % 3);
        const std::string code = build_format_code(style, separators);
        EXPECT_EQ(FormatCode(code, separators).problem(), "") << locale << ": " << code;
      }
    }
  }
}

TEST(FormatStyle, RefusesOptionsThatDoNotFit) {
  EXPECT_EQ(code_of("general decimals=31"), "The number of decimal places must be 0 to 30");
  EXPECT_EQ(code_of("general zeros=-1"), "The number of leading zeros must be 0 to 30");
  EXPECT_EQ(code_of("fraction denominator=99999999"), "The denominator must be 0 to 9999999");
  EXPECT_EQ(code_of("fraction digits=0"), "The number of digits of the denominator must be 1 to 7");
  EXPECT_EQ(code_of("currency symbol=\""), "The currency symbol can't hold quotes");
  EXPECT_EQ(code_of("scientific exponent=100"), "\"exponent=100\" is no option of a display format");
  EXPECT_EQ(code_of("date colour=red"), "\"colour=red\" is no option of a display format");
  EXPECT_EQ(code_of("general decimals"), "\"decimals\" is no option of a display format");
  EXPECT_EQ(read_format_style("0.00", "$").style.kind, FormatKind::kCustom);
  EXPECT_EQ(read_format_style("General;-General", "$").style.kind, FormatKind::kCustom);
}

}  // namespace
}  // namespace rowvane

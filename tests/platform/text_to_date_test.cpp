#include "platform/text_to_date.h"

#include <string>

#include <gtest/gtest.h>

namespace rowvane::platform {
namespace {

constexpr double kFirstOfMarch = 45352;  // 2024-03-01
constexpr double kChristmas = 45651;     // 2024-12-25

struct DateCase {
  const char* text;
  double expected;
};

void expect_dates(const char* locale, std::initializer_list<DateCase> cases) {
  const RegionalSettings settings = regional_settings_of(locale);
  for (const auto& [text, expected] : cases) {
    const std::optional<double> date = text_to_date(text, settings);
    ASSERT_TRUE(date.has_value()) << locale << " " << text;
    EXPECT_NEAR(*date, expected, 1e-9) << locale << " " << text;
  }
}

void expect_no_dates(const char* locale, std::initializer_list<const char*> texts) {
  const RegionalSettings settings = regional_settings_of(locale);
  for (const char* const text : texts) {
    EXPECT_FALSE(text_to_date(text, settings).has_value()) << locale << " " << testing::PrintToString(text);
  }
}

TEST(TextToDate, CountsDaysFromTheEndOf1899) {
  expect_dates("C", {{"1899-12-30", 0},
                     {"1899-12-29", -1},
                     {"1899-12-29 06:00", -0.75},
                     {"1900-01-01", 2},
                     {"1900-02-28", 60},
                     {"1900-03-01", 61},
                     {"0100-01-01", -657434},
                     {"9999-12-31", 2958465}});
}

TEST(TextToDate, IsoIsReadEverywhere) {
  for (const char* const locale : {"C", "en_US", "en_GB", "de_DE", "ja_JP"}) {
    expect_dates(locale, {{"2024-03-01", kFirstOfMarch},
                          {"2024-03-01T12:00", kFirstOfMarch + 0.5},
                          {"2024-03-01T12:00:00Z", kFirstOfMarch + 0.5},
                          {"2024-03-01 18:00:00.000", kFirstOfMarch + 0.75},
                          {"2024-03-01T00:00:00,5", kFirstOfMarch + 0.5 / 86400}});
  }
  expect_no_dates("en_US",
                  {"2024-03-01T", "2024-03-01T12", "2024-03-01T12:00+01:00", "2024-03-01Z", "2024-25-12",
                   "2024-02-30", "2023-02-29", "2024-00-01", "2024-01-00", "2024-03-01T12:00."});
}

TEST(TextToDate, NumbersFollowTheOrderOfTheRegion) {
  expect_dates("en_US",
               {{"3/1/2024", kFirstOfMarch}, {"03-01-24", kFirstOfMarch}, {"3.1.2024", kFirstOfMarch}});
  expect_dates("en_GB", {{"1/3/2024", kFirstOfMarch}, {" 01 / 03 / 24 ", kFirstOfMarch}});
  expect_dates("de_DE", {{"1.3.2024", kFirstOfMarch}, {"01. 03. 2024", kFirstOfMarch}});
  expect_dates("hu_HU",
               {{"2024. 03. 01.", kFirstOfMarch}, {"24.03.01", kFirstOfMarch}, {"3/1/2024", kFirstOfMarch}});
  // Another order counts where the region's own gives no date.
  expect_dates("en_US", {{"25/12/2024", kChristmas}, {"2024/12/25", kChristmas}});
  expect_dates("de_DE", {{"12/25/2024", kChristmas}});
  expect_dates("sv_SE", {{"12/25/2024", kChristmas}, {"25/12/2024", kChristmas}});
}

TEST(TextToDate, TwoDigitYearsLieAround2000) {
  expect_dates("en_US", {{"1/1/30", 10959}, {"1/1/29", 47119}, {"1/1/00", 36526}, {"1/1/99", 36161}});
}

TEST(TextToDate, MonthsHaveNames) {
  expect_dates("en_US", {{"1 March 2024", kFirstOfMarch},
                         {"March 1, 2024", kFirstOfMarch},
                         {"mar. 1st, 2024", kFirstOfMarch},
                         {"1-Mar-24", kFirstOfMarch},
                         {"01/MAR/2024", kFirstOfMarch},
                         {"2024 March 1", kFirstOfMarch},
                         {"1 of March 2024 at 6 pm", kFirstOfMarch + 0.75},
                         {"Friday, March 1, 2024", kFirstOfMarch},
                         {"Fri 3/1/2024 12:00", kFirstOfMarch + 0.5},
                         {"Sept 1 2024", 45536}});
  expect_dates("de_DE", {{"1. März 2024", kFirstOfMarch},
                         {"Fr., 1. MÄRZ 2024 12:00", kFirstOfMarch + 0.5},
                         {"25. Dezember 2024", kChristmas},
                         {"25. Dec 2024", kChristmas}});
  expect_dates("fr_FR", {{"1 mars 2024", kFirstOfMarch}, {"mar. 25 déc. 2024", kChristmas}});
  expect_dates("es_ES", {{"1 de marzo de 2024", kFirstOfMarch},
                         {"mar 1 2024", kFirstOfMarch},
                         {"mar, 1 mar 2024 6:00 p. m.", kFirstOfMarch + 0.75}});
  expect_dates("ru_RU", {{"1 марта 2024 г.", kFirstOfMarch}, {"1 март 2024", kFirstOfMarch}});
  expect_dates("ja_JP", {{"2024年3月1日", kFirstOfMarch}, {"2024年3月1日 午後6:00", kFirstOfMarch + 0.75}});
  expect_dates("ko_KR", {{"2024년 3월 1일", kFirstOfMarch}, {"2024. 3. 1. AM 6:00", kFirstOfMarch + 0.25}});
}

TEST(TextToDate, TimesLieOnDayZero) {
  expect_dates("en_US", {{"6:00", 0.25},
                         {"0:00", 0},
                         {"23:59:59", 86399.0 / 86400},
                         {"6:00:00.5", 21600.5 / 86400},
                         {"12:00 AM", 0},
                         {"12:00 pm", 0.5},
                         {"6 PM", 0.75},
                         {"6:00p.m.", 0.75},
                         {"6:00\u202FPM", 0.75},
                         {"18:00 3/1/2024", kFirstOfMarch + 0.75}});
  expect_dates("fi_FI", {{"1.3.2024 18.00", kFirstOfMarch + 0.75}});
  expect_no_dates("en_US",
                  {"24:00", "6:60", "6:00:60", "13:00 PM", "6:", "6:00:", "6:00:00.", "6:00 XM", "123:00"});
  expect_no_dates("fi_FI", {"18.00", "3.14"});
}

TEST(TextToDate, PlainTextAndNumbersAreNoDates) {
  for (const char* const locale : {"C", "en_US", "de_DE"}) {
    expect_no_dates(locale, {"",
                             " ",
                             "12",
                             "3.14",
                             "3,14",
                             "2024",
                             "20240301",
                             "-5",
                             "1.234.567",
                             "1e5",
                             "12/25",
                             "March",
                             "March 2024",
                             "March 3",
                             "Friday",
                             "AM",
                             "1 2 2024",
                             "1/2-2024",
                             "1/2/3",
                             "1/2/2024 x",
                             "x 1/2/2024",
                             "1/2/12345",
                             "1/2/2024/3",
                             "1//2024",
                             "1/2/",
                             "/1/2024",
                             "12 inches 2024",
                             "192.168.1.1",
                             "1/2/0099",
                             "March March 2024",
                             "1 2 March"});
  }
  const RegionalSettings settings = regional_settings_of("en_US");
  EXPECT_FALSE(text_to_date("1/2/2024" + std::string(5000, ' '), settings));
  EXPECT_FALSE(text_to_date(std::string_view("1/2/2024\0", 9), settings));
  EXPECT_FALSE(text_to_date("\xFF\xC3", settings));
}

}  // namespace
}  // namespace rowvane::platform

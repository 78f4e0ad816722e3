#include "text/regular_expression.h"

#include <thread>

#include <gtest/gtest.h>

namespace rowvane {
namespace {

constexpr uint32_t kUsual = regex::kUtf8 | regex::kMultiline | regex::kCaseless;

bool matches(std::string_view pattern, std::string_view text, uint32_t options = kUsual,
             uint32_t match_options = regex::kNotEmpty) {
  const RegularExpression expression(pattern, options);
  EXPECT_EQ(expression.error(), "") << pattern;
  RegexMatcher matcher(expression, match_options);
  const bool found = matcher.matches(text);
  EXPECT_EQ(matcher.error(), "") << pattern;
  return found;
}

TEST(RegularExpression, OptionWordsHaveTheirFixedValues) {
  EXPECT_EQ(kUsual, 0x803u);
  EXPECT_EQ(regex::kUtf8 | regex::kMultiline, 0x802u);
  EXPECT_EQ(regex::kNotEmpty, 0x400u);
}

TEST(RegularExpression, OptionsDoWhatTheySay) {
  EXPECT_TRUE(matches("größe", "die GRÖSSE und die GRÖßE"));
  EXPECT_FALSE(matches("größe", "GRÖßE", regex::kUtf8));
  EXPECT_TRUE(matches("^b$", "a\nb\nc"));
  EXPECT_TRUE(matches("^b$", "a\r\nb\r\nc"));
  EXPECT_FALSE(matches("^b$", "a\nb\nc", regex::kUtf8));
  EXPECT_TRUE(matches("^.$", "é"));
  EXPECT_FALSE(matches("x*", "abc"));
  EXPECT_TRUE(matches("x*", "abxc"));
  EXPECT_TRUE(matches("x*", "abc", kUsual, 0));
  EXPECT_TRUE(matches("^$", "", kUsual, 0));
  EXPECT_FALSE(matches("^$", ""));
}

TEST(RegularExpression, TellsWhatIsWrongWithAPattern) {
  const RegularExpression wrong("a(b", kUsual);
  EXPECT_EQ(wrong.error(), "missing closing parenthesis");
  EXPECT_EQ(wrong.error_offset(), 3u);
  RegexMatcher matcher(wrong, 0, true);
  EXPECT_FALSE(matcher.matches("ab"));
  EXPECT_EQ(matcher.capture_count(), 0u);
  EXPECT_FALSE(matcher.capture(0));
  for (const std::string_view pattern : {"\xFF", "\\C", "(?<=a*)b", "*", "[z-a]"})
    EXPECT_NE(RegularExpression(pattern, kUsual).error(), "") << pattern;
}

TEST(RegularExpression, FindsFromAPlaceOnAndKeepsGroups) {
  const RegularExpression expression("(?<year>\\d{4})-(\\d\\d)(x)?", kUsual);
  RegexMatcher matcher(expression, regex::kNotEmpty, true);
  const std::string text = "in 2021-03 and 2022-11x";
  EXPECT_EQ(matcher.find(text), (TextSpan{3, 10}));
  EXPECT_EQ(matcher.capture(1), (TextSpan{3, 7}));
  EXPECT_EQ(matcher.capture(2), (TextSpan{8, 10}));
  EXPECT_FALSE(matcher.capture(3));
  EXPECT_EQ(matcher.find(text, 10), (TextSpan{15, 23}));
  EXPECT_EQ(matcher.capture(3), (TextSpan{22, 23}));
  EXPECT_EQ(matcher.capture_named("year"), 1u);
  EXPECT_FALSE(matcher.capture_named("month"));
  EXPECT_FALSE(matcher.find(text, 23));
  EXPECT_FALSE(matcher.capture(0));
  EXPECT_FALSE(matcher.find(text, 24));
}

TEST(RegularExpression, AMatchThatWouldTakeForeverFailsWithAnError) {
  std::string text(60, 'a');
  for (const std::string_view pattern : {"(a+)+[bc]\\1", "(a|aa)+$", "^(([a-z])+.)+[A-Z]([a-z])+$"}) {
    const RegularExpression expression(pattern, regex::kUtf8);
    ASSERT_EQ(expression.error(), "");
    RegexMatcher matcher(expression);
    EXPECT_FALSE(matcher.matches(text + "!")) << pattern;
    EXPECT_NE(matcher.error(), "") << pattern;
    EXPECT_FALSE(matcher.matches("!"));
    EXPECT_EQ(matcher.error(), "");
  }
  // Deep, but not endless.
  EXPECT_TRUE(matches("^(a|b)*c", std::string(20'000, 'a') + "c"));
}

TEST(RegularExpression, BrokenTextMatchesAroundTheBrokenBytes) {
  EXPECT_TRUE(matches("ab", "\xFF\xC3 ab \xE2\x82"));
  EXPECT_FALSE(matches("a.b",
                       "a\xFF"
                       "b"));
  EXPECT_TRUE(matches("é", "\xC3\xC3\xA9"));
  EXPECT_FALSE(matches(".", "\xFF\xFE\x80"));
  EXPECT_FALSE(matches("[^a]", "\xC3"));
}

TEST(RegularExpression, ThreadsShareAnExpression) {
  const RegularExpression expression("(\\d+)-\\1", kUsual);
  std::vector<std::thread> threads;
  std::array<int, 4> found{};
  for (int& count : found) {
    threads.emplace_back([&expression, &count] {
      RegexMatcher matcher(expression, regex::kNotEmpty, true);
      for (int i = 0; i < 2000; ++i) {
        const std::string number = std::to_string(i);
        const auto span = matcher.find("x" + number + "-" + number + "-");
        if (span && matcher.capture(1)->size() == number.size()) ++count;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(found, (std::array{2000, 2000, 2000, 2000}));
}

}  // namespace
}  // namespace rowvane

#include "platform/utf8.h"

#include <random>

#include <gtest/gtest.h>

namespace rowvane {
namespace {

const std::string kMixed = "aé€😀z";  // characters of 1, 2, 3, 4 and 1 bytes

TEST(Utf8, TellsWellFormedTextFromBroken) {
  for (const char* good : {"", "plain ascii text", "é", "€", "😀", "\xED\x9F\xBF", "\xEE\x80\x80",
                           "\xF4\x8F\xBF\xBF", "\xF0\x90\x80\x80", "\xE0\xA0\x80", "12345678é"}) {
    EXPECT_TRUE(is_valid_utf8(good)) << good;
  }
  for (const char* broken : {"\x80", "\xC3", "\xC3(", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xE2\x82",
                             "\xE2(\xAC", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80",
                             "\xF5\x80\x80\x80", "\xFF", "12345678\xE9", "1234567\xE9"}) {
    EXPECT_FALSE(is_valid_utf8(broken)) << broken;
  }
  EXPECT_TRUE(is_ascii("123456789"));
  EXPECT_FALSE(is_ascii("12345678\x80"));
  EXPECT_FALSE(is_ascii("1234567é90"));
}

TEST(Utf8, WritesAndReadsEveryKindOfCharacter) {
  for (const char32_t c : {U'\0', U'\x7F', U'\x80', U'\x7FF', U'\x800', U'\xD7FF', U'\xE000', U'\xFFFF',
                           U'\x10000', U'\x10FFFF'}) {
    std::string text;
    append_character(c, text);
    EXPECT_TRUE(is_valid_utf8(text));
    size_t position = 0;
    EXPECT_EQ(next_character(text, position), c);
    EXPECT_EQ(position, text.size());
  }
  for (const char32_t c : {char32_t{0xD800}, char32_t{0xDFFF}, char32_t{0x110000}}) {
    std::string text;
    append_character(c, text);
    EXPECT_EQ(text, "\uFFFD");
  }
}

TEST(Utf8, ReadsBrokenBytesOnceForEachPartThatCouldHaveBegunACharacter) {
  const std::pair<std::string_view, size_t> broken[] = {
      {"\xE2\x82", 1},         {"\xF0\x9F\x98", 1},     {"\x80\x80", 2},
      {"\xC0\xAF", 2},         {"\xED\xA0\x80", 3},     {"\xE0\x80\x80", 3},
      {"\xF4\x90\x80\x80", 4}, {"\xE2\x82\xE2\x82", 2}, {"\xF0\x90\xE2\x82", 2}};
  for (const auto& [bytes, parts] : broken) {
    const std::string text = std::string(bytes) + "a";
    size_t position = 0;
    for (size_t i = 0; i < parts; ++i) {
      EXPECT_EQ(character_length(text, position), 0u);
      EXPECT_EQ(next_character(text, position), kReplacementCharacter);
    }
    EXPECT_EQ(next_character(text, position), U'a');
    EXPECT_EQ(count_characters(bytes), parts);
    EXPECT_EQ(truncate_characters(text, parts), bytes);
  }
  EXPECT_EQ(character_length("\uFFFD", 0), 3u) << "one that was written is none of them";
  EXPECT_EQ(count_characters(kMixed), 5u);
}

TEST(Utf8, CutsBetweenCharacters) {
  const size_t ends[] = {0, 1, 3, 6, 10, 11};  // of the first n characters
  for (size_t n = 0; n <= 6; ++n)
    EXPECT_EQ(truncate_characters(kMixed, n).size(), ends[std::min<size_t>(n, 5)]);
  for (size_t max = 0; max <= 12; ++max) {
    size_t longest = 0;
    for (const size_t end : ends) longest = end <= max ? end : longest;
    EXPECT_EQ(truncate_bytes(kMixed, max).size(), longest) << max;
  }
  for (size_t max = 0; max < 4; ++max) EXPECT_EQ(truncate_bytes("😀", max), "") << max;
  EXPECT_EQ(truncate_bytes("\x80\x80\x80\x80\x80\x80", 5).size(), 5u);
}

TEST(Utf8, RepairsTextOfAnsiPrograms) {
  EXPECT_EQ(repair_utf8("caf\xE9"), "café");
  EXPECT_EQ(repair_utf8("\x80 5"), "€ 5");
  EXPECT_EQ(repair_utf8("é and \xE9"), "é and é");
  std::mt19937 random(5);
  for (int round = 0; round < 2'000; ++round) {
    std::string bytes(random() % 20, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    const std::string repaired = repair_utf8(bytes);
    ASSERT_TRUE(is_valid_utf8(repaired));
    size_t characters = 0;  // broken bytes are repaired one by one
    for (size_t i = 0; i < bytes.size(); ++characters) i += std::max<size_t>(character_length(bytes, i), 1);
    ASSERT_EQ(count_characters(repaired), characters);
    if (is_valid_utf8(bytes)) {
      ASSERT_EQ(repaired, bytes);
    }
  }
}

}  // namespace
}  // namespace rowvane

#include "platform/code_pages.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/this_system.h"

namespace rowvane::platform {
namespace {

constexpr unsigned kPages[] = {437,   720,   737,   775,   850,   852,   855,   857,   858,   860,
                               861,   862,   863,   865,   866,   869,   1250,  1251,  1252,  1253,
                               1254,  1255,  1256,  1257,  28591, 28592, 28593, 28594, 28595, 28596,
                               28597, 28598, 28599, 28603, 28605, 932,   936,   949,   950};

std::string decode(unsigned page, std::string_view bytes) {
  std::string text;
  CodePage::open(page)->to_utf8(bytes, text);
  return text;
}

std::string encode(unsigned page, std::string_view text, bool exact) {
  std::string bytes;
  EXPECT_EQ(CodePage::open(page)->from_utf8(text, bytes), exact) << page << " " << text;
  return bytes;
}

std::string utf16(std::u16string_view units) {
  std::string bytes;
  for (const char16_t unit : units) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

TEST(CodePages, EveryByteThatHasAMeaningComesBack) {
  for (const unsigned number : kPages) {
    const auto page = CodePage::open(number);
    ASSERT_NE(page, nullptr) << number;
    int without_meaning = 0;
    for (int value = 0; value < 256; ++value) {
      if (page->is_lead_byte(static_cast<unsigned char>(value))) continue;
      const std::string byte(1, static_cast<char>(value));
      const std::string text = decode(number, byte);
      if (value < 0x80) {
        EXPECT_EQ(text, byte) << number;
      }
      without_meaning += text == "\uFFFD";
      if (text != "\uFFFD") {
        EXPECT_EQ(encode(number, text, true), byte) << number << " " << value;
      }
    }
    EXPECT_LE(without_meaning, 45) << number;
  }
}

TEST(CodePages, KnowsTheCharactersOfEachPage) {
  EXPECT_EQ(decode(437, "\x81\xE1\xE6\x9B\xFF"), "üßµ¢\u00A0");
  EXPECT_EQ(decode(850, "\xD5"), "ı");
  EXPECT_EQ(decode(858, "\xD5"), "€");
  EXPECT_EQ(decode(737, "\x80\x98"), "Αα");
  EXPECT_EQ(decode(852, "\x88\xA5"), "łą");
  EXPECT_EQ(decode(866, "\x8F\xE0\xA8"), "При");
  EXPECT_EQ(decode(1250, "\x8A\x9E"), "Šž");
  EXPECT_EQ(decode(1251, "\xCF\xF0\xE8"), "При");
  EXPECT_EQ(decode(1252, "\x80\x93\xE9\x94"), "€“é”");
  EXPECT_EQ(decode(1253, "\xE1\xD2"), "α\uFFFD");
  EXPECT_EQ(decode(1254, "\xFD\xDD"), "ıİ");
  EXPECT_EQ(decode(1255, "\xF9\xEC"), "של");
  EXPECT_EQ(decode(1256, "\xC7\xE1"), "ال");
  EXPECT_EQ(decode(1257, "\xE0\xFE"), "ąž");
  EXPECT_EQ(decode(28592, "\xA9"), "Š");
  EXPECT_EQ(decode(28595, "\xBF"), "П");
  EXPECT_EQ(decode(28605, "\xA4"), "€");
}

TEST(CodePages, LongTextSurvivesInBothDirections) {
  std::string text;
  for (int i = 0; i < 500; ++i) text += "Zoë paid 12 € – plain words between them, ÄÖÜäöüßÄÖÜäöüß; ";
  const std::string bytes = encode(1252, text, true);
  EXPECT_EQ(decode(1252, bytes), text);
}

TEST(CodePages, PutsTheBestFitForWhatThePageLacks) {
  EXPECT_EQ(encode(1252, "Łódź", false),
            "L\xF3"
            "dz");
  EXPECT_EQ(encode(437, "“a”—Ａ²…", false), "\"a\"-A\xFD.");
  EXPECT_EQ(encode(437, "μ", false), "\xE6");
  EXPECT_EQ(encode(1250, "\u2126", false), "?");
  EXPECT_EQ(encode(28591, "€漢😀", false), "???");
  EXPECT_EQ(encode(1252, "a\xC3", false), "a?");
  EXPECT_EQ(encode(1252, "", true), "");
  EXPECT_EQ(encode(1252, std::string("é\0é", 5), true), std::string("\xE9\0\xE9", 3));
}

// Windows goes by a table for each page, which drops all accents at once; Linux looks for the nearest
// character.
TEST(CodePages, SystemsDifferInTheseBestFits) {
  EXPECT_EQ(encode(1252, "ǖ", false), kIsWindows ? "u" : "\xFC");
  EXPECT_EQ(encode(852, "µ", false), kIsWindows ? "u" : "?");
  EXPECT_EQ(encode(737, "µ", false), kIsWindows ? "?" : "\xA3");
}

TEST(CodePages, ReadsDoubleBytePages) {
  EXPECT_EQ(decode(932, "a\x93\xFA\x96{\xB1"), "a日本ｱ");
  EXPECT_EQ(decode(936, "\xD6\xD0\xCE\xC4"), "中文");
  EXPECT_EQ(decode(949, "\xC7\xD1"), "한");
  EXPECT_EQ(decode(950, "\xA4\xA4"), "中");
  EXPECT_EQ(encode(932, "日本", true), "\x93\xFA\x96{");
  EXPECT_EQ(encode(932, "≒", true), "\x81\xE0") << "of two places the usual one";
  EXPECT_EQ(encode(936, "é中😀", false), "\xA8\xA6\xD6\xD0?");
  // Broken pairs lose no separator.
  EXPECT_EQ(decode(932, "\x93,x"), "\uFFFD,x");
  EXPECT_EQ(decode(932, "x\x93"), "x\uFFFD");
  const auto page = CodePage::open(932);
  EXPECT_EQ(page->max_character_bytes(), 2);
  EXPECT_TRUE(page->is_lead_byte(0x81));
  EXPECT_FALSE(page->is_lead_byte(0xB1));
  EXPECT_EQ(CodePage::open(1252)->max_character_bytes(), 1);
}

TEST(CodePages, RefusesUnknownPages) {
  for (const unsigned number : {2u, 436u, 12345u, 4294967295u}) EXPECT_EQ(CodePage::open(number), nullptr);
}

TEST(Utf16, CarriesAllPlanes) {
  const std::string text = "plain é 漢 😀 \U0010FFFF" + std::string("\0x", 2) + std::string(3000, 'a');
  std::string units;
  utf8_to_utf16le(text, units);
  EXPECT_EQ(units.substr(0, 16), utf16(u"plain é "));
  std::string back;
  EXPECT_EQ(utf16le_to_utf8(units, false, back), units.size());
  EXPECT_EQ(back, text);
}

TEST(Utf16, LoneSurrogatesBecomeReplacements) {
  const std::u16string units = {u'a', 0xD800, u'b', 0xDC00, 0xD83D, 0xD83D, 0xDE00};
  std::string text;
  utf16le_to_utf8(utf16(units), false, text);
  EXPECT_EQ(text, "a\uFFFDb\uFFFD\uFFFD😀");
}

TEST(Utf16, LeavesWhatIsNotComplete) {
  const std::string cut = utf16(std::u16string{u'a', 0xD83D});
  std::string text;
  EXPECT_EQ(utf16le_to_utf8(cut, true, text), 2u);
  EXPECT_EQ(utf16le_to_utf8(cut + "\x01", true, text), 2u) << "half a low surrogate may follow";
  EXPECT_EQ(text, "aa");
  text.clear();
  EXPECT_EQ(utf16le_to_utf8(cut + "\x01", false, text), 4u);
  EXPECT_EQ(text, "a\uFFFD");
}

TEST(Utf16, BrokenUtf8BecomesReplacements) {
  const std::pair<std::string, std::u16string> cases[] = {
      {"\x80", u"\uFFFD"},                                // a tail alone
      {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // an overlong "/"
      {"\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"},            // overlong
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // a surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above U+10FFFF
      {"\xF0\x9F\x98", u"\uFFFD"},                        // cut short
      {"\xE6\xBC"
       "a",
       u"\uFFFDa"},
  };
  for (const auto& [text, expected] : cases) {
    std::string units;
    utf8_to_utf16le(text, units);
    EXPECT_EQ(units, utf16(expected)) << testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace rowvane::platform

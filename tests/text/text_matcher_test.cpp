#include "text/text_matcher.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "platform/characters.h"
#include "platform/utf8.h"
#include "text/caseless_text.h"
#include "text/rich_text.h"

namespace rowvane {
namespace {

std::unique_ptr<TextMatcher> caseless(const std::string& text) {
  return PreparedPattern({text}).matcher();
}

// "[" and "]" around all matches of the pattern.
std::string marked(FindPattern pattern, const std::string& text) {
  const PreparedPattern prepared(std::move(pattern));
  std::string out;
  size_t from = 0;
  for (const TextSpan& span : prepared.matcher()->find_all(text)) {
    out += text.substr(from, span.begin - from) + "[" + text.substr(span.begin, span.size()) + "]";
    from = span.end;
  }
  return out + text.substr(from);
}

TEST(TextMatcher, MarksAllMatches) {
  EXPECT_EQ(marked({"an"}, "Banana AN"), "B[an][an]a [AN]");
  EXPECT_EQ(marked({"AN", false, false, false}, "Banana AN"), "Banana [AN]");
  EXPECT_EQ(marked({""}, "abc"), "abc");
  EXPECT_EQ(marked({"aa"}, "aaaaa"), "[aa][aa]a");
  EXPECT_EQ(marked({"ss"}, "Straße, STRASSE"), "Stra[ß]e, STRA[SS]E");
  EXPECT_EQ(marked({"s"}, "ßs"), "[ß][s]");
  EXPECT_EQ(marked({"ÄÖ"}, "xäöx ÄÖ"), "x[äö]x [ÄÖ]");
  EXPECT_EQ(marked({"k"}, "\u212A ok"), "[\u212A] o[k]") << "the Kelvin sign";
  EXPECT_EQ(marked({"\U0001F600"}, "a\U0001F600b"), "a[\U0001F600]b");
  EXPECT_EQ(marked({"[an]+", true}, "Banana"), "B[anana]");
  EXPECT_EQ(marked({"x*", true, false, true, true}, "axxb"), "[]a[xx][]b[]");
  EXPECT_EQ(marked({"x*", true}, "axxb"), "a[xx]b");
  EXPECT_EQ(marked({"^b", true}, "b\nb"), "[b]\n[b]");
  EXPECT_EQ(marked({"Jonson", false, true}, "Johnson"), "[Johnson]");
  EXPECT_EQ(marked({"Jonson", false, true}, "Smith"), "Smith");
}

TEST(TextMatcher, PatternsAreChecked) {
  EXPECT_EQ(check_pattern({"(", true}).refusal.text().find("Regular expression error:\n"), 0U);
  EXPECT_EQ(check_pattern({"("}), "");
  EXPECT_EQ(
      check_pattern({"a", true, true}),
      "The 'Find Similar' method requires selecting\nthe 'Options > Plain Text Matching' option on the Find "
      "toolbar.");
}

TEST(TextMatcher, TypingOnNarrows) {
  EXPECT_TRUE(is_narrower({"abc"}, {"ab"}));
  EXPECT_TRUE(is_narrower({"xab"}, {"ab"}));
  EXPECT_FALSE(is_narrower({"ab"}, {"abc"}));
  EXPECT_FALSE(is_narrower({"ab"}, {""}));
  EXPECT_FALSE(is_narrower({"abc", true}, {"ab", true}));
  EXPECT_FALSE(is_narrower({"abc", false, true}, {"ab", false, true}));
  EXPECT_FALSE(is_narrower({"abc", false, false, false}, {"ab"}));
}

// Against folding both texts whole.
TEST(TextMatcher, CaselessMatchesAreThoseOfTheFoldedTexts) {
  static const char* const pieces[] = {"a", "A", "s", "S",      "ß",    "ﬁ", "i", "İ",
                                       "ä", "Ä", "K", "\u212A", "\xFF", "я", "Я", "日"};
  std::mt19937 random(5);
  const auto text_of = [&random](unsigned most) {
    std::string text;
    for (auto i = random() % (most + 1); i > 0; --i) text += pieces[random() % std::size(pieces)];
    return text;
  };
  int found = 0;
  for (int i = 0; i < 30'000; ++i) {
    const std::string wanted = text_of(3);
    const std::string text = text_of(12);
    const bool expected =
        !wanted.empty() && platform::fold_case(text).find(platform::fold_case(wanted)) != std::string::npos;
    const auto matcher = caseless(wanted);
    ASSERT_EQ(matcher->matches(text), expected) << wanted << " in " << text;
    const auto spans = matcher->find_all(text);
    ASSERT_EQ(!spans.empty(), expected) << wanted << " in " << text;
    // One after the other they are the same, and each holds what is wanted.
    size_t from = 0;
    for (const TextSpan& span : spans) {
      ASSERT_EQ(matcher->find(text, from), span) << wanted << " in " << text;
      const std::string part = platform::fold_case(text.substr(span.begin, span.size()));
      ASSERT_NE(part.find(platform::fold_case(wanted)), std::string::npos);
      from = span.end;
    }
    ASSERT_EQ(matcher->find(text, from), std::nullopt);
    found += expected;
  }
  EXPECT_GT(found, 2000);
}

TEST(TextMatcher, KnowsWhichCharactersFoldToAscii) {
  // No script beyond the first two planes has letter cases.
  for (char32_t character = 0x80; character < 0x2'0000; ++character) {
    std::string text;
    append_character(character, text);
    const std::string folded = platform::fold_case(text);
    const bool has_ascii =
        std::ranges::any_of(folded, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (has_ascii) {
      ASSERT_TRUE(may_fold_to_ascii("x" + text)) << static_cast<uint32_t>(character);
    }
    ASSERT_LE(count_characters(folded), 2 * text.size()) << static_cast<uint32_t>(character);
  }
  EXPECT_FALSE(may_fold_to_ascii("abc äöüéя日"));
}

TEST(RichText, IsReadAsItsPlainText) {
  EXPECT_EQ(plain_text_of("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}{\\*\\generator x;}\\f0\\fs20 Bold \\b "
                          "text\\b0 .\\par Next\\tab x}"),
            "Bold text.\nNext\tx");
  EXPECT_EQ(plain_text_of("{\\rtf1 caf\\'e9 \\u8364?uro \\{x\\} \\\\ \\ldblquote q\\rdblquote}"),
            "café €uro {x} \\ “q”");
  EXPECT_EQ(plain_text_of("{\\rtf1\\uc2\\u-10179 xx\\u-8704 yy!{\\uc0\\u228}}"), "\U0001F600!ä");
  EXPECT_EQ(plain_text_of("{\\rtf1 a\r\nb\\bin3 {}}c{\\pict 0102}d"), "abcd");
  EXPECT_EQ(plain_text_of("{\\rtf1 \\u55357 ?x\\'"), "\uFFFDx");
  // Whatever the bytes, the text is valid.
  std::mt19937 random(3);
  for (int i = 0; i < 20'000; ++i) {
    std::string rich = "{\\rtf1 ";
    for (auto k = random() % 20; k > 0; --k) rich += "{}\\'*u-9bincx \xE9\n5"[random() % 16];
    ASSERT_TRUE(is_valid_utf8(plain_text_of(rich))) << rich;
  }
  EXPECT_TRUE(is_valid_utf8(plain_text_of(std::string(200'000, '{'))));
}

}  // namespace
}  // namespace rowvane

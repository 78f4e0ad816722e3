#include "platform/collation.h"

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace rowvane::platform {
namespace {

constexpr CollationOptions kPlain{};
constexpr CollationOptions kCaseSensitive{.case_sensitive = true};
constexpr CollationOptions kIgnorePunctuation{.ignore_punctuation = true};

constexpr std::array kAllOptions = {kPlain, kCaseSensitive, kIgnorePunctuation,
                                    CollationOptions{.case_sensitive = true, .ignore_punctuation = true}};

int sign(int value) {
  return (value > 0) - (value < 0);
}

std::string key_of(const Collation& collation, std::string_view text) {
  std::string key;
  collation.append_key(text, key);
  return key;
}

struct Order {
  const char* a;
  int order;
  const char* b;
};

// Holds the comparison and the keys against what is expected.
void expect_orders(const char* locale, CollationOptions options, std::initializer_list<Order> orders) {
  const auto collation = Collation::open(locale, options);
  for (const auto& [a, order, b] : orders) {
    EXPECT_EQ(sign(collation->compare(a, b)), order) << locale << ": " << a << " | " << b;
    EXPECT_EQ(sign(collation->compare(b, a)), -order) << locale << ": " << b << " | " << a;
    EXPECT_EQ(sign(key_of(*collation, a).compare(key_of(*collation, b))), order)
        << locale << ": keys of " << a << " | " << b;
  }
}

TEST(Collation, HyphensAndApostrophesAreSymbolsOrMinor) {
  expect_orders("en_US", kPlain,
                {{"co-op", -1, "coop"},
                 {"co-op", -1,
                  "CO"
                  "nk"},
                 {"O'Neil", -1, "ONeil"},
                 {"O'Neil", -1, "Oak"},
                 {"co-op", 0, "CO-OP"},
                 {"'", -1, "-"},
                 {"-", -1, "_"},
                 {"a-b", -1, "a b"}});
  expect_orders("en_US", kIgnorePunctuation,
                {{"co-op", 1, "coop"},
                 {"co-op", -1, "coops"},
                 {"co-op", 1, "conk"},
                 {"O'Neil", 1, "ONeil"},
                 {"O'Neil", 1, "Oak"},
                 {"ONeil", -1, "O'Neill"},
                 {"co-op", 0, "CO-OP"},
                 {"a-b", 1, "a b"},
                 {"a_b", -1, "ab"},
                 {"a.b", -1, "ab"}});
}

#ifndef _WIN32
// Wine has it the other way round; Windows counts the places from the front as well.
TEST(Collation, TheEarlierHyphenComesFirst) {
  expect_orders("en_US", kIgnorePunctuation, {{"c-oop", -1, "co-op"}});
}
#endif

TEST(Collation, CaseCountsOnlyWhereItShall) {
  expect_orders("en_US", kPlain, {{"abc", 0, "ABC"}, {"é", 0, "É"}, {"ПРИ", 0, "при"}, {"a", -1, "B"}});
  expect_orders(
      "en_US", kCaseSensitive,
      {{"abc", -1, "ABC"}, {"abc", -1, "Abd"}, {"ABC", -1, "abd"}, {"a", -1, "A"}, {"aB", -1, "Ab"}});
}

TEST(Collation, AccentsDecideBehindTheLetters) {
  expect_orders("en_US", kPlain,
                {{"e", -1, "é"},
                 {"é", -1, "f"},
                 {"resume", -1, "résumé"},
                 {"résumé", -1, "resumes"},
                 {"Muller", -1, "Müller"},
                 {"e\u0301", 0, "é"},
                 {"z", 1, "ä"}});
}

TEST(Collation, SymbolsThenDigitsThenLetters) {
  expect_orders("en_US", kPlain,
                {{"_", -1, "1"},
                 {"#", -1, "a"},
                 {"$", -1, "0"},
                 {"9", -1, "a"},
                 {"10", -1, "9"},
                 {"a1", -1, "aa"},
                 {"", -1, " "},
                 {"", 0, ""},
                 {" a", -1, "a"},
                 {"a", -1, "a "},
                 {"z", -1, "α"},
                 {"α", -1, "а"},
                 {"я", -1, "א"},
                 {"z", -1, "漢"}});
}

TEST(Collation, LanguagesHaveOrdersOfTheirOwn) {
  expect_orders("sv_SE", kPlain, {{"z", -1, "å"}, {"å", -1, "ä"}, {"ä", -1, "ö"}});
  expect_orders("de_DE", kPlain, {{"ä", -1, "b"}, {"ß", 0, "ss"}});
  expect_orders("cs_CZ", kPlain, {{"h", -1, "ch"}, {"ch", -1, "i"}});
  expect_orders("xx_YY", kPlain, {{"z", 1, "å"}, {"b", -1, "C"}});
}

TEST(Collation, OnlyTheFirstBytesCount) {
  const auto collation = Collation::open("en_US", kPlain);
  const std::string front(kMostComparedBytes, 'x');
  EXPECT_EQ(collation->compare(front + "a", front + "b"), 0);
  EXPECT_LT(collation->compare(front.substr(1) + "a", front.substr(1) + "b"), 0);
  EXPECT_EQ(collation->compare(front.substr(1) + "é", front.substr(1) + "漢"), 0);
  EXPECT_EQ(key_of(*collation, front + "a"), key_of(*collation, front));
  EXPECT_EQ(collation->compare("a\xFF", "a\uFFFD"), 0);
}

// Texts of characters that make trouble, and pieces of words.
std::vector<std::string> random_texts(size_t count) {
  constexpr std::array<const char*, 32> kPieces = {
      "a", "A", "b", "é",  "e\u0301", "ß",  "ss", "æ",  "-", "'", " ",      "_", ".",  "1",  "10", "2",
      "α", "Я", "א", "漢", "か",      "カ", "ﾊ",  "Ａ", "ö", "z", "\u00AD", "–", "ch", "ll", "ı",  "İ"};
  std::mt19937 random(7);
  std::vector<std::string> texts(count);
  for (std::string& text : texts) {
    for (auto pieces = random() % 6; pieces > 0; --pieces) text += kPieces[random() % kPieces.size()];
  }
  return texts;
}

TEST(Collation, KeysOrderAsComparisonsDo) {
  const std::vector<std::string> texts = random_texts(300);
  for (const CollationOptions options : kAllOptions) {
    const auto collation = Collation::open("en_US", options);
    std::vector<std::string> keys;
    for (const std::string& text : texts) keys.push_back(key_of(*collation, text));
    for (size_t i = 0; i < texts.size(); ++i) {
      for (size_t j = 0; j < i; ++j) {
        ASSERT_EQ(sign(collation->compare(texts[i], texts[j])), sign(keys[i].compare(keys[j])))
            << options.case_sensitive << options.ignore_punctuation << " " << texts[i] << " | " << texts[j];
      }
    }
  }
}

TEST(Collation, OpensForTheUser) {
  const auto collation = Collation::open_for_user(kPlain);
  EXPECT_LT(collation->compare("apple", "Banana"), 0);
  EXPECT_EQ(collation->compare("apple", "APPLE"), 0);
}

}  // namespace
}  // namespace rowvane::platform

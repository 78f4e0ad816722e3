#include "platform/collation.h"

#include <algorithm>
#include <random>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/this_system.h"

namespace rowvane::platform {
namespace {

constexpr CollationOptions kPlain = {};
constexpr CollationOptions kCaseSensitive = {.case_sensitive = true};
constexpr CollationOptions kWords = {.ignore_punctuation = true};
constexpr CollationOptions kAllOptions[] = {
    kPlain, kCaseSensitive, kWords, {.case_sensitive = true, .ignore_punctuation = true}};

int sign(int number) {
  return (number > 0) - (number < 0);
}

std::string key_of(const Collation& collation, std::string_view text) {
  std::string key = "before";
  collation.append_key(text, key);
  EXPECT_EQ(key.substr(0, 6), "before");
  return key.substr(6);
}

// The order by comparing, after a look at whether the keys say the same.
char order_of(const Collation& collation, std::string_view a, std::string_view b) {
  const int order = sign(collation.compare(a, b));
  EXPECT_EQ(order, sign(key_of(collation, a).compare(key_of(collation, b)))) << a << " | " << b;
  EXPECT_EQ(order, -sign(collation.compare(b, a))) << a << " | " << b;
  return "<=>"[order + 1];
}

struct CollationCase {
  const char* a;
  char order;  // of all systems, or of Linux
  const char* b;
  char on_windows = '\0';  // where it differs
};

void expect_orders(const char* locale, CollationOptions options, std::initializer_list<CollationCase> cases) {
  const auto collation = Collation::open(locale, options);
  for (const CollationCase& one : cases) {
    const char expected = kIsWindows && one.on_windows != '\0' ? one.on_windows : one.order;
    EXPECT_EQ(order_of(*collation, one.a, one.b), expected) << locale << ": " << one.a << " | " << one.b;
  }
}

TEST(Collation, SymbolsThenDigitsThenLetters) {
  const auto collation = Collation::open("en_US", kPlain);
  const char* const in_order[] = {
      "",  "'", "-", "–",  " ", "!",  "\"", "#", "$",  "%", "&", "(", ")", "*", ",", ".", "/", ":", ";",
      "?", "@", "[", "\\", "]", "^",  "_",  "`", "{",  "|", "}", "~", "¿", "“", "€", "+", "<", "=", ">",
      "§", "…", "•", "0",  "1", "10", "2",  "a", "ab", "b", "z", "α", "ω", "а", "я", "א", "ا", "ก", "漢"};
  for (const char* const* a = std::begin(in_order); a != std::end(in_order); ++a) {
    for (const char* const* b = std::begin(in_order); b != std::end(in_order); ++b) {
      EXPECT_EQ(order_of(*collation, *a, *b), a < b ? '<' : a > b ? '>' : '=') << *a << " | " << *b;
    }
  }
}

TEST(Collation, CaseCountsWhenItIsAskedFor) {
  expect_orders("en_US", kPlain,
                {{"a", '=', "A"},
                 {"CO-OP", '=', "co-op"},
                 {"ÄRGER", '=', "ärger"},
                 {"ПРИ", '=', "при"},
                 {"ΣΊΣΥΦΟΣ", '=', "σίσυφος"},
                 {"STRASSE", '=', "straße"},
                 {"a", '<', "á"},
                 {"A", '<', "á"},
                 {"á", '=', "a\u0301"},
                 {"á", '<', "ä"},
                 {"résumé", '>', "Resume"},
                 {"résumé", '<', "resumes"},
                 {"A", '<', "Ａ"},
                 {"1", '<', "１"},
                 {"２", '<', "3"}});
  expect_orders(
      "en_US", kCaseSensitive,
      {{"a", '<', "A"}, {"A", '<', "á"}, {"A", '<', "b"}, {"Ab", '>', "aB"}, {"CO-OP", '>', "co-op"}});
}

TEST(Collation, PunctuationCountsLastWhenItIsIgnored) {
  expect_orders("en_US", kPlain,
                {{"co-op", '<', "coo"},
                 {"co-op", '<', "coop"},
                 {"O'Neil", '<', "Oats"},
                 {"O'Neil", '<', "ONeil"},
                 {"a-b", '<', "a b"},
                 {"a_b", '<', "ab"},
                 {"-1", '<', "1"}});
  expect_orders("en_US", kWords,
                {{"co-op", '>', "coop"},
                 {"co-op", '<', "coops"},
                 {"co-op", '=', "CO-OP"},
                 {"co-op", '<', "co–op"},
                 {"O'Neil", '>', "oneil"},
                 {"O'Neil", '<', "o-neil"},
                 {"O'Neil", '<', "ONeill"},
                 {"-", '>', ""},
                 {"-", '<', "--"},
                 {"-", '<', "!"},
                 {"a_b", '<', "ab"},
                 {"a b", '<', "ab"},
                 {"a.b", '<', "ab"}});
}

TEST(Collation, LanguagesHaveTheirOwnOrder) {
  expect_orders("de_DE", kPlain, {{"ä", '<', "az"}, {"ö", '<', "oz"}, {"z", '>', "ä"}});
  expect_orders("sv_SE", kPlain, {{"z", '<', "å"}, {"å", '<', "ä"}, {"ä", '<', "ö"}, {"Z", '<', "ö"}});
  expect_orders("sv-SE", kPlain, {{"z", '<', "å"}});
  expect_orders("da_DK", kPlain, {{"aa", '>', "z"}});
  expect_orders("da_DK", kCaseSensitive, {{"a", '<', "A"}});
  expect_orders("es_ES", kPlain, {{"ñ", '>', "nz"}, {"ñ", '<', "o"}});
  expect_orders("cs_CZ", kPlain, {{"ch", '>', "cz"}, {"ch", '>', "hz"}, {"ch", '<', "i"}});
  expect_orders("ru_RU", kPlain, {{"z", '<', "ж"}, {"9", '<', "z"}});
  expect_orders("zh_CN", kPlain, {{"z", '<', "字"}, {"-", '<', "_"}});
  expect_orders("th_TH", kPlain, {{"a b", '<', "ab"}, {"-", '<', "a"}});
  expect_orders("xx_YY", kPlain, {{"a", '<', "b"}, {"ä", '<', "az"}});
}

// Where the tables of Windows and those of ICU differ, each system keeps to its own.
TEST(Collation, SystemsDifferInThese) {
  expect_orders(
      "en_US", kPlain,
      {{"æ", '>', "ae", '='},   // Windows reads the ligature as its letters, ICU as a variant of them
       {"あ", '<', "ア", '>'},  // hiragana first, or katakana first
       {"½", '>', "1", '<'},    // by its digits, or between 0 and 1
       {"漢", '>', "字", '>'},  // without a Chinese language: by radical, or by a table of Windows
       {"µ", '>', "z", '<'},    // the Greek letter, or a symbol
       {"😀", '<', "a", '>'}});  // a symbol, or unknown and behind all letters
  expect_orders("en_US", kCaseSensitive, {{"ß", '>', "ss", '='}});
}

TEST(Collation, ComparesNoMoreThanItSays) {
  const std::string start(kMostComparedBytes - 1, 'x');
  for (const CollationOptions options : kAllOptions) {
    const auto collation = Collation::open("en_US", options);
    EXPECT_EQ(order_of(*collation, start + "ab", start + "ac"), '=');
    EXPECT_EQ(order_of(*collation, start + "a", start + "b"), '<');
    EXPECT_EQ(order_of(*collation, start + "é", start), '=') << "a character cut at the end is dropped";
    EXPECT_EQ(order_of(*collation, start + "é", start + "a"), '<');
    EXPECT_EQ(order_of(*collation, std::string(20000, '-'), std::string(kMostComparedBytes, '-')), '=');
    EXPECT_EQ(order_of(*collation, std::string(20000, '\x80'), std::string(kMostComparedBytes, '\x80')), '=');
  }
}

TEST(Collation, BrokenTextIsComparedToo) {
  for (const CollationOptions options : kAllOptions) {
    const auto collation = Collation::open("en_US", options);
    EXPECT_EQ(order_of(*collation, "a\xFF", "a\uFFFD"), '=');
    EXPECT_EQ(order_of(*collation, "a\xC3", "a\uFFFD"), '=');
    EXPECT_EQ(order_of(*collation, std::string_view("a\0b", 3), "b"), '<');
  }
}

TEST(Collation, OfTheUserOrdersLetters) {
  const auto collation = Collation::open_for_user(kPlain);
  EXPECT_EQ(order_of(*collation, "a", "B"), '<');
  EXPECT_EQ(order_of(*collation, "a", "A"), '=');
}

class RandomTexts {
 public:
  std::string next() {
    static constexpr const char* kPieces[] = {
        "a", "A", "b", "B", "z",  "e",  "é",  "E\u0301", "ss", "ß",  "-",  "'",  "_",
        " ", "1", "2", "0", "ж",  "Ж",  "あ", "ア",      "ｱ",  "漢", "–",  "Ａ", ".",
        "æ", "ö", "ñ", "i", "ch", "\t", "😀",  "\xFF",    "$",  "¿",  "한", "ا",  "ー"};
    std::string text;
    for (size_t count = random_() % 6; count > 0; --count) text += kPieces[random_() % std::size(kPieces)];
    return text;
  }

 private:
  std::mt19937 random_{20240301};
};

TEST(Collation, ThreadsShareOne) {
  const auto collation = Collation::open("fr_FR", kWords);
  const auto keys = [&] {
    RandomTexts texts;
    std::string all;
    for (int i = 0; i < 300; ++i) collation->append_key(texts.next(), all);
    EXPECT_LT(collation->compare("coop", "co-op"), 0);
    EXPECT_LT(Collation::open("nb_NO", kPlain)->compare("z", "å"), 0);
    return all;
  };
  std::string of_other_thread;
  std::thread other([&] { of_other_thread = keys(); });
  const std::string of_this_thread = keys();
  other.join();
  EXPECT_EQ(of_this_thread, of_other_thread);
}

TEST(Collation, KeysAndComparisonsAgreeOnRandomTexts) {
  for (const char* const locale : {"en_US", "sv_SE", "ja_JP"}) {
    for (const CollationOptions options : kAllOptions) {
      const auto collation = Collation::open(locale, options);
      RandomTexts texts;
      for (int i = 0; i < 3000; ++i) order_of(*collation, texts.next(), texts.next());
    }
  }
}

TEST(Collation, ComparisonIsTransitiveOnRandomTexts) {
  for (const CollationOptions options : kAllOptions) {
    const auto collation = Collation::open("en_US", options);
    RandomTexts random;
    std::vector<std::string> texts(150);
    std::ranges::generate(texts, [&] { return random.next(); });
    std::ranges::stable_sort(texts,
                             [&](const auto& a, const auto& b) { return collation->compare(a, b) < 0; });
    for (size_t i = 0; i < texts.size(); ++i) {
      for (size_t k = i + 1; k < texts.size(); ++k) {
        ASSERT_LE(collation->compare(texts[i], texts[k]), 0) << texts[i] << " | " << texts[k];
      }
    }
  }
}

// Two texts of ASCII that differ in little.
class RandomAsciiPairs {
 public:
  void next(std::string& a, std::string& b) {
    a.clear();
    for (size_t count = random_() % 6; count > 0; --count) a += character();
    b = a;
    for (size_t count = random_() % 3; count > 0; --count) {
      const size_t place = random_() % (b.size() + 1);
      b.replace(place, random_() % 2, std::string(random_() % 3, character()));
    }
  }

 private:
  char character() { return static_cast<char>(random_() % 2 == 0 ? 'a' + random_() % 26 : random_() % 128); }
  std::mt19937 random_{20240302};
};

std::string weights_of(std::string_view text, std::span<const uint8_t> weights) {
  std::string result;
  for (const char character : text) {
    const uint8_t weight = weights[static_cast<unsigned char>(character)];
    if (weight != 0) result += static_cast<char>(weight);
  }
  return result;
}

TEST(Collation, WeightsOfAsciiAgreeWithComparisons) {
  for (const char* const locale : {"C",     "en_US", "de_DE", "fr_CA",  "sv_SE",
                                   "da_DK", "nb_NO", "cs_CZ", "sk_SK",  "hu_HU",
                                   "hr_HR", "cy_GB", "sq_AL", "es_ES",  "es_ES@collation=traditional",
                                   "tr_TR", "az_AZ", "lt_LT", "et_EE",  "vi_VN",
                                   "th_TH", "ja_JP", "zh_CN", "haw_US", "xx_YY"}) {
    const auto collation = Collation::open(locale, kPlain);
    const std::span<const uint8_t> weights = collation->ascii_weights();
    if (weights.empty()) continue;
    ASSERT_EQ(weights.size(), 128u);
    RandomAsciiPairs pairs;
    std::string a, b;
    for (int i = 0; i < 4000; ++i) {
      pairs.next(a, b);
      ASSERT_EQ(sign(collation->compare(a, b)), sign(weights_of(a, weights).compare(weights_of(b, weights))))
          << locale << ": " << testing::PrintToString(a) << " | " << testing::PrintToString(b);
    }
  }
}

TEST(Collation, GivesWeightsOfAsciiWhereCharactersCountSingly) {
  for (const char* const locale : {"C", "en_US", "de_DE", "fr_FR", "sv_SE", "es_ES", "ru_RU", "tr_TR"}) {
    EXPECT_EQ(Collation::open(locale, kPlain)->ascii_weights().empty(), kIsWindows) << locale;
  }
  // "aa", "ch", "cs" and "y" beside "i".
  for (const char* const locale : {"da_DK", "cs_CZ", "hu_HU", "lt_LT"}) {
    EXPECT_TRUE(Collation::open(locale, kPlain)->ascii_weights().empty()) << locale;
  }
  for (const CollationOptions options : {kCaseSensitive, kWords}) {
    EXPECT_TRUE(Collation::open("en_US", options)->ascii_weights().empty());
  }
}

}  // namespace
}  // namespace rowvane::platform

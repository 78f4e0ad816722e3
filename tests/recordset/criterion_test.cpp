#include "recordset/search/criterion.h"

#include <gtest/gtest.h>

#include "core/database/names.h"
#include "core/limits.h"
#include "core/sample_tables.h"
#include "recordset/search/criterion_formula.h"

namespace rowvane {
namespace {

constexpr size_t kMost = kMaxBufferBytes;

TEST(Criterion, StoredFormReadsBack) {
  for (char letter = 'a'; letter < 'm'; ++letter) {
    const Criterion criterion{*criterion_kind(letter), letter == 'k' ? " " : "a:b  größe"};
    const std::string stored = stored_criterion(criterion);
    EXPECT_EQ(stored.substr(0, 2), std::string{letter} + ":");
    EXPECT_EQ(parse_criterion(stored), criterion);
  }
  EXPECT_EQ(stored_criterion(is_empty_criterion()), "k: ");
  EXPECT_EQ(stored_criterion(flag_criterion(3)), "m:3");
  EXPECT_EQ(flag_number(*parse_criterion("m:3")), 3);
  EXPECT_EQ(parse_criterion("k:"), is_empty_criterion());
  EXPECT_EQ(parse_criterion(std::string("c:ab\0cd", 7)), (Criterion{CriterionKind::kStartsWith, "ab"}));
  EXPECT_TRUE(parse_criterion("d:" + std::string(kMost, 'x')));
  for (const std::string& wrong :
       {std::string(), std::string("d"), std::string("dx"), std::string("n:x"), std::string("A:x"),
        std::string("m:"), std::string("m:2x"), "d:" + std::string(kMost + 1, 'x')}) {
    EXPECT_FALSE(parse_criterion(wrong)) << wrong.substr(0, 10);
  }
}

TEST(Criterion, LongEntriesAreCutBetweenCharacters) {
  const auto entry = [](const std::string& text) { return read_criterion_entry(text); };
  EXPECT_EQ(entry(std::string(kMost, 'a')).warning, "");
  EXPECT_EQ(entry(std::string(kMost, 'a')).text.size(), kMost);
  EXPECT_EQ(entry(std::string(kMost + 1, 'a')).warning, texts::kEntryTruncated);
  EXPECT_EQ(entry(std::string(kMost + 1, 'a')).text.size(), kMost);
  for (size_t front = kMost - 5; front <= kMost; ++front) {
    const std::string text = std::string(front, 'a') + "😀é";
    const TextEntry cut = entry(text);
    EXPECT_EQ(cut.warning, texts::kEntryTruncated);
    EXPECT_EQ(cut.text, text.substr(0, front + 4 <= kMost ? front + 4 : front)) << front;
  }
}

TEST(Criterion, WordsStandBetweenBlanks) {
  EXPECT_TRUE(criterion_words("").empty());
  EXPECT_TRUE(criterion_words("   ").empty());
  EXPECT_EQ(criterion_words("  a  b\tc é "), (std::vector<std::string_view>{"a", "b\tc", "é"}));
}

TEST(Criterion, ListAndNames) {
  EXPECT_EQ(criterion_list()[5], "Less than:");
  EXPECT_EQ(criterion_list()[9], "IsEmpty");
  for (size_t i = 0; i < kListedKinds; ++i) {
    EXPECT_EQ(criterion_letter(listed_kind(i)), static_cast<char>('b' + i));
    EXPECT_EQ(criterion_list_index(listed_kind(i)), i);
  }
  EXPECT_FALSE(criterion_list_index(CriterionKind::kFormula));
  EXPECT_FALSE(criterion_list_index(CriterionKind::kFlag));
  EXPECT_EQ(criterion_kind_name(CriterionKind::kRegEx), "Regular Expression");
  EXPECT_EQ(criterion_kind_name(CriterionKind::kBetween), "Between");
  EXPECT_EQ(criterion_kind_name(CriterionKind::kFormula), "");
}

TEST(Criterion, HeadersShowKindAndText) {
  const std::vector<RecordFlagType> flags = {{"red", 1}, {"blue", 2}};
  const auto header = [&](const char* stored) {
    return criterion_header("Name", *parse_criterion(stored), flags);
  };
  EXPECT_EQ(header("g:5"), "Name:   \nSmaller than: 5");
  EXPECT_EQ(header("b:^x"), "Name:   \nRegEx: ^x");
  EXPECT_EQ(header("k: "), "Name:   \nIs empty:  ");
  EXPECT_EQ(header("a:=1+1"), "Name:   \n=1+1");
  EXPECT_EQ(header("m:2"), "Name:   \nFlag: blue");
  EXPECT_EQ(header("m:3"), "Name:   \nFlag: Any");
  EXPECT_EQ(header("m:0"), "Name:   \nFlag: Any");
  const size_t prefix = std::string_view("Equal: ").size();
  const std::string fits(kMost - prefix, 'x');
  EXPECT_EQ(criterion_text({CriterionKind::kEqual, fits}, flags), "Equal: " + fits);
  EXPECT_EQ(criterion_text({CriterionKind::kEqual, fits + "x"}, flags), "Equal: ...");
  EXPECT_EQ(criterion_text({CriterionKind::kFormula, std::string(kMost, '1')}, flags).size(), kMost);
}

TEST(CriterionFormula, SaysTheSame) {
  const Field price = make_field("Price", FieldType::kNumber);
  const Field colour = make_field("Colour");
  const auto formula = [](const Field& field, const char* stored) {
    return equivalent_formula(field, *parse_criterion(stored));
  };
  EXPECT_EQ(formula(colour, "a:=1"), "=1");
  EXPECT_EQ(formula(colour, "b:^r"), "^r");
  EXPECT_EQ(formula(colour, "c:re"), "=SEARCH(\"re\", Colour,) = 1");
  EXPECT_EQ(formula(price, "c:1"), "=SEARCH(\"1\", Price,) = 1");
  EXPECT_EQ(formula(price, "d:5"), "=Price = 5");
  EXPECT_EQ(formula(colour, "d:5"), "=Colour = \"5\"");
  EXPECT_EQ(formula(price, "e:5"), "=Price <> 5");
  EXPECT_EQ(formula(colour, "f:m"), "=Colour > \"m\"");
  EXPECT_EQ(formula(price, "g:5"), "=Price < 5");
  EXPECT_EQ(formula(price, "h: 5  10 x"), "=(Price >= 5)*(Price <= 10)");
  EXPECT_EQ(formula(colour, "h:a b"), "=(Colour >= \"a\")*(Colour <= \"b\")");
  EXPECT_EQ(formula(colour, "h:a"), "");
  EXPECT_EQ(formula(price, "i:1 2"), "=AND(Price = 1, Price = 2)");
  EXPECT_EQ(formula(colour, "i:red  blue"), "=AND(SEARCH(\"red\", Colour,), SEARCH(\"blue\", Colour,))");
  EXPECT_EQ(formula(price, "j:1 2"), "=OR(Price = 1, Price = 2)");
  EXPECT_EQ(formula(colour, "j:red blue"),
            "=OR(SEARCH(\"red\", Colour,) = 1, SEARCH(\"blue\", Colour,) = 1)");
  EXPECT_EQ(formula(colour, "i: "), "");
  EXPECT_EQ(formula(colour, "k: "), "=TRIM(Colour) = \"\"");
  EXPECT_EQ(formula(price, "k: "), "=TRIM(Price) = \"\"");
  EXPECT_EQ(formula(colour, "l:red"), "");
  EXPECT_EQ(formula(colour, "m:1"), "");
}

// The longest text of a kind that still has a formula.
size_t longest(const Field& field, CriterionKind kind, const std::string& front = {}) {
  size_t longest = 0;
  for (size_t size = 3900; size <= kMost; ++size) {
    const Criterion criterion{kind, front + std::string(size - front.size(), '1')};
    const std::string formula = equivalent_formula(field, criterion);
    EXPECT_LE(formula.size(), kMost);
    if (!formula.empty()) longest = size;
  }
  return longest;
}

TEST(CriterionFormula, IsEmptyWhereItWouldNotFit) {
  const Field field = make_field("abcd");
  EXPECT_EQ(longest(field, CriterionKind::kStartsWith), (kMost - 4) / 2 - 10);
  EXPECT_EQ(longest(field, CriterionKind::kEqual), kMost - 4 - 10);
  EXPECT_EQ(longest(field, CriterionKind::kBetween, "1 "), kMost - 4 - 30);
  EXPECT_EQ(longest(field, CriterionKind::kFormula), kMost);
  const Field long_name = make_field("a" + std::string(kMaxNameBytes - 1, 'b'));
  for (char letter = 'c'; letter <= 'k'; ++letter) {
    EXPECT_EQ(equivalent_formula(long_name, {*criterion_kind(letter), "1 2"}), "") << letter;
  }
  EXPECT_LE(longest(field, CriterionKind::kOr, "1 2 "), kMost);
}

}  // namespace
}  // namespace rowvane

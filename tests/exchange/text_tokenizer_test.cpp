#include "exchange/text/text_tokenizer.h"

#include <random>

#include <gtest/gtest.h>

#include "exchange/text_record_support.h"

namespace rowvane {
namespace {

using namespace std::string_literals;

struct Sample {
  std::string text;
  std::string records;  // cells between "|", each record ended by ";" and quoted cells left as they are
};

std::string shown(const TextRecords& records) {
  std::string out;
  for (const auto& record : records) {
    for (size_t i = 0; i < record.size(); ++i) out += (i == 0 ? "" : "|") + record[i];
    out += ';';
  }
  return out;
}

void expect_records(const TextRules& rules, const std::vector<Sample>& samples) {
  for (const Sample& sample : samples) {
    const std::string& text = sample.text;
    EXPECT_EQ(shown(block_records(text, rules)), sample.records) << testing::PrintToString(text);
    EXPECT_EQ(shown(streamed_records(text, rules, [] { return 1; })), sample.records)
        << testing::PrintToString(text);
  }
}

TextRules separated_by(char separator) {
  TextRules rules;
  rules.separator = separator;
  return rules;
}

TextRules fixed(std::vector<uint16_t> widths) {
  TextRules rules;
  rules.separated = false;
  rules.quoting = false;
  rules.widths = std::move(widths);
  return rules;
}

TEST(TextTokenizer, LineEndsAndSeparators) {
  expect_records({}, {{"", ""},
                      {"a", "a;"},
                      {"a\n", "a;"},
                      {"a\r", "a;"},
                      {"a\r\n", "a;"},
                      {"a\n\r", "a;;"},
                      {"a\r\r\n\nb", "a;;;b;"},
                      {"\n", ";"},
                      {"\r\n\r\n", ";;"},
                      {"a,b\rc\nd\r\ne,f", "a|b;c;d;e|f;"},
                      {",", "|;"},
                      {"a,\n,b\n", "a|;|b;"},
                      {"a,,\r\n", "a||;"}});
}

TEST(TextTokenizer, LeadingSpaces) {
  expect_records({}, {{"  x,y", "x|y;"},
                      {"   ", ";"},
                      {"   \n  ", ";;"},
                      {"x , y ,  z  \n", "x |y |z  ;"},
                      {"  \"a,b\"  ,c", "a,b|c;"},
                      {"\t\"a\"", " \"a\";"}});
  expect_records(separated_by(' '), {{"  x y", "||x|y;"}, {" \"a b\" c", "|a b|c;"}});
}

TEST(TextTokenizer, QuotedFields) {
  expect_records({}, {{"\"a\"\"b\",c", "a\"b|c;"},
                      {"\"a\r\nb\",\"c\rd\",\"e\nf\"\r\ng", "a\r\nb|c\rd|e\nf;g;"},
                      {"\"\"", ";"},
                      {"\"\",\"\"\"\"", "|\";"},
                      {"\"\"\"\"\"\"", "\"\";"},
                      {"\"a\"\r\n\"b\"", "a;b;"},
                      {"\"  a \"", "  a ;"},
                      {"a\"b\",c", "a\"b\"|c;"},
                      {"a\"b,c\"", "a\"b|c\";"},
                      {"a,\"", "a|;"},
                      {"\"a,b\nc", "a,b\nc;"},
                      {"\"a\"\"", "a\";"},
                      {"\"a\"\"\n", "a\"\n;"}});
}

TEST(TextTokenizer, ClosingQuotesThatCloseNothing) {
  expect_records({}, {{"\"ab\"x,c", "\"ab\"x|c;"},
                      {"\"ab\"  x,c", "\"ab\"x|c;"},
                      {"\"a,b\"x,c", "\"a,b\"x|c;"},
                      {"\"a\nb\"x\nc", "\"a\nb\"x;c;"},
                      {"\"a\"\"b\"x\"y\"\n", "\"a\"b\"x\"y\";"},
                      {"\"a\" \"b\",c", "\"a\"\"b\"|c;"},
                      {"\"\"x", "\"\"x;"},
                      {"\"a\"\x01", "\"a\" ;"},
                      {"\"a\"x\ty", "\"a\"x y;"}});
}

TEST(TextTokenizer, BlanksBehindAClosingQuote) {
  expect_records({}, {{"\"a\" \t ,b", "a|b;"}, {"\"a\" \t \n", "a;"}, {"\"a\" \t", "a;"}});
  // A separator is no blank to be skipped.
  expect_records(separated_by(' '), {{"\"a\" b", "a|b;"}, {"\"a\"\t b", "a|b;"}, {"\"a\"  b", "a||b;"}});
  expect_records(separated_by('\t'), {{"\"a\"\tb", "a|b;"}, {"\"a\" \tb", "a|b;"}, {"\"a\"\t\tb", "a||b;"}});
  expect_records(separated_by('.'), {{"\"a\"\t .b", "a|b;"}});
}

TEST(TextTokenizer, ControlCharacters) {
  expect_records({}, {{"a\tb\0c\x1F\x7F"s, "a b c \x7F;"}, {"\"a\tb\x01\n\"", "a b \n;"}});
  expect_records(separated_by('\t'), {{"a\tb\vc", "a|b c;"}, {"\"a\tb\"\tc", "a b|c;"}});
  TextRules kept;
  kept.keep_controls = true;
  expect_records(kept, {{"a\tb\0,\"\x01\""s, "a\tb\0|\x01;"s}});
}

TEST(TextTokenizer, WithoutQuotingOrSeparator) {
  TextRules bare;
  bare.quoting = false;
  expect_records(bare, {{"\"a,b\"\n \"\"", "\"a|b\";\"\";"}});
  TextRules lines;
  lines.separated = false;
  lines.quoting = false;
  expect_records(lines, {{"  a,\"b\tc\n\nd", "  a,\"b c;;d;"}});
  TextRules other = separated_by(';');
  other.quote = '\'';
  expect_records(other, {{"'a;''b';\"c\n'x'", "a;'b|\"c;x;"}});
}

TEST(TextTokenizer, FixedWidths) {
  expect_records(fixed({2, 3}), {{"aabbb", "aa|bbb;"},
                                 {"aabbbccc,d\n", "aa|bbb|ccc,d;"},
                                 {"a\n\naab\r\n", "a;;aa|b;"},
                                 {"aa\nbb", "aa;bb;"},
                                 {"a b  ", "a|b;"},
                                 {" a  b  ", " a|  b|;"},
                                 {"\"a\",b", "\"a|\",b;"},
                                 {"a\tb\0c"s, "a|b c;"}});
  expect_records(fixed({1, 2}), {{"éüß€", "é|üß|€;"},
                                 {"\U0001F600ab", "\U0001F600|ab;"},
                                 {"\xA9\xA9"
                                  "ab",
                                  "\xA9\xA9|ab;"}});
}

TEST(TextTokenizer, FixedWidthsOfDoubleByteCharacters) {
  TextRules rules = fixed({1, 1});
  rules.utf8 = false;
  auto leads = std::make_shared<std::array<bool, 256>>();
  (*leads)[0x81] = true;
  rules.lead_bytes = leads;
  expect_records(rules, {{"\x81"
                          "ab",
                          "\x81"
                          "a|b;"},
                         {"\x81\x81\x81\x81"
                          "c",
                          "\x81\x81|\x81\x81|c;"},
                         {"a\x81\nb", "a|\x81;b;"}});
}

TEST(TextTokenizer, CutsAndCountsLongCells) {
  std::vector<std::pair<std::string, bool>> cells;
  TextTokenizer::Handler handler;
  handler.limit = [](size_t column) { return column == 0 ? size_t{3} : size_t{5}; };
  handler.cell = [&](size_t, std::string_view cell, bool cut) { cells.emplace_back(cell, cut); };
  handler.record_end = [] { return true; };
  TextTokenizer tokenizer({}, handler);
  tokenizer.feed("abc,abcde\nabcd,\"abcdef\"");
  tokenizer.finish();
  const std::vector<std::pair<std::string, bool>> expected = {
      {"abc", false}, {"abcde", false}, {"abc", true}, {"abcde", true}};
  EXPECT_EQ(cells, expected);
}

TEST(TextTokenizer, StopsBehindARecord) {
  TextTokenizer::Handler handler;
  handler.limit = [](size_t) { return size_t{9}; };
  handler.cell = [](size_t, std::string_view, bool) {};
  handler.record_end = [] { return false; };
  TextTokenizer tokenizer({}, handler);
  EXPECT_EQ(tokenizer.feed("a,b\r\nc"), 5u);
  EXPECT_FALSE(tokenizer.line_feed_may_follow());
  EXPECT_EQ(tokenizer.feed("c\nd"), 2u);
  EXPECT_EQ(tokenizer.feed("\"c\n\"\r"), 5u);
  EXPECT_TRUE(tokenizer.line_feed_may_follow());
}

// Random texts, made of what the rules turn on.
class RandomTexts {
 public:
  explicit RandomTexts(unsigned seed) : random_(seed) {}

  size_t below(size_t count) { return random_() % count; }

  TextRules rules() {
    constexpr std::string_view kSeparators = ",;\t .";
    TextRules rules;
    rules.separator = kSeparators[below(kSeparators.size())];
    rules.quoting = below(4) > 0;
    rules.quote = below(4) > 0 ? '"' : '\'';
    rules.keep_controls = below(4) == 0;
    if (below(4) == 0) {
      rules.separated = rules.quoting = false;
      for (size_t i = below(4); i > 0; --i) rules.widths.push_back(static_cast<uint16_t>(1 + below(3)));
    }
    return rules;
  }

  std::string text(const TextRules& rules, size_t max_length) {
    const std::string signs = {'a',
                               'b',
                               ' ',
                               ' ',
                               '\t',
                               '\r',
                               '\n',
                               '\n',
                               '\0',
                               '\x1F',
                               rules.quote,
                               rules.quote,
                               rules.quote,
                               rules.separator,
                               rules.separator};
    std::string text;
    for (size_t length = below(max_length + 1); text.size() < length;) {
      const size_t sign = below(signs.size() + 2);
      if (sign < signs.size()) text += signs[sign];
      if (sign == signs.size()) text += "é";
      if (sign > signs.size()) text += below(8) == 0 ? "\xC3" : "\r\n";
    }
    return text;
  }

 private:
  std::mt19937 random_;
};

std::string description(const std::string& text, const TextRules& rules) {
  return testing::PrintToString(text) + " separator " + rules.separator + " quote " + rules.quote +
         " quoting " + std::to_string(rules.quoting) + " separated " + std::to_string(rules.separated) +
         " widths " + testing::PrintToString(rules.widths);
}

TEST(TextTokenizerProperty, BlocksReadAsTheStreamDoes) {
  RandomTexts random(1);
  for (int i = 0; i < 300'000; ++i) {
    const TextRules rules = random.rules();
    const std::string text = random.text(rules, i % 8 == 0 ? 200 : 16);
    const size_t slice = 1 + random.below(8);
    const TextRecords streamed = streamed_records(text, rules, [&] { return 1 + random.below(slice); });
    ASSERT_EQ(block_records(text, rules), streamed) << description(text, rules);
  }
}

TEST(TextTokenizerProperty, TextsMayBeCutBehindTheirLastWholeRecord) {
  RandomTexts random(2);
  size_t cuts = 0;
  for (int i = 0; i < 20'000; ++i) {
    const TextRules rules = random.rules();
    const std::string text = random.text(rules, 24);
    const TextRecords whole = block_records(text, rules);
    size_t last = 0;
    for (size_t length = 1; length <= text.size(); ++length) {
      const size_t end = last_record_end(std::string_view(text).substr(0, length), rules);
      if (end == last) continue;
      ASSERT_LE(end, length);
      TextRecords halves = block_records(text.substr(0, end), rules);
      const TextRecords rest = block_records(text.substr(end), rules);
      halves.insert(halves.end(), rest.begin(), rest.end());
      ASSERT_EQ(halves, whole) << description(text, rules) << " cut at " << end;
      last = end;
      ++cuts;
    }
    // Whole records are found as soon as they are known to be whole.
    if (text.ends_with('\n') && !rules.quoting) {
      ASSERT_EQ(last, text.size()) << description(text, rules);
    }
  }
  EXPECT_GT(cuts, 20'000u);
}

TEST(TextTokenizerProperty, SmallBlocksGiveTheSameTable) {
  RandomTexts random(3);
  for (int i = 0; i < 6'000; ++i) {
    const TextRules rules = random.rules();
    const std::string text = random.text(rules, 120);
    const size_t block = 1 + random.below(32);
    const TextBlockSizes sizes{block, 1 + random.below(16), block + random.below(32)};
    const int threads = 1 + static_cast<int>(random.below(3));
    const size_t max_columns = random.below(4) == 0 ? 2 : kMaxImportColumns;
    const TextRecords expected =
        as_loaded(streamed_records(text, rules, [&] { return 1 + random.below(9); }), max_columns);
    ASSERT_EQ(loaded_records(text, rules, sizes, threads, max_columns), expected)
        << description(text, rules) << " block " << sizes.block << " read " << sizes.read << " largest "
        << sizes.largest;
  }
}

}  // namespace
}  // namespace rowvane

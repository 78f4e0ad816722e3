#include "recordset/find/find_text.h"

#include <gtest/gtest.h>

#include "find_table.h"
#include "recordset/find/find_as_you_type.h"

namespace rowvane {
namespace {

class FindTextTest : public testing::Test {
 protected:
  void set(RecordNumber record, size_t field, const CellValue& value) {
    while (table.end_record() <= record) {
      ASSERT_EQ(table.insert_records(table.end_record(), 1), ErrorCode::kOk);
    }
    ASSERT_EQ(table.set_value(record, field, value), ErrorCode::kOk);
  }
  RecordSet found(const FindText& settings) {
    return TextFinder(table, settings).find(all_records(table)).records;
  }

  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
};

// What a search gives, cell by cell.
RecordSet slow_find(const CWorkSheet& table, const FindText& settings, const RecordSet& records) {
  const PreparedPattern pattern(settings.pattern);
  const ShownTexts texts(table);
  RecordSet found;
  for (const uint32_t position : records) {
    bool matches = false;
    for (const size_t field : shown_fields(table)) {
      std::string text;
      EXPECT_EQ(texts.read(position, field, text), ErrorCode::kOk);
      const bool is_long = table.field(field).type == FieldType::kLongText;
      matches = matches || (is_long ? pattern.long_text_matcher() : pattern.matcher())->matches(text);
    }
    if (matches) found.push_back(position);
  }
  return found;
}

TEST_F(FindTextTest, LooksAtEveryTypeAsItIsShown) {
  set(1, 0, std::string("Red lamp"));
  set(2, 1, 1234.5);
  set(3, 2, Content::of("{\\rtf1\\ansi A \\b lam\\b0 p}"));
  set(4, 3, FileList{make_file("lamp.png", "x"), make_file("b.pdf", "lamp y")});
  set(5, 4, Content::of("{\\rtf1 code}"));
  set(6, 1, error_number(FormulaError::kRef));
  EXPECT_EQ(found(find_settings("LAMP")), (RecordSet{0, 2, 3}));
  EXPECT_EQ(found(find_settings("34.5")), (RecordSet{1}));
  EXPECT_EQ(found(find_settings("rtf")), (RecordSet{4})) << "formatting is not looked at, code is";
  EXPECT_EQ(found(find_settings("#ref!")), (RecordSet{5}));
  Field field = table.field(1);
  field.format = "#,##0.00";
  ASSERT_EQ(table.change_field(1, field), ErrorCode::kOk);
  EXPECT_EQ(found(find_settings("1,234.50")), (RecordSet{1}));
  field.hidden = true;
  ASSERT_EQ(table.change_field(1, field), ErrorCode::kOk);
  EXPECT_TRUE(found(find_settings("1,234.50")).empty());
  FindText named = find_settings("lamp");
  named.fields = {3};
  EXPECT_EQ(found(named), (RecordSet{3}));
  EXPECT_TRUE(found(find_settings("")).empty());
}

TEST_F(FindTextTest, RegularExpressionsAndLongTexts) {
  set(1, 0, std::string("ab"));
  set(2, 2, Content::of("xab"));
  set(3, 2, Content::of("a.b"));
  set(4, 1, 5.0);
  EXPECT_EQ(check_find(table, regex_settings("(")).refusal.text().find("Regular expression error:\n"), 0U);
  EXPECT_EQ(
      check_find(table, regex_settings("a")).notice,
      "Regular expressions are not supported for memo fields. Plain text searching will be used instead.");
  EXPECT_EQ(check_find(table, find_settings("a")).notice, "");
  EXPECT_EQ(found(regex_settings("a.b|^ab$|^5$")), (RecordSet{0, 3}));
  EXPECT_EQ(found(regex_settings("a.b")), (RecordSet{2})) << "a long text is looked through as plain text";
  FindText empty = regex_settings("^$");
  empty.fields = {1};
  EXPECT_TRUE(found(empty).empty());
  empty.pattern.empty_matches = true;
  EXPECT_EQ(found(empty), (RecordSet{0, 1, 2}));
}

TEST_F(FindTextTest, EncryptedFieldsAndUnreadableTextsGiveNothing) {
  class Broken final : public ContentSource {
    ErrorCode read(std::string&) const override { return ErrorCode::kZipCorrupted; }
  };
  set(1, 0, std::string("QUFB"));
  set(2, 2, Content::stored(std::make_shared<Broken>(), 10));
  set(3, 2, Content::of("qufb"));
  Field field = table.field(0);
  field.encrypted = true;
  ASSERT_EQ(table.replace_column(0, field, table.column(0)), ErrorCode::kOk);
  TextFinder finder(table, find_settings("qufb"));
  const FoundRecords result = finder.find(all_records(table));
  EXPECT_EQ(result.records, (RecordSet{2}));
  EXPECT_EQ(result.notices, std::vector<UserText>{ErrorCode::kZipCorrupted});
}

// Random tables, record sets and texts: whole searches, parts of them, steps from cell to cell.
class RandomFind : public testing::TestWithParam<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Seeds, RandomFind, testing::Range(1U, 5U));

TEST_P(RandomFind, AgreesWithTheObviousSearch) {
  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
  ASSERT_NO_FATAL_FAILURE(fill_randomly(table, 400, GetParam()));
  std::mt19937 random(GetParam());
  RecordSet records = all_records(table);
  std::shuffle(records.begin(), records.end(), random);
  records.resize(300);
  for (const char* text : {"a", "ab", "ss", "1", ".5", "ä", "b a", "zz", "5", "x.p"}) {
    const FindText settings = find_settings(text);
    const RecordSet expected = slow_find(table, settings, records);
    TextFinder finder(table, settings);
    const size_t start = random() % records.size();
    const FoundRecords part = finder.find(records, start, 7);
    ASSERT_LE(part.records.size(), 7U);
    const RecordSet rest(records.begin() + static_cast<std::ptrdiff_t>(start), records.end());
    RecordSet expected_part = slow_find(table, settings, rest);
    if (expected_part.size() > 7) expected_part.resize(7);
    EXPECT_EQ(part.records, expected_part) << text;
    const FoundRecords whole = finder.find(records);
    ASSERT_EQ(whole.records, expected) << text;
    for (size_t i = 0; i < whole.indices.size(); ++i) ASSERT_EQ(records[whole.indices[i]], whole.records[i]);

    // All cells with a match, one after the other and around, in both directions.
    std::vector<CellPlace> cells;
    for (const uint32_t index : whole.indices) {
      for (const CellMatches& cell : finder.matches_in(records[index])) {
        ASSERT_FALSE(cell.spans.empty());
        cells.push_back({index, cell.field});
      }
    }
    if (cells.empty()) {
      EXPECT_EQ(finder.find_next(records, {0, 0}), std::nullopt);
      continue;
    }
    CellPlace at = cells.back();
    for (const CellPlace& cell : cells) {
      ASSERT_EQ(finder.find_next(records, at), cell) << text;
      at = cell;
    }
    at = cells.front();
    for (size_t i = cells.size(); i-- > 0;) {
      ASSERT_EQ(finder.find_next(records, at, false), cells[i]) << text;
      at = cells[i];
    }
  }
}

TEST_P(RandomFind, TypingAgreesWithSearchingAnew) {
  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
  ASSERT_NO_FATAL_FAILURE(fill_randomly(table, 300, GetParam() + 100));
  std::mt19937 random(GetParam());
  RecordSet records = all_records(table);
  std::shuffle(records.begin(), records.end(), random);
  FindAsYouType typing(table, records, find_settings(""));
  for (const char* text : {"", "a", "ab", "abs", "ab", "a", "as", "ass", "", "1", "1.", "a", "aß"}) {
    FindPattern pattern;
    pattern.text = text;
    typing.type(pattern);
    TextFinder anew(table, find_settings(text));
    const size_t start = random() % records.size();
    const FoundRecords screen = typing.screenful(start, 5);
    const FoundRecords expected = anew.find(records, start, 5);
    EXPECT_EQ(screen.records, expected.records) << text;
    EXPECT_EQ(screen.indices, expected.indices) << text;
    if (screen.records.size() == 5) {
      EXPECT_LE(screen.next, typing.screenful(screen.next, 1).next);
    }
    if (random() % 2 == 0) {
      EXPECT_EQ(typing.all().records, anew.find(records).records) << text;
      EXPECT_EQ(typing.screenful(start, 5).indices, expected.indices) << text;
    }
  }
  // A change of the table is noticed: the former results no longer hold the present text.
  FindPattern pattern;
  pattern.text = "quite";
  typing.type(pattern);
  EXPECT_TRUE(typing.all().records.empty());
  ASSERT_EQ(table.set_value(10, 0, std::string("quite new")), ErrorCode::kOk);
  EXPECT_EQ(typing.all().records, (RecordSet{9}));
  const std::vector<uint32_t> last = {298, 299};
  ASSERT_EQ(table.delete_records(last), ErrorCode::kOk);
  EXPECT_EQ(typing.screenful(0, 9).records, (RecordSet{9}));
}

// Enough records for several threads and stretches.
TEST(FindInManyRecords, ThreadsKeepTheOrderAndStopWhenTold) {
  TextColumn texts;
  TextColumn repeated;
  NumberColumn numbers;
  constexpr uint32_t kRecords = 150'000;
  for (uint32_t i = 0; i < kRecords; ++i) {
    texts.cells.push_back(texts.pool->append("text " + std::to_string(i * 7)));
    repeated.cells.push_back(repeated.code_for(i % 1000 == 999 ? "rare" : "often"));
    numbers.cells.push_back(static_cast<double>(i) / 8);
  }
  TableData data;
  data.fields = {make_field("a"), make_field("b"), make_field("c", FieldType::kNumber)};
  data.columns = {texts, repeated, numbers};
  data.record_count = kRecords;
  const CWorkSheet table("t", std::move(data));
  RecordSet records = all_records(table);
  std::ranges::reverse(records);
  for (const char* text : {"TEXT 7777", "77.125", "rar", "T 6", "x"}) {
    const FoundRecords one = TextFinder(table, find_settings(text, 1)).find(records);
    TextFinder finder(table, find_settings(text, 3));
    EXPECT_EQ(finder.find(records, 0, 20).records.size(), std::min<size_t>(20, one.records.size()));
    EXPECT_EQ(finder.find(records).records, one.records) << text;
    RecordSet expected;
    const auto has = [&](uint32_t i) {
      const std::string all = std::string(texts.text(i)) + "\n" + std::string(repeated.text(i)) + "\n" +
                              number_to_text(static_cast<double>(i) / 8);
      std::string wanted = text;
      std::ranges::transform(wanted, wanted.begin(),
                             [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
      return all.find(wanted) != std::string::npos;
    };
    std::ranges::copy_if(records, std::back_inserter(expected), has);
    EXPECT_EQ(one.records, expected) << text;
  }
  for (const int calls : {1, 2, 5, 9}) {
    StopAfter progress(calls);
    const FoundRecords stopped =
        TextFinder(table, find_settings("t")).find(records, 0, TextFinder::kAll, progress);
    EXPECT_TRUE(stopped.cancelled);
    EXPECT_TRUE(stopped.records.empty());
  }
}

TEST(FindInAllTables, NamesTheTablesThatHaveIt) {
  Database database;
  Folder* folder = nullptr;
  ASSERT_EQ(database.make_folders("f", &folder), ErrorCode::kOk);
  CWorkSheet& first = *add_sample_table(database, database.root(), "one");
  add_sample_table(database, database.root(), "two");
  CWorkSheet& third = *add_sample_table(database, *folder, "three");
  for (CWorkSheet* table : {&first, &third}) {
    ASSERT_EQ(table->insert_records(1, 2), ErrorCode::kOk);
    ASSERT_EQ(table->set_value(2, 0, std::string("needle")), ErrorCode::kOk);
  }
  const auto found = find_in_all_tables(database, find_settings("need"));
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].table, &first);
  EXPECT_EQ(found[1].table->path(), "f/three");
  EXPECT_EQ(found[1].found.records, (RecordSet{1}));
}

}  // namespace
}  // namespace rowvane

#include "recordset/sort/sort.h"

#include <gtest/gtest.h>

#include "core/parallel_blocks.h"
#include "recordset/random_tables.h"
#include "recordset/search/record_search.h"
#include "recordset/sort/counting_sort.h"
#include "recordset/sort/record_order.h"

namespace rowvane {
namespace {

constexpr SortOptions kNeutral{.collation = SortCollation::kNeutral};

// The slow way.
RecordSet sorted_by_comparing(const CWorkSheet& table, RecordSet records, const SortKeys& keys,
                              const SortOptions& options) {
  const RecordOrder order(table, keys, options);
  std::stable_sort(records.begin(), records.end(),
                   [&order](uint32_t a, uint32_t b) { return order.compare(a, b) < 0; });
  return records;
}

std::unique_ptr<CWorkSheet> table_of_numbers(const std::vector<double>& numbers) {
  TableData data;
  data.record_count = static_cast<uint32_t>(numbers.size());
  data.fields.resize(1);
  data.fields[0].name = "n";
  data.fields[0].type = FieldType::kNumber;
  data.columns.push_back(NumberColumn{{numbers.begin(), numbers.end()}});
  return std::make_unique<CWorkSheet>("t", std::move(data));
}

std::unique_ptr<CWorkSheet> table_of_texts(const std::vector<std::string>& texts) {
  TextColumn column;
  for (const std::string& text : texts) column.cells.push_back(column.code_for(text));
  TableData data;
  data.record_count = static_cast<uint32_t>(texts.size());
  data.fields.resize(1);
  data.fields[0].name = "t";
  data.columns.emplace_back(std::move(column));
  return std::make_unique<CWorkSheet>("t", std::move(data));
}

RecordSet sorted(const CWorkSheet& table, const SortKeys& keys, const SortOptions& options = SortOptions()) {
  RecordSetResult result = sort_records(table, all_records(table), keys, options, Options());
  EXPECT_EQ(result.failure, ErrorCode::kOk);
  return std::move(result.records);
}

TEST(Sort, PutsEmptyValuesLastAndDescendingFirst) {
  const auto table = table_of_numbers({3, kEmptyNumber, 1});
  EXPECT_EQ(sorted(*table, {{0, false}}), (RecordSet{2, 0, 1}));
  EXPECT_EQ(sorted(*table, {{0, true}}), (RecordSet{1, 0, 2}));
  const auto texts = table_of_texts({"", "b", "", "a"});
  EXPECT_EQ(sorted(*texts, {{0, false}}), (RecordSet{3, 1, 0, 2}));
  EXPECT_EQ(sorted(*texts, {{0, true}}), (RecordSet{0, 2, 1, 3}));
}

TEST(Sort, PutsErrorsBetweenNumbersAndEmptyValues) {
  const double infinity = std::numeric_limits<double>::infinity();
  const auto table = table_of_numbers({kEmptyNumber, error_number(FormulaError::kRef), infinity,
                                       error_number(FormulaError::kValue), -0.0, 5e-324, 0.0, -infinity,
                                       std::numeric_limits<double>::quiet_NaN(), -1.5});
  EXPECT_EQ(sorted(*table, {{0, false}}), (RecordSet{7, 9, 4, 6, 5, 2, 3, 8, 1, 0}));
  EXPECT_EQ(sorted(*table, {{0, true}}), (RecordSet{0, 1, 3, 8, 2, 5, 4, 6, 9, 7}));
}

TEST(Sort, LetsTheOptionsChooseTheOrderOfTexts) {
  const auto table = table_of_texts({"co-op", "b", "A", "coop", "B", "a", "coat"});
  EXPECT_EQ(sorted(*table, {{0, false}}), (RecordSet{2, 5, 1, 4, 0, 6, 3}));
  EXPECT_EQ(sorted(*table, {{0, false}}, {.case_sensitive = true}), (RecordSet{5, 2, 1, 4, 0, 6, 3}));
  EXPECT_EQ(sorted(*table, {{0, false}}, {.ignore_punctuation = true}), (RecordSet{2, 5, 1, 4, 6, 3, 0}));
  EXPECT_EQ(sorted(*table, {{0, false}}, kNeutral), (RecordSet{2, 4, 5, 1, 0, 6, 3}));
  // A text and the same with zeros behind, and bytes above 127.
  using namespace std::string_literals;
  const auto bytes = table_of_texts({"a\0"s, "a"s, "é"s, "a\0\0\0\0\0\0\0\0"s, "z"s, "a\0\0"s});
  EXPECT_EQ(sorted(*bytes, {{0, false}}, kNeutral), (RecordSet{1, 0, 5, 3, 4, 2}));
}

TEST(Sort, KeepsTheOrderOfEqualRecordsAndWithoutKeysOfAll) {
  const auto table = table_of_texts({"b", "a", "B", "A", "b"});
  const RecordSet shown{4, 3, 2, 1, 0};
  EXPECT_EQ(sort_records(*table, shown, {{0, false}}, SortOptions(), Options()).records,
            (RecordSet{3, 1, 4, 2, 0}));
  EXPECT_EQ(sort_records(*table, shown, {{0, true}}, SortOptions(), Options()).records,
            (RecordSet{4, 2, 0, 3, 1}));
  EXPECT_EQ(sort_records(*table, shown, {}, SortOptions(), Options()).records, shown);
  EXPECT_TRUE(sort_records(*table, {}, {{0, false}}, SortOptions(), Options()).records.empty());
}

TEST(Sort, RefusesKeysThatCannotBe) {
  TableData data;
  data.fields.resize(2);
  data.fields[0].name = "a";
  data.fields[1].name = "b";
  data.fields[1].encrypted = true;
  for (int i = 0; i < 2; ++i) data.columns.push_back(make_column(FieldType::kText));
  const CWorkSheet table("t", std::move(data));
  EXPECT_EQ(sort_records(table, {}, {{2, false}}, SortOptions(), Options()).failure,
            ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(sort_records(table, {}, {{1, false}}, SortOptions(), Options()).failure,
            ErrorCode::kEncryptedField);
  EXPECT_EQ(sort_records(table, {}, SortKeys(100), SortOptions(), Options()).failure, ErrorCode::kOk);
  EXPECT_EQ(sort_records(table, {}, SortKeys(101), SortOptions(), Options()).failure,
            ErrorCode::kTooManySortKeys);
}

class CorruptedSource final : public ContentSource {
 public:
  ErrorCode read(std::string&) const override { return ErrorCode::kZipCorrupted; }
};

TEST(Sort, TellsWhyALongTextCannotBeRead) {
  ContentColumn column;
  column.cells.push_back(column.add(Content::of("a")));
  column.cells.push_back(column.add(Content::stored(std::make_shared<CorruptedSource>(), 5)));
  TableData data;
  data.record_count = 2;
  data.fields.resize(1);
  data.fields[0].name = "l";
  data.fields[0].type = FieldType::kLongText;
  data.columns.emplace_back(std::move(column));
  const CWorkSheet table("t", std::move(data));
  const RecordSetResult result =
      sort_records(table, all_records(table), {{0, false}}, SortOptions(), Options());
  EXPECT_EQ(result.failure, ErrorCode::kZipCorrupted);
  EXPECT_TRUE(result.records.empty());
  // A record that is not in the set is not read.
  EXPECT_EQ(sort_records(table, RecordSet{0}, {{0, false}}, SortOptions(), Options()).records, RecordSet{0});
  const RecordOrder order(table, {{0, false}}, SortOptions());
  EXPECT_GT(order.compare(0, 1), 0);
  EXPECT_EQ(order.error(), ErrorCode::kZipCorrupted);
}

TEST(Sort, TellsLongTextsApartBehindWhatACollationCompares) {
  const std::string start(9000, 'x');
  std::vector<Field> fields(1);
  fields[0].name = "l";
  fields[0].type = FieldType::kLongText;
  CWorkSheet table("t", std::move(fields));
  ASSERT_EQ(table.insert_records(1, 3), ErrorCode::kOk);
  ASSERT_EQ(table.set_value(1, 0, Content::of(start + "b")), ErrorCode::kOk);
  ASSERT_EQ(table.set_value(2, 0, Content::of(start + "a")), ErrorCode::kOk);
  ASSERT_EQ(table.set_value(3, 0, Content::of(start)), ErrorCode::kOk);
  EXPECT_EQ(sorted(table, {{0, false}}), (RecordSet{2, 1, 0}));
}

// What the random tests go through.
const std::vector<SortKeys> kManyKeys = {{{kWordField, false}},
                                         {{kWordField, true}},
                                         {{kSmallField, true}},
                                         {{kNumberField, false}},
                                         {{kTextField, false}},
                                         {{kTextField, true}},
                                         {{kLongField, false}},
                                         {{kFilesField, true}},
                                         {{kCodeField, true}, {kSmallField, false}},
                                         {{kSmallField, false}, {kWordField, true}, {kNumberField, false}},
                                         {{kWordField, false}, {kSmallField, true}, {kWordField, true}},
                                         {{kNumberField, true}, {kTextField, false}, {kSmallField, false}},
                                         {{kSmallField, false}, {kNumberField, true}}};
const std::vector<SortOptions> kManyOptions = {
    {}, {.case_sensitive = true}, {.ignore_punctuation = true}, kNeutral};

TEST(Sort, EqualsAStableSortByComparingOnAnyNumberOfThreads) {
  for (unsigned seed = 1; seed <= 3; ++seed) {
    RandomTable random(seed);
    const auto table = random.make(seed * 400);
    const RecordSet records = random.records(table->record_count());
    for (const SortKeys& keys : kManyKeys) {
      for (const SortOptions& options : kManyOptions) {
        const RecordSet expected = sorted_by_comparing(*table, records, keys, options);
        for (const int threads : {1, 2, 7}) {
          EXPECT_EQ(sort_records(*table, records, keys, options, with_threads(threads)).records, expected)
              << "seed " << seed << ", " << threads << " threads, first field " << keys[0].field;
        }
      }
    }
  }
}

// Enough for several threads, and for runs of equal beginnings that are sorted by counting.
TEST(Sort, EqualsAStableSortByComparingInALargeTable) {
  RandomTable random(9);
  const auto table = random.make(40'000);
  const RecordSet records = random.records(table->record_count());
  for (const SortKeys& keys :
       {SortKeys{{kTextField, true}}, {{kSmallField, false}, {kTextField, false}, {kNumberField, true}}}) {
    for (const SortOptions& options : {kNeutral, SortOptions()}) {
      const RecordSet expected = sorted_by_comparing(*table, records, keys, options);
      for (const int threads : {1, 2}) {
        EXPECT_EQ(sort_records(*table, records, keys, options, with_threads(threads)).records, expected);
      }
    }
  }
}

// Codes that are counted, and codes that are too wide for it by a bit.
TEST(Sort, EqualsAStableSortByComparingAtTheLimitOfCounting) {
  for (const int bits : {kMostCountedBits, kMostCountedBits + 1}) {
    std::vector<double> numbers(70'000);
    const size_t codes = size_t{1} << bits;
    for (size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<double>(i * 7919 % (codes - 1));
    numbers[3] = kEmptyNumber;
    const auto table = table_of_numbers(numbers);
    RecordSet records = all_records(*table);
    std::ranges::reverse(records);
    for (const bool descending : {false, true}) {
      const SortKeys keys{{0, descending}};
      const RecordSet expected = sorted_by_comparing(*table, records, keys, kNeutral);
      for (const int threads : {1, 2, 7}) {
        EXPECT_EQ(sort_records(*table, records, keys, kNeutral, with_threads(threads)).records, expected)
            << bits << " bits, " << threads << " threads";
      }
    }
  }
}

TEST(Sort, StopsWheneverItIsCancelled) {
  RandomTable random(5);
  const auto table = random.make(6000);
  const RecordSet records = all_records(*table);
  const SortKeys keys{{kWordField, false}, {kLongField, false}, {kTextField, true}, {kNumberField, false}};
  const RecordSet expected = sort_records(*table, records, keys, SortOptions(), with_threads(2)).records;
  int completed = 0;
  for (int questions = 0; completed == 0; questions = questions * 5 / 4 + 1) {
    CancelAfter progress(questions);
    const RecordSetResult result =
        sort_records(*table, records, keys, SortOptions(), with_threads(2), progress);
    EXPECT_EQ(result.failure, ErrorCode::kOk);
    EXPECT_EQ(result.cancelled, progress.was_cancelled()) << questions;
    EXPECT_EQ(result.records, result.cancelled ? RecordSet() : expected) << questions;
    completed += result.cancelled ? 0 : 1;
  }
}

TEST(RecordSearch, FindsTheRecordsThatAScanFinds) {
  RandomTable random(4);
  const auto table = random.make(700);
  const RecordSet records = random.records(table->record_count());
  for (const SortKeys& keys : kManyKeys) {
    const RecordOrder order(*table, keys, SortOptions());
    const RecordSet in_order = sorted_by_comparing(*table, records, keys, SortOptions());
    for (int i = 0; i < 50; ++i) {
      const auto record = static_cast<uint32_t>(random.below(table->record_count()));
      std::vector<CellValue> values;
      const size_t count = 1 + random.below(keys.size());
      for (size_t k = 0; k < count; ++k) values.push_back(table->value(record_number(record), keys[k].field));
      const RecordRange found = find_records(order, in_order, values);
      for (size_t place = 0; place < in_order.size(); ++place) {
        const int side = place < found.first ? -1 : place < found.end ? 0 : 1;
        ASSERT_EQ(std::clamp(order.compare(in_order[place], values), -1, 1), side) << keys[0].field;
      }
    }
  }
}

TEST(RecordSearch, AnswersWhereAMissingRecordWouldStand) {
  const auto table = table_of_numbers({10, 20, 20, 30, kEmptyNumber});
  const RecordSet records = all_records(*table);
  const RecordOrder order(*table, {{0, false}}, SortOptions());
  const auto find = [&](CellValue value) {
    return find_records(order, records, std::vector{std::move(value)});
  };
  EXPECT_EQ(find(20.0), (RecordRange{1, 3}));
  EXPECT_EQ(find(25.0), (RecordRange{3, 3}));
  EXPECT_EQ(find(CellValue()), (RecordRange{4, 5}));
  // A text stands behind all numbers.
  EXPECT_EQ(find(std::string("1")), (RecordRange{4, 4}));
  EXPECT_EQ(find_records(order, records, {}), (RecordRange{0, 5}));
}

}  // namespace
}  // namespace rowvane

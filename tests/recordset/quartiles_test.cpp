#include "recordset/compare/quartiles.h"

#include <gtest/gtest.h>

#include "core/values/quantiles.h"
#include "recordset/random_tables.h"

namespace rowvane {
namespace {

std::unique_ptr<CWorkSheet> table_of(const std::vector<double>& numbers) {
  TableData data;
  data.record_count = static_cast<uint32_t>(numbers.size());
  data.fields.resize(3);
  const char* names[] = {"number", "text", "secret"};
  for (size_t i = 0; i < 3; ++i) data.fields[i].name = names[i];
  data.fields[0].type = data.fields[2].type = FieldType::kNumber;
  data.fields[2].encrypted = true;
  data.columns.push_back(NumberColumn{{numbers.begin(), numbers.end()}});
  data.columns.push_back(make_column(FieldType::kText));
  data.columns.push_back(make_column(FieldType::kNumber));
  for (size_t i = 1; i < 3; ++i) resize_column(data.columns[i], numbers.size());
  return std::make_unique<CWorkSheet>("t", std::move(data));
}

RecordSet find(const CWorkSheet& table, const RecordSet& scope, uint8_t mode, bool whole_statistics = true) {
  const QuartileSearch search{.whole_table = false, .whole_table_statistics = whole_statistics, .mode = mode};
  return find_quartiles(table, scope, search, Options()).records;
}

TEST(Quartiles, InterpolateBetweenSortedValues) {
  const auto table = table_of({7, kEmptyNumber, 1, 3, error_number(FormulaError::kData), 10});
  const FieldStatistics found = field_statistics(*table, all_records(*table), 0, Options());
  EXPECT_EQ(found.count, 4u);
  EXPECT_EQ(found.quartiles, (std::array<double, 3>{2.5, 5, 7.75}));
  EXPECT_EQ(found.mean, 5.25);
  EXPECT_EQ(field_statistics(*table, RecordSet{3}, 0, Options()).quartiles, (std::array<double, 3>{3, 3, 3}));
  EXPECT_EQ(field_statistics(*table, RecordSet{1, 4}, 0, Options()).count, 0u);
}

TEST(Quartiles, BandsAreClosedBelowAndOpenAbove) {
  const auto table = table_of({5, 4, 3, kEmptyNumber, 2, 1, error_number(FormulaError::kRef)});
  const RecordSet all = all_records(*table);
  EXPECT_EQ(find(*table, all, kBelowFirstQuartile), (RecordSet{5}));
  EXPECT_EQ(find(*table, all, kFromFirstQuartile), (RecordSet{4}));  // equal to the 1st quartile
  EXPECT_EQ(find(*table, all, kFromSecondQuartile), (RecordSet{2}));
  EXPECT_EQ(find(*table, all, kFromThirdQuartile), (RecordSet{0, 1}));
  EXPECT_EQ(find(*table, all, kBelowFirstQuartile | kFromThirdQuartile), (RecordSet{0, 1, 5}));
  EXPECT_EQ(find(*table, all, kQuartileBits), (RecordSet{0, 1, 2, 4, 5}));
  EXPECT_EQ(find(*table, all, kBelowMean), (RecordSet{4, 5}));
  EXPECT_EQ(find(*table, all, kFromMean), (RecordSet{0, 1, 2}));
  // The boxes of the bands say nothing then.
  EXPECT_EQ(find(*table, all, kFromMean | kBelowFirstQuartile), (RecordSet{0, 1, 2}));
}

TEST(Quartiles, StatisticsAreOfTheTableOrOfWhatIsShown) {
  const auto table = table_of({1, 2, 3, 4, 100, 101});
  const RecordSet shown{5, 4, 0};
  EXPECT_EQ(find(*table, shown, kFromMean), (RecordSet{5, 4}));
  EXPECT_EQ(find(*table, shown, kFromMean, false), (RecordSet{5, 4}));
  EXPECT_EQ(find(*table, shown, kFromSecondQuartile | kFromFirstQuartile, true), RecordSet());
  EXPECT_EQ(find(*table, shown, kFromSecondQuartile | kFromFirstQuartile, false), RecordSet{4});
  QuartileSearch search{.whole_table = true, .whole_table_statistics = false};
  EXPECT_FALSE(is_statistics_choice_enabled(search));
  EXPECT_TRUE(uses_whole_table_statistics(search));
  search.whole_table = false;
  EXPECT_TRUE(is_statistics_choice_enabled(search));
  EXPECT_FALSE(uses_whole_table_statistics(search));
}

TEST(Quartiles, FindNothingWithoutNumbers) {
  const auto table = table_of({kEmptyNumber, kEmptyNumber});
  for (const uint8_t mode : {kQuartileBits, kBelowMean, kFromMean}) {
    EXPECT_TRUE(find(*table, all_records(*table), mode).empty());
  }
}

TEST(Quartiles, DialogKeepsTheBoxesWhileTheMeanIsChosen) {
  uint8_t mode = with_band(kBelowFirstQuartile, kFromThirdQuartile, true);
  mode = with_choice(mode, QuartileChoice::kSmaller);
  EXPECT_EQ(mode, 16 + 9);
  mode = with_choice(mode, QuartileChoice::kEqualOrGreater);
  EXPECT_EQ(mode, 32 + 9);
  EXPECT_EQ(quartile_choice(mode), QuartileChoice::kEqualOrGreater);
  mode = with_choice(mode, QuartileChoice::kBands);
  EXPECT_EQ(with_band(mode, kBelowFirstQuartile, false), 8);
}

TEST(Quartiles, CheckRefusesOtherFieldsAndModes) {
  const auto table = table_of({1});
  EXPECT_EQ(check_quartiles(*table, {.field = 0}), Check());
  EXPECT_EQ(check_quartiles(*table, {.field = 1}), "Please specify a numeric field.");
  EXPECT_EQ(check_quartiles(*table, {.field = 7}), "Please specify a numeric field.");
  EXPECT_EQ(check_quartiles(*table, {.field = 2}), ErrorCode::kEncryptedField);
  for (const int mode : {0, 16 + 32, 64}) {
    EXPECT_EQ(check_quartiles(*table, {.mode = static_cast<uint8_t>(mode)}), nothing_to_find()) << mode;
  }
  EXPECT_EQ(find_quartiles(*table, {}, {.field = 1}, Options()).failure, ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(find_quartiles(*table, {}, {.field = 2}, Options()).failure, ErrorCode::kEncryptedField);
}

TEST(Quartiles, EqualThoseOfSortedNumbersInAnyOrderOnAnyNumberOfThreads) {
  for (unsigned seed = 1; seed <= 5; ++seed) {
    RandomTable random(seed);
    const auto table = random.make(seed * 1500);
    for (const size_t field : {kSmallField, kNumberField}) {
      const RecordSet records = random.records(table->record_count());
      std::vector<double> numbers;
      for (const uint32_t record : records) {
        const CellValue value = table->value(record_number(record), field);
        if (!is_empty(value) && std::get<double>(value) == std::get<double>(value)) {
          numbers.push_back(std::get<double>(value));
        }
      }
      std::sort(numbers.begin(), numbers.end());
      const FieldStatistics first = field_statistics(*table, records, field, with_threads(1));
      EXPECT_EQ(first.count, numbers.size());
      for (size_t i = 0; i < 3; ++i) {
        const double place = static_cast<double>(numbers.size() - 1) * static_cast<double>(i + 1) / 4;
        const auto lower = static_cast<size_t>(place);
        const double fraction = place - static_cast<double>(lower);
        const double upper = numbers[std::min(lower + 1, numbers.size() - 1)];
        EXPECT_EQ(first.quartiles[i], std::lerp(numbers[lower], upper, fraction));
      }
      RecordSet turned = records;
      std::reverse(turned.begin(), turned.end());
      const FieldStatistics other = field_statistics(*table, turned, field, with_threads(5));
      EXPECT_EQ(other.mean, first.mean);
      EXPECT_EQ(other.quartiles, first.quartiles);
    }
  }
}

TEST(Quartiles, StopWhenCancelled) {
  const auto table = table_of(std::vector<double>(1000, 1.0));
  for (int questions = 0;; ++questions) {
    CancelAfter progress(questions);
    const QuartileResult result =
        find_quartiles(*table, all_records(*table), {.mode = kFromMean}, with_threads(2), progress);
    EXPECT_EQ(result.cancelled, progress.was_cancelled());
    EXPECT_EQ(result.records.size(), result.cancelled ? 0u : 1000u);
    if (!result.cancelled) break;
  }
}

}  // namespace
}  // namespace rowvane

// Duplicates and unique values.
#include <map>

#include <gtest/gtest.h>

#include "core/database/database.h"
#include "core/messages/messages.h"
#include "formula/fields/formula_hooks.h"
#include "recordset/compare/duplicates.h"
#include "recordset/compare/unique_values.h"
#include "recordset/random_tables.h"
#include "recordset/sort/record_order.h"

namespace rowvane {
namespace {

// The scope cut into groups by looking at every pair, sorted by the fields.
std::vector<RecordSet> groups_by_comparing(const CWorkSheet& table, const RecordSet& scope,
                                           const std::vector<size_t>& fields, const SortOptions& options) {
  const RecordOrder order(table, ascending_keys(fields), options);
  std::vector<RecordSet> groups;
  for (const uint32_t record : scope) {
    const auto same = [&](const RecordSet& group) { return order.compare(group[0], record) == 0; };
    const auto found = std::find_if(groups.begin(), groups.end(), same);
    (found != groups.end() ? *found : groups.emplace_back()).push_back(record);
  }
  std::sort(groups.begin(), groups.end(),
            [&order](const RecordSet& a, const RecordSet& b) { return order.compare(a[0], b[0]) < 0; });
  return groups;
}

RecordSet chosen_duplicates(const RecordSet& group, DuplicatesMode mode) {
  if (group.size() < 2) return {};
  switch (mode) {
    case DuplicatesMode::kAll:
      return group;
    case DuplicatesMode::kFirst:
      return {group.front()};
    case DuplicatesMode::kLast:
      return {group.back()};
    case DuplicatesMode::kAllButFirst:
      return {group.begin() + 1, group.end()};
    case DuplicatesMode::kAllButLast:
      return {group.begin(), group.end() - 1};
  }
  return {};
}

RecordSet in_order_of(const RecordSet& scope, const RecordSet& records) {
  RecordSet result;
  for (const uint32_t record : scope) {
    if (std::find(records.begin(), records.end(), record) != records.end()) result.push_back(record);
  }
  return result;
}

const std::vector<std::vector<size_t>> kManyFields = {{kWordField},
                                                      {kSmallField},
                                                      {kWordField, kSmallField},
                                                      {kNumberField, kCodeField},
                                                      {kFilesField, kTextField}};

TEST(Groups, EqualThoseFoundByComparingAllPairs) {
  RandomTable random(11);
  const auto table = random.make(600);
  const RecordSet scope = random.records(table->record_count());
  for (const std::vector<size_t>& fields : kManyFields) {
    for (const SortOptions& options : {SortOptions(), SortOptions{.collation = SortCollation::kNeutral}}) {
      const std::vector<RecordSet> groups = groups_by_comparing(*table, scope, fields, options);
      for (int mode = 0; mode < 5; ++mode) {
        DuplicatesSearch search{.fields = fields, .mode = DuplicatesMode(mode)};
        RecordSet expected;
        for (const RecordSet& group : groups) {
          const RecordSet chosen = chosen_duplicates(group, search.mode);
          expected.insert(expected.end(), chosen.begin(), chosen.end());
        }
        EXPECT_EQ(find_duplicates(*table, scope, search, options, with_threads(3)).records, expected);
        search.sort_results = false;
        EXPECT_EQ(find_duplicates(*table, scope, search, options, with_threads(1)).records,
                  in_order_of(scope, expected));
      }
      for (const UniqueMode mode : {UniqueMode::kFirst, UniqueMode::kLast}) {
        UniqueSearch search{.fields = fields, .mode = mode};
        RecordSet expected;
        std::map<uint32_t, uint32_t> sizes;
        for (const RecordSet& group : groups) {
          expected.push_back(mode == UniqueMode::kFirst ? group.front() : group.back());
          sizes[expected.back()] = static_cast<uint32_t>(group.size());
        }
        for (const bool sorted : {true, false}) {
          search.sort_results = sorted;
          const UniqueResult result = find_unique_values(*table, scope, search, options, with_threads(2));
          EXPECT_EQ(result.records, sorted ? expected : in_order_of(scope, expected));
          ASSERT_EQ(result.frequencies.size(), result.records.size());
          for (size_t i = 0; i < result.records.size(); ++i) {
            EXPECT_EQ(result.frequencies[i], sizes[result.records[i]]);
          }
        }
      }
    }
  }
}

// Groups longer than what is compared at a time, cut between threads.
TEST(Groups, AreFoundAcrossBlocks) {
  TableData data;
  data.record_count = 10'000;
  data.fields.resize(1);
  data.fields[0].name = "n";
  data.fields[0].type = FieldType::kNumber;
  NumberColumn column;
  for (uint32_t i = 0; i < data.record_count; ++i) column.cells.push_back(i % 2 == 0 ? i / 3000 : 100 + i);
  data.columns.emplace_back(std::move(column));
  const CWorkSheet table("t", std::move(data));
  for (int threads = 1; threads <= 4; ++threads) {
    const UniqueResult unique = find_unique_values(table, all_records(table), UniqueSearch{.fields = {0}},
                                                   SortOptions(), with_threads(threads));
    EXPECT_EQ(unique.records.size(), 5004u);
    EXPECT_EQ((std::vector<uint32_t>(unique.frequencies.begin(), unique.frequencies.begin() + 5)),
              (std::vector<uint32_t>{1500, 1500, 1500, 500, 1}));
  }
}

class SmallTable : public testing::Test {
 protected:
  void SetUp() override {
    std::vector<Field> fields(4);
    const char* names[] = {"word", "count", "code", "secret"};
    for (size_t i = 0; i < fields.size(); ++i) fields[i].name = names[i];
    fields[1].type = FieldType::kNumber;
    fields[3].encrypted = true;
    auto made = std::make_unique<CWorkSheet>("t", std::move(fields));
    table_ = made.get();
    ASSERT_EQ(database_.add_table(database_.root(), made), ErrorCode::kOk);
    const std::vector<std::string> words = {"b", "", "B", "a", "", "c"};
    ASSERT_EQ(table_->insert_records(1, static_cast<uint32_t>(words.size())), ErrorCode::kOk);
    for (uint32_t i = 0; i < words.size(); ++i) {
      const CellValue value = words[i].empty() ? CellValue() : CellValue(words[i]);
      ASSERT_EQ(table_->set_value(record_number(i), 0, value), ErrorCode::kOk);
    }
  }

  Database database_;
  CWorkSheet* table_ = nullptr;
};

TEST_F(SmallTable, GroupsEmptyValuesAndShowsSingleRecordsOnlyAsUnique) {
  const RecordSet all = all_records(*table_);
  EXPECT_EQ(find_duplicates(*table_, all, {.fields = {0}}, SortOptions(), Options()).records,
            (RecordSet{0, 2, 1, 4}));
  EXPECT_EQ(find_unique_values(*table_, all, {.fields = {0}}, SortOptions(), Options()).records,
            (RecordSet{3, 0, 5, 1}));
  EXPECT_TRUE(find_duplicates(*table_, RecordSet{0, 3, 5}, {.fields = {0}}, SortOptions(), Options())
                  .records.empty());
  EXPECT_TRUE(find_duplicates(*table_, {}, {.fields = {0}}, SortOptions(), Options()).records.empty());
  // All records are equal in a field without values.
  EXPECT_EQ(find_duplicates(*table_, all, {.fields = {2}}, SortOptions(), Options()).records, all);
}

TEST_F(SmallTable, ScopeIsTheTableOrWhatIsShownInTheCurrentOrder) {
  const RecordSet shown{5, 3};
  const SortKeys keys{{0, true}};
  const auto scope = [&](bool whole, const SortKeys& by) {
    return records_of_scope(*table_, whole, shown, by, SortOptions(), Options()).records;
  };
  EXPECT_EQ(scope(false, keys), shown);
  EXPECT_EQ(scope(true, {}), all_records(*table_));
  EXPECT_EQ(scope(true, keys), (RecordSet{1, 4, 5, 0, 2, 3}));
  const DuplicatesSearch last{.fields = {0}, .sort_results = false, .mode = DuplicatesMode::kLast};
  EXPECT_EQ(find_duplicates(*table_, RecordSet{2, 0, 4, 1}, last, SortOptions(), Options()).records,
            (RecordSet{0, 1}));
}

TEST_F(SmallTable, ChecksRefuseWhatCannotBeFound) {
  EXPECT_EQ(check_duplicates(*table_, {}), nothing_to_find());
  EXPECT_EQ(check_unique_values(*table_, {}), nothing_to_find());
  EXPECT_EQ(check_duplicates(*table_, {.fields = {0, 1}}), Check());
  EXPECT_EQ(check_duplicates(*table_, {.fields = {3}}), ErrorCode::kEncryptedField);
  EXPECT_EQ(check_duplicates(*table_, {.fields = {9}}), ErrorCode::kInvalidCacheIndex);
  UniqueSearch unique{.fields = {0}, .frequency_field = 2};
  EXPECT_EQ(check_unique_values(*table_, unique), Check());
  unique.save_frequencies = true;
  EXPECT_EQ(check_unique_values(*table_, unique), "Please specify a numeric field.");
  unique.frequency_field = 1;
  EXPECT_EQ(check_unique_values(*table_, unique), Check());
  EXPECT_EQ(find_duplicates(*table_, {}, {}, SortOptions(), Options()).failure,
            ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(find_duplicates(*table_, {}, {.fields = {3}}, SortOptions(), Options()).failure,
            ErrorCode::kEncryptedField);
}

TEST_F(SmallTable, FrequenciesAreOneUndoStepAndAllOrNothing) {
  const UniqueSearch search{.fields = {0}, .save_frequencies = true, .frequency_field = 1};
  const UniqueResult result =
      find_unique_values(*table_, all_records(*table_), search, SortOptions(), Options());
  ASSERT_EQ(save_frequencies(*table_, search, result), ErrorCode::kOk);
  const auto counts = [&] {
    std::string all;
    for (RecordNumber record = 1; record <= 6; ++record) all += table_->value_text(record, 1) + ",";
    return all;
  };
  EXPECT_EQ(counts(), "2,2,,1,,1,");
  EXPECT_TRUE(database_.undo());
  EXPECT_EQ(counts(), ",,,,,,");
  // A record whose validation formula refuses the frequency refuses all.
  Field field = table_->field(1);
  field.validation = "=count<2";
  ASSERT_EQ(table_->change_field(1, field), ErrorCode::kOk);
  const FormulaHooks formulas(database_, FormulaSettings(), Options());
  database_.set_hooks(&formulas);
  EXPECT_EQ(save_frequencies(*table_, search, result), ErrorCode::kValidation);
  EXPECT_EQ(counts(), ",,,,,,");
  database_.set_hooks(nullptr);
  const UniqueSearch into_text{.fields = {0}, .save_frequencies = true, .frequency_field = 2};
  EXPECT_EQ(save_frequencies(*table_, into_text, result), ErrorCode::kFieldTypeMismatch);
}

TEST(QuickDuplicates, TakeUpToAHundredFields) {
  std::vector<Field> fields(101);
  for (size_t i = 0; i < fields.size(); ++i) fields[i].name = "f" + std::to_string(i);
  const CWorkSheet table("t", std::move(fields));
  EXPECT_EQ(check_duplicates(table, quick_duplicates(1, 101)), Check());
  EXPECT_EQ(check_duplicates(table, quick_filtered_duplicates(0, 101)).refusal.text(),
            "Please select no more than 100 fields as sort keys.");
  EXPECT_EQ(quick_duplicates(3, 5).fields, (std::vector<size_t>{3, 4}));
  EXPECT_EQ(quick_duplicates(3, 5).mode, DuplicatesMode::kAll);
  EXPECT_TRUE(quick_duplicates(3, 5).sort_results);
  EXPECT_EQ(quick_filtered_duplicates(3, 5).mode, DuplicatesMode::kAllButFirst);
}

TEST(Groups, StopWhenCancelled) {
  RandomTable random(3);
  const auto table = random.make(3000);
  const RecordSet scope = all_records(*table);
  for (int questions = 0;; questions = questions * 3 / 2 + 1) {
    CancelAfter progress(questions);
    const UniqueResult result =
        find_unique_values(*table, scope, UniqueSearch{.fields = {kTextField, kNumberField}}, SortOptions(),
                           with_threads(2), progress);
    EXPECT_EQ(result.cancelled, progress.was_cancelled());
    if (!result.cancelled) break;
    EXPECT_TRUE(result.records.empty());
  }
}

}  // namespace
}  // namespace rowvane

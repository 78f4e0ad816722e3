#include "recordset/search/search.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "core/limits.h"
#include "formula/evaluation/formula_evaluator.h"
#include "recordset/search/criterion_formula.h"
#include "search_samples.h"

namespace rowvane {
namespace {

const FormulaSettings kFormulas;

Search search_for(std::initializer_list<std::pair<size_t, const char*>> criteria) {
  Search settings;
  settings.threads = 2;
  for (const auto& [field, stored] : criteria) settings.criteria.push_back({field, *parse_criterion(stored)});
  return settings;
}

RecordSet found(const CWorkSheet& table, const Search& settings) {
  const SearchResult result = search(table, settings, kFormulas);
  EXPECT_EQ(result.failure, "");
  EXPECT_FALSE(result.cancelled);
  return result.records;
}

RecordSet found(const CWorkSheet& table, std::initializer_list<std::pair<size_t, const char*>> criteria) {
  return found(table, search_for(criteria));
}

// ---- against the equivalent formulas, record by record

bool is_true_for(const CWorkSheet& table, const std::string& formula, uint32_t position,
                 FormulaEvaluator& evaluator) {
  evaluator.set_table(&table);
  evaluator.set_record(position);
  if (evaluator.evaluate(formula) == Kind::kError) return false;
  return to_truth(evaluator.result(), evaluator.context()).value_or(false);
}

std::string random_value(std::mt19937& random, bool number) {
  static const char* const kNumbers[] = {"0",    "1",     "5",  "-5", " 5.5 ", "2*1",
                                         "1e15", "Price", ".1", "5%", "- 5"};
  if (number) return kNumbers[random() % std::size(kNumbers)];
  std::string text = random_sample_text(random);
  std::erase(text, '"');
  return text;
}

Criterion random_criterion(std::mt19937& random, const Field& field) {
  const auto kind = static_cast<CriterionKind>('c' + static_cast<int>(random() % 9));
  if (kind == CriterionKind::kIsEmpty) return is_empty_criterion();
  const bool number = field.type == FieldType::kNumber;
  std::string text = random_value(random, number);
  if (kind < CriterionKind::kBetween) return {kind, text};
  std::erase(text, ' ');
  for (unsigned more = 1 + random() % 2; more > 0; --more) {
    std::string word = random_value(random, number);
    std::erase(word, ' ');
    text += "  " + word;
  }
  return {kind, text};
}

TEST(Search, FindsWhereTheEquivalentFormulasAreTrue) {
  const auto table = make_search_table(2500, 7);  // more than two blocks
  std::mt19937 random(11);
  const auto evaluator = std::make_unique<FormulaEvaluator>(kFormulas);
  size_t searches = 0;
  size_t hits = 0;
  for (int i = 0; i < 700; ++i) {
    Search settings;
    settings.threads = 1 + i % 3;
    for (unsigned more = 1 + random() % 2; more > 0; --more) {
      const size_t field = random() % table->field_count();
      settings.criteria.push_back({field, random_criterion(random, table->field(field))});
    }
    if (!check_search(*table, settings, kFormulas).passes()) continue;
    if (i % 4 == 0) {
      settings.within = all_records(*table);
      std::shuffle(settings.within->begin(), settings.within->end(), random);
      settings.within->resize(i % 8 == 0 ? 40 : 2000);
    }
    RecordSet expected;
    for (const uint32_t position : settings.within.value_or(all_records(*table))) {
      const bool all = std::ranges::all_of(settings.criteria, [&](const FieldCriterion& wanted) {
        const std::string formula = equivalent_formula(table->field(wanted.field), wanted.criterion);
        return is_true_for(*table, formula, position, *evaluator);
      });
      if (all) expected.push_back(position);
    }
    ASSERT_EQ(found(*table, settings), expected) << table->field(settings.criteria[0].field).name << " "
                                                 << stored_criterion(settings.criteria[0].criterion)
                                                 << (settings.criteria.size() > 1 ? " and more" : "");
    ++searches;
    hits += expected.size();
  }
  EXPECT_GT(searches, 400u);
  EXPECT_GT(hits, 100'000u);
}

TEST(Search, FormulasAreTrueForTheSameRecordsInBlocksAndOneByOne) {
  const auto table = make_search_table(3000, 3);
  const auto evaluator = std::make_unique<FormulaEvaluator>(kFormulas);
  for (const char* formula :
       {"=Price>1", "=Price", "=Colour=\"a\"", "=if(Price>1,\"1\",\"x\")", "=Price/0", "=sum(Price,1)-1",
        "={1,0}", "=len(Name)>2", "=Notes&\"\"=\"A\"", "=nothing", "=samples!Price"}) {
    Search all;
    all.criteria.push_back({0, {CriterionKind::kFormula, formula}});
    Search few = all;
    few.within = RecordSet{2900, 5, 7, 1000, 1001, 1024};
    RecordSet expected;
    RecordSet expected_few;
    for (uint32_t position = 0; position < 3000; ++position) {
      if (is_true_for(*table, formula, position, *evaluator)) expected.push_back(position);
    }
    std::ranges::copy_if(*few.within, std::back_inserter(expected_few),
                         [&](uint32_t position) { return std::ranges::binary_search(expected, position); });
    EXPECT_EQ(found(*table, all), expected) << formula;
    EXPECT_EQ(found(*table, few), expected_few) << formula;
  }
}

// ---- the kinds without a formula

class SmallSearch : public testing::Test {
 protected:
  SmallSearch() {
    table_ = add_sample_table(database_, database_.root(), "t");
    static const std::vector<std::vector<const char*>> kTexts = {
        {"John Smith", "Smith, Jon"}, {"Miller", "SMYTH"}, {"", "aé\nxyz"}, {"Jhon Smith", "big"}};
    EXPECT_EQ(table_->insert_records(1, 4), ErrorCode::kOk);
    for (uint32_t i = 0; i < 4; ++i) {
      set(i, 0, std::string(kTexts[i][0]));
      set(i, 1, 10.5 * i);
      set(i, 2, Content::of(kTexts[i][1]));
    }
    set(1, 3, FileList{make_file("a.png"), make_file("letter.doc")});
    set(3, 3, FileList{make_file("b.png")});
    set(0, 4, Content::of("int main() {\n  return 0;\n}\n"));
  }

  void set(uint32_t position, size_t field, CellValue value) {
    ASSERT_EQ(table_->set_value(record_number(position), field, value), ErrorCode::kOk);
  }

  Database database_;
  CWorkSheet* table_;
};

TEST_F(SmallSearch, RegularExpressionsOccurAnywhere) {
  EXPECT_EQ(found(*table_, {{0, "b:smith$"}}), (RecordSet{0, 3}));
  EXPECT_EQ(found(*table_, {{1, "b:^1|\\.5"}}), (RecordSet{1, 3}));
  EXPECT_EQ(found(*table_, {{3, "b:^(b|letter)\\."}}), (RecordSet{1, 3}));
  EXPECT_EQ(found(*table_, {{4, "b:^ *return\\b"}}), (RecordSet{0}));
  EXPECT_EQ(found(*table_, {{0, "b:x*"}}), RecordSet{});
  Search settings = search_for({{0, "b:x*"}});
  settings.options.empty_matches = true;
  EXPECT_EQ(found(*table_, settings).size(), 4u);
  settings = search_for({{0, "b:SMITH"}});
  settings.options.caseless = false;
  EXPECT_EQ(found(*table_, settings), RecordSet{});
}

TEST_F(SmallSearch, LongTextsAreSearchedForThePlainPattern) {
  Search settings = search_for({{2, "b:É\nX"}, {0, "k: "}});
  SearchResult result = search(*table_, settings, kFormulas);
  EXPECT_EQ(result.records, (RecordSet{2}));
  EXPECT_EQ(result.notices,
            std::vector<UserText>{"Regular expressions are not supported for memo fields. Plain text "
                                  "searching will be used instead."});
  settings.options.caseless = false;
  EXPECT_EQ(found(*table_, settings), RecordSet{});
  EXPECT_EQ(found(*table_, {{2, "b:(["}}), RecordSet{});  // no pattern, so nothing is wrong with it
}

TEST_F(SmallSearch, TheMostSimilarComeFirst) {
  EXPECT_EQ(found(*table_, {{0, "l:jhon smith"}}), (RecordSet{3, 0}));
  EXPECT_EQ(found(*table_, {{0, "l:john smith"}}), (RecordSet{0, 3}));
  EXPECT_EQ(found(*table_, {{2, "l:smith"}}), (RecordSet{0, 1}));
  EXPECT_EQ(found(*table_, {{3, "l:letters.doc"}}), (RecordSet{1}));
  Search settings = search_for({{0, "l:smith"}});
  settings.within = RecordSet{3, 1, 0};
  EXPECT_EQ(found(*table_, settings), (RecordSet{3, 0}));
}

TEST_F(SmallSearch, FlagsOfRecords) {
  DatabaseSettings settings;
  settings.record_flag_types = {{"red", 1}, {"blue", 2}};
  ASSERT_EQ(database_.change_settings(settings), ErrorCode::kOk);
  EXPECT_EQ(found(*table_, {{0, "m:1"}}), RecordSet{});
  const std::vector<uint32_t> red{1};
  const std::vector<uint32_t> blue{2, 3};
  ASSERT_EQ(table_->set_flag_type(red, 1), ErrorCode::kOk);
  ASSERT_EQ(table_->set_flag_type(blue, 2), ErrorCode::kOk);
  EXPECT_EQ(found(*table_, {{0, "m:1"}}), red);
  EXPECT_EQ(found(*table_, {{0, "m:2"}, {1, "f:21"}}), (RecordSet{3}));
  EXPECT_EQ(found(*table_, {{0, "m:7"}}), (RecordSet{1, 2, 3}));
}

TEST_F(SmallSearch, CriteriaNarrowAndNoneFindsAll) {
  EXPECT_EQ(found(*table_, Search()), (RecordSet{0, 1, 2, 3}));
  Search settings = search_for({{1, "g:30"}});
  settings.within = RecordSet{3, 2, 0};
  EXPECT_EQ(found(*table_, settings), (RecordSet{2, 0}));
  settings.within = RecordSet{};
  EXPECT_EQ(found(*table_, settings), RecordSet{});
  EXPECT_EQ(found(*table_, {{1, "f:-1"}, {0, "c:john"}}), (RecordSet{0}));
}

// ---- what goes wrong

std::string refusal(const CWorkSheet& table, const Search& settings) {
  const UserText refused = check_search(table, settings, kFormulas).refusal;
  const SearchResult result = search(table, settings, kFormulas);
  EXPECT_EQ(result.failure, refused);
  EXPECT_TRUE(refused.empty() || result.records.empty());
  return refused.text();
}

TEST_F(SmallSearch, RefusesWhatCantBeSearched) {
  const auto refused = [&](size_t field, const std::string& stored) {
    Search settings;
    settings.criteria.push_back({field, *parse_criterion(stored)});
    return refusal(*table_, settings);
  };
  EXPECT_EQ(refused(0, "b:a(b"), "Regular expression error:\nmissing closing parenthesis");
  EXPECT_EQ(refused(0, "a:=number>"), "Invalid formula!");
  EXPECT_EQ(refused(0, "a:number>1"), "Invalid formula!");
  EXPECT_EQ(refused(1, "h:5"), "The filter of the field \"number\" lacks a value: Between: 5");
  EXPECT_EQ(refused(0, "i:  "), "The filter of the field \"text\" lacks a value: And:   ");
  EXPECT_EQ(refused(1, "d:1,5"), "The filter of the field \"number\" needs a number: Equal: 1,5");
  EXPECT_EQ(refused(1, "d:"), "The filter of the field \"number\" needs a number: Equal: ");
  EXPECT_EQ(refused(0, "d:"), "");
  EXPECT_EQ(refused(0, "d:say \"x\""), "");
  EXPECT_EQ(refused(9, "d:1"), error_text(ErrorCode::kInvalidCacheIndex));
  Search outside;
  outside.within = RecordSet{4};
  EXPECT_EQ(refusal(*table_, outside), error_text(ErrorCode::kInvalidCacheIndex));
  Field secret = table_->field(0);
  secret.encrypted = true;
  ASSERT_EQ(table_->replace_column(0, secret, Column(table_->column(0))), ErrorCode::kOk);
  for (const char* stored : {"b:a", "d:a", "k: ", "l:a"})
    EXPECT_EQ(refused(0, stored), error_text(ErrorCode::kEncryptedField)) << stored;
  EXPECT_EQ(refused(0, "m:1"), "");
}

TEST_F(SmallSearch, LongestTextsAndBrokenOnes) {
  set(0, 0, std::string(kMaxBufferBytes, 'x'));
  const std::string longest(kMaxBufferBytes, 'X');
  for (const char kind : {'b', 'c', 'd', 'i', 'j', 'l'}) {
    Search settings;
    settings.criteria.push_back({0, *parse_criterion(std::string{kind} + ":" + longest)});
    EXPECT_EQ(found(*table_, settings), (RecordSet{0})) << kind;
  }
  for (const char kind : {'b', 'c', 'd', 'e', 'f', 'g', 'i', 'j', 'l'}) {
    Search settings;
    settings.criteria.push_back({0, {*criterion_kind(kind), "\xFF\xC3 x\xE2"}});
    const SearchResult result = search(*table_, settings, kFormulas);
    EXPECT_EQ(result.failure.empty(), kind != 'b') << kind;
  }
}

TEST(Search, BrokenTextsAreSearchedWithoutHarm) {
  TableData data;
  data.fields = {make_field("a")};
  TextColumn column;
  for (const std::string_view text : {"\xFF", "ab\xC3", "\xE2\x82x", "ab"})
    column.cells.push_back(column.pool->append(text));
  data.record_count = 4;
  data.columns.emplace_back(std::move(column));
  const CWorkSheet table("t", std::move(data));
  EXPECT_EQ(found(table, {{0, "b:ab"}}), (RecordSet{1, 3}));
  EXPECT_EQ(found(table, {{0, "c:AB"}}), (RecordSet{1, 3}));
  EXPECT_EQ(found(table, {{0, "i:X"}}), (RecordSet{2}));
  EXPECT_EQ(found(table, {{0, "l:ab"}}), (RecordSet{1, 3}));
}

TEST(Search, AnExpressionThatNeverEndsFailsTheSearch) {
  TableData data;
  data.fields = {make_field("a")};
  TextColumn column;
  for (int i = 0; i < 50'000; ++i) column.cells.push_back(column.pool->append(std::string(40, 'a') + "!"));
  data.record_count = 50'000;
  data.columns.emplace_back(std::move(column));
  const CWorkSheet table("t", std::move(data));
  const SearchResult result = search(table, search_for({{0, "b:(a|aa)+$"}}), kFormulas);
  EXPECT_EQ(result.failure, "Regular expression error:\nmatch limit exceeded");
  EXPECT_TRUE(result.records.empty());
}

class UnreadableSource final : public ContentSource {
 public:
  ErrorCode read(std::string&) const override { return ErrorCode::kFileRead; }
};

TEST_F(SmallSearch, ValuesThatCantBeReadAreTold) {
  set(1, 2, Content::stored(std::make_shared<UnreadableSource>(), 100));
  const SearchResult result = search(*table_, search_for({{2, "e:zzz"}}), kFormulas);
  EXPECT_EQ(result.records, (RecordSet{0, 2, 3}));
  EXPECT_EQ(result.notices,
            std::vector<UserText>{"1 values could not be read: Error while reading from a file"});
}

// Says stop after being asked some number of times.
class StoppingProgress final : public Progress {
 public:
  explicit StoppingProgress(int asked) : left_(asked) {}
  bool cancelled() const override { return left_.fetch_sub(1) <= 0; }

 private:
  mutable std::atomic<int> left_;
};

TEST(Search, StopsAtAnyMoment) {
  const auto table = make_search_table(20'000, 5);
  int cancelled = 0;
  for (const int asked : {0, 1, 2, 3, 5, 10, 20, 1000}) {
    for (const char* stored : {"b:a", "l:red blue", "a:=sum(Price)", "e:x"}) {
      StoppingProgress progress(asked);
      const SearchResult result = search(*table, search_for({{1, stored}, {3, "b:a"}}), kFormulas, progress);
      EXPECT_EQ(result.failure, "");
      EXPECT_TRUE(result.cancelled ? result.records.empty() : asked > 10);
      if (result.cancelled) ++cancelled;
    }
  }
  EXPECT_GE(cancelled, 24);
}

}  // namespace
}  // namespace rowvane

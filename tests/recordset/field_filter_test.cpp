#include "recordset/search/field_filter.h"

#include <gtest/gtest.h>

#include "core/limits.h"
#include "core/sample_tables.h"

namespace rowvane {
namespace {

using Choice = FieldFilter::Choice;

const Field kName = make_field("Name");
const Field kPrice = make_field("Price", FieldType::kNumber);
const Field kFiles = make_field("Pictures", FieldType::kFiles);

FieldFilter opened(const Field& field, const char* stored, const SearchOptions& options = {}) {
  return open_field_filter(field, parse_criterion(stored), options, 2, 3);
}

FieldFilterResult accepted(const FieldFilter& filter) {
  static const auto table = [] {
    auto made = make_table("t");
    EXPECT_EQ(made->insert_records(1, 1), ErrorCode::kOk);
    return made;
  }();
  return accept_field_filter(*table, filter, SearchOptions(), FormulaSettings());
}

TEST(FieldFilter, Titles) {
  EXPECT_EQ(field_filter_title(kName), "Set Search Filter For 'Name'");
  EXPECT_EQ(search_editor_title(kName), "Search 'Name'");
  EXPECT_EQ(search_editor_title(kFiles), "Search filenames in 'Pictures'");
}

TEST(FieldFilter, OpensWithTheStoredCriterion) {
  FieldFilter filter = opened(kName, "h:a b");
  EXPECT_EQ(filter.choice, Choice::kExpression);
  EXPECT_EQ(criterion_list()[filter.list_index], "Between:");
  EXPECT_EQ(filter.text, "a b");
  EXPECT_EQ(filter.formula, "=(Name >= \"a\")*(Name <= \"b\")");

  filter = opened(kName, "k: ");
  EXPECT_EQ(criterion_list()[filter.list_index], "IsEmpty");
  EXPECT_EQ(filter.text, "");
  EXPECT_EQ(filter.formula, "=TRIM(Name) = \"\"");

  EXPECT_EQ(opened(kName, "b:^a").formula, "");
  EXPECT_EQ(opened(kName, "d:").formula, "");

  filter = opened(kName, "a:=1");
  EXPECT_EQ(filter.choice, Choice::kFormula);
  EXPECT_EQ(filter.formula, "=1");
  EXPECT_EQ(filter.text, "");

  EXPECT_EQ(opened(kName, "m:3").choice, Choice::kFlag);
  EXPECT_EQ(opened(kName, "m:3").flag, 3);
  EXPECT_EQ(opened(kName, "m:4").flag, 2);
  EXPECT_EQ(opened(kName, "m:0").flag, 2);
}

TEST(FieldFilter, OpensWithTheDefaultKind) {
  SearchOptions options;
  options.default_kind = CriterionKind::kStartsWith;
  options.caseless = false;
  const FieldFilter filter = open_field_filter(kName, std::nullopt, options, 0, 0);
  EXPECT_EQ(filter.choice, Choice::kExpression);
  EXPECT_EQ(criterion_list()[filter.list_index], "Starts with:");
  EXPECT_TRUE(filter.match_case);
  EXPECT_FALSE(has_expression_boxes(filter));
  EXPECT_EQ(criterion_list()[open_field_filter(kPrice, std::nullopt, options, 0, 0).list_index], "Equal:");
  EXPECT_EQ(criterion_list()[open_field_filter(kFiles, std::nullopt, options, 0, 0).list_index],
            "Starts with:");
}

TEST(FieldFilter, ExpressionsBecomeCriteria) {
  FieldFilter filter;
  for (size_t i = 0; i < kListedKinds; ++i) {
    filter.list_index = i;
    filter.text = "x";
    EXPECT_EQ(has_expression_boxes(filter), i == 0);
    const FieldFilterResult result = accepted(filter);
    ASSERT_TRUE(result.criterion);
    EXPECT_EQ(stored_criterion(*result.criterion),
              i == 9 ? "k: " : std::string{static_cast<char>('b' + i)} + ":x");
  }
}

TEST(FieldFilter, BoxesCountForExpressionsAlone) {
  FieldFilter filter;
  filter.allow_empty_matches = true;
  filter.match_case = true;
  filter.search_now = false;
  filter.list_index = 2;
  EXPECT_FALSE(accepted(filter).options.empty_matches);
  EXPECT_TRUE(accepted(filter).options.caseless);
  EXPECT_FALSE(accepted(filter).options.search_now);
  filter.list_index = 0;
  filter.text = "a(";
  const FieldFilterResult wrong = accepted(filter);
  EXPECT_FALSE(wrong.criterion);
  EXPECT_EQ(wrong.message, "Regular expression error:\nmissing closing parenthesis");
  EXPECT_TRUE(wrong.options.empty_matches);
  EXPECT_FALSE(wrong.options.caseless);
}

TEST(FieldFilter, FormulasMustBeReadableAndNoReferences) {
  FieldFilter filter;
  filter.choice = Choice::kFormula;
  for (const char* formula : {"", "1", "=1+", "=\"@x\"", "=\"@\"&number"}) {
    filter.formula = formula;
    const FieldFilterResult result = accepted(filter);
    EXPECT_TRUE(result.invalid_formula) << formula;
    EXPECT_FALSE(result.criterion);
    EXPECT_EQ(result.message, "");
  }
  for (const char* formula : {"=1", "=number>1", "=\"x@\"", "=unknown"}) {
    filter.formula = formula;
    EXPECT_EQ(stored_criterion(accepted(filter).criterion.value_or(Criterion())),
              "a:" + std::string(formula));
  }
}

TEST(FieldFilter, FlagsAndLongTexts) {
  FieldFilter filter;
  filter.choice = Choice::kFlag;
  filter.flag = 2;
  EXPECT_EQ(stored_criterion(*accepted(filter).criterion), "m:2");
  filter.choice = Choice::kExpression;
  filter.list_index = 1;
  filter.text = std::string(kMaxBufferBytes, 'x');
  EXPECT_EQ(accepted(filter).warning, "");
  filter.text += "x";
  EXPECT_EQ(accepted(filter).warning, texts::kEntryTruncated);
  EXPECT_EQ(accepted(filter).criterion->text.size(), kMaxBufferBytes);
  filter.choice = Choice::kFormula;
  filter.formula = "=1+" + std::string(kMaxBufferBytes, '1');
  EXPECT_EQ(accepted(filter).warning, texts::kEntryTruncated);
}

}  // namespace
}  // namespace rowvane

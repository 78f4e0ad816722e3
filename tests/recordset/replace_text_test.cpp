#include "recordset/find/replace_text.h"

#include <functional>

#include <gtest/gtest.h>

#include "find_table.h"
#include "formula/fields/formula_hooks.h"
#include "formula/typed_texts.h"
#include "recordset/find/replacement.h"

namespace rowvane {
namespace {

ReplaceText replace_settings(std::string text, std::string replacement, bool regular_expression = false) {
  ReplaceText settings;
  settings.find = find_settings(std::move(text));
  settings.find.pattern.regular_expression = regular_expression;
  settings.replacement = std::move(replacement);
  return settings;
}

class ReplaceTextTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(table.insert_records(1, 3), ErrorCode::kOk); }

  void set(RecordNumber record, size_t field, const CellValue& value) {
    ASSERT_EQ(table.set_value(record, field, value), ErrorCode::kOk);
  }
  void change_field(size_t index, const std::function<void(Field&)>& change) {
    Field field = table.field(index);
    change(field);
    ASSERT_EQ(table.change_field(index, field), ErrorCode::kOk);
  }
  ReplaceResult replace(const ReplaceText& settings) {
    EXPECT_EQ(check_replace(table, settings).refusal, "");
    return replace_all(table, settings, all_records(table));
  }
  std::string cells(size_t field) const {
    std::string text;
    for (RecordNumber record = 1; record < table.end_record(); ++record)
      text += table.value_text(record, field) + "|";
    return text;
  }

  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
};

TEST_F(ReplaceTextTest, ReplacesInAllTypesAsOneStep) {
  set(1, 0, std::string("a man"));
  set(2, 0, std::string("a man"));
  set(3, 1, 1.25);
  set(1, 2, Content::of("Man and man"));
  set(2, 4, Content::of("man()"));
  const auto before = cells(0) + cells(2) + cells(4);
  ReplaceResult result = replace(replace_settings("man", "woman"));
  EXPECT_EQ(cells(0) + cells(2) + cells(4), "a woman|a woman||woman and woman||||woman()||");
  EXPECT_EQ(result.cells, 4U);
  EXPECT_EQ(result.matches, 5U);
  EXPECT_EQ(replace_report(result), "5 matches replaced in 4 cells.");
  EXPECT_EQ(replace(replace_settings("1.2", "-3")).cells, 1U);
  EXPECT_EQ(cells(1), "||-35|");
  ASSERT_TRUE(database.undo());
  ASSERT_TRUE(database.undo());
  EXPECT_EQ(cells(0) + cells(2) + cells(4), before);
  EXPECT_EQ(cells(1), "||1.25|");
  result = replace(replace_settings("a", "a"));
  EXPECT_EQ(result.cells, 0U) << "what stays the same is no change";
  EXPECT_EQ(replace(replace_settings("a man", "")).cells, 2U);
  EXPECT_TRUE(is_empty(table.value(1, 0)));
}

TEST_F(ReplaceTextTest, GroupsOfExpressions) {
  set(1, 0, std::string("Smith, John"));
  set(2, 0, std::string("2024-05"));
  EXPECT_EQ(replace(replace_settings("^(\\w+), (\\w+)$", "$2 \\1", true)).cells, 1U);
  EXPECT_EQ(replace(replace_settings("(\\d+)-(\\d+)", "${2}0/$1 [$0] $$1 \\\\1 a\\tb", true)).cells, 1U);
  EXPECT_EQ(cells(0), "John Smith|050/2024 [2024-05] $1 \\1 a\tb||");
  EXPECT_EQ(replace(replace_settings("(J)(o)?(x)?", "<$3$1>$20", true)).cells, 1U);
  EXPECT_EQ(table.value_text(1, 0), "<J>o0hn Smith")
      << "an unused group is empty; of \"20\" only 2 is a group";
  EXPECT_EQ(check_replace(table, replace_settings("(a)", "$2", true)).refusal,
            "The replacement names group 2; the expression has 1.");
  EXPECT_EQ(replace(replace_settings("J", "$1")).cells, 1U)
      << "plain text matching takes the text as it stands";
  EXPECT_EQ(table.value_text(1, 0), "<$1>o0hn Smith");
  ReplaceText empty = replace_settings("^$", "none", true);
  empty.find.pattern.empty_matches = true;
  empty.find.fields = {0};
  EXPECT_EQ(replace(empty).cells, 1U);
  EXPECT_EQ(table.value_text(3, 0), "none");
}

TEST_F(ReplaceTextTest, LeavesOutWhatATypeDoesNotTake) {
  for (RecordNumber record = 1; record <= 3; ++record) set(record, 1, 10.0 * record.number());
  ReplaceResult result = replace(replace_settings("0", "x"));
  EXPECT_EQ(result.refused.not_numeric, 3U);
  result = replace(replace_settings("2", "1e"));
  EXPECT_EQ(cells(1), "10|1|30|") << "1e0";
  change_field(1, [](Field& field) { field.format = "#,##0.0"; });
  set(1, 1, 1234.56);
  set(2, 1, 1234.5);
  result = replace(replace_settings("1,2", "7,9"));
  EXPECT_EQ(cells(1), "1234.56|7934.5|30|") << "1,234.6 hides a digit";
  EXPECT_EQ(result.refused.not_numeric, 1U);
  EXPECT_EQ(replace_report(result),
            "1 match replaced in 1 cell.\n1 cell not changed: the text would not be a number or would lose "
            "digits.");
  set(1, 0, std::string(4085, 'y'));
  result = replace(replace_settings("y", "yy"));
  EXPECT_EQ(result.refused.too_long, 1U);
  EXPECT_EQ(result.cells, 0U);
  result = replace(replace_settings("yyyyy", "yyyyyyyyyy"));
  EXPECT_EQ(result.refused.too_long, 1U);
  set(1, 0, std::string(4084, 'y'));
  EXPECT_EQ(replace(replace_settings("y", "yy")).cells, 1U);
}

TEST_F(ReplaceTextTest, ANumberBecomesWhatTheNewTextWouldIfItWereTyped) {
  for (const char* format : {"", "0"}) {
    change_field(1, [format](Field& field) { field.format = format; });
    for (const TypedText& typed : kTypedTexts) {
      const bool taken = *typed.number != 0;
      set(1, 1, 777.0);
      EXPECT_EQ(replace(replace_settings("777", typed.text)).refused.not_numeric, taken ? 0U : 1U)
          << typed.text;
      EXPECT_EQ(table.value_text(1, 1), taken ? typed.number : "777") << typed.text;
    }
  }
}

TEST_F(ReplaceTextTest, CountsEachCellOfATextThatWouldBeTooLong) {
  for (RecordNumber record = 1; record <= 3; ++record) set(record, 0, std::string(5000, 'y'));
  const ReplaceResult result = replace(replace_settings("y", "yy"));
  EXPECT_EQ(result.refused.too_long, 3U);
  EXPECT_EQ(result.cells, 0U);
}

TEST_F(ReplaceTextTest, LeavesOutCalculatedFormattedAndFileNames) {
  FormulaHooks hooks(database, FormulaSettings(), Options());
  database.set_hooks(&hooks);
  set(1, 2, Content::of("{\\rtf1 red \\b lamp}"));
  set(2, 3, FileList{make_file("lamp.png")});
  set(3, 0, std::string("lamp"));
  Field calculated = make_field("calculated");
  calculated.formula = "=upper(text)";
  ASSERT_EQ(table.insert_field(5, calculated), ErrorCode::kOk);
  change_field(4, [](Field& field) { field.hidden = true; });
  change_field(0, [](Field& field) { field.validation = "=text<>\"torch\""; });
  ReplaceResult result = replace(replace_settings("lamp", "torch"));
  EXPECT_EQ(result.cells, 0U);
  EXPECT_EQ(result.refused, (RefusedCells{0, 0, 1, 1, 1, 1, 0, 0}));
  EXPECT_EQ(result.refused.total(), 4U);
  result = replace(replace_settings("lamp", "light"));
  EXPECT_EQ(result.cells, 1U);
  EXPECT_EQ(table.value_text(3, 5), "LIGHT") << "calculated fields follow";
  ASSERT_TRUE(database.undo());
  EXPECT_EQ(table.value_text(3, 5), "LAMP");
  database.set_hooks(nullptr);
}

TEST_F(ReplaceTextTest, EncryptedFieldsAreRefusedByNameAndPassedOverOtherwise) {
  set(1, 0, std::string("QUFB"));
  Field field = table.field(0);
  field.encrypted = true;
  ASSERT_EQ(table.replace_column(0, field, table.column(0)), ErrorCode::kOk);
  ReplaceText settings = replace_settings("Q", "x");
  EXPECT_EQ(replace(settings).cells, 0U);
  settings.find.fields = {0};
  EXPECT_EQ(check_replace(table, settings).refusal, ErrorCode::kEncryptedField);
}

TEST_F(ReplaceTextTest, CancelledItChangesNothing) {
  ASSERT_NO_FATAL_FAILURE(fill_randomly(table, 200, 1));
  const auto before = cells(0) + cells(1) + cells(2);
  const std::string step = database.undo_log().undo_caption();
  int cancelled = 0;
  for (int calls = 1; calls < 40; ++calls) {
    StopAfter progress(calls);
    const ReplaceResult result =
        replace_all(table, replace_settings("a", "bb"), all_records(table), progress);
    if (!result.cancelled) break;
    ++cancelled;
    EXPECT_EQ(result.cells, 0U);
    ASSERT_EQ(cells(0) + cells(1) + cells(2), before);
    EXPECT_EQ(database.undo_log().undo_caption(), step);
  }
  EXPECT_GT(cancelled, 3);
}

// Against replacing in each shown text.
TEST_F(ReplaceTextTest, AgreesWithReplacingCellByCell) {
  ASSERT_NO_FATAL_FAILURE(fill_randomly(table, 3000, 7));
  set(3001, 0, std::string("aab1ab"));
  ReplaceText settings = replace_settings("a([ab1])", "<$1>", true);
  settings.find.fields = {0, 2};
  settings.find.pattern.caseless = false;
  std::string expected;
  const RegularExpression expression("a([ab1])", regex::kUtf8);
  RegexMatcher matcher(expression, 0, true);
  for (RecordNumber record = 1; record < table.end_record(); ++record) {
    std::string text = table.value_text(record, 0);
    size_t from = 0;
    while (const auto span = matcher.find(text, from)) {
      const std::string made = "<" + text.substr(matcher.capture(1)->begin, 1) + ">";
      text.replace(span->begin, span->size(), made);
      from = span->begin + made.size();
    }
    expected += text + "|";
  }
  const std::string long_texts = cells(2);
  RecordSet all = all_records(table);
  std::ranges::reverse(all);
  const ReplaceResult result = replace_all(table, settings, all);
  EXPECT_EQ(cells(0), expected);
  EXPECT_EQ(cells(2), long_texts) << "long texts are looked through as plain text";
  EXPECT_GT(result.cells, 20U);
  EXPECT_GT(result.matches, result.cells);
}

TEST_F(ReplaceTextTest, OneMatchAfterTheOther) {
  set(1, 0, std::string("aba"));
  set(3, 0, std::string("xa"));
  const RecordSet records = all_records(table);
  const ReplaceText settings = replace_settings("a", "aa");
  ReplacedMatch replaced = replace_match(table, settings, records, {{0, 0}, 0}, true);
  EXPECT_EQ(cells(0), "aaba||xa|");
  EXPECT_EQ(database.undo_log().undo_caption(), "");
  ASSERT_TRUE(replaced.next);
  EXPECT_EQ(replaced.next->cell, (CellPlace{0, 0}));
  EXPECT_EQ(replaced.next->from, 3U) << "not the one that was put in";
  replaced = replace_match(table, settings, records, *replaced.next, true);
  EXPECT_EQ(cells(0), "aabaa||xa|");
  ASSERT_TRUE(replaced.next);
  EXPECT_EQ(replaced.next->cell, (CellPlace{2, 0}));
  replaced = replace_match(table, settings, records, {{1, 0}, 0}, true);
  EXPECT_EQ(replaced.result.cells, 0U) << "there is no match";
  EXPECT_EQ(replaced.next->cell, (CellPlace{2, 0}));
  EXPECT_EQ(replace_match(table, settings, records, *replaced.next, false).next, std::nullopt);
  EXPECT_EQ(cells(0), "aabaa||xaa|");
}

TEST(ReplaceInAllTables, IsOneStep) {
  Database database;
  for (const char* name : {"one", "two"}) {
    CWorkSheet& table = *add_sample_table(database, database.root(), name);
    ASSERT_EQ(table.insert_records(1, 1), ErrorCode::kOk);
    ASSERT_EQ(table.set_value(1, 0, std::string("old")), ErrorCode::kOk);
  }
  EXPECT_EQ(replace_in_all_tables(database, replace_settings("OLD", "new")).cells, 2U);
  EXPECT_EQ(database.tables()[0]->value_text(1, 0) + database.tables()[1]->value_text(1, 0), "newnew");
  EXPECT_EQ(database.undo_log().undo_caption(), "Replace");
  ASSERT_TRUE(database.undo());
  EXPECT_EQ(database.tables()[0]->value_text(1, 0) + database.tables()[1]->value_text(1, 0), "oldold");
}

}  // namespace
}  // namespace rowvane

#include "formula/passes/recalculation.h"

#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "formula/fields/formula_hooks.h"
#include "sample_formula_tables.h"

namespace rowvane {
namespace {

class Calculated : public testing::Test {
 protected:
  Calculated() {
    table_ =
        add_sample_table(database_, "", "lines",
                         {sample_field("Price", FieldType::kNumber), sample_field("Name", FieldType::kText)});
    require(table_->insert_records(1, 3));
    for (uint32_t record = 1; record <= 3; ++record) {
      require(table_->set_value(RecordNumber(record), 0, 10.0 * record));
      require(table_->set_value(RecordNumber(record), 1, "name " + std::to_string(record)));
    }
  }
  ~Calculated() override { database_.set_hooks(nullptr); }

  void attach() { database_.set_hooks(&hooks_); }
  void add(const std::string& name, FieldType type, const std::string& formula, CWorkSheet* table = nullptr) {
    CWorkSheet& target = table != nullptr ? *table : *table_;
    Field field = sample_field(name, type);
    field.formula = formula;
    require(target.insert_field(target.field_count(), field));
  }
  std::string text(const std::string& field, RecordNumber record, CWorkSheet* table = nullptr) {
    const CWorkSheet& source = table != nullptr ? *table : *table_;
    return source.value_text(record, *source.find_field(field));
  }
  RecalculationResult run(const Recalculation& settings = {}) {
    return recalculate(database_, settings, formulas_);
  }

  const FormulaSettings formulas_;
  Database database_;
  FormulaHooks hooks_{database_, formulas_, Options()};
  CWorkSheet* table_;
};

TEST_F(Calculated, EachFieldBehindThoseItReads) {
  add("Gross", FieldType::kNumber, "=Net*1.2");
  add("Label", FieldType::kText, "=Name&\": \"&Gross");
  add("Net", FieldType::kNumber, "=Price-1");
  const auto result = run();
  EXPECT_EQ(result.failure, ErrorCode::kOk);
  EXPECT_EQ(result.fields, 3U);
  EXPECT_EQ(text("Gross", 2), "22.8");
  EXPECT_EQ(text("Label", 3), "name 3: 34.8");
  ASSERT_TRUE(database_.undo()) << "one step";
  EXPECT_EQ(text("Label", 3), "");
  EXPECT_EQ(text("Net", 3), "");
  ASSERT_TRUE(database_.redo());
  EXPECT_EQ(text("Label", 1), "name 1: 10.8");
  database_.mark_saved();
  EXPECT_EQ(run().fields, 3U);
  EXPECT_FALSE(database_.is_modified()) << "nothing was out of date";
}

TEST_F(Calculated, WhatFieldsStore) {
  add("NumberOfText", FieldType::kNumber, "=\"12\"");
  add("NumberOfWord", FieldType::kNumber, "=Name");
  add("NumberOfNothing", FieldType::kNumber, "=\"\"");
  add("TextOfNumber", FieldType::kText, "=0.1+0.2");
  add("TextOfError", FieldType::kText, "=1/0");
  add("NumberOfError", FieldType::kNumber, "=na()");
  add("Broken", FieldType::kText, "=1+");
  add("BrokenNumber", FieldType::kNumber, "=(");
  add("First", FieldType::kNumber, "={7,8}");
  add("Long", FieldType::kText,
      "=left(\"" + std::string(8100, 'x') + "\",9000)&\"" + std::string(100, 'y') + "\"");
  run();
  EXPECT_EQ(text("NumberOfText", 1), "12");
  EXPECT_EQ(text("NumberOfWord", 1), "#VALUE!");
  EXPECT_EQ(text("NumberOfNothing", 1), "");
  EXPECT_EQ(text("TextOfNumber", 1), "0.3");
  EXPECT_EQ(text("TextOfError", 2), "#VALUE!");
  EXPECT_EQ(text("NumberOfError", 2), "#N/A!");
  EXPECT_EQ(text("Broken", 3), "#SYNTAX!");
  EXPECT_EQ(text("BrokenNumber", 3), "#SYNTAX!");
  EXPECT_EQ(text("First", 3), "7");
  EXPECT_EQ(text("Long", 1).size(), 8169U);
}

TEST_F(Calculated, ErrorsTravelThroughCalculatedTexts) {
  add("Half", FieldType::kText, "=if(Price>15,Price/0,\"fine\")");
  add("Whole", FieldType::kText, "=Half&\"!\"");
  run();
  EXPECT_EQ(text("Whole", 1), "fine!");
  EXPECT_EQ(text("Whole", 2), "#VALUE!");
  EXPECT_EQ(table_->flags(1) & kOutcomeMask, 0);
  EXPECT_EQ(table_->flags(2) & kOutcomeMask, 32 << 1);
}

TEST_F(Calculated, CirclesAreRefused) {
  add("a", FieldType::kNumber, "=b+1");
  add("b", FieldType::kNumber, "=c+1");
  add("c", FieldType::kNumber, "=Price+a");
  const auto check = check_recalculation(database_, {}, formulas_);
  EXPECT_NE(check.refusal.text().find("a -> b -> c -> a"), std::string::npos) << check.refusal.text();
  attach();
  EXPECT_EQ(table_->set_value(1, 0, 5.0), ErrorCode::kOk) << "editing goes on";
  Field alone = table_->field(*table_->find_field("c"));
  alone.formula = "=c";
  require(table_->change_field(*table_->find_field("c"), alone));
  EXPECT_NE(check_recalculation(database_, {}, formulas_).refusal.text().find("c -> c"), std::string::npos);
}

TEST_F(Calculated, QuestionsAndWrongSettings) {
  Recalculation settings;
  settings.table = table_;
  settings.displayed = std::vector<uint32_t>{0};
  EXPECT_EQ(check_recalculation(database_, settings, formulas_).question,
            "Updating all formulas in all displayed records may take a long time. Continue?");
  EXPECT_EQ(update_mode_question(UpdateMode::kManual),
            "This will switch to the manual (F9) update mode for calculated fields.\n\nContinue?");
  EXPECT_EQ(update_mode_question(UpdateMode::kAutomatic),
            "This will switch to the automatic update mode for calculated fields.\n\nContinue?");
  settings.field = 99;
  EXPECT_FALSE(check_recalculation(database_, settings, formulas_).passes());
}

TEST_F(Calculated, DisplayedAndSkippedRecords) {
  add("Twice", FieldType::kNumber, "=Price*2");
  add("Again", FieldType::kText, "=Twice&\"\"");
  Recalculation settings;
  settings.table = table_;
  settings.displayed = std::vector<uint32_t>{0, 2};
  recalculate(database_, settings, formulas_);
  EXPECT_EQ(text("Twice", 1), "20");
  EXPECT_EQ(text("Twice", 2), "");
  EXPECT_EQ(text("Again", 3), "60");
  TableData data = table_->data();
  data.flags = {0, kSkippedFlag, 0};
  auto copy = std::make_unique<CWorkSheet>("skipping", std::move(data));
  CWorkSheet* skipping = copy.get();
  require(database_.add_table(database_.root(), copy));
  require(skipping->set_value(3, 0, 100.0));
  run();
  EXPECT_EQ(text("Twice", 2, skipping), "") << "a skipped record keeps its value";
  EXPECT_EQ(text("Again", 2, skipping), "");
  EXPECT_EQ(text("Again", 3, skipping), "200");
}

class StopAtOnce final : public Progress {
 public:
  bool cancelled() const override { return true; }
};

TEST_F(Calculated, CancelledChangesNothing) {
  add("Twice", FieldType::kNumber, "=Price*2");
  database_.mark_saved();
  StopAtOnce progress;
  const auto result = recalculate(database_, {}, formulas_, progress);
  EXPECT_TRUE(result.cancelled);
  EXPECT_EQ(text("Twice", 1), "");
  EXPECT_FALSE(database_.is_modified());
}

TEST_F(Calculated, AutomaticModeFollowsEdits) {
  attach();
  add("Twice", FieldType::kNumber, "=Price*2");
  EXPECT_EQ(text("Twice", 2), "40") << "a new formula is worked out";
  add("Share", FieldType::kNumber, "=Price/sum(lines!Price)");
  add("Four", FieldType::kNumber, "=Twice*2");
  require(table_->set_value(1, 0, 40.0));
  EXPECT_EQ(text("Four", 1), "160");
  EXPECT_EQ(text("Share", 2), number_to_text(20.0 / 90)) << "what reads all records follows in all of them";
  ASSERT_TRUE(database_.undo());
  EXPECT_EQ(text("Price", 1), "10");
  EXPECT_EQ(text("Four", 1), "40") << "the results belong to the edit's step";
  require(table_->insert_records(4, 1));
  EXPECT_EQ(text("Twice", 4), "0");
  const uint32_t first = 0;
  require(table_->delete_records({&first, 1}));
  EXPECT_EQ(text("Share", 1), number_to_text(20.0 / 50));
  Field changed = table_->field(*table_->find_field("Twice"));
  changed.formula = "=Price*3";
  require(table_->change_field(*table_->find_field("Twice"), changed));
  EXPECT_EQ(text("Four", 1), "120");
}

TEST_F(Calculated, AutomaticModeFollowsCellsInAnyOrder) {
  attach();
  add("Twice", FieldType::kNumber, "=Price*2");
  add("Both", FieldType::kNumber, "=Twice+Price");
  Column prices = make_column(FieldType::kNumber);
  std::get<NumberColumn>(prices).cells.assign({300.0, 100.0});
  std::vector<RefusedValue> refused;
  require(table_->set_values(0, {2, 0}, prices, refused));
  EXPECT_EQ(text("Both", 1), "300");
  EXPECT_EQ(text("Both", 2), "60");
  EXPECT_EQ(text("Both", 3), "900");
}

TEST_F(Calculated, AutomaticModeFollowsColumnsThatAreReplaced) {
  attach();
  add("Twice", FieldType::kNumber, "=Price*2");
  add("Four", FieldType::kNumber, "=Twice*2");
  Column prices = table_->column(0);
  for (double& price : std::get<NumberColumn>(prices).cells) price += 1;
  require(table_->replace_column(0, table_->field(0), prices));
  EXPECT_EQ(text("Four", 1), "44");
  EXPECT_EQ(text("Four", 3), "124");
  ASSERT_TRUE(database_.undo());
  EXPECT_EQ(text("Four", 1), "40") << "one step";
}

TEST_F(Calculated, EncryptedFieldsReachWhatReadsThem) {
  attach();
  add("Twice", FieldType::kNumber, "=Price*2");
  add("Sum", FieldType::kNumber, "=sum(lines!Price)");
  Field encrypted = table_->field(0);
  encrypted.type = FieldType::kText;
  encrypted.encrypted = true;
  Column sealed = make_column(FieldType::kText);
  resize_column(sealed, 3);
  require(table_->replace_column(0, encrypted, sealed));
  EXPECT_EQ(text("Twice", 1), "#REF!");
  EXPECT_EQ(text("Sum", 2), "#REF!");
  ASSERT_TRUE(database_.undo());
  EXPECT_EQ(text("Twice", 1), "20");
  EXPECT_EQ(text("Sum", 2), "60");
}

TEST_F(Calculated, DeletedAndNewFieldsReachWhatNamesThem) {
  attach();
  add("Total", FieldType::kNumber, "=Price*Amount");
  EXPECT_EQ(text("Total", 2), "#NAME?");
  add("Amount", FieldType::kNumber, "=2");
  EXPECT_EQ(text("Total", 2), "40");
  require(table_->delete_field(0));
  EXPECT_EQ(text("Total", 2), "#NAME?");
  ASSERT_TRUE(database_.undo()) << "one step";
  EXPECT_EQ(text("Total", 2), "40");
  CWorkSheet* totals =
      add_sample_table(database_, "sums", "totals", {sample_field("Dummy", FieldType::kText)});
  require(totals->insert_records(1, 1));
  add("All", FieldType::kNumber, "=sum(lines!Price)", totals);
  EXPECT_EQ(text("All", 1, totals), "60");
  require(database_.delete_table(*table_));
  EXPECT_EQ(text("All", 1, totals), "#REF!");
}

class Renamed : public Calculated {
 protected:
  std::string formula(const std::string& field) { return table_->field(*table_->find_field(field)).formula; }
};

TEST_F(Renamed, FormulasFollowFields) {
  add("Twice", FieldType::kNumber, "= price*2 + Price");
  add("Label", FieldType::kText, "=Name&\" Price \"&lines!Price&\"lines\"!\"price\"");
  Field validated = table_->field(0);
  validated.validation = "=Price>0";
  require(table_->change_field(0, validated));
  attach();
  run();
  const std::string twice = text("Twice", 2);
  require(table_->rename_field(0, "Net"));
  EXPECT_EQ(formula("Twice"), "= Net*2 + Net");
  EXPECT_EQ(formula("Label"), "=Name&\" Price \"&lines!Net&\"lines\"!\"Net\"");
  EXPECT_EQ(table_->field(0).validation, "=Net>0");
  EXPECT_EQ(text("Twice", 2), twice);
  ASSERT_TRUE(database_.undo()) << "one step";
  EXPECT_EQ(table_->field(0).name, "Price");
  EXPECT_EQ(formula("Twice"), "= price*2 + Price");
}

TEST_F(Renamed, NamesThatNeedQuotes) {
  attach();
  add("Less", FieldType::kNumber, "=Price-2");
  add("Sum", FieldType::kNumber, "=sum(lines!Price)");
  add("net-2", FieldType::kNumber, "");
  const std::pair<const char*, const char*> names[] = {
      {"Unit price", "=Unit price-2"}, {"true", "=true-2"},   {"a \"b\"", "=a \"b\"-2"},
      {"Net", "=$\"Net\"-2"},          {"Price", "=Price-2"},
  };
  for (const auto& [name, expected] : names) {
    require(table_->rename_field(0, name));
    EXPECT_EQ(formula("Less"), expected);
    run();
    EXPECT_EQ(text("Less", 1), "8") << name;
    EXPECT_EQ(text("Sum", 1), "60") << name;
  }
  require(table_->rename_field(0, "Unit price"));
  EXPECT_EQ(formula("Sum"), "=sum(lines!\"Unit price\")");
}

TEST_F(Renamed, FormulasFollowTablesAndFolders) {
  attach();
  add("Sum", FieldType::kNumber, "=sum(lines!Price)+sum('lines'!Price)");
  EXPECT_EQ(text("Sum", 1), "120");
  require(database_.rename_table(*table_, "items"));
  EXPECT_EQ(formula("Sum"), "=sum(items!Price)+sum(\"items\"!Price)");
  require(database_.rename_table(*table_, "Name"));
  EXPECT_EQ(formula("Sum"), "=sum(\"Name\"!Price)+sum(\"Name\"!Price)") << "a field has this name, too";
  Folder* folder = nullptr;
  require(database_.add_folder(database_.root(), "old", &folder));
  require(database_.move_table(*table_, *folder));
  require(database_.rename_folder(*folder, "past"));
  EXPECT_EQ(formula("Sum"), "=sum(\"past/Name\"!Price)+sum(\"past/Name\"!Price)");
  run();
  EXPECT_EQ(text("Sum", 1), "120");
}

TEST_F(Renamed, FormulasThatWouldGetTooLongStay) {
  std::string terms = "=Price";
  while (terms.size() < 8000) terms += "+Price";
  add("Long", FieldType::kNumber, terms);
  attach();
  require(table_->rename_field(0, "A much longer price"));
  EXPECT_EQ(formula("Long"), terms);
}

TEST_F(Calculated, ManualModeWaits) {
  attach();
  hooks_.set_update_mode(UpdateMode::kManual);
  add("Twice", FieldType::kNumber, "=Price*2");
  EXPECT_EQ(text("Twice", 1), "");
  run();
  require(table_->set_value(1, 0, 1.0));
  EXPECT_EQ(text("Twice", 1), "20");
  run();
  EXPECT_EQ(text("Twice", 1), "2");
}

TEST_F(Calculated, AcrossTables) {
  CWorkSheet* totals =
      add_sample_table(database_, "sums", "totals", {sample_field("Dummy", FieldType::kText)});
  require(totals->insert_records(1, 1));
  attach();
  // "Total" is a field of both tables: naming it behind a table is no circle.
  add("Total", FieldType::kNumber, "=sum(lines!Total)", totals);
  add("Total", FieldType::kNumber, "=Price*2");
  EXPECT_EQ(check_recalculation(database_, {}, formulas_).refusal, "");
  EXPECT_EQ(text("Total", 1, totals), "120");
  require(table_->set_value(3, 0, 31.0));
  EXPECT_EQ(text("Total", 1, totals), "122");
}

TEST_F(Calculated, Validation) {
  attach();
  Field field = table_->field(0);
  field.validation = "=if(isblank(Price),1,(Price>0)*(Price<100))";
  require(table_->change_field(0, field));
  EXPECT_EQ(table_->set_value(1, 0, 50.0), ErrorCode::kOk);
  EXPECT_EQ(table_->set_value(1, 0, 100.0), ErrorCode::kValidation);
  EXPECT_EQ(table_->set_value(1, 0, {}), ErrorCode::kOk);
  EXPECT_EQ(text("Price", 1), "");
  field = table_->field(1);
  field.validation = "=left(Name,4)=\"name\"";
  require(table_->change_field(1, field));
  EXPECT_EQ(table_->set_value(1, 1, "nobody"), ErrorCode::kValidation);
  EXPECT_EQ(table_->set_value(1, 1, "Names"), ErrorCode::kOk);
  field.validation = "=1/0";
  require(table_->change_field(1, field));
  EXPECT_EQ(table_->set_value(1, 1, "name"), ErrorCode::kValidation);
}

TEST_F(Calculated, TextsOfManyThreads) {
  CWorkSheet* many = add_sample_table(
      database_, "", "many", {sample_field("n", FieldType::kNumber), sample_field("t", FieldType::kText)});
  require(many->insert_records(1, 50'000));
  Column numbers = many->column(0);
  for (uint32_t i = 0; i < 50'000; ++i) std::get<NumberColumn>(numbers).cells[i] = i;
  require(many->replace_column(0, many->field(0), std::move(numbers)));
  add("Different", FieldType::kText, "=\"no \"&n", many);
  add("Few", FieldType::kText, "=if(n>25000,\"high\",\"low\")", many);
  add("Mixed", FieldType::kText, "=left(n,2)&Few", many);
  Recalculation settings;
  for (const int threads : {1, 2, 5, 16}) {
    settings.threads = threads;
    ASSERT_EQ(run(settings).fields, 3U);
    for (const RecordNumber record : std::vector<RecordNumber>{1, 25'001, 25'002, 31'234, 50'000}) {
      const std::string position = std::to_string(record.position());
      const char* few = record > 25'001 ? "high" : "low";
      EXPECT_EQ(text("Different", record, many), "no " + position);
      EXPECT_EQ(text("Few", record, many), few);
      EXPECT_EQ(text("Mixed", record, many), position.substr(0, 2) + few);
    }
    ASSERT_TRUE(database_.undo());
  }
}

TEST(FormulaText, EntryIsCut) {
  const std::string longest = "=" + std::string(8164, '1');
  EXPECT_EQ(read_formula_entry(longest).text, longest);
  EXPECT_EQ(read_formula_entry(longest).warning, "");
  EXPECT_EQ(read_formula_entry(longest + "2").text, longest);
  EXPECT_EQ(read_formula_entry(longest + "2").warning, texts::kEntryTruncated);
  EXPECT_EQ(read_formula_entry(longest.substr(1) + "€").text, longest.substr(1)) << "no character is halved";
}

}  // namespace
}  // namespace rowvane

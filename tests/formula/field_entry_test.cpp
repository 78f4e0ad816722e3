#include "formula/fields/field_entry.h"

#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "formula/fields/formula_hooks.h"
#include "sample_formula_tables.h"

namespace rowvane {
namespace {

class FieldEntryTest : public testing::Test {
 protected:
  FieldEntryTest() {
    table =
        add_sample_table(database, "", "lines",
                         {sample_field("Price", FieldType::kNumber), sample_field("Name", FieldType::kText)});
    require(table->insert_records(1, 2));
    require(table->set_value(1, 0, 10.0));
    require(table->set_value(1, 1, std::string("7")));
    require(table->set_value(2, 1, std::string("Lamp")));
    database.undo_log().clear();
    database.set_hooks(&hooks);
  }
  ~FieldEntryTest() override { database.set_hooks(nullptr); }

  FieldEntry entry_of(size_t index) const {
    FieldEntry entry;
    entry.index = index;
    entry.field = table->field(index);
    return entry;
  }
  Check check(const FieldEntry& entry) const { return check_field_entry(*table, entry, formulas); }
  Outcome apply(const FieldEntry& entry) {
    EXPECT_EQ(check(entry).refusal, "");
    return apply_field_entry(*table, entry, formulas);
  }

  const FormulaSettings formulas;
  Database database;
  FormulaHooks hooks{database, formulas, Options()};
  CWorkSheet* table;
};

TEST_F(FieldEntryTest, ChecksEachPart) {
  struct Wrong {
    FieldPart part;
    UserText refusal;
    void (*change)(Field&);
  };
  const Wrong all[] = {
      {FieldPart::kName, MessageId::kFieldNameNeedsLetter, [](Field& f) { f.name = "1st"; }},
      {FieldPart::kName, MessageId::kFieldNameExists, [](Field& f) { f.name = "NAME"; }},
      {FieldPart::kType, texts::kNoConversionToFiles, [](Field& f) { f.type = FieldType::kFiles; }},
      {FieldPart::kFormat, "Only Number fields have a display format.",
       [](Field& f) { f.type = FieldType::kText, f.format = "0.00"; }},
      {FieldPart::kFormula, texts::kInvalidFormula, [](Field& f) { f.formula = "=1+"; }},
      {FieldPart::kFormula, texts::kInvalidFormula,
       [](Field& f) { f.formula = "=\"" + std::string(kMaxBufferBytes, 'x') + "\""; }},
      {FieldPart::kFormula, "Only Text and Number fields can be calculated.",
       [](Field& f) { f.type = FieldType::kLongText, f.formula = "=1"; }},
      {FieldPart::kValidation, texts::kInvalidFormula, [](Field& f) { f.validation = "=("; }},
      {FieldPart::kDefaultValue, ErrorCode::kFieldTypeMismatch, [](Field& f) { f.default_value = "ten"; }},
      {FieldPart::kDropDownList, "The database has no drop-down list of this name.",
       [](Field& f) { f.drop_down_list = "Cities"; }},
  };
  for (const Wrong& wrong : all) {
    FieldEntry entry = entry_of(0);
    wrong.change(entry.field);
    EXPECT_EQ(check(entry).refusal, wrong.refusal) << wrong.refusal.text();
    EXPECT_EQ(wrong_field_part(*table, entry, formulas), wrong.part) << wrong.refusal.text();
  }
  FieldEntry bad_format = entry_of(0);
  bad_format.field.format = "[";
  EXPECT_EQ(wrong_field_part(*table, bad_format, formulas), FieldPart::kFormat);
}

TEST_F(FieldEntryTest, ChangesEverythingAsOneStep) {
  FieldEntry entry = entry_of(0);
  entry.region = platform::regional_settings_of("de_DE");
  entry.field.name = "Cost";
  entry.field.type = FieldType::kText;
  entry.field.default_value = "1,5";
  entry.field.validation = "=Price<>\"x\"";
  entry.field.hidden = true;
  EXPECT_EQ(apply(entry).failure, ErrorCode::kOk);
  EXPECT_EQ(table->field(0).name, "Cost");
  EXPECT_EQ(table->field(0).validation, "=Cost<>\"x\"");
  EXPECT_EQ(table->value_text(1, 0), "10");
  ASSERT_TRUE(database.undo());
  EXPECT_EQ(table->field(0), sample_field("Price", FieldType::kNumber));
  EXPECT_FALSE(database.undo());
}

TEST_F(FieldEntryTest, StoresDefaultsOfNumbersAsNumbers) {
  FieldEntry entry;
  entry.before = 1;
  entry.field = sample_field("Due", FieldType::kNumber);
  entry.region = platform::regional_settings_of("de_DE");
  entry.field.default_value = "31.12.2024";
  EXPECT_EQ(apply(entry).failure, ErrorCode::kOk);
  EXPECT_EQ(table->field(1).default_value, "45657");
  entry = entry_of(1);
  entry.field.default_value = "#data!";
  EXPECT_EQ(apply(entry).failure, ErrorCode::kOk);
  EXPECT_EQ(table->field(1).default_value, "#DATA!");
  EXPECT_EQ(table->field(2).name, "Name");
}

TEST_F(FieldEntryTest, TellsWhatAConversionLoses) {
  FieldEntry entry = entry_of(1);
  entry.field.type = FieldType::kNumber;
  EXPECT_EQ(find_entry_loss(*table, entry).examples, std::vector<std::string>{"Lamp"});
  FieldEntry calculated = entry;
  calculated.field.formula = "=Price";
  EXPECT_EQ(find_entry_loss(*table, calculated).check, Check()) << "the formula gives the values anew";
  EXPECT_EQ(find_entry_loss(*table, FieldEntry()).check, Check()) << "a new field";
  const Outcome result = apply(entry);
  EXPECT_EQ(result.notices, std::vector<UserText>{MessageId::kTextNotNumeric});
  EXPECT_EQ(table->field(1).type, FieldType::kNumber);
  EXPECT_EQ(table->value_text(1, 1), "7");
  EXPECT_EQ(table->value_text(2, 1), "");
}

TEST_F(FieldEntryTest, RefusesFormulasThatNeedEachOther) {
  FieldEntry entry = entry_of(0);
  entry.field.formula = "=len(Name)";
  EXPECT_TRUE(apply(entry).is_done());
  EXPECT_EQ(table->value_text(2, 0), "4");
  FieldEntry other = entry_of(1);
  other.field.formula = "=Price&\"!\"";
  const Field before = table->field(1);
  EXPECT_FALSE(apply(other).is_done());
  EXPECT_EQ(table->field(1), before);
  EXPECT_EQ(table->value_text(2, 1), "Lamp");
}

TEST_F(FieldEntryTest, LeavesEncryptedFieldsTheirTypes) {
  Field encrypted = table->field(1);
  encrypted.encrypted = true;
  Column cells = make_column(FieldType::kText);
  resize_column(cells, 2);
  require(table->replace_column(1, encrypted, cells));
  FieldEntry entry = entry_of(1);
  entry.field.type = FieldType::kNumber;
  EXPECT_EQ(check(entry).refusal, ErrorCode::kEncryptedField);
  entry = entry_of(1);
  entry.field.name = "Hidden name";
  EXPECT_EQ(apply(entry).failure, ErrorCode::kOk);
  EXPECT_TRUE(table->field(1).encrypted);
}

TEST(StoredFormula, BeginsWithAnEqualSign) {
  EXPECT_EQ(stored_formula("  1+2\n"), "=1+2");
  EXPECT_EQ(stored_formula("=1"), "=1");
  EXPECT_EQ(stored_formula("+1"), "+1");
  EXPECT_EQ(stored_formula(" \n"), "");
}

}  // namespace
}  // namespace rowvane

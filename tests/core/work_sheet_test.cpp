#include "core/table/work_sheet.h"

#include <limits>

#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "core/table/field_hooks.h"
#include "sample_tables.h"

namespace rowvane {
namespace {

constexpr size_t kText = 0;
constexpr size_t kNumber = 1;
constexpr size_t kLong = 2;
constexpr size_t kFiles = 3;

class WorkSheet : public testing::Test {
 protected:
  WorkSheet() { EXPECT_EQ(table.insert_records(1, 3), ErrorCode::kOk); }

  std::string text_at(RecordNumber record, size_t field) const { return table.value_text(record, field); }

  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "orders");
};

TEST_F(WorkSheet, KeepsFieldNamesUniqueAndValid) {
  EXPECT_EQ(table.insert_field(0, make_field("TEXT")), ErrorCode::kNameNotUnique);
  EXPECT_EQ(table.rename_field(kNumber, "Text"), ErrorCode::kNameNotUnique);
  EXPECT_EQ(table.rename_field(kText, "TEXT"), ErrorCode::kOk);
  EXPECT_EQ(table.insert_field(0, make_field("1st")), ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(table.rename_field(kText, ""), ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(table.rename_field(99, "other"), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table.insert_field(6, make_field("other")), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table.insert_field(5, make_field("Größe")), ErrorCode::kOk);
  EXPECT_EQ(table.find_field("GRÖSSE"), 5u);
  EXPECT_EQ(table.find_field("size"), std::nullopt);
}

TEST_F(WorkSheet, KeepsItsLastField) {
  while (table.field_count() > 1) ASSERT_EQ(table.delete_field(0), ErrorCode::kOk);
  EXPECT_EQ(table.delete_field(0), ErrorCode::kLastField);
  EXPECT_EQ(static_cast<int>(ErrorCode::kLastField), 130);
  EXPECT_EQ(table.field(0).name, "code");
}

TEST_F(WorkSheet, StoresManyValuesAsOneChangeAndLeavesOutWhatItRefuses) {
  TextColumn texts;
  for (const std::string& text : {std::string("a"), std::string(8170, 'x'), std::string("c")}) {
    texts.cells.push_back(texts.code_for(text));
  }
  std::vector<RefusedValue> refused;
  ASSERT_EQ(table.set_values(kText, {2, 0, 1}, texts, refused), ErrorCode::kOk);
  EXPECT_EQ(refused, (std::vector<RefusedValue>{{0, ErrorCode::kOutputTooLong}}));
  EXPECT_EQ(text_at(1, kText) + "|" + text_at(2, kText) + "|" + text_at(3, kText), "|c|a");
  ASSERT_TRUE(database.undo());
  EXPECT_EQ(text_at(1, kText) + "|" + text_at(2, kText) + "|" + text_at(3, kText), "||");
  EXPECT_EQ(table.set_values(kText, {0}, texts, refused), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table.set_values(kNumber, {0, 1, 2}, texts, refused), ErrorCode::kFieldTypeMismatch);
}

TEST(WorkSheetLimits, ARecordTakes64K) {
  std::vector<Field> fields;
  for (size_t i = 0; i < 16'384; ++i) {
    fields.push_back(make_field("f" + std::to_string(i), i % 2 == 0 ? FieldType::kText : FieldType::kCode));
  }
  CWorkSheet table("wide", fields);
  EXPECT_EQ(table.insert_field(0, make_field("one_more")), ErrorCode::kRecordSize);
  EXPECT_EQ(static_cast<int>(ErrorCode::kRecordSize), 100);
  EXPECT_EQ(table.delete_field(7), ErrorCode::kOk);
  EXPECT_EQ(table.insert_field(0, make_field("one_more")), ErrorCode::kOk);
  EXPECT_EQ(table.field_count(), 16'384u);
}

TEST(WorkSheetLimits, RecordsStopAtTheirMaximum) {
  Options options;
  options.max_records = 10;
  Database database("small", options);
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
  EXPECT_EQ(table.insert_records(1, 11), ErrorCode::kTooManyRecords);
  EXPECT_EQ(table.insert_records(1, std::numeric_limits<uint32_t>::max()), ErrorCode::kTooManyRecords);
  EXPECT_EQ(table.insert_records(1, 9), ErrorCode::kOk);
  EXPECT_EQ(table.insert_records(10, 2), ErrorCode::kTooManyRecords);
  EXPECT_EQ(table.insert_records(10, 1), ErrorCode::kOk);
  EXPECT_EQ(static_cast<int>(ErrorCode::kTooManyRecords), 42);
  EXPECT_EQ(Database().max_records(), 12'582'912u);
}

TEST_F(WorkSheet, AddressesOnlyItsOwnCells) {
  EXPECT_EQ(table.set_value(0, kText, std::string("a")), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table.set_value(4, kText, std::string("a")), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table.set_value(1, 5, std::string("a")), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table.insert_records(0, 1), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table.insert_records(5, 1), ErrorCode::kInvalidCacheIndex);
  for (const std::vector<uint32_t>& positions : {std::vector<uint32_t>{3}, {1, 0}, {1, 1}}) {
    EXPECT_EQ(table.delete_records(positions), ErrorCode::kInvalidCacheIndex);
  }
  EXPECT_EQ(table.record_count(), 3u);
}

TEST_F(WorkSheet, ChecksTexts) {
  std::string longest;
  for (int i = 0; i < 8169; ++i) longest += "€";
  EXPECT_EQ(table.set_value(1, kText, longest), ErrorCode::kOk);
  EXPECT_EQ(text_at(1, kText), longest);
  EXPECT_EQ(table.set_value(1, kText, longest + "a"), ErrorCode::kOutputTooLong);
  EXPECT_EQ(table.set_value(1, kText, std::string("\xE9")), ErrorCode::kInvalidUtf8);
  EXPECT_EQ(text_at(1, kText), longest);
}

TEST_F(WorkSheet, ChecksKindsAndNumbers) {
  EXPECT_EQ(table.set_value(1, kText, 1.0), ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(table.set_value(1, kNumber, std::string("1")), ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(table.set_value(1, kLong, std::string("1")), ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(table.set_value(1, kNumber, std::numeric_limits<double>::infinity()),
            ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(table.set_value(1, kNumber, 0.25), ErrorCode::kOk);
  EXPECT_EQ(table.value_text(1, kNumber, {",", "."}), "0,25");
  EXPECT_EQ(table.set_value(1, kNumber, error_number(FormulaError::kRef)), ErrorCode::kOk);
  EXPECT_EQ(text_at(1, kNumber), "#REF!");
  EXPECT_EQ(table.set_value(1, kNumber, CellValue()), ErrorCode::kOk);
  EXPECT_TRUE(is_empty(table.value(1, kNumber)));
}

TEST_F(WorkSheet, ChecksFiles) {
  FileList files;
  for (int i = 0; i < 255; ++i) files.push_back(make_file("picture" + std::to_string(i) + ".png"));
  EXPECT_EQ(table.set_value(1, kFiles, files), ErrorCode::kOk);
  files.push_back(make_file("one more.png"));
  EXPECT_EQ(table.set_value(1, kFiles, files), ErrorCode::kTooManyContainerObjects);
  EXPECT_EQ(static_cast<int>(ErrorCode::kTooManyContainerObjects), 12);
  for (const char* name : {"", ".", "..", "a/b", "a\\b"}) {
    EXPECT_EQ(table.set_value(1, kFiles, FileList{make_file(name)}), ErrorCode::kNoFileName) << name;
  }
  EXPECT_EQ(table.set_value(1, kFiles, FileList{make_file("a.txt"), make_file("A.TXT")}),
            ErrorCode::kNameNotUnique);
  EXPECT_EQ(std::get<FileList>(table.value(1, kFiles)).size(), 255u);
  EXPECT_EQ(table.set_value(2, kFiles, FileList{make_file("a"), {"b", "/home/b", {}}}), ErrorCode::kOk);
  EXPECT_EQ(text_at(2, kFiles), "a; b");
}

class BrokenSource final : public ContentSource {
 public:
  ErrorCode read(std::string& out) const override {
    out = "half of it";
    return ErrorCode::kFileRead;
  }
};

TEST_F(WorkSheet, ReadsLongTexts) {
  EXPECT_EQ(table.set_value(1, kLong, Content::of("long")), ErrorCode::kOk);
  EXPECT_EQ(text_at(1, kLong), "long");
  EXPECT_EQ(table.set_value(1, kLong, Content::stored(std::make_shared<BrokenSource>(), 20)), ErrorCode::kOk);
  EXPECT_EQ(text_at(1, kLong), "");
  EXPECT_EQ(table.set_value(1, kLong, Content::of("")), ErrorCode::kOk);
  EXPECT_TRUE(is_empty(table.value(1, kLong)));
}

TEST_F(WorkSheet, GuardsEncryptedFields) {
  Field secret = table.field(kText);
  secret.encrypted = true;
  ASSERT_EQ(table.replace_column(kText, secret, table.column(kText)), ErrorCode::kOk);
  EXPECT_EQ(table.set_value(1, kText, std::string("a")), ErrorCode::kEncryptedField);
  EXPECT_EQ(table.set_value(1, kNumber, 1.0), ErrorCode::kOk);
}

class AcceptsPositive final : public FieldHooks {
 public:
  bool accepts(const CWorkSheet&, RecordNumber, size_t, const CellValue& value) const override {
    const auto* number = std::get_if<double>(&value);
    return number != nullptr && *number > 0;
  }
  std::string format_number(const std::string&, double) const override { return {}; }
};

TEST_F(WorkSheet, AsksTheValidationFormula) {
  const AcceptsPositive hooks;
  database.set_hooks(&hooks);
  EXPECT_EQ(table.set_value(1, kNumber, -1.0), ErrorCode::kOk);
  Field checked = table.field(kNumber);
  checked.validation = "number>0";
  ASSERT_EQ(table.change_field(kNumber, checked), ErrorCode::kOk);
  EXPECT_EQ(table.set_value(1, kNumber, -2.0), ErrorCode::kValidation);
  EXPECT_EQ(table.set_value(1, kNumber, 2.0), ErrorCode::kOk);
  EXPECT_EQ(text_at(1, kNumber), "2");
}

TEST_F(WorkSheet, GivesNewRecordsTheirDefaults) {
  const std::pair<size_t, std::string> defaults[] = {{kText, "new"}, {kNumber, "1.5"}, {kLong, "note"}};
  for (const auto& [index, text] : defaults) {
    Field field = table.field(index);
    field.default_value = text;
    ASSERT_EQ(table.change_field(index, field), ErrorCode::kOk);
  }
  ASSERT_EQ(table.insert_records(2, 2), ErrorCode::kOk);
  for (RecordNumber record = 2; record <= 3; ++record) {
    for (const auto& [index, text] : defaults) EXPECT_EQ(text_at(record, index), text);
  }
  EXPECT_EQ(text_at(1, kText) + text_at(4, kText), "");
  for (const std::string& unfit : {std::string(70'000, 'x'), std::string("\xE9")}) {
    Field field = table.field(kText);
    field.default_value = unfit;
    ASSERT_EQ(table.change_field(kText, field), ErrorCode::kOk);
    ASSERT_EQ(table.insert_records(1, 1), ErrorCode::kOk);
    EXPECT_TRUE(is_empty(table.value(1, kText)));
  }
}

TEST_F(WorkSheet, ChangesFieldsButNotTheirNameOrType) {
  Field other = make_field("other", FieldType::kCode);
  other.format = "0.00";
  ASSERT_EQ(table.change_field(kNumber, other), ErrorCode::kOk);
  EXPECT_EQ(table.field(kNumber).name, "number");
  EXPECT_EQ(table.field(kNumber).type, FieldType::kNumber);
  EXPECT_EQ(table.field(kNumber).format, "0.00");
  Column three = make_column(FieldType::kNumber);
  resize_column(three, 3);
  EXPECT_EQ(table.replace_column(kText, make_field("x", FieldType::kText), three),
            ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(table.replace_column(kText, make_field("x", FieldType::kNumber), make_column(FieldType::kNumber)),
            ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table.replace_column(kText, make_field("x", FieldType::kNumber), three), ErrorCode::kOk);
  EXPECT_EQ(field_list_text(table.field(kText)), "text  [Number]");
}

TEST_F(WorkSheet, FlagsRecords) {
  DatabaseSettings settings;
  settings.record_flag_types = {{"red", 0xFF0000}, {"green", 0x00FF00}};
  ASSERT_EQ(database.change_settings(settings), ErrorCode::kOk);
  EXPECT_EQ(table.set_flag_type(std::vector<uint32_t>{0}, 3), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table.set_flag_type(std::vector<uint32_t>{3}, 1), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table.set_flag_type({}, 1), ErrorCode::kOk);
  EXPECT_TRUE(table.data().flags.empty());
  EXPECT_EQ(table.set_flag_type(std::vector<uint32_t>{2, 0, 2}, 2), ErrorCode::kOk);
  EXPECT_EQ(table.flag_type(1), 2);
  EXPECT_EQ(table.flag_type(2), 0);
  EXPECT_EQ(table.flag_type(3), 2);
  ASSERT_EQ(table.insert_records(3, 1), ErrorCode::kOk);
  EXPECT_EQ(table.flag_type(3), 0);
  EXPECT_EQ(table.flag_type(4), 2);
  for (int i = 0; i < 2; ++i) database.undo();
  EXPECT_EQ(table.flag_type(1) + table.flag_type(3), 0);
}

TEST(DefaultValue, IsReadAsItIsStored) {
  const auto text_of = [](FieldType type, std::string text) {
    Field field = make_field("field", type);
    field.default_value = std::move(text);
    CWorkSheet records("t", std::vector{field});
    EXPECT_EQ(records.insert_records(1, 1), ErrorCode::kOk);
    return records.value_text(1, 0);
  };
  EXPECT_EQ(text_of(FieldType::kNumber, "1.5"), "1.5");
  EXPECT_EQ(text_of(FieldType::kNumber, "#ref!"), "#REF!");
  EXPECT_EQ(text_of(FieldType::kCode, "abc"), "abc");
  for (const char* text : {"", "abc", "1,5"}) EXPECT_EQ(text_of(FieldType::kNumber, text), "") << text;
  EXPECT_EQ(text_of(FieldType::kText, std::string(kMaxTextCharacters + 1, 'x')), "");
  EXPECT_EQ(text_of(FieldType::kFiles, "abc"), "");
}

TEST(TextEntry, WarnsAndCuts) {
  const auto entry = [](size_t count, const char* character) {
    std::string text;
    for (size_t i = 0; i < count; ++i) text += character;
    return read_text_entry(text);
  };
  EXPECT_EQ(entry(8163, "a").warning, "");
  EXPECT_EQ(entry(8164, "a").warning, texts::kEntryTruncated);
  EXPECT_EQ(entry(8169, "a").text.size(), 8169u);
  EXPECT_EQ(entry(8170, "a").text.size(), 8169u);
  EXPECT_EQ(entry(2730, "€").warning, "");
  EXPECT_EQ(entry(2731, "€").warning, texts::kEntryTruncated);
  EXPECT_EQ(entry(2731, "€").text.size(), 8190u);
}

}  // namespace
}  // namespace rowvane

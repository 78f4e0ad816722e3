#include "formula/fields/field_conversion.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "core/sample_tables.h"
#include "formula/typed_texts.h"

namespace rowvane {
namespace {

constexpr size_t kTextField = 0;
constexpr size_t kNumberField = 1;
constexpr size_t kLongField = 2;
constexpr size_t kFilesField = 3;

const std::string kCutText =
    "The conversion\n\nLong Text -> Text\n\nwas completed but some text data\ncontaining more than 8169 "
    "characters was "
    "truncated.";

class Conversion : public testing::Test {
 protected:
  Conversion() { EXPECT_EQ(table.insert_records(1, 4), ErrorCode::kOk); }

  void store(size_t field, std::initializer_list<CellValue> values) {
    RecordNumber record = 1;
    for (const CellValue& value : values) {
      ASSERT_EQ(table.set_value(record, field, value), ErrorCode::kOk);
      ++record;
    }
  }

  using Region = platform::RegionalSettings;

  static FieldConversion conversion(size_t field, FieldType type, const Region& region = Region::generic()) {
    return {field, type, false, region};
  }
  Outcome convert(size_t field, FieldType type, const Region& region = Region::generic()) {
    const FieldConversion settings = conversion(field, type, region);
    EXPECT_EQ(check_conversion(table, settings).refusal, "");
    Outcome result = convert_field(table, settings);
    EXPECT_EQ(result.failure, ErrorCode::kOk);
    return result;
  }

  std::vector<std::string> texts(size_t field) const {
    std::vector<std::string> all;
    for (RecordNumber record = 1; record < table.end_record(); ++record)
      all.push_back(table.value_text(record, field));
    return all;
  }

  std::string refusal(size_t field, FieldType type) const {
    return check_conversion(table, conversion(field, type)).refusal.text();
  }

  using Texts = std::vector<std::string>;

  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
};

TEST_F(Conversion, TextsBecomeNumbers) {
  store(kTextField, {"1,5", "abc", "#DATA!", CellValue()});
  const auto result = convert(kTextField, FieldType::kNumber, platform::regional_settings_of("de_DE"));
  EXPECT_EQ(result.notices, std::vector<UserText>{MessageId::kTextNotNumeric});
  EXPECT_EQ(table.field(kTextField).type, FieldType::kNumber);
  EXPECT_EQ(texts(kTextField), (Texts{"1.5", "", "#DATA!", ""}));
  EXPECT_TRUE(is_empty(table.value(2, kTextField)));
  EXPECT_EQ(error_of_number(std::get<double>(table.value(3, kTextField))), FormulaError::kData);
  EXPECT_TRUE(database.undo());
  EXPECT_EQ(table.field(kTextField).type, FieldType::kText);
  EXPECT_EQ(texts(kTextField), (Texts{"1,5", "abc", "#DATA!", ""}));
}

// A long text is read alone, the texts of a pool on all processors.
TEST_F(Conversion, TextsBecomeWhatTheyWouldIfTheyWereTyped) {
  Texts numbers;
  ASSERT_EQ(table.insert_records(1, kTypedTexts.size() - 4), ErrorCode::kOk);
  for (const TypedText& typed : kTypedTexts) {
    numbers.emplace_back(typed.number);
    const RecordNumber record(static_cast<uint32_t>(numbers.size()));
    ASSERT_EQ(table.set_value(record, kTextField, std::string(typed.text)), ErrorCode::kOk);
    ASSERT_EQ(table.set_value(record, kLongField, Content::of(typed.text)), ErrorCode::kOk);
  }
  for (const size_t field : {kTextField, kLongField}) {
    const Texts before = texts(field);
    const auto refused = static_cast<uint64_t>(std::ranges::count(numbers, std::string()));
    EXPECT_EQ(find_conversion_loss(table, conversion(field, FieldType::kNumber)).values, refused);
    EXPECT_TRUE(convert(field, FieldType::kNumber).is_done());
    EXPECT_EQ(texts(field), numbers);
    ASSERT_TRUE(database.undo());
    EXPECT_EQ(texts(field), before);
  }
}

TEST_F(Conversion, DatesAndTimesComeBackThroughText) {
  struct Shown {
    const char* format;
    Texts texts;
  };
  const double moment = 45351 + 81015.0 / 86400;  // 22:30:15
  const Shown all[] = {
      {"dd/mm/yyyy", {"2024-02-29", "2024-02-29T22:30:15", "1899-12-30T06:00:00", "-1000000"}},
      {"yyyy-mm-dd hh:mm", {"2024-02-29", "2024-02-29T22:30:15", "1899-12-30T06:00:00", "-1000000"}},
      {"hh:mm", {"2024-02-29", "2024-02-29T22:30:15", "06:00:00", "-1000000"}},
      {"[h]:mm", {"1088424:00:00", "1088446:30:15", "06:00:00", "-1000000"}},
      {"0.00", {"45351", number_to_text(moment), "0.25", "-1000000"}},
      {"0%", {"45351", number_to_text(moment), "0.25", "-1000000"}},
  };
  store(kNumberField, {45351.0, moment, 0.25, -1'000'000.0});
  for (const Shown& shown : all) {
    Field field = table.field(kNumberField);
    field.format = shown.format;
    ASSERT_EQ(table.change_field(kNumberField, field), ErrorCode::kOk);
    const Texts numbers = texts(kNumberField);
    EXPECT_TRUE(convert(kNumberField, FieldType::kText).is_done());
    EXPECT_EQ(texts(kNumberField), shown.texts) << shown.format;
    EXPECT_TRUE(convert(kNumberField, FieldType::kNumber).notices.empty());
    EXPECT_EQ(texts(kNumberField), numbers) << shown.format;
    ASSERT_TRUE(database.undo() && database.undo());
  }
}

TEST_F(Conversion, CountsWhatWouldBeLost) {
  ASSERT_EQ(table.insert_records(1, 6), ErrorCode::kOk);
  const char* const words[] = {"n/a", "1", "two\nlines", "n/a", "2024-01-01", "c", "d", "e", "f", "n/a"};
  for (uint32_t i = 0; i < 10; ++i)
    ASSERT_EQ(table.set_value(record_number(i), kTextField, std::string(words[i])), ErrorCode::kOk);
  const uint64_t revision = table.revision();
  const ConversionLoss loss = find_conversion_loss(table, conversion(kTextField, FieldType::kNumber));
  EXPECT_EQ(loss.values, 8u);
  EXPECT_EQ(
      loss.check.question.text(),
      "8 values of the field \"text\" do not read as numbers, dates or times and would be lost:\n\"n/a\"\n"
      "\"two lines\"\n\"c\"\n\"d\"\n\"e\"\nConvert the field?");
  EXPECT_EQ(table.revision(), revision);
  EXPECT_EQ(find_conversion_loss(table, conversion(kTextField, FieldType::kCode)).check, Check());

  const std::string most(kMaxTextCharacters, 'x');
  store(kLongField, {Content::of(most), Content::of("y" + most)});
  EXPECT_EQ(find_conversion_loss(table, conversion(kLongField, FieldType::kText)).check.question.text(),
            "1 value of the field \"long\" has more than 8169 characters and would be cut:\n\"y" +
                most.substr(0, 59) + "...\"\nConvert the field?");
}

// More texts than are read between two reports, none of them twice in the pool.
TEST_F(Conversion, ReadsManyDifferentTexts) {
  constexpr uint32_t kManyRecords = 280'000;
  ASSERT_EQ(table.insert_records(1, kManyRecords - 4), ErrorCode::kOk);
  TextColumn column;
  for (uint32_t i = 0; i < kManyRecords; ++i)
    column.cells.push_back(column.code_for(std::to_string(i) + (i % 1000 == 999 ? " kg" : "")));
  ASSERT_EQ(table.replace_column(kTextField, table.field(kTextField), std::move(column)), ErrorCode::kOk);
  EXPECT_EQ(find_conversion_loss(table, conversion(kTextField, FieldType::kNumber)).values,
            kManyRecords / 1000);
  EXPECT_TRUE(convert(kTextField, FieldType::kNumber).is_done());
  const auto& numbers = std::get<NumberColumn>(table.column(kTextField)).cells;
  uint32_t wrong = 0;
  for (uint32_t i = 0; i < kManyRecords; ++i)
    wrong += i % 1000 == 999 ? !is_empty_number(numbers[i]) : numbers[i] != i;
  EXPECT_EQ(wrong, 0u);
}

TEST_F(Conversion, TextsThatNoRecordUsesDoNotCount) {
  store(kTextField, {"abc"});
  store(kTextField, {"5"});
  EXPECT_TRUE(convert(kTextField, FieldType::kNumber).notices.empty());
  EXPECT_EQ(texts(kTextField)[0], "5");
}

TEST_F(Conversion, NumbersComeBackThroughEveryTextType) {
  const Texts numbers = {"-1234.5", "1e+21", "#REF!", ""};
  store(kNumberField, {-1234.5, 1e21, error_number(FormulaError::kRef)});
  for (const FieldType type : {FieldType::kText, FieldType::kLongText, FieldType::kCode}) {
    EXPECT_TRUE(convert(kNumberField, type).notices.empty());
    EXPECT_EQ(texts(kNumberField), numbers);
    EXPECT_TRUE(is_empty(table.value(4, kNumberField)));
    EXPECT_TRUE(convert(kNumberField, FieldType::kNumber).notices.empty());
    EXPECT_EQ(texts(kNumberField), numbers);
  }
  EXPECT_TRUE(convert(kNumberField, FieldType::kText, platform::regional_settings_of("de_DE")).is_done());
  EXPECT_EQ(texts(kNumberField)[0], "-1234,5");
}

TEST_F(Conversion, LongTextsAreCutOnce) {
  std::string long_text;
  for (int i = 0; i < 9000; ++i) long_text += "é";
  store(kLongField, {Content::of(long_text), Content::of(long_text + "2"), Content::of("short")});
  EXPECT_EQ(convert(kLongField, FieldType::kText).notices, std::vector<UserText>{kCutText});
  EXPECT_EQ(texts(kLongField)[0], long_text.substr(0, 2 * 8169));
  EXPECT_EQ(texts(kLongField)[2], "short");
  EXPECT_TRUE(convert(kLongField, FieldType::kCode).notices.empty());
  EXPECT_EQ(texts(kLongField)[1], long_text.substr(0, 2 * 8169));
}

TEST_F(Conversion, TextStaysUtf8) {
  store(kLongField, {Content::of("caf\xE9")});
  EXPECT_TRUE(convert(kLongField, FieldType::kText).notices.empty());
  EXPECT_EQ(texts(kLongField)[0], "café");
}

TEST_F(Conversion, LinksChangeWithoutTouchingTheValues) {
  store(kTextField, {"www"});
  EXPECT_EQ(convert_field(table, {kTextField, FieldType::kText, true, Region::generic()}).failure,
            ErrorCode::kOk);
  EXPECT_EQ(field_list_text(table.field(kTextField)), "text  [Text / Link]");
  EXPECT_EQ(texts(kTextField)[0], "www");
  EXPECT_EQ(convert_field(table, {kTextField, FieldType::kLongText, true, Region::generic()}).failure,
            ErrorCode::kOk);
  EXPECT_FALSE(table.field(kTextField).link);
}

TEST_F(Conversion, FilesAndShortValuesDoNotMix) {
  const std::string to_files =
      "Conversion from \"Text\" or \"Number\" to \"Images/Files\" is not possible.\nPlease convert to \"Long "
      "Text\" or "
      "\"Code\" first.";
  EXPECT_EQ(refusal(kTextField, FieldType::kFiles), to_files);
  EXPECT_EQ(refusal(kNumberField, FieldType::kFiles), to_files);
  for (const FieldType type : {FieldType::kText, FieldType::kNumber}) {
    EXPECT_TRUE(
        refusal(kFilesField, type).starts_with("Conversion from \"Images/Files\" to \"Text\" or \"Number\""));
  }
}

TEST_F(Conversion, LongTextsBecomeFilesAndComeBack) {
  store(kLongField, {Content::of("plain"), Content::of("{\\rtf1}"), CellValue(), Content::of("{urtf1}")});
  const FieldConversion settings = conversion(kLongField, FieldType::kFiles);
  EXPECT_EQ(check_conversion(table, settings).question, texts::kSaveCopyAndReload);
  EXPECT_TRUE(convert(kLongField, FieldType::kFiles).is_done());
  EXPECT_EQ(texts(kLongField), (Texts{"text.txt", "text.rtf", "", "text.rtf"}));
  EXPECT_TRUE(convert(kLongField, FieldType::kCode).is_done());
  EXPECT_EQ(texts(kLongField), (Texts{"plain", "{\\rtf1}", "", "{urtf1}"}));
}

TEST_F(Conversion, RefusesFilesThatAreNoSingleText) {
  const std::string unavailable =
      "Sorry, this type of conversion is not available.\n'Memo/Long Text' and 'Images/Files' fields can't be "
      "changed.\n";
  const FileList unfit[] = {
      {make_file("a"), make_file("b")}, {{"a", "/home/a", {}}}, {make_file("a", "\xFF\xD8")}};
  for (const FileList& files : unfit) {
    store(kFilesField, {FileList{make_file("fit.txt")}, files});
    EXPECT_EQ(refusal(kFilesField, FieldType::kLongText), unavailable);
  }
}

TEST_F(Conversion, RefusesMissingAndEncryptedFields) {
  EXPECT_EQ(refusal(9, FieldType::kText), error_text(ErrorCode::kInvalidCacheIndex));
  Field secret = table.field(kTextField);
  secret.encrypted = true;
  ASSERT_EQ(table.replace_column(kTextField, secret, table.column(kTextField)), ErrorCode::kOk);
  EXPECT_EQ(refusal(kTextField, FieldType::kNumber),
            "Encrypted fields can't be edited. You need to decrypt them first.");
}

class FailingSource final : public ContentSource {
 public:
  ErrorCode read(std::string&) const override { return ErrorCode::kZipCorrupted; }
};

TEST_F(Conversion, ChangesNothingWhenAContentCanNotBeRead) {
  store(kLongField,
        {Content::of("first"), Content::stored(std::make_shared<FailingSource>(), 5), Content::of("third")});
  NoticeCounter notices(database);
  const auto result = convert_field(table, conversion(kLongField, FieldType::kText));
  EXPECT_EQ(result.failure, ErrorCode::kZipCorrupted);
  EXPECT_EQ(table.field(kLongField).type, FieldType::kLongText);
  EXPECT_EQ(notices.notices, 0);
}

class Cancelled final : public Progress {
 public:
  bool cancelled() const override { return true; }
};

TEST_F(Conversion, ChangesNothingWhenCancelled) {
  store(kTextField, {"abc"});
  store(kNumberField, {1.5});
  Cancelled progress;
  for (const FieldConversion& settings :
       {conversion(kTextField, FieldType::kNumber), conversion(kNumberField, FieldType::kText)}) {
    const FieldType former = table.field(settings.field).type;
    const auto result = convert_field(table, settings, progress);
    EXPECT_EQ(result.status(), Status::kCancelled);
    EXPECT_TRUE(result.notices.empty());
    EXPECT_EQ(table.field(settings.field).type, former);
    const ConversionLoss loss = find_conversion_loss(table, settings, progress);
    EXPECT_EQ(loss.cancelled, settings.field == kTextField) << "a number is never lost";
    EXPECT_EQ(loss.check, Check());
  }
  EXPECT_EQ(texts(kTextField)[0] + texts(kNumberField)[0], "abc1.5");
}

}  // namespace
}  // namespace rowvane

#include "core/table/field_conversion.h"

#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "sample_tables.h"

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

  Outcome convert(size_t field, FieldType type, const NumberSeparators& separators = {}) {
    const FieldConversion settings{field, type, false, separators};
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
    return check_conversion(table, {field, type, false, {}}).refusal.text();
  }

  using Texts = std::vector<std::string>;

  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
};

TEST_F(Conversion, TextsBecomeNumbers) {
  store(kTextField, {"1,5", "abc", "#DATA!", CellValue()});
  const auto result = convert(kTextField, FieldType::kNumber, {",", "."});
  EXPECT_EQ(result.notices, std::vector<UserText>{MessageId::kTextNotNumeric});
  EXPECT_EQ(table.field(kTextField).type, FieldType::kNumber);
  EXPECT_EQ(texts(kTextField), (Texts{"1.5", "", "#DATA!", ""}));
  EXPECT_TRUE(is_empty(table.value(2, kTextField)));
  EXPECT_EQ(error_of_number(std::get<double>(table.value(3, kTextField))), FormulaError::kData);
  EXPECT_TRUE(database.undo());
  EXPECT_EQ(table.field(kTextField).type, FieldType::kText);
  EXPECT_EQ(texts(kTextField), (Texts{"1,5", "abc", "#DATA!", ""}));
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
  EXPECT_TRUE(convert(kNumberField, FieldType::kText, {",", "."}).is_done());
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
  EXPECT_EQ(convert_field(table, {kTextField, FieldType::kText, true, {}}).failure, ErrorCode::kOk);
  EXPECT_EQ(field_list_text(table.field(kTextField)), "text  [Text / Link]");
  EXPECT_EQ(texts(kTextField)[0], "www");
  EXPECT_EQ(convert_field(table, {kTextField, FieldType::kLongText, true, {}}).failure, ErrorCode::kOk);
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
  const FieldConversion settings{kLongField, FieldType::kFiles, false, {}};
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
  const auto result = convert_field(table, {kLongField, FieldType::kText, false, {}});
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
  for (const FieldConversion& settings : {FieldConversion{kTextField, FieldType::kNumber, false, {}},
                                          FieldConversion{kNumberField, FieldType::kText, false, {}}}) {
    const FieldType former = table.field(settings.field).type;
    const auto result = convert_field(table, settings, progress);
    EXPECT_EQ(result.status(), Status::kCancelled);
    EXPECT_TRUE(result.notices.empty());
    EXPECT_EQ(table.field(settings.field).type, former);
  }
  EXPECT_EQ(texts(kTextField)[0] + texts(kNumberField)[0], "abc1.5");
}

}  // namespace
}  // namespace rowvane

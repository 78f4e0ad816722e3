#include "core/field_conversion.h"

#include <gtest/gtest.h>

#include "core/messages.h"
#include "sample_tables.h"

namespace rowvane {
namespace {

constexpr size_t kText = 0;
constexpr size_t kNumber = 1;
constexpr size_t kLong = 2;
constexpr size_t kFiles = 3;

const std::string kCutText =
    "The conversion\n\nLong Text -> Text\n\nwas completed but some text data\ncontaining more than 8169 "
    "characters was "
    "truncated.";

class Conversion : public testing::Test {
 protected:
  Conversion() { EXPECT_EQ(table.insert_records(1, 4), ErrorCode::kOk); }

  void store(size_t field, std::initializer_list<CellValue> values) {
    uint32_t record = 1;
    for (const CellValue& value : values) ASSERT_EQ(table.set_value(record++, field, value), ErrorCode::kOk);
  }

  ConversionResult convert(size_t field, FieldType type, const NumberSeparators& separators = {}) {
    const FieldConversion settings{field, type, false, separators};
    EXPECT_EQ(check_conversion(table, settings).refusal, "");
    ConversionResult result = convert_field(table, settings);
    EXPECT_EQ(result.error, ErrorCode::kOk);
    return result;
  }

  std::vector<std::string> texts(size_t field) const {
    std::vector<std::string> all;
    for (uint32_t record = 1; record <= table.record_count(); ++record)
      all.push_back(table.value_text(record, field));
    return all;
  }

  std::string refusal(size_t field, FieldType type) const {
    return check_conversion(table, {field, type, false, {}}).refusal;
  }

  using Texts = std::vector<std::string>;

  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
};

TEST_F(Conversion, TextsBecomeNumbers) {
  store(kText, {"1,5", "abc", "#DATA!", CellValue()});
  const auto result = convert(kText, FieldType::kNumber, {",", "."});
  EXPECT_EQ(result.messages,
            Texts{"Some data in the text table can not be converted to numeric field values."});
  EXPECT_EQ(table.field(kText).type, FieldType::kNumber);
  EXPECT_EQ(texts(kText), (Texts{"1.5", "", "#DATA!", ""}));
  EXPECT_TRUE(is_empty(table.value(2, kText)));
  EXPECT_EQ(error_of_number(std::get<double>(table.value(3, kText))), FormulaError::kData);
  EXPECT_TRUE(database.undo());
  EXPECT_EQ(table.field(kText).type, FieldType::kText);
  EXPECT_EQ(texts(kText), (Texts{"1,5", "abc", "#DATA!", ""}));
}

TEST_F(Conversion, TextsThatNoRecordUsesDoNotCount) {
  store(kText, {"abc"});
  store(kText, {"5"});
  EXPECT_TRUE(convert(kText, FieldType::kNumber).messages.empty());
  EXPECT_EQ(texts(kText)[0], "5");
}

TEST_F(Conversion, NumbersComeBackThroughEveryTextType) {
  const Texts numbers = {"-1234.5", "1e+21", "#REF!", ""};
  store(kNumber, {-1234.5, 1e21, error_number(FormulaError::kRef)});
  for (const FieldType type : {FieldType::kText, FieldType::kLongText, FieldType::kCode}) {
    EXPECT_TRUE(convert(kNumber, type).messages.empty());
    EXPECT_EQ(texts(kNumber), numbers);
    EXPECT_TRUE(is_empty(table.value(4, kNumber)));
    EXPECT_TRUE(convert(kNumber, FieldType::kNumber).messages.empty());
    EXPECT_EQ(texts(kNumber), numbers);
  }
  convert(kNumber, FieldType::kText, {",", "."});
  EXPECT_EQ(texts(kNumber)[0], "-1234,5");
}

TEST_F(Conversion, LongTextsAreCutOnce) {
  std::string long_text;
  for (int i = 0; i < 9000; ++i) long_text += "é";
  store(kLong, {Content::of(long_text), Content::of(long_text + "2"), Content::of("short")});
  EXPECT_EQ(convert(kLong, FieldType::kText).messages, Texts{kCutText});
  EXPECT_EQ(texts(kLong)[0], long_text.substr(0, 2 * 8169));
  EXPECT_EQ(texts(kLong)[2], "short");
  EXPECT_TRUE(convert(kLong, FieldType::kCode).messages.empty());
  EXPECT_EQ(texts(kLong)[1], long_text.substr(0, 2 * 8169));
}

TEST_F(Conversion, TextStaysUtf8) {
  store(kLong, {Content::of("caf\xE9")});
  convert(kLong, FieldType::kText);
  EXPECT_EQ(texts(kLong)[0], "café");
}

TEST_F(Conversion, LinksChangeWithoutTouchingTheValues) {
  store(kText, {"www"});
  EXPECT_EQ(convert_field(table, {kText, FieldType::kText, true, {}}).error, ErrorCode::kOk);
  EXPECT_EQ(field_list_text(table.field(kText)), "text  [Text / Link]");
  EXPECT_EQ(texts(kText)[0], "www");
  EXPECT_EQ(convert_field(table, {kText, FieldType::kLongText, true, {}}).error, ErrorCode::kOk);
  EXPECT_FALSE(table.field(kText).link);
}

TEST_F(Conversion, FilesAndShortValuesDoNotMix) {
  const std::string to_files =
      "Conversion from \"Text\" or \"Number\" to \"Images/Files\" is not possible.\nPlease convert to \"Long "
      "Text\" or "
      "\"Code\" first.";
  EXPECT_EQ(refusal(kText, FieldType::kFiles), to_files);
  EXPECT_EQ(refusal(kNumber, FieldType::kFiles), to_files);
  for (const FieldType type : {FieldType::kText, FieldType::kNumber}) {
    EXPECT_TRUE(
        refusal(kFiles, type).starts_with("Conversion from \"Images/Files\" to \"Text\" or \"Number\""));
  }
}

TEST_F(Conversion, LongTextsBecomeFilesAndComeBack) {
  store(kLong, {Content::of("plain"), Content::of("{\\rtf1}"), CellValue(), Content::of("{urtf1}")});
  const FieldConversion settings{kLong, FieldType::kFiles, false, {}};
  EXPECT_EQ(check_conversion(table, settings).question, texts::kSaveCopyAndReload);
  convert(kLong, FieldType::kFiles);
  EXPECT_EQ(texts(kLong), (Texts{"text.txt", "text.rtf", "", "text.rtf"}));
  convert(kLong, FieldType::kCode);
  EXPECT_EQ(texts(kLong), (Texts{"plain", "{\\rtf1}", "", "{urtf1}"}));
}

TEST_F(Conversion, RefusesFilesThatAreNoSingleText) {
  const std::string unavailable =
      "Sorry, this type of conversion is not available.\n'Memo/Long Text' and 'Images/Files' fields can't be "
      "changed.\n";
  const FileList unfit[] = {
      {make_file("a"), make_file("b")}, {{"a", "/home/a", {}}}, {make_file("a", "\xFF\xD8")}};
  for (const FileList& files : unfit) {
    store(kFiles, {FileList{make_file("fit.txt")}, files});
    EXPECT_EQ(refusal(kFiles, FieldType::kLongText), unavailable);
  }
}

TEST_F(Conversion, RefusesMissingAndEncryptedFields) {
  EXPECT_EQ(refusal(9, FieldType::kText), error_text(ErrorCode::kInvalidCacheIndex));
  Field secret = table.field(kText);
  secret.encrypted = true;
  ASSERT_EQ(table.replace_column(kText, secret, table.column(kText)), ErrorCode::kOk);
  EXPECT_EQ(refusal(kText, FieldType::kNumber),
            "Encrypted fields can't be edited. You need to decrypt them first.");
}

class FailingSource final : public ContentSource {
 public:
  ErrorCode read(std::string&) const override { return ErrorCode::kZipCorrupted; }
};

TEST_F(Conversion, ChangesNothingWhenAContentCanNotBeRead) {
  store(kLong,
        {Content::of("first"), Content::stored(std::make_shared<FailingSource>(), 5), Content::of("third")});
  NoticeCounter notices(database);
  const auto result = convert_field(table, {kLong, FieldType::kText, false, {}});
  EXPECT_EQ(result.error, ErrorCode::kZipCorrupted);
  EXPECT_EQ(table.field(kLong).type, FieldType::kLongText);
  EXPECT_EQ(notices.notices, 0);
}

class Cancelled final : public Progress {
 public:
  bool cancelled() const override { return true; }
};

TEST_F(Conversion, ChangesNothingWhenCancelled) {
  store(kText, {"abc"});
  store(kNumber, {1.5});
  Cancelled progress;
  for (const FieldConversion& settings : {FieldConversion{kText, FieldType::kNumber, false, {}},
                                          FieldConversion{kNumber, FieldType::kText, false, {}}}) {
    const FieldType former = table.field(settings.field).type;
    const auto result = convert_field(table, settings, progress);
    EXPECT_EQ(result.error, ErrorCode::kOk);
    EXPECT_TRUE(result.messages.empty());
    EXPECT_EQ(table.field(settings.field).type, former);
  }
  EXPECT_EQ(texts(kText)[0] + texts(kNumber)[0], "abc1.5");
}

}  // namespace
}  // namespace rowvane

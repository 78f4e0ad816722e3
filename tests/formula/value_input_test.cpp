#include "formula/fields/value_input.h"

#include <gtest/gtest.h>

#include "core/sample_tables.h"
#include "formula/typed_texts.h"

namespace rowvane {
namespace {

ValueReading read_generic(FieldType type, std::string_view text) {
  return read_field_value(make_field("field", type), text, platform::RegionalSettings::generic());
}

TEST(ValueInput, NumbersAreReadAsTheyAreTyped) {
  for (const TypedText& typed : kTypedTexts) {
    const ValueReading read = read_generic(FieldType::kNumber, typed.text);
    const bool taken = *typed.number != 0;
    EXPECT_EQ(read.error, taken ? ErrorCode::kOk : ErrorCode::kFieldTypeMismatch) << typed.text;
    EXPECT_EQ(number_cell_text(read.number().value_or(kEmptyNumber)), typed.number) << typed.text;
  }
  const auto german = platform::regional_settings_of("de_DE");
  const Field field = make_field("field", FieldType::kNumber);
  EXPECT_EQ(read_field_value(field, "1.234,5", german).number(), 1234.5);
  EXPECT_EQ(read_field_value(field, "29.2.2024", german).number(), 45351);
}

TEST(ValueInput, TextsStayAsTheyAreWithinTheirLimit) {
  for (const TypedText& typed : kTypedTexts) {
    EXPECT_EQ(std::get<std::string>(read_generic(FieldType::kText, typed.text).value), typed.text);
    for (const FieldType type : {FieldType::kLongText, FieldType::kCode})
      EXPECT_EQ(std::get<Content>(read_generic(type, typed.text).value).in_memory(), typed.text);
  }
  std::string most;
  for (size_t i = 0; i < kMaxTextCharacters; ++i) most += "é";
  EXPECT_EQ(read_generic(FieldType::kText, most).error, ErrorCode::kOk);
  EXPECT_EQ(read_generic(FieldType::kText, most + "x").error, ErrorCode::kOutputTooLong);
  EXPECT_EQ(read_generic(FieldType::kLongText, most + "x").error, ErrorCode::kOk);
  EXPECT_EQ(read_generic(FieldType::kText, "caf\xE9").error, ErrorCode::kInvalidUtf8);
}

TEST(ValueInput, NoTextIsNoValue) {
  for (const FieldType type :
       {FieldType::kText, FieldType::kNumber, FieldType::kLongText, FieldType::kCode, FieldType::kFiles}) {
    const ValueReading read = read_generic(type, "");
    EXPECT_EQ(read.error, ErrorCode::kOk);
    EXPECT_TRUE(is_empty(read.value));
  }
  EXPECT_EQ(read_generic(FieldType::kFiles, "a.png").error, ErrorCode::kFieldTypeMismatch);
}

}  // namespace
}  // namespace rowvane

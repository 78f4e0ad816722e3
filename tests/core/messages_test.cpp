#include "core/messages/messages.h"

#include <gtest/gtest.h>

#include "core/messages/error_code.h"
#include "core/messages/outcome.h"
#include "core/program_version.h"
#include "core/table/field.h"

namespace rowvane {
namespace {

TEST(Messages, PutInsertsIntoTheirPlaces) {
  EXPECT_EQ(message(MessageId::kTooManyKeyFields, {100LL}),
            "Please select no more than 100 fields as sort keys.");
  EXPECT_EQ(fill_inserts("%2!s! before %1!s!, %2!s!", {"b", "a"}), "a before b, a");
  EXPECT_EQ(fill_inserts("%1!d! of 100%%", {-7LL}), "-7 of 100%");
  EXPECT_EQ(fill_inserts("%1!s!", {"%1!s!%%"}), "%1!s!%%");
}

TEST(Messages, LeavePlacesWithoutInsert) {
  for (const char* text : {"%2!s!", "%1!d!", "%0!s!", "%1!s", "%1!x!", "%", "50%", "%1"}) {
    EXPECT_EQ(fill_inserts(text, {"a"}), text);
  }
}

TEST(Messages, ErrorCodesHaveTheirTexts) {
  const std::pair<int, const char*> cases[] = {
      {1, "Out of memory while loading an image"},
      {34, "Not enought empty columns to the right of the last non-empty column"},
      {48, "The print are is too small. Please make sure page margins are set correctly."},
      {100, "Too many database fields - max. record size = 64K"},
      {125, "Uknown zlib error"},
      {141, "The specified file path doesn't exist."},
      {0, "No error"},
      {5, "No error"},
      {39, "No error"},
      {41, "No error"},
      {133, "No error"},
      {135, "No error"},
      {142, "No error"},
      {-1, "No error"},
  };
  for (const auto& [code, text] : cases) EXPECT_EQ(error_text(static_cast<ErrorCode>(code)), text) << code;
  EXPECT_TRUE(error_text(ErrorCode::kXmlMemory).starts_with("Ouf of memory"));
}

TEST(Messages, UserTextsKeepTheirNumbers) {
  const UserText message(MessageId::kTooManyKeyFields, {100LL});
  EXPECT_EQ(message.text(), "Please select no more than 100 fields as sort keys.");
  EXPECT_EQ(message.numbered_text(), "message 127: Please select no more than 100 fields as sort keys.");
  const UserText error = ErrorCode::kTooManyRecords;
  EXPECT_EQ(error.numbered_text(), "error 42: Too many records.");
  EXPECT_EQ(error.error(), ErrorCode::kTooManyRecords);
  EXPECT_NE(error, error.text()) << "the same words without the number";
  EXPECT_EQ(UserText("Choose a field.").numbered_text(), "Choose a field.");
  EXPECT_TRUE(UserText(ErrorCode::kOk).empty());
}

TEST(Messages, OutcomesTellOnce) {
  Outcome outcome = ErrorCode::kOk;
  outcome.note(ErrorCode::kOk);
  EXPECT_EQ(outcome.status(), Status::kOk);
  EXPECT_TRUE(outcome.notices.empty());
  outcome.note(MessageId::kCellsTruncated);
  outcome.note({MessageId::kCellsTruncated, ErrorCode::kInvalidUtf8});
  EXPECT_EQ(outcome.notices, (std::vector<UserText>{MessageId::kCellsTruncated, ErrorCode::kInvalidUtf8}));
  outcome.failure = ErrorCode::kZipState;
  EXPECT_EQ(outcome.status(), Status::kFailed);
  outcome.cancelled = true;
  EXPECT_EQ(outcome.status(), Status::kCancelled) << "the failure is its effect";
  EXPECT_FALSE(outcome.is_done());
}

TEST(Messages, TheTitleHasTheVersion) {
  EXPECT_EQ(UserText(MessageId::kProgramTitle).text(), "Rowvane " + std::string(program_version()));
}

TEST(Messages, FieldTypesHaveCodesAndNames) {
  std::string names;
  for (int code = 0; code < 256; ++code) {
    if (!is_field_type(static_cast<uint8_t>(code))) continue;
    names += std::to_string(code) + " " + std::string(field_type_name(static_cast<FieldType>(code))) + ", ";
  }
  EXPECT_EQ(names, "1 Text, 2 Number, 4 Long Text, 8 Images/Files, 16 Code, ");
  Field link;
  link.name = "Home page";
  link.link = true;
  EXPECT_EQ(field_list_text(link), "Home page  [Text / Link]");
}

}  // namespace
}  // namespace rowvane

#include "exchange/text/standard_dates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/database/database.h"

namespace rowvane {
namespace {

class StandardDatesTest : public testing::Test {
 protected:
  StandardDatesTest() {
    auto made = std::make_unique<CWorkSheet>(
        "orders", std::vector{named("Day"), named("Sent"), named("Price", FieldType::kNumber)});
    table = made.get();
    static_cast<void>(made->insert_records(1, 5));
    EXPECT_EQ(database.add_table(database.root(), made), ErrorCode::kOk);
    const char* days[] = {"3/14/2024", "2024-03-15", "", "unknown", "3/14/2024 18:30"};
    for (uint32_t i = 0; i < 5; ++i) set(record_number(i), 0, days[i]);
  }

  static Field named(const char* name, FieldType type = FieldType::kText) {
    Field field;
    field.name = name;
    field.type = type;
    return field;
  }
  void set(RecordNumber record, size_t field, const std::string& text) {
    ASSERT_EQ(table->set_value(record, field, text.empty() ? CellValue() : CellValue(text)), ErrorCode::kOk);
  }
  std::vector<std::string> texts(size_t field) const {
    std::vector<std::string> all;
    for (RecordNumber i = 1; i < table->end_record(); ++i) all.push_back(table->value_text(i, field));
    return all;
  }

  Database database{"shop", Options()};
  CWorkSheet* table;
  DateConversionSettings settings{{0}, platform::RegionalSettings::generic()};
  Progress progress;
};

TEST_F(StandardDatesTest, DatesBecomeStandardAndAllElseStays) {
  ASSERT_EQ(check_date_conversion(*table, settings), Check());
  const auto before = texts(0);
  const DateConversionResult result = convert_to_standard_dates(database, *table, settings, progress);
  EXPECT_THAT(texts(0),
              testing::ElementsAre("2024-03-14", "2024-03-15", "", "unknown", "2024-03-14T18:30:00"));
  EXPECT_EQ(result.converted, 3u);
  EXPECT_EQ(result.other_texts, 1u);
  EXPECT_EQ(database.undo_log().undo_caption(), "Text To Standard Date String");
  database.undo();
  EXPECT_EQ(texts(0), before);
}

TEST_F(StandardDatesTest, SeveralFieldsAreOneStepAndCancellingLeavesAll) {
  set(1, 1, "3/16/2024");
  settings.fields = {0, 1};
  const auto before = texts(0);
  // Cancels in the second field, when the first one is done.
  class Canceller final : public Progress {
   public:
    bool cancelled() const override { return ++asked > 1; }
    mutable int asked = 0;
  } canceller;
  EXPECT_TRUE(convert_to_standard_dates(database, *table, settings, canceller).cancelled);
  EXPECT_EQ(texts(0), before);
  convert_to_standard_dates(database, *table, settings, progress);
  EXPECT_EQ(table->value_text(1, 1), "2024-03-16");
  database.undo();
  EXPECT_EQ(texts(0), before);
  EXPECT_EQ(table->value_text(1, 1), "3/16/2024");
}

TEST_F(StandardDatesTest, OnlyTextsThatUsersEnterAreConverted) {
  settings.fields = {2};
  EXPECT_EQ(check_date_conversion(*table, settings), ErrorCode::kConversionRule) << "a number";
  Field definition = table->field(0);
  definition.formula = "\"x\"";
  ASSERT_EQ(table->change_field(0, definition), ErrorCode::kOk);
  settings.fields = {0};
  EXPECT_EQ(check_date_conversion(*table, settings), ErrorCode::kConversionRule) << "calculated";
}

}  // namespace
}  // namespace rowvane

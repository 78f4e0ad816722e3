#include "core/database/shared_lists.h"

#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "sample_tables.h"

namespace rowvane {
namespace {

class SharedLists : public testing::Test {
 protected:
  SharedLists() : table(*add_sample_table(database, database.root(), "orders")) {
    EXPECT_EQ(table.insert_records(1, 4), ErrorCode::kOk);
  }
  Database database;
  CWorkSheet& table;
};

TEST_F(SharedLists, FieldsFollowRenamedAndDeletedDropDownLists) {
  const DropDownList cities{"Cities", {"Porto", "Graz"}};
  const DropDownList states{"States", {"new"}};
  ASSERT_EQ(change_drop_down_lists(database, {{cities, {}}, {states, {}}}), ErrorCode::kOk);
  for (const size_t field : {0, 1}) {
    Field definition = table.field(field);
    definition.drop_down_list = field == 0 ? "cities" : "States";
    ASSERT_EQ(table.change_field(field, definition), ErrorCode::kOk);
  }
  NoticeCounter counter(database);
  ASSERT_EQ(change_drop_down_lists(database, {{{"Towns", {"Porto"}}, 0}}), ErrorCode::kOk);
  EXPECT_EQ(counter.notices, 1);
  EXPECT_EQ(table.field(0).drop_down_list, "Towns");
  EXPECT_EQ(table.field(1).drop_down_list, "");
  ASSERT_TRUE(database.undo());
  EXPECT_EQ(table.field(1).drop_down_list, "States");
  EXPECT_EQ(database.settings().drop_down_lists.size(), 2u);
}

TEST_F(SharedLists, RecordsKeepTheirFlagsWhenTypesMoveOrGo) {
  ASSERT_EQ(change_record_flag_types(
                database, {{{"red", 0xFF0000}, {}}, {{"green", 0x00FF00}, {}}, {{"blue", 0x0000FF}, {}}}),
            ErrorCode::kOk);
  for (uint32_t i = 0; i < 3; ++i)
    ASSERT_EQ(table.set_flag_type(std::vector{i}, static_cast<int>(i) + 1), ErrorCode::kOk);
  // Red goes, blue and green change places.
  ASSERT_EQ(change_record_flag_types(database, {{{"blue", 0x0000FF}, 2}, {{"green", 0x00FF00}, 1}}),
            ErrorCode::kOk);
  EXPECT_EQ(table.flag_type(1), 0);
  EXPECT_EQ(table.flag_type(2), 2);
  EXPECT_EQ(table.flag_type(3), 1);
  ASSERT_TRUE(database.undo());
  EXPECT_EQ(table.flag_type(1), 1);
  EXPECT_EQ(table.flag_type(2), 2);
  EXPECT_EQ(table.flag_type(3), 3);
}

TEST_F(SharedLists, ChecksNamesAndTheNumberOfFlagTypes) {
  EXPECT_EQ(check_drop_down_lists({{{"a", {}}, {}}, {{"b", {}}, {}}}), "");
  EXPECT_NE(check_drop_down_lists({{{"a", {}}, {}}, {{"A", {}}, {}}}), "");
  EXPECT_NE(check_drop_down_lists({{{"  ", {}}, {}}}), "");
  EditedFlagTypes types;
  for (int i = 0; i < 10; ++i) types.push_back({{"type" + std::to_string(i), 0}, {}});
  EXPECT_EQ(check_record_flag_types(types), "");
  types.push_back({{"one more", 0}, {}});
  EXPECT_EQ(check_record_flag_types(types), MessageId::kTooManyRecordFlagTypes);
}

}  // namespace
}  // namespace rowvane

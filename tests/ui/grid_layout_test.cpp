#include "ui/grid/grid_layout.h"

#include <gtest/gtest.h>

namespace rowvane {
namespace {

class GridLayoutTest : public testing::Test {
 protected:
  GridLayoutTest() : table("t", fields()) {
    layout.set_fields(table, 100);
    layout.set_viewport({400, 200});
    layout.set_lines(1, 14);  // 20 pixels a record
    layout.set_row_count(100);
  }
  // Ten fields of 100 pixels; the second is hidden and the last stands first.
  static std::vector<Field> fields() {
    std::vector<Field> all(10);
    for (size_t i = 0; i < all.size(); ++i) {
      all[i].name = "F" + std::to_string(i);
      all[i].position = static_cast<uint16_t>(i + 1);
    }
    all[1].hidden = true;
    all[9].position = 0;
    return all;
  }

  CWorkSheet table;
  GridLayout layout;
};

TEST_F(GridLayoutTest, FieldsStandInTheirPlacesWithoutTheHiddenOnes) {
  EXPECT_EQ(layout.place_count(), 9);
  EXPECT_EQ(layout.field_at(0), 9);
  EXPECT_EQ(layout.field_at(1), 0);
  EXPECT_EQ(layout.place_of(2), 2);
  EXPECT_EQ(layout.place_of(1), -1);
  layout.set_width(0, 150);
  EXPECT_EQ(layout.left(1), 150);
  EXPECT_EQ(layout.place_at(149), 0);
  EXPECT_EQ(layout.place_at(150), 1);
  EXPECT_EQ(layout.place_at(949), 8);
  EXPECT_EQ(layout.place_at(950), -1);
  EXPECT_EQ(layout.nearest_place(5000), 8);
}

TEST_F(GridLayoutTest, FrozenPartsStayWhileTheRestScrolls) {
  layout.freeze_places(1);
  layout.freeze_rows(2);
  layout.scroll_to(250, 10);
  EXPECT_EQ(layout.left(0), 0);
  EXPECT_EQ(layout.left(1), 100 - 250);
  EXPECT_EQ(layout.place_at(99), 0);
  EXPECT_EQ(layout.place_at(100), 3);  // half of it is under the frozen one
  EXPECT_EQ(layout.top(1), 20);
  EXPECT_EQ(layout.row_at(39), 1);
  EXPECT_EQ(layout.row_at(40), 12);
  EXPECT_EQ(layout.scrolled_rows(), std::pair(12, 20));
  EXPECT_EQ(layout.x_for(0), 250);  // is seen wherever the rest stands
  EXPECT_EQ(layout.x_for(1), 0);
  EXPECT_EQ(layout.line_for(2), 0);
}

TEST_F(GridLayoutTest, WhatIsFrozenLeavesRoom) {
  layout.freeze_places(8);
  EXPECT_EQ(layout.frozen_places(), 3);
  layout.freeze_rows(50);
  EXPECT_EQ(layout.frozen_rows(), 7);
  layout.set_viewport({20, 20});
  EXPECT_EQ(layout.frozen_places(), 0);
  EXPECT_EQ(layout.frozen_rows(), 0);
}

TEST_F(GridLayoutTest, ScrollingMovesNoFartherThanACellNeeds) {
  EXPECT_EQ(layout.line_for(9), 0);
  EXPECT_EQ(layout.line_for(10), 1);
  EXPECT_EQ(layout.last_line(), 90);
  layout.scroll_to(0, 50);
  EXPECT_EQ(layout.line_for(55), 50);
  EXPECT_EQ(layout.line_for(20), 20);
  EXPECT_EQ(layout.x_for(4), 100);
  layout.scroll_to(400, 50);
  EXPECT_EQ(layout.x_for(2), 200);
  EXPECT_EQ(layout.last_x(), 500);
}

// 12,582,912 records of 20 lines at three times the size are more pixels than an int counts.
TEST_F(GridLayoutTest, TheLastOfManyTallRecordsIsReached) {
  constexpr int kRecords = 12'582'912;
  layout.set_row_count(kRecords);
  layout.set_lines(20, 48);
  layout.set_viewport({400, 2000});
  const int height = layout.row_height();
  layout.scroll_to(0, layout.last_line());
  EXPECT_LE(layout.top(kRecords - 1) + height, 2000);
  EXPECT_GT(layout.top(kRecords - 1) + height, 2000 - 2 * 48);
  EXPECT_EQ(layout.row_at(layout.top(kRecords - 1) + 1), kRecords - 1);
  EXPECT_LT(layout.top(0), -100'000'000);
  layout.scroll_to(0, layout.line_for(7'000'000));
  EXPECT_GE(layout.top(7'000'000), 0);
  EXPECT_LE(layout.top(7'000'000) + height, 2000);
}

}  // namespace
}  // namespace rowvane

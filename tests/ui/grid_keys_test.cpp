#include <QLineEdit>
#include <QScrollBar>

#include "ui/grid_fixture.h"

namespace rowvane {
namespace {

class GridKeysTest : public GridTest {
 protected:
  GridPlace place() const { return view->current_place(); }
  CellBlock block() const { return pane->selected_block(); }
};

TEST_F(GridKeysTest, ArrowsAndTheirFarEnds) {
  go_to(0, 0);
  press(Qt::Key_Down);
  press(Qt::Key_Right);
  EXPECT_EQ(place(), (GridPlace{1, 1}));
  press(Qt::Key_End);
  EXPECT_EQ(place(), (GridPlace{1, 5}));
  press(Qt::Key_Home);
  EXPECT_EQ(place(), (GridPlace{1, 0}));
  press(Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(place(), (GridPlace{7, 5}));
  press(Qt::Key_Down);
  EXPECT_EQ(place(), (GridPlace{7, 5}));
  press(Qt::Key_Home, Qt::ControlModifier);
  EXPECT_EQ(place(), (GridPlace{0, 0}));
}

TEST_F(GridKeysTest, CtrlArrowsGoToTheEdgesOfTheData) {
  ASSERT_EQ(table.set_value(4, kName, CellValue()), ErrorCode::kOk);
  ASSERT_EQ(table.set_value(5, kName, CellValue()), ErrorCode::kOk);
  go_to(0, 0);
  std::vector<int> rows;
  for (int i = 0; i < 4; ++i) {
    press(Qt::Key_Down, Qt::ControlModifier);
    rows.push_back(place().row);
  }
  EXPECT_THAT(rows, testing::ElementsAre(2, 5, 7, 7));
  press(Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(place().place, kDay);
  press(Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(place().place, kPicture);
}

TEST_F(GridKeysTest, TabWrapsToTheNextRecordAndBack) {
  go_to(0, 5);
  press(Qt::Key_Tab);
  EXPECT_EQ(place(), (GridPlace{1, 0}));
  press(Qt::Key_Backtab);
  EXPECT_EQ(place(), (GridPlace{0, 5}));
  go_to(7, 5);
  press(Qt::Key_Tab);
  EXPECT_EQ(place(), (GridPlace{7, 5}));
}

TEST_F(GridKeysTest, TabStaysInTheGrid) {
  QLineEdit other(view);
  other.show();
  go_to(0, 0);
  press(Qt::Key_Tab);
  EXPECT_TRUE(view->hasFocus());
  EXPECT_EQ(place(), (GridPlace{0, 1}));
}

TEST_F(GridKeysTest, EnterDoesWhatTheOptionSays) {
  const std::pair<int, GridPlace> expected[] = {{0, {4, 2}}, {1, {3, 3}}, {2, {3, 2}}};
  for (const auto& [option, to] : expected) {
    settings.general_options.when_enter_pressed = static_cast<uint32_t>(option);
    go_to(3, 2);
    press(Qt::Key_Return);
    EXPECT_EQ(place(), to) << option;
    if (option == 2) continue;
    press(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(place(), (GridPlace{3, 2})) << option;
  }
  settings.general_options.when_enter_pressed = 3;
  go_to(3, 1);
  press(Qt::Key_Return);
  EXPECT_NE(open_editor(), nullptr);
}

TEST_F(GridKeysTest, PagesFollowTheHeightOfTheWindow) {
  ASSERT_EQ(table.insert_records(9, 500), ErrorCode::kOk);
  go_to(0, 0);
  const int page = view->grid_layout().rows_of_page();
  ASSERT_GT(page, 5);
  press(Qt::Key_PageDown);
  EXPECT_EQ(place().row, page);
  EXPECT_GT(view->verticalScrollBar()->value(), 0);
  press(Qt::Key_PageDown, Qt::ShiftModifier);
  EXPECT_EQ(place().row, page);
  EXPECT_EQ(block().positions.size(), static_cast<size_t>(page) + 1);
  press(Qt::Key_PageUp);
  press(Qt::Key_PageUp);
  EXPECT_EQ(place().row, 0);
}

TEST_F(GridKeysTest, ShiftExtendsAndShrinks) {
  go_to(2, 1);
  press(Qt::Key_Down, Qt::ShiftModifier);
  press(Qt::Key_Down, Qt::ShiftModifier);
  press(Qt::Key_Right, Qt::ShiftModifier);
  press(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_THAT(block().positions, testing::ElementsAre(2, 3));
  EXPECT_THAT(block().fields, testing::ElementsAre(kPrice, kDay));
  EXPECT_EQ(place(), (GridPlace{2, 1}));
  press(Qt::Key_Up, Qt::ShiftModifier);
  press(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_THAT(block().positions, testing::ElementsAre(1, 2));
}

TEST_F(GridKeysTest, SpaceSelectsWholeFieldsAndRecords) {
  go_to(2, 1);
  press(Qt::Key_Space, Qt::ShiftModifier);
  EXPECT_THAT(block().positions, testing::ElementsAre(2));
  EXPECT_EQ(block().fields.size(), 6u);
  go_to(2, 1);
  press(Qt::Key_Space, Qt::ControlModifier);
  EXPECT_EQ(block().positions.size(), 8u);
  EXPECT_THAT(block().fields, testing::ElementsAre(kPrice));
}

TEST_F(GridKeysTest, DelEmptiesTheSelectionInOneStep) {
  go_to(1, 0);
  extend_to(2, 1);
  press(Qt::Key_Delete);
  EXPECT_EQ(names(), "A--DEFGH");
  EXPECT_EQ(text(2, kPrice), "");
  undo();
  EXPECT_EQ(names(), "ABCDEFGH");
  EXPECT_EQ(text(2, kPrice), "20");
}

TEST_F(GridKeysTest, TwiceEscapeShowsAllRecords) {
  pane->filter_by({{kName, {CriterionKind::kEqual, "C"}}});
  press(Qt::Key_Escape);
  EXPECT_EQ(shown_names(), "C");
  press(Qt::Key_Escape);
  EXPECT_EQ(shown_names(), "ABCDEFGH");
}

TEST_F(GridKeysTest, ATableWithoutRecordsTakesAllKeys) {
  std::vector<uint32_t> all(8);
  for (uint32_t i = 0; i < 8; ++i) all[i] = i;
  ASSERT_EQ(table.delete_records(all), ErrorCode::kOk);
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Tab, Qt::Key_Return, Qt::Key_F2, Qt::Key_PageDown,
                            Qt::Key_Delete, Qt::Key_A, Qt::Key_Space}) {
    press(key);
    press(key, Qt::ControlModifier);
    press(key, Qt::ShiftModifier);
  }
  pane->copy();
  pane->fill_down();
  pane->delete_records();
  pane->duplicate_records();
  view->freeze_fields();
  view->freeze_records();
  pane->insert_records();
  EXPECT_EQ(table.record_count(), 1u);
  EXPECT_EQ(place(), (GridPlace{0, 0}));
}

}  // namespace
}  // namespace rowvane

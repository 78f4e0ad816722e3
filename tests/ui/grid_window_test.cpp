#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ui/grid/cellvane_view.h"
#include "ui/main_frame.h"
#include "ui/scripted_dialogs.h"

namespace rowvane {
namespace {

// The grid together with the commands and the filters of its window.
class GridWindowTest : public testing::Test {
 protected:
  GridWindowTest() {
    frame.new_database();
    frame.show();
    for (uint32_t i = 1; i <= 20; ++i) {
      static_cast<void>(table().set_value(RecordNumber(i), 0, std::string(i % 2 == 0 ? "even" : "odd")));
    }
  }
  ~GridWindowTest() override {
    dialogs.save_answers = {SaveAnswer::kDiscard};
    frame.close();
  }
  TablePane& pane() { return *frame.current_window()->pane(); }
  CCellvaneView& grid() { return dynamic_cast<CCellvaneView&>(pane().view()); }
  CWorkSheet& table() { return pane().table(); }
  void give(Command command) { frame.actions().of(command)->trigger(); }
  void filter_by(GridPlace place) {
    grid().go_to(place);
    give(Command::kFindByValue);
  }

  ScriptedDialogs dialogs;
  ProgramProfile profile{dialogs, dialogs, nullptr};
  CMainFrame frame{profile, dialogs};
};

TEST_F(GridWindowTest, ShortcutsWithPunctuationAreRead) {
  EXPECT_EQ(frame.actions().of(Command::kInsertToday)->shortcuts(),
            QList{QKeySequence(Qt::CTRL | Qt::Key_Semicolon)});
  EXPECT_EQ(frame.actions().of(Command::kCopyFromAbove)->shortcuts(),
            QList{QKeySequence(Qt::CTRL | Qt::Key_Apostrophe)});
}

TEST_F(GridWindowTest, ACommandStoresWhatIsTypedFirstAndWaitsWhereItIsRefused) {
  grid().go_to({0, 0});
  QTest::keyClick(&grid(), Qt::Key_X);
  give(Command::kAppendRecord);
  EXPECT_EQ(table().value_text(1, 0), "x");
  EXPECT_EQ(table().record_count(), 21u);
  Field number;
  number.name = "Number";
  number.type = FieldType::kNumber;
  ASSERT_EQ(table().insert_field(0, number), ErrorCode::kOk);
  grid().go_to({0, grid().grid_layout().place_of(0)});
  QTest::keyClick(&grid(), Qt::Key_X);
  give(Command::kAppendRecord);
  EXPECT_EQ(table().record_count(), 21u);
  EXPECT_THAT(dialogs.shown, testing::ElementsAre("The entered data doesn't match the field type."));
}

TEST_F(GridWindowTest, AFilterKeepsTheCurrentRecordAndOutlivesUndo) {
  filter_by({5, 0});
  EXPECT_EQ(grid().model().rowCount(), 10);
  EXPECT_EQ(grid().model().record_at(grid().current_place().row), RecordNumber(6));
  give(Command::kInsertRecords);
  EXPECT_EQ(grid().model().rowCount(), 11);
  give(Command::kUndo);
  QApplication::processEvents();
  EXPECT_EQ(grid().model().rowCount(), 10);
  EXPECT_FALSE(grid().model().shows_all());
  EXPECT_EQ(grid().field_header().criterion_text(0), "Equal: even");
  give(Command::kShowAllRecords);
  EXPECT_EQ(grid().model().rowCount(), 20);
  EXPECT_EQ(grid().field_header().criterion_text(0), "");
}

TEST_F(GridWindowTest, ATableThatWasOutOfSightIsSearchedAnewWhenItIsShown) {
  filter_by({0, 0});
  CWorkSheet& filtered = table();
  Database& database = frame.current_window()->document().database();
  auto other = new_table("other", 1, 1);
  CWorkSheet* shown = other.get();
  ASSERT_EQ(database.add_table(database.root(), other), ErrorCode::kOk);
  frame.current_window()->show_table(*shown);
  ASSERT_EQ(filtered.insert_records(1, 3), ErrorCode::kOk);
  ASSERT_EQ(filtered.set_value(1, 0, std::string("odd")), ErrorCode::kOk);
  QApplication::processEvents();
  EXPECT_EQ(grid().model().rowCount(), 1);
  frame.current_window()->show_table(filtered);
  EXPECT_EQ(grid().model().rowCount(), 11);
}

TEST_F(GridWindowTest, EveryTableHasTheCommandsInItsMenus) {
  EXPECT_TRUE(grid().actions().contains(frame.actions().of(Command::kPaste)));
  EXPECT_TRUE(grid().field_header().actions().contains(frame.actions().of(Command::kSortAscending)));
  CWorkSheet* shown = nullptr;
  Database& database = frame.current_window()->document().database();
  auto other = new_table("other", 1, 1);
  shown = other.get();
  ASSERT_EQ(database.add_table(database.root(), other), ErrorCode::kOk);
  frame.current_window()->show_table(*shown);
  EXPECT_TRUE(grid().field_header().actions().contains(frame.actions().of(Command::kHideField)));
}

}  // namespace
}  // namespace rowvane

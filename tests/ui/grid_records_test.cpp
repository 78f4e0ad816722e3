#include <QScrollBar>

#include "ui/grid_fixture.h"

namespace rowvane {
namespace {

// Records that come and go, and the place of the user among them.
class GridRecordsTest : public GridTest {
 protected:
  // Shows the records of these names in this order.
  void show(const std::string& names_in_order) {
    RecordSet set;
    for (const char name : names_in_order) set.push_back(static_cast<uint32_t>(name - 'A'));
    view->model().show_records(set);
  }
  std::string current() const { return text(view->model().record_at(view->current_place().row), kName); }
};

TEST_F(GridRecordsTest, InsertedRecordsStandBeforeTheSelectedOnes) {
  go_to(2, 1);
  extend_to(3, 1);
  pane->insert_records();
  EXPECT_EQ(names(), "AB--CDEFGH");
  EXPECT_EQ(view->current_place(), (GridPlace{2, 1}));
  undo();
  EXPECT_EQ(names(), "ABCDEFGH");
}

TEST_F(GridRecordsTest, AFilterAndItsOrderOutliveInsertingAndDeleting) {
  show("HFDB");
  go_to(1, 0);
  pane->insert_records();
  EXPECT_EQ(shown_names(), "H-FDB");
  EXPECT_EQ(names(), "ABCDE-FGH");
  go_to(3, 0);
  pane->delete_records();
  EXPECT_EQ(shown_names(), "H-FB");
  EXPECT_EQ(names(), "ABCE-FGH");
  EXPECT_EQ(current(), "B");
  pane->append_record();
  EXPECT_EQ(shown_names(), "H-FB-");
  go_to(2, 0);
  pane->duplicate_records();
  EXPECT_EQ(shown_names(), "H-FFB-");
  EXPECT_EQ(names(), "ABCE-FFGH-");
  EXPECT_EQ(view->current_place().row, 3);
}

TEST_F(GridRecordsTest, SeveralBlocksAreDuplicatedBelowTheLast) {
  go_to(1, 0);
  view->select_records(1, Qt::NoModifier);
  view->select_records(3, Qt::ControlModifier);
  pane->duplicate_records();
  EXPECT_EQ(names(), "ABCDBDEFGH");
  EXPECT_EQ(text(5, kPrice), "20");
  undo();
  view->select_records(0, Qt::NoModifier);
  view->select_records(6, Qt::ControlModifier);
  pane->delete_records();
  EXPECT_EQ(names(), "BCDEFH");
  EXPECT_EQ(view->current_place().row, 0);
}

TEST_F(GridRecordsTest, DuplicatingInAnotherOrder) {
  show("HCA");
  go_to(0, 0);
  extend_to(1, 0);
  pane->duplicate_records();  // the last of them is C
  EXPECT_EQ(names(), "ABCCHDEFGH");
  EXPECT_EQ(shown_names(), "HCCHA");
}

TEST_F(GridRecordsTest, NewRecordsOfOthersAskForAnotherSearch) {
  show("CA");
  int asked = 0;
  QObject::connect(&view->model(), &TableModel::outdated, [&] { ++asked; });
  ASSERT_EQ(table.insert_records(1, 1), ErrorCode::kOk);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(view->model().rowCount(), 2);
  const std::vector<uint32_t> gone = {0, 1, 2, 3};
  ASSERT_EQ(table.delete_records(gone), ErrorCode::kOk);
  EXPECT_EQ(asked, 2);
  for (int row = 0; row < view->model().rowCount(); ++row) {
    EXPECT_LT(view->model().record_at(row), table.end_record());
  }
}

TEST_F(GridRecordsTest, ARefusedInsertLeavesNothingBehind) {
  show("HFDB");
  const uint32_t room = document.database().max_records() - table.record_count();
  view->model().expect_inserted(1, 1, 0);
  EXPECT_EQ(table.insert_records(1, room + 1), ErrorCode::kTooManyRecords);
  view->model().expect_nothing();
  EXPECT_EQ(shown_names(), "HFDB");
  go_to(0, 0);
  pane->delete_records();
  EXPECT_EQ(shown_names(), "FDB");
}

TEST_F(GridRecordsTest, AChangedValueMovesNothing) {
  show("HFDB");
  go_to(1, 0);
  type("Z");
  press(Qt::Key_Return);
  EXPECT_EQ(shown_names(), "HZDB");
  EXPECT_EQ(view->current_place(), (GridPlace{2, 0}));
  undo();
  EXPECT_EQ(shown_names(), "HFDB");
  EXPECT_EQ(view->current_place(), (GridPlace{2, 0}));
}

TEST_F(GridRecordsTest, TheCurrentRecordIsFoundAgainAtItsHeight) {
  ASSERT_EQ(table.insert_records(9, 300), ErrorCode::kOk);
  view->verticalScrollBar()->setValue(195);
  go_to(200, 2);
  RecordSet odd;
  for (uint32_t i = 0; i < 308; i += 2) odd.push_back(i);
  view->model().show_records(odd);
  EXPECT_EQ(view->current_place(), (GridPlace{100, 2}));
  EXPECT_EQ(view->verticalScrollBar()->value(), 95);
  view->model().show_records(std::nullopt);
  EXPECT_EQ(view->current_place(), (GridPlace{200, 2}));
  EXPECT_EQ(view->verticalScrollBar()->value(), 195);
}

TEST_F(GridRecordsTest, UndoKeepsTheCellAndTheField) {
  go_to(5, 3);
  Field first;
  first.name = "First";
  ASSERT_EQ(table.insert_field(0, first), ErrorCode::kOk);
  EXPECT_EQ(pane->current_field(), 4u);
  undo();
  EXPECT_EQ(view->current_place().row, 5);
  EXPECT_EQ(pane->current_field(), 3u);
  ASSERT_EQ(table.delete_field(kNotes), ErrorCode::kOk);
  EXPECT_TRUE(view->currentIndex().isValid());
  undo();
  EXPECT_EQ(view->current_place().row, 5);
}

TEST_F(GridRecordsTest, FillDownGivesAllTheFirstValue) {
  go_to(1, 0);
  extend_to(4, 1);
  pane->fill_down();
  EXPECT_EQ(names(), "ABBBBFGH");
  EXPECT_EQ(text(5, kPrice), "20");
  undo();
  EXPECT_EQ(names(), "ABCDEFGH");
  EXPECT_EQ(text(5, kPrice), "50");
  show("HCA");
  go_to(0, 0);
  extend_to(2, 0);
  pane->fill_down();
  EXPECT_EQ(names(), "HBHDEFGH");
}

}  // namespace
}  // namespace rowvane

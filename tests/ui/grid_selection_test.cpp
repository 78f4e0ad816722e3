#include <QScrollBar>
#include <QSignalSpy>

#include "ui/grid_fixture.h"

namespace rowvane {
namespace {

using testing::ElementsAre;

class GridSelectionTest : public GridTest {
 protected:
  QPoint middle(int row, int place) const {
    const GridLayout& layout = view->grid_layout();
    return {layout.left(place) + 20, layout.top(row) + layout.row_height() / 2};
  }
  void click(int row, int place, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers, middle(row, place));
  }
  void drag(int row, int place, int to_row, int to_place, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mousePress(view->viewport(), Qt::LeftButton, modifiers, middle(row, place));
    QMouseEvent move(QEvent::MouseMove, middle(to_row, to_place),
                     view->viewport()->mapToGlobal(middle(to_row, to_place)), Qt::NoButton, Qt::LeftButton,
                     modifiers);
    QApplication::sendEvent(view->viewport(), &move);
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, modifiers, middle(to_row, to_place));
  }
  QPoint head(int place) const {
    return {view->grid_layout().left(place) + 40, view->field_header().height() / 2};
  }
  std::vector<std::pair<int64_t, std::vector<int>>> groups() const {
    std::vector<std::pair<int64_t, std::vector<int>>> all;
    for (const CellGroup& group : view->selected_groups())
      all.emplace_back(count_rows(group.rows), group.fields);
    return all;
  }
  std::optional<NumberSummary> summary() {
    for (int i = 0; i < 1000 && !pane->summary(); ++i) QApplication::processEvents();
    return pane->summary();
  }
};

TEST_F(GridSelectionTest, BlocksAreAddedAndTakenOut) {
  drag(1, 0, 2, 1);
  EXPECT_THAT(groups(), ElementsAre(std::pair(2, std::vector{0, 1})));
  drag(4, 0, 5, 1, Qt::ControlModifier);
  EXPECT_THAT(groups(), ElementsAre(std::pair(4, std::vector{0, 1})));
  drag(1, 3, 1, 3, Qt::ControlModifier);
  EXPECT_THAT(groups(), ElementsAre(std::pair(4, std::vector{0, 1}), std::pair(1, std::vector{3})));
  drag(2, 1, 2, 1, Qt::ControlModifier);
  EXPECT_THAT(groups(), ElementsAre(std::pair(4, std::vector{0}), std::pair(3, std::vector{1}),
                                    std::pair(1, std::vector{3})));
  click(0, 0);
  EXPECT_THAT(groups(), ElementsAre(std::pair(1, std::vector{0})));
  click(3, 2, Qt::ShiftModifier);
  EXPECT_THAT(groups(), ElementsAre(std::pair(4, std::vector{0, 1, 2})));
}

TEST_F(GridSelectionTest, HeadsSelectFieldsAndRecords) {
  QTest::mouseClick(&view->field_header(), Qt::LeftButton, Qt::NoModifier, head(1));
  EXPECT_THAT(groups(), ElementsAre(std::pair(8, std::vector{1})));
  QTest::mouseClick(&view->field_header(), Qt::LeftButton, Qt::ShiftModifier, head(2));
  EXPECT_THAT(groups(), ElementsAre(std::pair(8, std::vector{1, 2})));
  QTest::mouseClick(&view->record_header(), Qt::LeftButton, Qt::NoModifier, {10, middle(3, 0).y()});
  QTest::mouseClick(&view->record_header(), Qt::LeftButton, Qt::ControlModifier, {10, middle(6, 0).y()});
  EXPECT_THAT(pane->selected_positions(), ElementsAre(3u, 6u));
  view->selectAll();
  EXPECT_THAT(groups(), ElementsAre(std::pair(8, std::vector{0, 1, 2, 3, 4, 5})));
}

TEST_F(GridSelectionTest, ChoosingAHeadScrollsNowhere) {
  ASSERT_EQ(table.insert_records(9, 500), ErrorCode::kOk);
  go_to(0, 0);
  view->verticalScrollBar()->setValue(200);
  QTest::mouseClick(&view->field_header(), Qt::LeftButton, Qt::NoModifier, head(1));
  EXPECT_NEAR(view->verticalScrollBar()->value(), 200, 1);
  EXPECT_THAT(groups(), ElementsAre(std::pair(508, std::vector{1})));
}

TEST_F(GridSelectionTest, ASelectionSpansMovedAndHiddenFields) {
  view->move_field(4, 1);
  set_field(kPrice, [](Field& field) { field.hidden = true; });
  go_to(0, 0);
  extend_to(0, 2);
  EXPECT_THAT(groups(), ElementsAre(std::pair(1, std::vector{0, 4, 2})));
}

TEST_F(GridSelectionTest, AHiddenFieldLeavesItsPlaceToTheNext) {
  go_to(2, kPrice);
  set_field(kPrice, [](Field& field) { field.hidden = true; });
  EXPECT_EQ(pane->current_field(), kDay);
  for (size_t i = 0; i < 6; ++i) set_field(i, [](Field& field) { field.hidden = true; });
  EXPECT_EQ(pane->current_field(), std::nullopt);
  press(Qt::Key_Down);
  view->grab();
  undo();
  EXPECT_EQ(view->grid_layout().place_count(), 1);
}

TEST_F(GridSelectionTest, FieldsOfATableWithoutRecordsAreHiddenAndShown) {
  view->model().show_records(RecordSet());
  QTest::mouseClick(&view->field_header(), Qt::LeftButton, Qt::NoModifier, head(1));
  EXPECT_EQ(pane->current_field(), kPrice);
  pane->hide_field();
  EXPECT_EQ(view->grid_layout().place_count(), 5);
  pane->show_all_fields();
  EXPECT_EQ(view->grid_layout().place_count(), 6);
}

TEST_F(GridSelectionTest, NumbersOfTheSelectionAreSummedUp) {
  go_to(0, kName);
  EXPECT_FALSE(summary());
  extend_to(3, kPrice);
  const auto result = summary();
  ASSERT_TRUE(result);
  EXPECT_EQ(result->sum, 100);
  EXPECT_EQ(result->mean, 25);
  EXPECT_EQ(result->count, 4u);
  ASSERT_EQ(table.set_value(1, kPrice, 110.0), ErrorCode::kOk);
  ASSERT_TRUE(summary());
  EXPECT_EQ(summary()->sum, 200);
}

// Selecting must not look at the records one by one; what is counted is counted between the events.
TEST_F(GridSelectionTest, AFieldOfTwelveMillionRecordsIsSelectedAtOnce) {
  constexpr uint32_t kRecords = 12'000'000;
  ASSERT_EQ(table.insert_records(9, kRecords), ErrorCode::kOk);
  QApplication::processEvents();
  const auto start = std::chrono::steady_clock::now();
  QTest::mouseClick(&view->field_header(), Qt::LeftButton, Qt::NoModifier, head(kPrice));
  view->repaint();
  const auto passed = std::chrono::steady_clock::now() - start;
  EXPECT_LT(std::chrono::duration_cast<std::chrono::milliseconds>(passed).count(), 500);
  EXPECT_THAT(groups(), ElementsAre(std::pair(kRecords + 8, std::vector{1})));
  ASSERT_TRUE(summary());
  EXPECT_EQ(summary()->count, 8u);
  press(Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(view->current_place().row, static_cast<int>(kRecords) + 7);
  EXPECT_EQ(view->verticalScrollBar()->value(), view->verticalScrollBar()->maximum());
}

TEST_F(GridSelectionTest, CellsAreReachedOverTheSeams) {
  ASSERT_EQ(table.insert_records(9, 100), ErrorCode::kOk);
  go_to(2, 0);
  view->freeze_fields();
  view->freeze_records();
  EXPECT_EQ(view->grid_layout().frozen_places(), 1);
  EXPECT_EQ(view->grid_layout().frozen_rows(), 2);
  view->verticalScrollBar()->setValue(50);
  EXPECT_EQ(view->indexAt(middle(1, 0)).row(), 1);
  drag(1, 0, view->grid_layout().scrolled_rows().first, 1);
  EXPECT_THAT(groups(), ElementsAre(std::pair(52, std::vector{0, 1})));
  go_to(1, 0);
  press(Qt::Key_Down);
  EXPECT_EQ(view->verticalScrollBar()->value(), 0);
  press(Qt::Key_Up);
  type("over");
  press(Qt::Key_Return);
  EXPECT_EQ(text(2, kName), "over");
  view->unfreeze();
  EXPECT_FALSE(view->is_frozen());
}

TEST_F(GridSelectionTest, LinesAndWhatIsFrozenBelongToTheTable) {
  go_to(2, 0);
  view->freeze_fields();
  view->freeze_records();
  view->more_lines();
  EXPECT_EQ(table.arrangement(), (GridArrangement{2, 1, 2}));
  EXPECT_TRUE(document.is_modified());
  document.database().undo();
  EXPECT_EQ(view->grid_layout().lines(), 1);
  document.database().undo();
  EXPECT_EQ(view->grid_layout().frozen_rows(), 0);
  EXPECT_EQ(view->grid_layout().frozen_places(), 1);
  table.change_arrangement({99, 0, 4'000'000'000});
  EXPECT_EQ(view->grid_layout().lines(), 20);
  EXPECT_FALSE(view->is_frozen()) << "no room";
}

TEST_F(GridSelectionTest, MoreFrozenRecordsThanFitAreRefused) {
  ASSERT_EQ(table.insert_records(9, 100), ErrorCode::kOk);
  go_to(90, 0);
  view->freeze_records();
  EXPECT_FALSE(view->is_frozen());
  EXPECT_EQ(dialogs.shown.size(), 1u);
}

TEST_F(GridSelectionTest, LinesOfARecordAreFromOneToTwenty) {
  const int one = view->grid_layout().row_height();
  view->fewer_lines();
  EXPECT_EQ(view->grid_layout().row_height(), one);
  view->more_lines();
  EXPECT_GT(view->grid_layout().row_height(), one);
  for (int i = 0; i < 30; ++i) view->more_lines();
  EXPECT_EQ(view->grid_layout().lines(), 20);
  go_to(7, 0);
  EXPECT_GE(view->grid_layout().top(7), 0);
}

TEST_F(GridSelectionTest, ZoomStaysWithinItsLimits) {
  for (int i = 0; i < 40; ++i) {
    QWheelEvent wheel({50, 50}, {50, 50}, {}, {0, 120}, Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(view->viewport(), &wheel);
  }
  EXPECT_EQ(view->zoom(), 300);
  EXPECT_EQ(view->grid_layout().width(0), 300);
  view->set_zoom(1);
  EXPECT_EQ(view->zoom(), 50);
}

TEST_F(GridSelectionTest, ADraggedBorderStoresTheWidthInOneStep) {
  const QPoint border(view->grid_layout().width(0) - 1, 8);
  FieldHeader& header = view->field_header();
  QTest::mousePress(&header, Qt::LeftButton, Qt::NoModifier, border);
  for (int x = 10; x <= 60; x += 10) {
    const QPoint to = border + QPoint(x, 0);
    QMouseEvent move(QEvent::MouseMove, to, header.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&header, &move);
  }
  EXPECT_EQ(view->grid_layout().width(0), 160);
  EXPECT_EQ(table.field(0).width, 100);
  QTest::mouseRelease(&header, Qt::LeftButton, Qt::NoModifier, border + QPoint(60, 0));
  EXPECT_EQ(table.field(0).width, 160);
  undo();
  EXPECT_EQ(table.field(0).width, 100);
  EXPECT_EQ(view->grid_layout().width(0), 100);
}

TEST_F(GridSelectionTest, ADoubleClickFitsTheWidth) {
  ASSERT_EQ(table.set_value(3, kName, std::string("a text that needs much more room than that")),
            ErrorCode::kOk);
  QTest::mouseDClick(&view->field_header(), Qt::LeftButton, Qt::NoModifier, {99, 8});
  EXPECT_GT(table.field(kName).width, 200);
  view->fit_field(1);
  EXPECT_LT(table.field(kPrice).width, 100);
}

TEST_F(GridSelectionTest, ADraggedHeadMovesTheFieldInOneStep) {
  FieldHeader& header = view->field_header();
  QTest::mousePress(&header, Qt::LeftButton, Qt::NoModifier, head(0));
  const QPoint to = head(2) + QPoint(30, 0);
  QMouseEvent move(QEvent::MouseMove, to, header.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                   Qt::NoModifier);
  QApplication::sendEvent(&header, &move);
  QTest::mouseRelease(&header, Qt::LeftButton, Qt::NoModifier, to);
  const GridLayout& layout = view->grid_layout();
  const auto order = [&] {
    std::vector<int> fields;
    for (int place = 0; place < layout.place_count(); ++place) fields.push_back(layout.field_at(place));
    return fields;
  };
  EXPECT_THAT(order(), ElementsAre(1, 2, 0, 3, 4, 5));
  EXPECT_EQ(pane->current_field(), 0u);
  undo();
  EXPECT_THAT(order(), ElementsAre(0, 1, 2, 3, 4, 5));
  EXPECT_FALSE(document.database().undo_log().redo_caption().empty());
}

TEST_F(GridSelectionTest, HeadsTellKeysAndCriteria) {
  FieldHeader& header = view->field_header();
  EXPECT_EQ(header.sort_mark(kName), "");
  pane->presentation().sort_codes()[kName] = 20001;
  EXPECT_EQ(header.sort_mark(kName), "↓");
  pane->presentation().sort_codes()[kPrice] = 10002;
  EXPECT_EQ(header.sort_mark(kName), "1↓");
  EXPECT_EQ(header.sort_mark(kPrice), "2↑");
  const int height = header.wanted_height();
  document.criteria().set(table, kPrice, {CriterionKind::kGreaterThan, "20"});
  EXPECT_EQ(header.criterion_text(kPrice), "Greater than: 20");
  EXPECT_GT(header.wanted_height(), height);
  view->model().show_records(RecordSet{2, 3});
  EXPECT_EQ(header.height(), header.wanted_height());
}

}  // namespace
}  // namespace rowvane

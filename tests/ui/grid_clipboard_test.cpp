#include <QMimeData>

#include "ui/grid_fixture.h"

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Row = std::vector<std::string>;

class GridClipboardTest : public GridTest {
 protected:
  static QString copied() { return QApplication::clipboard()->text(); }
};

TEST(ClipboardTextTest, CellsWithQuotesTabsAndLineBreaks) {
  EXPECT_THAT(parse_clipboard_text("a\tb\r\nc\t\n"), ElementsAre(Row{"a", "b"}, Row{"c", ""}));
  EXPECT_THAT(parse_clipboard_text("\"a\tb\"\t\"say \"\"hi\"\"\"\n"), ElementsAre(Row{"a\tb", "say \"hi\""}));
  EXPECT_THAT(parse_clipboard_text("\"two\nlines\"\tx"), ElementsAre(Row{"two\nlines", "x"}));
  EXPECT_THAT(parse_clipboard_text("5\" pipe"), ElementsAre(Row{"5\" pipe"}));
  EXPECT_THAT(parse_clipboard_text("\"never ends"), ElementsAre(Row{"never ends"}));
  EXPECT_THAT(parse_clipboard_text("\n\n"), ElementsAre(Row{""}, Row{""}));
  EXPECT_THAT(parse_clipboard_text(""), IsEmpty());
}

TEST(ClipboardTextTest, TablesInHtml) {
  EXPECT_THAT(parse_clipboard_html("<p>x</p><table><tr><th>A</th><td>1<br>2</td></tr>"
                                   "<tr><td colspan=2>wide</td></tr></table>"),
              ElementsAre(Row{"A", "1\n2"}, Row{"wide", ""}));
  EXPECT_THAT(parse_clipboard_html("<p>no table</p>"), IsEmpty());
}

TEST_F(GridClipboardTest, ACopyIsTextAndATable) {
  ASSERT_EQ(table.set_value(1, kName, std::string("say \"hi\"")), ErrorCode::kOk);
  go_to(0, 0);
  extend_to(1, 2);
  pane->copy();
  EXPECT_EQ(copied(), "\"say \"\"hi\"\"\"\t10\t2024-03-01\nB\t20\t2024-03-02\n");
  const QString html = QApplication::clipboard()->mimeData()->html();
  EXPECT_EQ(parse_clipboard_html(html), parse_clipboard_text(copied().toStdString()));
}

TEST_F(GridClipboardTest, BlocksThatShareRecordsOrFieldsAreCopiedAsOne) {
  const auto add_block = [&](int row, int place) {
    const GridLayout& layout = view->grid_layout();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::ControlModifier,
                      {layout.left(place) + 5, layout.top(row) + 5});
  };
  go_to(0, 0);
  extend_to(1, 0);
  add_block(4, 0);
  pane->copy();
  EXPECT_EQ(copied(), "A\nB\nE\n");
  go_to(0, 0);
  add_block(0, 2);
  pane->copy();
  EXPECT_EQ(copied(), "A\t2024-03-01\n");
  add_block(3, 1);
  pane->copy();
  EXPECT_EQ(copied(), "A\t2024-03-01\n");
  EXPECT_EQ(dialogs.shown.size(), 1u);
  pane->clear();
  EXPECT_EQ(names(), "-BCDEFGH");
  EXPECT_EQ(text(4, kPrice), "");
}

TEST_F(GridClipboardTest, ABlockIsPastedFromTheCurrentCellOnInOneStep) {
  set_clipboard("x\t1\ny\t2\n");
  go_to(2, 0);
  pane->paste();
  EXPECT_EQ(names(), "ABxyEFGH");
  EXPECT_EQ(text(4, kPrice), "2");
  undo();
  EXPECT_EQ(names(), "ABCDEFGH");
  EXPECT_EQ(text(4, kPrice), "40");
}

TEST_F(GridClipboardTest, OneCellOrRowFillsTheSelection) {
  set_clipboard("5");
  go_to(0, 0);
  extend_to(2, 1);
  pane->paste();
  EXPECT_EQ(names(), "555DEFGH");
  EXPECT_EQ(text(3, kPrice), "5");
  set_clipboard("r\t9");
  go_to(4, 0);
  extend_to(6, 0);
  pane->paste();
  EXPECT_EQ(names(), "555DrrrH");
  EXPECT_EQ(text(7, kPrice), "9");
}

TEST_F(GridClipboardTest, RefusedCellsAreCountedAndTheFirstReasonTold) {
  set_clipboard("1\none\ntwo\n4\n");
  go_to(0, kPrice);
  pane->paste();
  EXPECT_EQ(text(1, kPrice), "1");
  EXPECT_EQ(text(2, kPrice), "20");
  EXPECT_EQ(text(4, kPrice), "4");
  EXPECT_THAT(dialogs.shown,
              ElementsAre("2 cell(s) kept their values:\nThe entered data doesn't match the field type."));
}

TEST_F(GridClipboardTest, MoreRowsThanRecordsAppendRecords) {
  set_clipboard("p\nq\nr\ns\n");
  go_to(6, 0);
  pane->paste();
  EXPECT_EQ(names(), "ABCDEFpqrs");
  EXPECT_TRUE(dialogs.shown.empty());
  undo();
  EXPECT_EQ(names(), "ABCDEFGH");
}

TEST_F(GridClipboardTest, WhatDoesNotFitIsTold) {
  document.criteria().set(table, kName, {CriterionKind::kNotEqual, "A"});
  view->model().show_records(RecordSet{1, 2});
  set_clipboard("p\nq\nr\n");
  go_to(1, 0);
  pane->paste();
  EXPECT_EQ(names(), "ABpDEFGH");
  EXPECT_THAT(dialogs.shown, ElementsAre("There was no room for 2 cell(s)."));
  document.criteria().clear(table);
  view->model().show_records(std::nullopt);
  set_clipboard("1\t2\t3");
  go_to(0, kSource);
  pane->paste();
  EXPECT_THAT(dialogs.shown.back(), HasSubstr("no room for 1 cell(s)"));
}

TEST_F(GridClipboardTest, PastingIntoASortedTableAppendsAtItsEnd) {
  pane->presentation().sort_codes()[kName] = 20001;
  view->model().show_records(RecordSet{7, 6, 5, 4, 3, 2, 1, 0});
  set_clipboard("x\ny\n");
  go_to(7, 0);
  pane->paste();
  EXPECT_EQ(shown_names(), "HGFEDCBxy");
}

TEST_F(GridClipboardTest, CutTakesTheCellsAway) {
  go_to(1, 0);
  extend_to(2, 0);
  pane->cut();
  EXPECT_EQ(copied(), "B\nC\n");
  EXPECT_EQ(names(), "A--DEFGH");
}

}  // namespace
}  // namespace rowvane

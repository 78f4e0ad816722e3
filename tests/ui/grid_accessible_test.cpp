#include <QAccessible>

#include "ui/grid_fixture.h"

namespace rowvane {
namespace {

class GridAccessibleTest : public GridTest {
 protected:
  QAccessibleInterface* grid() { return QAccessible::queryAccessibleInterface(view); }
  QAccessibleTableInterface* cells() { return grid()->tableInterface(); }
  static QString name(QAccessibleInterface* item) { return item->text(QAccessible::Name); }
};

TEST_F(GridAccessibleTest, CellsAndHeadsAreRead) {
  ASSERT_NE(grid(), nullptr);
  EXPECT_EQ(grid()->role(), QAccessible::Table);
  EXPECT_EQ(name(grid()), "goods");
  ASSERT_NE(cells(), nullptr);
  EXPECT_EQ(cells()->rowCount(), 8);
  EXPECT_EQ(cells()->columnCount(), 6);
  EXPECT_EQ(name(cells()->cellAt(2, kDay)), "2024-03-03");
  EXPECT_EQ(cells()->cellAt(2, kDay)->text(QAccessible::Description), "Day");
  EXPECT_EQ(name(cells()->cellAt(-1, kDay)), "Day");
  EXPECT_EQ(cells()->cellAt(-1, kDay)->role(), QAccessible::ColumnHeader);
  EXPECT_EQ(name(cells()->cellAt(4, -1)), "5");
  EXPECT_EQ(cells()->cellAt(99, 0), nullptr);
  QAccessibleTableCellInterface* cell = cells()->cellAt(3, kPrice)->tableCellInterface();
  ASSERT_NE(cell, nullptr);
  EXPECT_EQ(name(cell->columnHeaderCells().front()), "Price");
  EXPECT_EQ(name(cell->rowHeaderCells().front()), "4");
}

TEST_F(GridAccessibleTest, EveryCellIsAChildAtItsIndex) {
  EXPECT_EQ(grid()->childCount(), 9 * 7);
  for (const auto& [row, place] : {std::pair(-1, 0), {0, -1}, {0, 0}, {7, 5}}) {
    QAccessibleInterface* cell = cells()->cellAt(row, place);
    EXPECT_EQ(grid()->child(grid()->indexOfChild(cell)), cell);
    EXPECT_EQ(cell->parent(), grid());
  }
  const QRect rect = cells()->cellAt(1, 1)->rect();
  EXPECT_EQ(grid()->childAt(rect.center().x(), rect.center().y()), cells()->cellAt(1, 1));
}

TEST_F(GridAccessibleTest, TheCurrentCellHasTheFocusAndTheSelectionIsTold) {
  go_to(2, 1);
  extend_to(3, 1);
  EXPECT_EQ(grid()->focusChild(), cells()->cellAt(2, 1));
  EXPECT_TRUE(cells()->cellAt(3, 1)->state().selected);
  EXPECT_FALSE(cells()->cellAt(4, 1)->state().selected);
  EXPECT_EQ(cells()->selectedCellCount(), 2);
  EXPECT_EQ(cells()->selectedCells().size(), 2);
  EXPECT_TRUE(cells()->cellAt(2, kPrice)->state().editable);
  EXPECT_TRUE(cells()->cellAt(2, kPicture)->state().readOnly);
  EXPECT_TRUE(cells()->selectColumn(0));
  EXPECT_TRUE(cells()->isColumnSelected(0));
  cells()->cellAt(0, kName)->setText(QAccessible::Value, "set");
  EXPECT_EQ(text(1, kName), "set");
}

TEST_F(GridAccessibleTest, CellsOfDeletedRecordsAreNoLongerValid) {
  QAccessibleInterface* last = cells()->cellAt(7, 0);
  EXPECT_TRUE(last->isValid());
  const std::vector<uint32_t> gone = {5, 6, 7};
  ASSERT_EQ(table.delete_records(gone), ErrorCode::kOk);
  EXPECT_EQ(cells()->rowCount(), 5);
  EXPECT_EQ(cells()->cellAt(7, 0), nullptr);
}

}  // namespace
}  // namespace rowvane

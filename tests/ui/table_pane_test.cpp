#include "ui/pane/table_pane.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ui/find_bar.h"
#include "ui/main_frame.h"
#include "ui/scripted_dialogs.h"
#include "ui/table_views.h"

namespace rowvane {
namespace {

using testing::ElementsAre;

// A view that is no grid: the values of the current record below each other, the current one marked, and
// Page Up and Page Down from record to record.
class RecordCard final : public QWidget, public TableView {
 public:
  explicit RecordCard(TablePane& pane) : QWidget(&pane), pane_(pane) {
    auto* layout = new QVBoxLayout(this);
    for (size_t i = 0; i < pane.table().field_count(); ++i) layout->addWidget(new QLabel(this));
    addActions(pane.menus().cells);
    connect(&pane.selection(), &QItemSelectionModel::currentChanged, this, [this] { show_record(); });
    connect(&pane.model(), &TableModel::settled, this, [this] { show_record(); });
    show_record();
  }

  QWidget& widget() override { return *this; }
  void show_current() override { ++times_shown; }
  void refresh() override {}

  std::vector<std::string> lines() const {
    std::vector<std::string> texts;
    for (const QLabel* label : findChildren<QLabel*>()) texts.push_back(label->text().toStdString());
    return texts;
  }

  int times_shown = 0;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const int step = event->key() == Qt::Key_PageDown ? 1 : event->key() == Qt::Key_PageUp ? -1 : 0;
    if (step == 0 || !pane_.current().isValid()) return event->ignore();
    pane_.go_to(pane_.current().row() + step, *pane_.current_field());
  }

 private:
  void show_record() {
    const QModelIndex current = pane_.current();
    int column = 0;
    for (QLabel* label : findChildren<QLabel*>()) {
      const QString text = current.siblingAtColumn(column).data().toString();
      label->setText(column++ == current.column() ? "> " + text : text);
    }
  }

  TablePane& pane_;
};

// The commands of the menus and the Find toolbar on a view that they have never heard of.
class TablePaneTest : public testing::Test {
 protected:
  TablePaneTest() {
    frame.show();
    frame.new_database();
    Database& database = frame.current_window()->document().database();
    auto made = new_table("towns", 2, 4);
    CWorkSheet* towns = made.get();
    EXPECT_EQ(database.add_table(database.root(), made), ErrorCode::kOk);
    const std::string rows[][2] = {{"Porto", "PT"}, {"Graz", "AT"}, {"Braga", "PT"}, {"Wien", "AT"}};
    for (uint32_t i = 0; i < 4; ++i) {
      for (size_t field = 0; field < 2; ++field)
        EXPECT_EQ(towns->set_value(record_number(i), field, rows[i][field]), ErrorCode::kOk);
    }
    frame.current_window()->show_table(*towns);
    pane().go_to(1, 1);
    pane().show_as([](TablePane& of) { return std::make_unique<RecordCard>(of); });
  }
  ~TablePaneTest() override {
    dialogs.save_answers = {SaveAnswer::kDiscard};
    frame.close();
  }

  TablePane& pane() { return *frame.current_window()->pane(); }
  RecordCard& card() { return dynamic_cast<RecordCard&>(pane().view()); }
  QAction& action(Command command) { return *frame.actions().of(command); }
  void give(Command command) { action(command).trigger(); }
  std::string towns() {
    std::string names;
    for (int row = 0; row < pane().model().rowCount(); ++row)
      names += pane().table().value_text(pane().model().record_at(row), 0) + " ";
    return names;
  }

  ScriptedDialogs dialogs;
  ProgramProfile profile{dialogs, dialogs, nullptr};
  CMainFrame frame{profile, dialogs};
};

TEST_F(TablePaneTest, TheCurrentCellOutlivesAnotherView) {
  EXPECT_THAT(card().lines(), ElementsAre("Graz", "> AT"));
  QTest::keyClick(&card(), Qt::Key_PageDown);
  EXPECT_THAT(card().lines(), ElementsAre("Braga", "> PT"));
  EXPECT_EQ(pane().place_text(), "Record 3 of 4");
  pane().show_as(make_grid);
  EXPECT_EQ(pane().current(), pane().model().index(2, 1));
  EXPECT_EQ(pane().findChildren<QWidget*>(Qt::FindDirectChildrenOnly).size(), 1) << "the card is gone";
}

TEST_F(TablePaneTest, CommandsOfGridsAreForGrids) {
  for (const Command command : {Command::kZoomIn, Command::kFreezeFields, Command::kMoreLines})
    EXPECT_FALSE(action(command).isEnabled());
  EXPECT_TRUE(action(Command::kDeleteRecords).isEnabled());
  EXPECT_TRUE(card().actions().contains(&action(Command::kDeleteRecords)));
  pane().show_as(make_grid);
  EXPECT_TRUE(action(Command::kZoomIn).isEnabled());
  EXPECT_TRUE(action(Command::kFreezeFields).isEnabled());
}

TEST_F(TablePaneTest, RecordsAreSortedAndFiltered) {
  pane().go_to(2, 0);
  give(Command::kSortAscending);
  EXPECT_EQ(towns(), "Braga Graz Porto Wien ");
  EXPECT_THAT(card().lines(), ElementsAre("> Braga", "PT"));
  pane().go_to(3, 1);
  give(Command::kFindByValue);
  EXPECT_EQ(towns(), "Graz Wien ");
  EXPECT_THAT(card().lines(), ElementsAre("Wien", "> AT")) << "the record is found again";
  give(Command::kShowAllRecords);
  give(Command::kNoSorting);
  EXPECT_EQ(pane().current(), pane().model().index(3, 1));
}

TEST_F(TablePaneTest, TextsAreFoundAndShown) {
  give(Command::kFind);
  auto* text = frame.findChild<CFindBar*>()->findChild<QLineEdit*>();
  QTest::keyClicks(text, "ra");
  QTest::keyClick(text, Qt::Key_Return);
  EXPECT_THAT(card().lines(), ElementsAre("> Braga", "PT"));
  give(Command::kFindNext);
  EXPECT_THAT(card().lines(), ElementsAre("> Graz", "AT"));
  text->setText("Graz");
  const int before = card().times_shown;
  give(Command::kFindNext);
  EXPECT_GT(card().times_shown, before) << "also where it is current already";
}

TEST_F(TablePaneTest, RecordsComeAndGoAndComeBack) {
  give(Command::kInsertRecords);
  EXPECT_EQ(towns(), "Porto  Graz Braga Wien ");
  EXPECT_THAT(card().lines(), ElementsAre("", "> "));
  give(Command::kUndo);
  pane().go_to(1, 0);
  give(Command::kDuplicateRecords);
  EXPECT_EQ(towns(), "Porto Graz Graz Braga Wien ");
  give(Command::kDeleteRecords);
  give(Command::kDeleteRecords);
  EXPECT_EQ(towns(), "Porto Graz Wien ");
  EXPECT_THAT(card().lines(), ElementsAre("> Wien", "AT"));
  give(Command::kUndo);
  EXPECT_EQ(towns(), "Porto Graz Braga Wien ");
  give(Command::kSelectAll);
  give(Command::kDeleteRecords);
  EXPECT_THAT(card().lines(), ElementsAre("", ""));
  EXPECT_FALSE(action(Command::kDeleteRecords).isEnabled());
  give(Command::kUndo);
  EXPECT_EQ(towns(), "Porto Graz Braga Wien ");
}

TEST_F(TablePaneTest, CellsAreCopiedAndEmptied) {
  pane().go_to(0, 0);
  give(Command::kCopy);
  pane().go_to(3, 0);
  give(Command::kPaste);
  EXPECT_THAT(card().lines(), ElementsAre("> Porto", "AT"));
  give(Command::kClear);
  EXPECT_THAT(card().lines(), ElementsAre("> ", "AT"));
  give(Command::kCopyFromAbove);
  EXPECT_THAT(card().lines(), ElementsAre("> Braga", "AT"));
  give(Command::kUndo);
  give(Command::kUndo);
  give(Command::kUndo);
  EXPECT_EQ(towns(), "Porto Graz Braga Wien ");
}

TEST_F(TablePaneTest, AFieldThatGoesLeavesItsPlaceToTheNext) {
  pane().go_to(1, 0);
  give(Command::kHideField);
  EXPECT_THAT(card().lines(), ElementsAre("Graz", "> AT"));
  give(Command::kUndo);
  dialogs.answers = {true};
  give(Command::kDeleteField);
  EXPECT_EQ(pane().current(), pane().model().index(1, 0)) << "the last field that is left";
}

}  // namespace
}  // namespace rowvane

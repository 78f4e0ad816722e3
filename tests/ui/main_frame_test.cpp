#include "ui/main_frame.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QMimeData>
#include <QStatusBar>
#include <QTest>
#include <QUrl>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/temporary_folder.h"
#include "ui/accessible_names.h"
#include "ui/find_bar.h"
#include "ui/scripted_dialogs.h"
#include "ui/text.h"

namespace rowvane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// QObject tells only its own kind who listens to it.
struct Listeners : QAction {
  static bool are_there(const QAction& action) {
    return (action.*(&Listeners::isSignalConnected))(QMetaMethod::fromSignal(&QAction::triggered));
  }
};

class MainFrameTest : public testing::Test {
 protected:
  void SetUp() override { frame.show(); }

  QAction& action(Command command) { return *frame.actions().of(command); }
  TablePane& pane() { return *frame.current_window()->pane(); }
  CWorkSheet& table() { return pane().table(); }
  void go_to(int row, size_t field) { pane().go_to(row, field); }
  std::vector<std::string> shown(int column) {
    std::vector<std::string> texts;
    for (int row = 0; row < pane().model().rowCount(); ++row)
      texts.push_back(table().value_text(pane().model().record_at(row), static_cast<size_t>(column)));
    return texts;
  }
  QString write(const char* name, const QByteArray& content) {
    QFile file(to_qt(folder.path(name)));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return file.fileName();
  }
  void open_towns() {
    ASSERT_TRUE(frame.open_file(
        write("towns.csv", "Town,Country,People\nPorto,PT,232\nGraz,AT,292\nBraga,PT,193\nWien,AT,1982\n")));
  }
  QString status() {
    QString text;
    for (const QLabel* label : frame.statusBar()->findChildren<QLabel*>()) text += label->text() + "|";
    return text;
  }

  platform::TemporaryFolder folder;
  ScriptedDialogs dialogs;
  ProgramProfile profile{dialogs, dialogs, nullptr};
  CMainFrame frame{profile, dialogs};
};

TEST_F(MainFrameTest, EveryCommandOfTheMenusDoesSomethingAndSaysWhat) {
  QList<QKeySequence> shortcuts;
  for (const CommandText& command : command_texts()) {
    QAction& defined = action(command.command);
    EXPECT_TRUE(Listeners::are_there(defined)) << command.text;
    EXPECT_FALSE(defined.statusTip().isEmpty()) << command.text;
    for (const QKeySequence& shortcut : defined.shortcuts()) {
      EXPECT_FALSE(shortcut.isEmpty()) << command.text;
      EXPECT_FALSE(shortcuts.contains(shortcut)) << command.text;
      shortcuts << shortcut;
    }
    const QString drawing = ":/icons/" + QString(command.icon) + "-16.png";
    EXPECT_TRUE(command.icon[0] == '\0' || QFile::exists(drawing)) << command.icon;
  }
}

TEST_F(MainFrameTest, CommandsAreEnabledByWhatTheyNeed) {
  EXPECT_TRUE(action(Command::kOpen).isEnabled());
  for (const Command command : {Command::kSave, Command::kPaste, Command::kUndo, Command::kSortAscending})
    EXPECT_FALSE(action(command).isEnabled());
  frame.new_database();
  EXPECT_TRUE(action(Command::kSave).isEnabled());
  EXPECT_FALSE(action(Command::kUndo).isEnabled());
  ASSERT_EQ(table().set_value(1, 0, std::string("Anna")), ErrorCode::kOk);
  EXPECT_TRUE(action(Command::kUndo).isEnabled());
  action(Command::kUndo).trigger();
  EXPECT_FALSE(action(Command::kUndo).isEnabled());
  EXPECT_TRUE(action(Command::kRedo).isEnabled());
  EXPECT_EQ(table().value_text(1, 0), "");
  action(Command::kRedo).trigger();
  EXPECT_EQ(table().value_text(1, 0), "Anna");
}

TEST_F(MainFrameTest, AFileIsOpenOnceAndOnTheListOfRecentOnes) {
  open_towns();
  frame.new_database();
  EXPECT_EQ(frame.window_count(), 2);
  EXPECT_TRUE(frame.open_file(to_qt(folder.path("towns.csv"))));
  EXPECT_EQ(frame.window_count(), 2);
  EXPECT_EQ(frame.current_window()->document().title(), "towns.csv");
  EXPECT_EQ(profile.settings().recent_files.front().path, folder.path("towns.csv"));
  EXPECT_FALSE(frame.open_file(to_qt(folder.path("none.csv"))));
  EXPECT_EQ(frame.window_count(), 2);
}

TEST_F(MainFrameTest, DroppedFilesAreOpenedAsWhatTheyHold) {
  const std::string database = folder.path("database.txt");
  ASSERT_EQ(DatabaseDocument(Options()).open().save(database).failure, ErrorCode::kOk);
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(write("a.csv", "A\n1\n")), QUrl::fromLocalFile(to_qt(database)),
                QUrl::fromLocalFile(write("b.csv", "%PDF-1.7")), QUrl("https://example.org/")});
  QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&frame, &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&frame, &drop);
  EXPECT_EQ(frame.window_count(), 2);
  EXPECT_TRUE(frame.current_window()->document().open().has_database_file());
  EXPECT_THAT(dialogs.shown, ElementsAre("b.csv is a PDF document, which Rowvane can't read"));
}

TEST_F(MainFrameTest, QuickSortAddsKeysWithShift) {
  open_towns();
  go_to(0, 1);
  QTest::keyClick(&frame, Qt::Key_F7);
  EXPECT_THAT(shown(1), ElementsAre("AT", "AT", "PT", "PT"));
  go_to(0, 2);
  QTest::keyClick(&frame, Qt::Key_F8, Qt::ShiftModifier);
  EXPECT_THAT(shown(0), ElementsAre("Wien", "Graz", "Porto", "Braga"));
  EXPECT_THAT(to_utf8(status()), HasSubstr("Sorted by Country, People (descending)"));
  QTest::keyClick(&frame, Qt::Key_F7);
  EXPECT_THAT(shown(2), ElementsAre("193", "232", "292", "1982"));
  action(Command::kNoSorting).trigger();
  EXPECT_THAT(shown(0), ElementsAre("Porto", "Graz", "Braga", "Wien"));
}

TEST_F(MainFrameTest, QuickSearchShowsTheRecordsWithTheValueUntilTwiceEscape) {
  open_towns();
  go_to(1, 1);
  QTest::keyClick(&frame, Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_THAT(shown(0), ElementsAre("Graz", "Wien"));
  EXPECT_THAT(to_utf8(status()), HasSubstr("Filtered"));
  QTest::keyClick(&pane().view().widget(), Qt::Key_Escape);
  EXPECT_EQ(pane().model().rowCount(), 2);
  QTest::keyClick(&pane().view().widget(), Qt::Key_Escape);
  EXPECT_EQ(pane().model().rowCount(), 4);
  EXPECT_THAT(to_utf8(status()), testing::Not(HasSubstr("Filtered")));
}

TEST_F(MainFrameTest, FiltersNarrowTheRecordsUntilTheyAreTakenAway) {
  open_towns();
  pane().filter_by({{1, {CriterionKind::kEqual, "AT"}}, {2, {CriterionKind::kGreaterThan, "300"}}});
  EXPECT_THAT(shown(0), ElementsAre("Wien"));
  go_to(0, 2);
  action(Command::kClearFilter).trigger();
  EXPECT_THAT(shown(0), ElementsAre("Graz", "Wien"));
  // What is typed does not vanish at once, but with the next search.
  ASSERT_EQ(table().set_value(2, 1, std::string("A")), ErrorCode::kOk);
  EXPECT_EQ(pane().model().rowCount(), 2);
  QTest::keyClick(&pane().view().widget(), Qt::Key_Return, Qt::ControlModifier);
  EXPECT_THAT(shown(0), ElementsAre("Wien"));
}

TEST_F(MainFrameTest, FindGoesFromMatchToMatchAndRoundAgain) {
  open_towns();
  go_to(0, 0);
  action(Command::kFind).trigger();
  auto* text = frame.findChild<CFindBar*>()->findChild<QLineEdit*>();
  QTest::keyClicks(text, "ra");
  QTest::keyClick(text, Qt::Key_Return);
  EXPECT_EQ(pane().current(), pane().model().index(1, 0)) << "Graz";
  QTest::keyClick(&frame, Qt::Key_F3);
  EXPECT_EQ(pane().current(), pane().model().index(2, 0)) << "Braga";
  QTest::keyClick(&frame, Qt::Key_F3);
  EXPECT_EQ(pane().current(), pane().model().index(1, 0)) << "from the start";
  QTest::keyClick(&frame, Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(pane().current(), pane().model().index(2, 0)) << "from the end";
  EXPECT_THAT(profile.settings().recent_find_strings, ElementsAre("ra"));
  text->setText("(");
  QTest::keyClick(text, Qt::Key_Return);
  EXPECT_EQ(pane().current(), pane().model().index(2, 0)) << "nothing was found";
  EXPECT_THAT(dialogs.shown, IsEmpty());
  for (QAction* option : frame.findChild<CFindBar*>()->findChildren<QAction*>())
    if (option->text().contains("Regular")) option->setChecked(true);
  QTest::keyClick(text, Qt::Key_Return);
  EXPECT_THAT(dialogs.shown, testing::SizeIs(1)) << "no regular expression";
  QTest::keyClick(text, Qt::Key_Escape);
  EXPECT_FALSE(frame.findChild<CFindBar*>()->isVisible());
}

TEST_F(MainFrameTest, ClosingAsksForEachChangedDatabase) {
  frame.new_database();
  open_towns();
  ASSERT_EQ(table().set_value(1, 0, std::string("Lisboa")), ErrorCode::kOk);
  EXPECT_FALSE(frame.close());
  EXPECT_EQ(frame.window_count(), 2);
  dialogs.save_answers = {SaveAnswer::kDiscard};
  action(Command::kClose).trigger();
  EXPECT_EQ(frame.window_count(), 1);
  EXPECT_TRUE(frame.close());
  EXPECT_THAT(dialogs.asked, ElementsAre("Save changes to towns.csv?", "Save changes to towns.csv?"));
}

TEST_F(MainFrameTest, ItsPlaceIsKept) {
  frame.setGeometry(40, 30, 640, 480);
  frame.keep_placement();
  CMainFrame again(profile, dialogs);
  again.restore_placement();
  EXPECT_EQ(again.geometry(), QRect(40, 30, 640, 480));
  // A screen that is gone, and what was never saved.
  profile.settings().application_window.position.left = 100'000;
  profile.settings().application_window.position.right = 100'640;
  CMainFrame elsewhere(profile, dialogs);
  elsewhere.restore_placement();
  EXPECT_NE(QGuiApplication::screenAt(elsewhere.geometry().center()), nullptr);
}

TEST_F(MainFrameTest, EveryControlHasANameForScreenReaders) {
  open_towns();
  action(Command::kFind).trigger();
  EXPECT_THAT(controls_without_names(frame), IsEmpty());
}

TEST_F(MainFrameTest, TheFindToolbarStaysWhereItIsWanted) {
  open_towns();
  auto* bar = frame.findChild<CFindBar*>();
  ASSERT_NE(bar, nullptr);
  EXPECT_TRUE(bar->isHidden());
  action(Command::kFind).trigger();
  EXPECT_FALSE(bar->isHidden());
  QTest::keyClick(bar, Qt::Key_Escape);
  EXPECT_TRUE(bar->isHidden());
  action(Command::kShowFindToolbar).trigger();
  QTest::keyClick(bar, Qt::Key_Escape);
  EXPECT_FALSE(bar->isHidden());
  EXPECT_TRUE(profile.settings().check_box_options.show_find_toolbar);
  action(Command::kShowFindToolbar).trigger();
  EXPECT_TRUE(bar->isHidden());
}

TEST_F(MainFrameTest, DarkColorsAreKept) {
  action(Command::kDarkMode).trigger();
  EXPECT_TRUE(profile.settings().toolbar_options.dark_mode);
  EXPECT_LT(QGuiApplication::palette().color(QPalette::Window).lightness(), 100);
  action(Command::kDarkMode).trigger();
  EXPECT_GT(QGuiApplication::palette().color(QPalette::Window).lightness(), 200);
}

}  // namespace
}  // namespace rowvane

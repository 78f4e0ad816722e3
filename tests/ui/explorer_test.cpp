#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "ui/explorer/database_explorer.h"
#include "ui/scripted_dialogs.h"
#include "ui/text.h"

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ExplorerTest : public testing::Test {
 protected:
  ExplorerTest() {
    sorting.sorting_type = profile::SortingType::kNone;
    add_table("orders/2024", "beta", 3);
    add_table("orders/2024", "Alpha", 1);
    add_table("orders", "gamma", 2);
    explorer.show();
    explorer.set_current_item({nullptr, database.find_table("table1")});
    database.undo_log() = UndoLog(100);
  }

  void add_table(const char* path, const char* name, uint32_t records) {
    Folder* folder = nullptr;
    EXPECT_EQ(database.make_folders(path, &folder), ErrorCode::kOk);
    auto table = new_table(name, 1, records);
    EXPECT_EQ(database.add_table(*folder, table), ErrorCode::kOk);
  }
  TreeItem table(const char* path) const { return {nullptr, database.find_table(path)}; }
  TreeItem folder(const char* path) const { return {database.find_folder(path), nullptr}; }

  // The rows from top to bottom, as far as their branches are open.
  std::vector<std::string> rows() const {
    std::vector<std::string> names;
    for (QModelIndex index = explorer.tree().index(0, 0); index.isValid(); index = explorer.indexBelow(index))
      names.push_back(explorer.tree().item(index).path());
    return names;
  }

  DatabaseDocument document{Options()};
  Database& database = document.database();
  profile::SortingOptions sorting;
  ScriptedDialogs dialogs;
  CDatabaseExplorer explorer{document, sorting, dialogs};
};

TEST_F(ExplorerTest, OrdersFoldersAndTablesByTheOptions) {
  EXPECT_THAT(rows(), ElementsAre("orders", "orders/2024", "orders/2024/beta", "orders/2024/Alpha",
                                  "orders/gamma", "table1"));
  explorer.sort_by(profile::SortingType::kByName);
  EXPECT_THAT(rows(), ElementsAre("orders", "orders/2024", "orders/2024/Alpha", "orders/2024/beta",
                                  "orders/gamma", "table1"));
  explorer.set_ascending(false);
  EXPECT_EQ(rows()[2], "orders/2024/beta");
  explorer.set_ascending(true);
  explorer.sort_by(profile::SortingType::kBySize);
  EXPECT_EQ(rows()[2], "orders/2024/Alpha");
  ASSERT_EQ(table("orders/2024/Alpha").table->insert_records(1, 9), ErrorCode::kOk);
  EXPECT_EQ(rows()[2], "orders/2024/beta");
  EXPECT_EQ(explorer.current_item(), table("table1"));
}

TEST_F(ExplorerTest, KeepsBranchesAndCurrentItemThroughChanges) {
  explorer.set_current_item(table("orders/gamma"));
  explorer.collapse(explorer.tree().index_of(folder("orders/2024")));
  dialogs.texts = {"new one"};
  explorer.new_table();
  EXPECT_EQ(explorer.current_item(), table("orders/new one"));
  const std::vector<std::string> expected = {"orders", "orders/2024", "orders/gamma", "orders/new one",
                                             "table1"};
  EXPECT_EQ(rows(), expected);
  document.undo();
  document.redo();
  EXPECT_EQ(rows(), expected);
  EXPECT_EQ(explorer.current_item(), table("orders/new one"));
}

TEST_F(ExplorerTest, AsksAgainForANameThatIsTaken) {
  explorer.set_current_item(folder("orders"));
  dialogs.texts = {"GAMMA", "a/b", "delta"};
  explorer.new_table();
  EXPECT_THAT(dialogs.shown, ElementsAre(message(MessageId::kTableNameExists),
                                         std::string(error_text(ErrorCode::kInvalidPath))));
  EXPECT_EQ(explorer.current_item().path(), "orders/delta");
  dialogs.shown.clear();
  dialogs.texts = {"2024"};
  explorer.set_current_item(folder("orders"));
  explorer.new_folder();
  EXPECT_THAT(dialogs.shown, ElementsAre(message(MessageId::kUniqueNameNeeded)));
}

TEST_F(ExplorerTest, RenamesInPlaceWithF2) {
  explorer.set_current_item(table("orders/gamma"));
  const auto rename = [this](const char* name) {
    QTest::keyClick(&explorer, Qt::Key_F2);
    auto* editor = explorer.viewport()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    editor->setText(name);
    QTest::keyClick(editor, Qt::Key_Return);
    for (int i = 0; i < 2; ++i) QCoreApplication::processEvents();  // the edit ends, the message is shown
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  };
  rename("2024");
  EXPECT_THAT(dialogs.shown, ElementsAre(message(MessageId::kTableNameExists)));
  EXPECT_EQ(explorer.current_item().path(), "orders/gamma");
  rename("renamed");
  EXPECT_EQ(explorer.current_item().path(), "orders/renamed");
  document.undo();
  EXPECT_EQ(explorer.current_item().path(), "orders/gamma");
}

TEST_F(ExplorerTest, DeletesWhatTheUserConfirms) {
  explorer.set_current_item(folder("orders/2024"));
  QTest::keyClick(&explorer, Qt::Key_Delete);
  EXPECT_THAT(dialogs.asked, ElementsAre("Delete the folder \"2024\" with all that is in it?"));
  EXPECT_NE(folder("orders/2024").folder, nullptr);
  dialogs.answers = {true, true, true};
  QTest::keyClick(&explorer, Qt::Key_Delete);
  EXPECT_THAT(rows(), ElementsAre("orders", "orders/gamma", "table1"));
  EXPECT_EQ(explorer.current_item(), table("orders/gamma"));
  explorer.set_current_item(folder("orders"));
  explorer.delete_item();
  EXPECT_EQ(explorer.current_item(), table("table1"));
  explorer.delete_item();
  EXPECT_THAT(dialogs.shown, ElementsAre(error_text(ErrorCode::kLastTable)));
  document.undo();
  EXPECT_NE(table("orders/gamma").table, nullptr);
  document.undo();
  EXPECT_NE(table("orders/2024/beta").table, nullptr);
}

TEST_F(ExplorerTest, CutAndPasteMovesAndCopyAndPasteCopies) {
  explorer.set_current_item(table("orders/gamma"));
  QTest::keyClick(&explorer, Qt::Key_X, Qt::ControlModifier);
  explorer.set_current_item(folder("orders/2024"));
  QTest::keyClick(&explorer, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(explorer.current_item().path(), "orders/2024/gamma");
  EXPECT_EQ(table("orders/gamma").table, nullptr);

  QTest::keyClick(&explorer, Qt::Key_C, Qt::ControlModifier);
  explorer.set_current_item(table("table1"));
  QTest::keyClick(&explorer, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(explorer.current_item(), table("gamma"));
  QTest::keyClick(&explorer, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(explorer.current_item(), table("gamma (2)"));
  EXPECT_NE(table("orders/2024/gamma").table, nullptr);
  document.undo();
  EXPECT_EQ(table("gamma (2)").table, nullptr);
}

TEST_F(ExplorerTest, DuplicatesAFolderWithItsTables) {
  explorer.set_current_item(folder("orders/2024"));
  explorer.duplicate_item();
  EXPECT_EQ(explorer.current_item().path(), "orders/2024 (2)");
  EXPECT_NE(table("orders/2024 (2)/Alpha").table, nullptr);
  document.undo();
  EXPECT_EQ(folder("orders/2024 (2)").folder, nullptr);
}

TEST_F(ExplorerTest, RefusesAFolderWithinItselfAndATakenName) {
  explorer.set_current_item(folder("orders"));
  explorer.cut_item();
  explorer.set_current_item(folder("orders/2024"));
  explorer.paste_item();
  QCoreApplication::processEvents();
  EXPECT_THAT(dialogs.shown, ElementsAre(error_text(ErrorCode::kInvalidPath)));
  dialogs.shown.clear();
  add_table("orders/2024", "table1", 1);
  explorer.set_current_item(table("table1"));
  explorer.cut_item();
  explorer.set_current_item(table("orders/2024/beta"));
  explorer.paste_item();
  QCoreApplication::processEvents();
  EXPECT_THAT(dialogs.shown, ElementsAre(message(MessageId::kTableNameExists)));
  EXPECT_NE(table("table1").table, nullptr);
}

TEST_F(ExplorerTest, TellsWhichTableIsChosen) {
  std::vector<std::string> chosen;
  int entered = 0;
  QObject::connect(&explorer, &CDatabaseExplorer::table_chosen,
                   [&](const CWorkSheet* given) { chosen.push_back(given->path()); });
  QObject::connect(&explorer, &CDatabaseExplorer::table_entered, [&] { ++entered; });
  QTest::keyClick(&explorer, Qt::Key_Up);
  QTest::keyClick(&explorer, Qt::Key_Return);
  EXPECT_THAT(chosen, ElementsAre("orders/gamma"));
  EXPECT_EQ(entered, 1);
  explorer.set_current_item(folder("orders"));
  QTest::keyClick(&explorer, Qt::Key_Return);
  EXPECT_EQ(entered, 1);
}

}  // namespace
}  // namespace rowvane

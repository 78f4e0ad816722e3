#include <QDir>
#include <QFile>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/temporary_folder.h"
#include "ui/main_frame.h"
#include "ui/scripted_dialogs.h"
#include "ui/text.h"

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class RecoveryTest : public testing::Test {
 protected:
  QString folder() const { return to_qt(temporary.path("recovery")); }
  QStringList copies() const { return QDir(folder()).entryList({"*.rvb"}, QDir::Files, QDir::Time); }

  std::unique_ptr<CMainFrame> start() { return std::make_unique<CMainFrame>(profile, dialogs, folder()); }
  static void type_into(CMainFrame& frame, const char* text) {
    ASSERT_EQ(frame.current_window()->pane()->table().set_value(1, 0, std::string(text)), ErrorCode::kOk);
  }
  static std::string first_cell(CMainFrame& frame) {
    return frame.current_window()->pane()->table().value_text(1, 0);
  }
  // Ends a program as a kill does: its files stay, its lock names a process that is gone.
  void kill(std::unique_ptr<CMainFrame> frame) {
    const QString kept = folder() + ".kept";
    QDir().rename(folder(), kept);
    dialogs.save_answers.assign(10, SaveAnswer::kDiscard);
    frame->close();
    frame.reset();
    QDir(folder()).removeRecursively();
    QDir().rename(kept, folder());
    for (const QString& lock : QDir(folder()).entryList({"*.lock"}, QDir::Files)) {
      QFile file(QDir(folder()).filePath(lock));
      ASSERT_TRUE(file.open(QIODevice::WriteOnly));
      file.write("2147483646\nrowvane\n\n");
    }
    dialogs.asked.clear();
  }

  platform::TemporaryFolder temporary;
  ScriptedDialogs dialogs;
  ProgramProfile profile{dialogs, dialogs, nullptr};
};

TEST_F(RecoveryTest, UnsavedWorkComesBackAfterAKill) {
  auto frame = start();
  frame->offer_recovery();
  EXPECT_THAT(dialogs.asked, IsEmpty());
  frame->new_database();
  type_into(*frame, "first");
  ASSERT_TRUE(frame->recovery().save_now());
  type_into(*frame, "second");
  ASSERT_TRUE(frame->recovery().save_now());
  EXPECT_THAT(copies(), SizeIs(1)) << "an older copy goes";
  kill(std::move(frame));

  frame = start();
  dialogs.choices = {2};
  frame->offer_recovery();
  EXPECT_EQ(frame->window_count(), 0) << "later";
  frame.reset();
  frame = start();
  dialogs.choices = {0};
  frame->offer_recovery();
  EXPECT_THAT(dialogs.asked, ElementsAre(HasSubstr("New Database"), HasSubstr("New Database")));
  ASSERT_EQ(frame->window_count(), 1);
  EXPECT_EQ(first_cell(*frame), "second");
  EXPECT_TRUE(frame->current_window()->document().is_modified());
  EXPECT_THAT(copies(), SizeIs(1)) << "it stays until the work is saved";
  dialogs.files_to_save = {to_qt(temporary.path("saved.rvb"))};
  frame->actions().of(Command::kSave)->trigger();
  EXPECT_THAT(copies(), IsEmpty());
}

TEST_F(RecoveryTest, WorkOnAFileBelongsToThatFileAgain) {
  const QString path = to_qt(temporary.path("own.rvb"));
  auto frame = start();
  frame->new_database();
  type_into(*frame, "saved");
  dialogs.files_to_save = {path};
  frame->actions().of(Command::kSave)->trigger();
  type_into(*frame, "not saved");
  ASSERT_TRUE(frame->recovery().save_now());
  kill(std::move(frame));

  frame = start();
  dialogs.choices = {0};
  frame->offer_recovery();
  ASSERT_EQ(frame->window_count(), 1);
  frame->actions().of(Command::kSave)->trigger();
  EXPECT_THAT(dialogs.shown, IsEmpty());
  EXPECT_EQ(frame->current_window()->document().title(), "own.rvb");
  EXPECT_TRUE(frame->close());
  frame = start();
  ASSERT_TRUE(frame->open_file(path));
  EXPECT_EQ(first_cell(*frame), "not saved");
}

TEST_F(RecoveryTest, NothingStaysWithoutUnsavedChanges) {
  auto frame = start();
  frame->new_database();
  type_into(*frame, "typed");
  ASSERT_TRUE(frame->recovery().save_now());
  EXPECT_THAT(copies(), SizeIs(1));
  dialogs.save_answers = {SaveAnswer::kDiscard};
  EXPECT_TRUE(frame->close());
  EXPECT_THAT(copies(), IsEmpty());
  frame.reset();
  EXPECT_THAT(QDir(folder()).entryList(QDir::Files), IsEmpty());
}

TEST_F(RecoveryTest, DiscardedAndUnfinishedCopiesAreRemoved) {
  auto frame = start();
  frame->new_database();
  type_into(*frame, "typed");
  ASSERT_TRUE(frame->recovery().save_now());
  kill(std::move(frame));
  const QString described = copies().first();
  QFile unfinished(QDir(folder()).filePath(described.section('-', 0, 0) + "-99.rvb"));
  ASSERT_TRUE(unfinished.open(QIODevice::WriteOnly));
  unfinished.close();
  frame = start();
  dialogs.choices = {1};
  frame->offer_recovery();
  EXPECT_THAT(dialogs.asked, SizeIs(1));
  EXPECT_EQ(frame->window_count(), 0);
  EXPECT_THAT(copies(), IsEmpty());
}

TEST_F(RecoveryTest, APauseMakesTheCopyAndAChangeEndsItsWriting) {
  auto frame = start();
  frame->new_database();
  CWorkSheet& table = frame->current_window()->pane()->table();
  // So much text that writing it takes a while.
  constexpr uint32_t kRecords = 200'000;
  ASSERT_EQ(table.insert_records(1, kRecords), ErrorCode::kOk);
  TextColumn texts;
  for (uint32_t i = 0; i < table.record_count(); ++i)
    texts.cells.push_back(
        texts.code_for(std::string(200, static_cast<char>('a' + i % 26)) + std::to_string(i)));
  ASSERT_EQ(table.store_results(1, std::move(texts)), ErrorCode::kOk);
  const RecoverySaver& recovery = frame->recovery();
  ASSERT_TRUE(QTest::qWaitFor([&] { return recovery.is_writing(); }, 20'000));

  EXPECT_EQ(frame->current_window()->pane()->table().value_text(1, 0), "");
  EXPECT_TRUE(recovery.is_writing()) << "reading does not disturb it";
  type_into(*frame, "typed");
  EXPECT_FALSE(recovery.is_writing());
  EXPECT_THAT(copies(), IsEmpty());

  ASSERT_TRUE(frame->recovery().save_now());
  EXPECT_THAT(copies(), SizeIs(1));
  type_into(*frame, "saved");
  ASSERT_TRUE(QTest::qWaitFor([&] { return recovery.is_writing(); }, 20'000));
  dialogs.files_to_save = {to_qt(temporary.path("saved.rvb"))};
  frame->actions().of(Command::kSave)->trigger();
  EXPECT_FALSE(recovery.is_writing()) << "one save at a time";
  EXPECT_FALSE(frame->current_window()->document().is_modified());
  EXPECT_THAT(copies(), IsEmpty());

  // The same for a file that is there already, which is saved without a question.
  type_into(*frame, "again");
  ASSERT_TRUE(QTest::qWaitFor([&] { return recovery.is_writing(); }, 20'000));
  frame->actions().of(Command::kSave)->trigger();
  EXPECT_FALSE(recovery.is_writing());
  EXPECT_THAT(copies(), IsEmpty());
  EXPECT_THAT(dialogs.shown, IsEmpty());
}

}  // namespace
}  // namespace rowvane

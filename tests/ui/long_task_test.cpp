#include "ui/long_task.h"

#include <QApplication>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <atomic>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ui/document/database_document.h"
#include "ui/scripted_dialogs.h"

namespace rowvane {
namespace {

using testing::ElementsAre;

// Works until it is told to stop.
void work_until_cancelled(Progress& progress) {
  progress.begin("Working");
  for (uint64_t done = 0; !progress.cancelled(); ++done) {
    progress.report(done % 100, 100);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

QProgressDialog* progress_box() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* box = qobject_cast<QProgressDialog*>(widget);
    if (box != nullptr && box->isVisible()) return box;
  }
  return nullptr;
}

TEST(LongTask, IsCancelledByItsBoxWhileTheWindowTakesNoKeys) {
  QLineEdit window;
  window.show();
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, &user, [&] {
    QTest::keyClick(&window, Qt::Key_X);
    QProgressDialog* box = progress_box();
    if (box == nullptr) return;
    EXPECT_EQ(box->labelText(), "Working");
    QTest::mouseClick(box->findChild<QPushButton*>(), Qt::LeftButton);
  });
  user.start(100);
  EXPECT_FALSE(run_long_task(&window, "Work", work_until_cancelled));
  user.stop();
  EXPECT_EQ(window.text(), "");
  QTest::keyClick(&window, Qt::Key_X);
  EXPECT_EQ(window.text(), "x");
  EXPECT_FALSE(is_long_task_running());
}

TEST(LongTask, WorkWithoutABoxShowsNoneHoweverLongItTakes) {
  QLineEdit window;
  bool seen = false;
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, &user, [&] { seen = seen || progress_box() != nullptr; });
  user.start(20);
  const auto work = [](Progress& progress) {
    progress.begin("Working");
    progress.report(1, 2);
    std::this_thread::sleep_for(std::chrono::milliseconds(700));
  };
  EXPECT_TRUE(run_long_task(&window, "Work", work, ProgressBox::kHidden));
  EXPECT_FALSE(seen);
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(LongTask, ShortWorkShowsNoBox) {
  bool ran = false;
  EXPECT_TRUE(run_long_task(nullptr, "Work", [&](Progress&) {
    EXPECT_TRUE(is_long_task_running());
    ran = true;
  }));
  EXPECT_TRUE(ran);
  EXPECT_EQ(progress_box(), nullptr);
}

TEST(LongTask, ItsQuestionsAreAskedOnTheThreadOfTheWindow) {
  struct Asked final : Questions {
    bool ask(const std::string& question) override {
      thread = std::this_thread::get_id();
      return question == "Go on?";
    }
    std::thread::id thread;
  } asked;
  QWidget window;
  QuestionsOnWindow questions(asked, window);
  bool answer = false;
  run_long_task(&window, "Work", [&](Progress&) { answer = questions.ask("Go on?"); });
  EXPECT_TRUE(answer);
  EXPECT_EQ(asked.thread, std::this_thread::get_id());
  EXPECT_FALSE(questions.ask("Stop?"));
}

TEST(LongTask, ChangesAreToldOnceAndAtTheEnd) {
  DatabaseDocument document((Options()));
  CWorkSheet& table = *document.database().tables().front();
  std::vector<std::string> told;
  QObject::connect(&document, &DatabaseDocument::changed, &document,
                   [&] { told.push_back(table.value_text(1, 0) + table.value_text(2, 0)); });
  QWidget window;
  run_long_change(&window, "Work", document, [&](Progress&) {
    EXPECT_FALSE(window.updatesEnabled());
    EXPECT_EQ(table.set_value(1, 0, std::string("a")), ErrorCode::kOk);
    EXPECT_EQ(table.set_value(2, 0, std::string("b")), ErrorCode::kOk);
  });
  EXPECT_THAT(told, ElementsAre("ab"));
  EXPECT_TRUE(window.updatesEnabled());
  run_long_change(&window, "Work", document, [](Progress&) {});
  EXPECT_EQ(told.size(), 1U);
}

}  // namespace
}  // namespace rowvane

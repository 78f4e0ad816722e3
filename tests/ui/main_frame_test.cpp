#include "ui/main_frame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ui/scripted_dialogs.h"

namespace rowvane {
namespace {

using testing::ElementsAre;

class MainFrameTest : public testing::Test {
 protected:
  ScriptedDialogs dialogs;
  ProgramProfile profile{dialogs, dialogs, nullptr};
  CMainFrame frame{profile, dialogs};
};

TEST_F(MainFrameTest, ClosingAChangedDatabaseAsksWhetherToSave) {
  frame.new_database();
  CWorkSheet& table = frame.current_window()->view()->table();
  ASSERT_EQ(table.set_value(1, 0, std::string("Anna")), ErrorCode::kOk);
  EXPECT_FALSE(frame.close());
  dialogs.save_answers = {SaveAnswer::kDiscard};
  EXPECT_TRUE(frame.close());
  EXPECT_THAT(dialogs.asked, ElementsAre("Save changes to New Database?", "Save changes to New Database?"));
}

}  // namespace
}  // namespace rowvane

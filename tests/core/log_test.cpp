#include "core/log.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace rowvane {
namespace {

class Log : public testing::Test {
 protected:
  ~Log() override { set_log_categories(""); }
};

TEST_F(Log, CategoriesAreChosenByTheirNames) {
  EXPECT_TRUE(set_log_categories("saving,passes"));
  EXPECT_TRUE(is_logged(LogCategory::kSaving));
  EXPECT_TRUE(is_logged(LogCategory::kPasses));
  EXPECT_FALSE(is_logged(LogCategory::kOpening));
  for (const char* wrong : {"save", "saving,,passes", "saving, passes", "all,x"}) {
    EXPECT_FALSE(set_log_categories(wrong)) << wrong;
    EXPECT_TRUE(is_logged(LogCategory::kSaving)) << wrong;
  }
  EXPECT_TRUE(set_log_categories("all"));
  EXPECT_TRUE(is_logged(LogCategory::kRecovery));
}

TEST_F(Log, ScopesTellWhatWasDoneInOneLine) {
  set_log_categories("opening");
  testing::internal::CaptureStderr();
  {
    LogScope opening(LogCategory::kOpening, "a.rvb");
    LogScope saving(LogCategory::kSaving, "b.rvb");
    opening.note(3, "tables");
    saving.note(3, "tables");
  }
  const std::string line = testing::internal::GetCapturedStderr();
  EXPECT_THAT(line, testing::StartsWith("rowvane: opening: a.rvb, 3 tables, "));
  EXPECT_THAT(line, testing::EndsWith(" ms\n"));
  EXPECT_EQ(std::ranges::count(line, '\n'), 1);
}

}  // namespace
}  // namespace rowvane

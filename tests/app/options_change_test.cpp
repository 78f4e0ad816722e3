#include "app/profile/options_change.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(OptionsChange, KnowsTheRangeOfEachNumber) {
  const profile::Settings settings;
  const auto range = option_range(settings, settings.general_options.used_processor_cores);
  EXPECT_EQ(range.least, 0);
  EXPECT_EQ(range.most, 16);
  EXPECT_EQ(option_range(settings, settings.table_font.size).most, 400);
  EXPECT_EQ(option_range(settings, settings.check_box_options.table_view_thumb_size).least, 16);
}

TEST(OptionsChange, ReadsExtensionsAsTheyAreWritten) {
  EXPECT_THAT(*parse_extensions(" *.ZIP, .jpg;png  zip\n7z "), ElementsAre("zip", "jpg", "png", "7z"));
  EXPECT_THAT(*parse_extensions("  "), IsEmpty());
  for (const char* wrong : {"a.b", "*", ".", "a/b", "jpg ?"}) EXPECT_FALSE(parse_extensions(wrong)) << wrong;
}

TEST(OptionsChange, AsksAndTellsWhatTheUserShouldKnow) {
  const profile::Settings before;
  profile::Settings after;
  EXPECT_EQ(check_options_change(before, after), Check());
  after.check_box_options.auto_update = false;
  EXPECT_EQ(check_options_change(before, after).question, texts::kManualUpdateMode);
  EXPECT_EQ(check_options_change(after, before).question, texts::kAutomaticUpdateMode);
  after.general_options.max_records = 1000;
  EXPECT_EQ(check_options_change(before, after).notice, MessageId::kMaxRecordsChanged);
}

}  // namespace
}  // namespace rowvane

#include "platform/text_to_date.h"

#include <gtest/gtest.h>

namespace rowvane::platform {
namespace {

// Windows has the Korean words for the halves of the day too; Wine, under which its tests run, does not.
TEST(TextToDateOnLinux, KoreanHalvesOfTheDay) {
  EXPECT_EQ(text_to_date("2024. 3. 1. 오전 6:00", regional_settings_of("ko_KR")), 45352.25);
  EXPECT_EQ(text_to_date("2024. 3. 1. 오후 6:00", regional_settings_of("ko_KR")), 45352.75);
}

}  // namespace
}  // namespace rowvane::platform

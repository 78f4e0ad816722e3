#include "platform/text_width.h"

#include <gtest/gtest.h>

namespace rowvane::platform {
namespace {

TEST(TextWidth, CountsColumns) {
  EXPECT_EQ(display_width("plain"), 5);
  EXPECT_EQ(display_width("é"), 1);
  EXPECT_EQ(display_width("e\u0301"), 1);
  EXPECT_EQ(display_width("漢字"), 4);
  EXPECT_EQ(display_width("ｱ１"), 3);  // half width, full width
  EXPECT_EQ(display_width("😀"), 2);
  EXPECT_EQ(display_width("\u1112\u1161\u11AB"), 2);
  EXPECT_EQ(display_width("a\u200Bb\u00AD"), 3);
  EXPECT_EQ(display_width("क\u0941\u200D"), 1);
  EXPECT_EQ(display_width("（한）々〜"), 10);
  EXPECT_EQ(display_width("👩\u200D🚀\uFE0F"), 4);
  EXPECT_EQ(display_width("\t\x7F\u0085"), 0);
  EXPECT_EQ(display_width("´^€–𝒜"), 5);
  EXPECT_EQ(display_width(""), 0);
}

}  // namespace
}  // namespace rowvane::platform

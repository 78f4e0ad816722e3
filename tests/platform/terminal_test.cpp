#include "platform/terminal.h"

#include <gtest/gtest.h>

#include "platform/environment.h"

namespace rowvane::platform {
namespace {

TEST(Terminal, CountsColumns) {
  EXPECT_EQ(display_width("plain"), 5);
  EXPECT_EQ(display_width("é"), 1);
  EXPECT_EQ(display_width("e\u0301"), 1);
  EXPECT_EQ(display_width("漢字"), 4);
  EXPECT_EQ(display_width("ｱ１"), 3);  // half width, full width
  EXPECT_EQ(display_width("😀"), 2);
  EXPECT_EQ(display_width("\u1112\u1161\u11AB"), 2);
  EXPECT_EQ(display_width("a\u200Bb\u00AD"), 3);
  EXPECT_EQ(display_width(""), 0);
}

TEST(Terminal, WidthIsKnownOnlyForATerminal) {
  const ScopedEnvironment columns("COLUMNS", "123");
  EXPECT_EQ(terminal_width(), is_output_terminal() ? std::optional(123) : std::nullopt);
}

}  // namespace
}  // namespace rowvane::platform

#include "platform/terminal.h"

#include <gtest/gtest.h>

#include "platform/environment.h"

namespace rowvane::platform {
namespace {

TEST(Terminal, WidthIsKnownOnlyForATerminal) {
  const ScopedEnvironment columns("COLUMNS", "123");
  EXPECT_EQ(terminal_width(), is_output_terminal() ? std::optional(123) : std::nullopt);
}

}  // namespace
}  // namespace rowvane::platform

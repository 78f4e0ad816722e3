// What the terminal program tells on the standard error stream.
#pragma once

#include <string_view>

#include "core/messages/check.h"
#include "core/messages/outcome.h"
#include "core/messages/questions.h"

namespace rowvane::cli {

inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongArguments = 2;

// Prints one line, "rvb: message 180: ..." (line ends within a text become blanks), and answers kFailed.
int fail(const UserText& text);
// The same for arguments that are wrong: answers kWrongArguments.
int fail_usage(std::string_view text);
// "rvb: warning message 123: ..."
void warn(const UserText& text);

// kDone when the operation that CHECK is about can be run: it has no refusal and its question was answered
// Yes. The notice is printed then. NOT_DONE goes before a question that was not, "not saved".
int accept(const Check& check, Questions& questions, std::string_view not_done = "not changed");
// kDone, after printing the notices, when the operation was completed.
int report(const Outcome& outcome);

}  // namespace rowvane::cli

// What the terminal program tells on the standard error stream.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/messages/status.h"

namespace rowvane::cli {

inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongArguments = 2;

inline constexpr std::string_view kInvalidFormula = "Invalid formula!";

// Each prints one line, "rvb: ..." (line ends within a text become blanks), and answers kFailed.
int fail(ErrorCode error);
int fail(MessageId message);
int fail(Status status);
int fail(std::string_view text);
// kDone when ERROR is kOk, else as fail.
int done(ErrorCode error);
// The same for arguments that are wrong: answers kWrongArguments.
int fail_usage(std::string_view text);

// "rvb: warning message 123: ..."
void warn(const Notice& notice);
void warn(std::string_view text);
void warn(const std::vector<Notice>& notices);

}  // namespace rowvane::cli

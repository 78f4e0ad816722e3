// How an operation ended.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "core/messages/user_text.h"

namespace rowvane {

// One byte; shown as "status 21" or "status 'r'".
// clang-format off
enum class [[nodiscard]] Status : uint8_t {
  kOk = 0,
  kFailed = 21,      // a file that can't be opened or written, a table that can't be made: nothing was done
  kCancelled = 'r',
};
// clang-format on

// The result of an operation, or the base of a result that has more to give. The window and the terminal
// program each have one function that reports it.
struct [[nodiscard]] Outcome {
  UserText failure;               // why it failed; empty where it did not
  bool cancelled = false;         // by the progress; then a failure is only its effect
  std::vector<UserText> notices;  // of what was done all the same; each once

  Outcome() = default;
  Outcome(UserText why) : failure(std::move(why)) {}
  Outcome(ErrorCode error) : failure(error) {}

  // Of a derived result, without what it has more.
  Outcome& outcome() { return *this; }

  bool is_done() const { return !cancelled && failure.empty(); }
  Status status() const {
    if (cancelled) return Status::kCancelled;
    return failure.empty() ? Status::kOk : Status::kFailed;
  }
  // Adds NOTICE unless it is empty or there already.
  void note(UserText notice) {
    if (!notice.empty() && std::ranges::find(notices, notice) == notices.end())
      notices.push_back(std::move(notice));
  }
  void note(const std::vector<UserText>& all) {
    for (const UserText& notice : all) note(notice);
  }
};

}  // namespace rowvane

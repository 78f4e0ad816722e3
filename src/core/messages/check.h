// What stands between a user's settings and the operation that they are for.
#pragma once

#include <concepts>
#include <utility>

#include "core/messages/user_text.h"

namespace rowvane {

// What every `check_...` function answers. The window and the terminal program each have one function that
// shows it.
struct [[nodiscard]] Check {
  UserText refusal;    // why the operation can't be run; empty: it can
  UserText question;   // to be answered with Yes before it is run; empty: none
  UserText notice;     // to be shown before it is run; empty: none
  bool beeps = false;  // a dialog beeps and stays open instead of showing the refusal

  Check() = default;
  // From a text, a message or an error code: a refusal, unless it is empty.
  template <typename Text>
  requires std::convertible_to<Text, UserText> Check(Text&& refused) : refusal(std::forward<Text>(refused)) {}
  static Check asking(UserText question) {
    Check check;
    check.question = std::move(question);
    return check;
  }
  static Check noting(UserText notice) {
    Check check;
    check.notice = std::move(notice);
    return check;
  }

  // True when nothing forbids the operation; the question may still be open.
  bool passes() const { return refusal.empty(); }

  bool operator==(const Check&) const = default;
};

}  // namespace rowvane

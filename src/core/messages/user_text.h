// What users are told, with the number that they know it by.
#pragma once

#include <concepts>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

#include "core/messages/error_code.h"
#include "core/messages/messages.h"

namespace rowvane {

// A numbered message, the text of an error code, or a text without a number. Empty: there is nothing to say.
class UserText {
 public:
  UserText() = default;
  template <typename Text>
  requires std::convertible_to<Text, std::string_view> UserText(Text&& text)
      : text_(std::forward<Text>(text)) {}
  UserText(MessageId id, std::initializer_list<MessageInsert> inserts = {});
  UserText(ErrorCode error);  // empty for kOk

  bool empty() const { return text_.empty(); }
  // UTF-8, with line ends, without the number.
  const std::string& text() const { return text_; }
  // "message 127: ..." or "error 137: ..."; the plain text where there is no number.
  std::string numbered_text() const;

  // 127 of "message 127"; 0 where there is none.
  int number() const;
  // The error code that it is the text of; kOk for others.
  ErrorCode error() const;

  bool operator==(const UserText&) const = default;

 private:
  std::string text_;
  std::variant<std::monostate, MessageId, ErrorCode> number_;
};

}  // namespace rowvane

#include "core/messages/user_text.h"

namespace rowvane {

UserText::UserText(MessageId id, std::initializer_list<MessageInsert> inserts)
    : text_(message(id, inserts)), number_(id) {}

UserText::UserText(ErrorCode error) {
  if (error == ErrorCode::kOk) return;
  text_ = error_text(error);
  number_ = error;
}

std::string UserText::numbered_text() const {
  if (number() == 0) return text_;
  const bool is_error = error() != ErrorCode::kOk;
  return (is_error ? "error " : "message ") + std::to_string(number()) + ": " + text_;
}

int UserText::number() const {
  const auto* id = std::get_if<MessageId>(&number_);
  return id != nullptr ? static_cast<int>(*id) : static_cast<int>(error());
}

ErrorCode UserText::error() const {
  const auto* error = std::get_if<ErrorCode>(&number_);
  return error != nullptr ? *error : ErrorCode::kOk;
}

}  // namespace rowvane

// Notices to the user that need no answer.
#pragma once

#include <string>

namespace rowvane {

enum class MessageIcon { kInformation, kWarning, kError };

class UserMessages {
 public:
  virtual ~UserMessages() = default;
  virtual void show(const std::string& text, MessageIcon icon) = 0;
};

}  // namespace rowvane

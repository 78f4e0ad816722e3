// What turns a protected profile into bytes that only its password opens.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/error_code.h"

namespace rowvane {

// What `encrypt` makes holds all that `decrypt` needs besides the password. Both answer kOk, or an error and
// an empty text. A wrong password need not be an error: it may as well give other bytes.
class ProfileCipher {
 public:
  virtual ~ProfileCipher() = default;
  virtual ErrorCode encrypt(std::string_view plain, std::string_view password, std::string& sealed) = 0;
  virtual ErrorCode decrypt(std::string_view sealed, std::string_view password, std::string& plain) = 0;
};

// Asks the user for the password of a file.
class PasswordPrompt {
 public:
  virtual ~PasswordPrompt() = default;
  // Nothing when the user gives up.
  virtual std::optional<std::string> ask_password(const std::string& path) = 0;
};

}  // namespace rowvane

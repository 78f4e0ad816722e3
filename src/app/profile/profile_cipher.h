// What turns a protected profile into bytes that only its password opens.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/messages/error_code.h"
#include "crypto/secret.h"

namespace rowvane {

// What `encrypt` makes holds all that `decrypt` needs besides the password. kInvalidPassword when SEALED does
// not fit to the password, be it wrong or SEALED damaged; a cipher may as well give other bytes then.
class ProfileCipher {
 public:
  virtual ~ProfileCipher() = default;
  virtual ErrorCode encrypt(std::string_view plain, const Secret& password, std::string& sealed) = 0;
  virtual ErrorCode decrypt(std::string_view sealed, const Secret& password, std::string& plain) = 0;
};

// Asks the user for the password of a file.
class PasswordPrompt {
 public:
  virtual ~PasswordPrompt() = default;
  // Nothing when the user gives up.
  virtual std::optional<Secret> ask_password(const std::string& path) = 0;
};

}  // namespace rowvane

// What the tests of the profile share: a cipher that anyone can break, and a user who answers from a list.
#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "app/profile/profile_cipher.h"

namespace rowvane {

// Adds the password's bytes to those of the text, so that another password gives another text.
class PlainCipher final : public ProfileCipher {
 public:
  ErrorCode encrypt(std::string_view plain, const Secret& password, std::string& sealed) override {
    sealed = shifted(plain, password.view(), 1);
    return failure;
  }
  ErrorCode decrypt(std::string_view sealed, const Secret& password, std::string& plain) override {
    plain = shifted(sealed, password.view(), -1);
    return failure;
  }

  ErrorCode failure = ErrorCode::kOk;

 private:
  static std::string shifted(std::string_view text, std::string_view password, int direction) {
    std::string result(text);
    for (size_t i = 0; i < result.size() && !password.empty(); ++i) {
      result[i] = static_cast<char>(result[i] + direction * password[i % password.size()]);
    }
    return result;
  }
};

class ListedPasswords final : public PasswordPrompt {
 public:
  explicit ListedPasswords(std::vector<std::string> answers) : answers_(std::move(answers)) {}
  std::optional<Secret> ask_password(const std::string&) override {
    if (asked == answers_.size()) return std::nullopt;
    return Secret(answers_[asked++]);
  }

  size_t asked = 0;

 private:
  std::vector<std::string> answers_;
};

inline std::string content_of(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

inline void put(const std::string& path, std::string_view content) {
  std::ofstream(path, std::ios::binary) << content;
}

}  // namespace rowvane

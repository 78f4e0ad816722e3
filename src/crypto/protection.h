// The protection of a database: its password and how its file is encrypted.
#pragma once

#include <memory>
#include <optional>

#include "core/database/database.h"
#include "core/messages/messages.h"
#include "crypto/cipher.h"
#include "crypto/secret.h"

namespace rowvane {

inline constexpr size_t kMinPasswordCharacters = 6;

struct Protection {
  std::shared_ptr<const Secret> password;  // UTF-8
  CipherAlgorithm algorithm = CipherAlgorithm::kTwofishCfb;
  bool read_only_open = false;  // anyone may open the database read-only, without the password
};

// What the user enters to protect a database.
struct ProtectionSettings {
  Secret password;
  Secret repeated;  // the password once more
  CipherAlgorithm algorithm = CipherAlgorithm::kTwofishCfb;
  bool read_only_open = false;
};

struct PasswordCheck {
  std::optional<MessageId> refusal;   // kPasswordTooShort, kPasswordsDiffer
  std::optional<MessageId> question;  // kReadOnlyOpenQuestion, to be answered with Yes
};

// A new password, entered twice.
PasswordCheck check_new_password(const Secret& password, const Secret& repeated);
PasswordCheck check_protection(const ProtectionSettings& settings);

// The protection that SETTINGS, which have passed the check, ask for. The password moves out of them.
Protection make_protection(ProtectionSettings settings);

// What the user is told when the records of a protected database go into a file of another format:
// kUseNativeFormat, to be confirmed, for a database that is being saved; kRecordsNotProtected for a set of
// its records.
std::optional<MessageId> check_target_format(bool is_protected, FileFormat target, bool record_set);

}  // namespace rowvane

// The protection of a database: its password and how its file is encrypted.
#pragma once

#include <memory>

#include "core/database/database.h"
#include "core/messages/check.h"
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

// A new password, entered twice: messages 147 and 146.
Check check_new_password(const Secret& password, const Secret& repeated);
// The same, and message 148 as the question where anyone may open the database read-only.
Check check_protection(const ProtectionSettings& settings);

// The protection that SETTINGS, which have passed the check, ask for. The password moves out of them.
Protection make_protection(ProtectionSettings settings);

// Whether the records of a protected database may go into a file of another format: kUseNativeFormat as the
// question for a database that is being saved, kRecordsNotProtected as a notice for a set of its records.
Check check_other_format(bool is_protected, bool record_set);

}  // namespace rowvane

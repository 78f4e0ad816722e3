// The cipher of protected profiles.
#pragma once

#include "app/profile/profile_cipher.h"

namespace rowvane {

// Twofish CFB with a key from the password, as the members of a protected database have it. What it makes is
// 16 bytes of salt, 16 of the initialisation vector, both fresh each time, and encrypted the SHA-1 digest of
// the plain bytes and these. kInvalidPassword when the digest does not come out, kFileDecrypt for what is too
// short to hold one.
class TwofishProfileCipher final : public ProfileCipher {
 public:
  ErrorCode encrypt(std::string_view plain, const Secret& password, std::string& sealed) override;
  ErrorCode decrypt(std::string_view sealed, const Secret& password, std::string& plain) override;
};

}  // namespace rowvane

// Reading what the old database format encrypted.
#pragma once

#include <span>

#include "core/messages/error_code.h"
#include "crypto/secret.h"
#include "platform/legacy_cipher.h"

namespace rowvane {

// One stream of an old file. Belongs to one thread at a time.
class OldFormatCipher {
 public:
  // KEY_BITS: 128; anything else means 40. kCryptographicKey when the key can't be made.
  ErrorCode start(const Secret& password, int key_bits);
  // Decrypts the next bytes in place. kFileDecrypt.
  ErrorCode run(std::span<char> bytes);

 private:
  platform::LegacyCipher cipher_;
};

}  // namespace rowvane

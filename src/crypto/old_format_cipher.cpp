#include "crypto/old_format_cipher.h"

namespace rowvane {

ErrorCode OldFormatCipher::start(const Secret& password, int key_bits) {
  return cipher_.start(password.view(), key_bits) ? ErrorCode::kOk : ErrorCode::kCryptographicKey;
}

ErrorCode OldFormatCipher::run(std::span<char> bytes) {
  return cipher_.run(std::as_writable_bytes(bytes)) ? ErrorCode::kOk : ErrorCode::kFileDecrypt;
}

}  // namespace rowvane

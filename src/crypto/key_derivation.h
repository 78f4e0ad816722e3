// Keys from passwords.
#pragma once

#include <string_view>

#include "core/messages/error_code.h"
#include "crypto/secret.h"

namespace rowvane {

inline constexpr size_t kSaltBytes = 16;
inline constexpr unsigned kKeyIterations = 1024;  // fixed: files name a count, but nobody reads it

// The key of kKeyBytes bytes that PASSWORD, taken as its UTF-8 bytes, gives with SALT of kSaltBytes bytes:
// PBKDF2 (RFC 8018) with HMAC-SHA1 over the 20 bytes of the password's SHA-1. Takes some tenths of a
// millisecond. kCryptographicKey when it can't be made.
ErrorCode derive_key(const Secret& password, std::string_view salt, Secret& key);

}  // namespace rowvane

// How one member of a database file is encrypted: with a key of its own.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "core/messages/error_code.h"
#include "crypto/cipher.h"
#include "crypto/digest.h"
#include "crypto/key_derivation.h"
#include "crypto/protection.h"

namespace rowvane {

// What the manifest tells of an encrypted member.
struct EncryptionRecord {
  uint64_t size = 0;        // of the content: decrypted, and inflated where it is deflated
  std::string digest_type;  // text
  std::string digest;       // kDigestBytes bytes: of what decrypting gives
  CipherAlgorithm algorithm = CipherAlgorithm::kBlowfishCfb;
  std::string iv;      // block_bytes(algorithm) bytes
  std::string key;     // text: empty, or the member's key in base64 for readers without the password
  std::string salt;    // kSaltBytes bytes
  int iterations = 0;  // not negative; nobody reads it

  bool operator==(const EncryptionRecord&) const = default;
};

// Encrypts one member as it is written.
class MemberEncryptor {
 public:
  // Takes a fresh salt and vector and derives the key. kCryptographicKey.
  ErrorCode start(const Protection& protection);
  // Encrypts the next bytes in place. kFileEncrypt.
  ErrorCode run(std::span<char> bytes);
  // The record of the member, whose content has SIZE bytes.
  EncryptionRecord finish(uint64_t size);

 private:
  EncryptionRecord record_;
  CipherStream cipher_;
  ContentDigest digest_;
};

// The key of a member: from the password, or without one (null) from the record. kInvalidPassword when there
// is neither, kCryptographicKey.
ErrorCode member_key(const EncryptionRecord& record, const Secret* password, Secret& key);

// Decrypts in place BYTES that begin at OFFSET of the member, on a block of the cipher. BEFORE is the
// encrypted block before them; not used at the start of the member. kFileDecrypt, kCryptographicKey.
ErrorCode decrypt_part(const EncryptionRecord& record, const Secret& key, uint64_t offset,
                       std::string_view before, std::span<char> bytes);

// Decrypts all of a member in place. kFileDecrypt when the digest differs from that of the record.
ErrorCode decrypt_member(const EncryptionRecord& record, const Secret& key, std::span<char> bytes);

}  // namespace rowvane

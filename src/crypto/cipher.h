// The ciphers: Blowfish and Twofish with 16-byte keys in cipher feedback mode. The feedback is a whole block
// (CFB-64 and CFB-128 of NIST SP 800-38A); the last block of a stream may be cut, so that a cipher text is as
// long as its plain text.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "core/messages/error_code.h"
#include "crypto/secret.h"

namespace rowvane {

enum class CipherAlgorithm { kBlowfishCfb, kTwofishCfb };

inline constexpr size_t kKeyBytes = 16;

// "Blowfish CFB", "Twofish CFB".
std::string_view cipher_name(CipherAlgorithm algorithm);
std::optional<CipherAlgorithm> cipher_named(std::string_view name);
// Bytes of one block, and of the initialisation vector: 8 or 16.
size_t block_bytes(CipherAlgorithm algorithm);

enum class CipherDirection { kEncrypt, kDecrypt };

// One stream being encrypted or decrypted. Belongs to one thread at a time.
//
// Decryption may begin at any block: with the encrypted block before it as the initialisation vector.
class CipherStream {
 public:
  CipherStream();
  ~CipherStream();
  CipherStream(CipherStream&&) noexcept;
  CipherStream& operator=(CipherStream&&) noexcept;

  // KEY of kKeyBytes, IV of block_bytes(ALGORITHM). kCryptographicKey when they can't be used.
  ErrorCode start(CipherAlgorithm algorithm, CipherDirection direction, const Secret& key,
                  std::string_view iv);
  // Another stream with the same key.
  ErrorCode restart(std::string_view iv);
  // Goes on with the next bytes, in place. kFileEncrypt or kFileDecrypt when the cipher fails.
  ErrorCode run(std::span<char> bytes);

 private:
  struct Mode;
  std::unique_ptr<Mode> mode_;
};

}  // namespace rowvane

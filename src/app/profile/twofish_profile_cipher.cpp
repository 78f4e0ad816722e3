#include "app/profile/twofish_profile_cipher.h"

#include <span>

#include "crypto/cipher.h"
#include "crypto/digest.h"
#include "crypto/key_derivation.h"
#include "crypto/random_source.h"

namespace rowvane {
namespace {

constexpr CipherAlgorithm kAlgorithm = CipherAlgorithm::kTwofishCfb;

std::string digest_of(std::string_view bytes) {
  ContentDigest digest;
  digest.update(bytes);
  return digest.finish();
}

// Encrypts or decrypts BYTES in place.
ErrorCode run_cipher(CipherDirection direction, const Secret& password, std::string_view salt,
                     std::string_view iv, std::span<char> bytes) {
  Secret key;
  ErrorCode error = derive_key(password, salt, key);
  CipherStream stream;
  if (error == ErrorCode::kOk) error = stream.start(kAlgorithm, direction, key, iv);
  return error == ErrorCode::kOk ? stream.run(bytes) : error;
}

}  // namespace

ErrorCode TwofishProfileCipher::encrypt(std::string_view plain, const Secret& password, std::string& sealed) {
  sealed.clear();
  std::string salt;
  std::string iv;
  RandomSource random;
  if (const ErrorCode error = random.fill(kSaltBytes, salt); error != ErrorCode::kOk) return error;
  if (const ErrorCode error = random.fill(block_bytes(kAlgorithm), iv); error != ErrorCode::kOk) return error;
  std::string body = digest_of(plain);
  body += plain;
  const ErrorCode error = run_cipher(CipherDirection::kEncrypt, password, salt, iv, body);
  if (error == ErrorCode::kOk) {
    sealed = salt + iv + body;
  } else {
    wipe(body);
  }
  return error;
}

ErrorCode TwofishProfileCipher::decrypt(std::string_view sealed, const Secret& password, std::string& plain) {
  plain.clear();
  const size_t iv_bytes = block_bytes(kAlgorithm);
  if (sealed.size() < kSaltBytes + iv_bytes + kDigestBytes) return ErrorCode::kFileDecrypt;
  const std::string_view salt = sealed.substr(0, kSaltBytes);
  const std::string_view iv = sealed.substr(kSaltBytes, iv_bytes);
  std::string body(sealed.substr(kSaltBytes + iv_bytes));
  const ErrorCode error = run_cipher(CipherDirection::kDecrypt, password, salt, iv, body);
  if (error != ErrorCode::kOk) return error;
  const std::string_view opened = body;
  const bool fits = digest_of(opened.substr(kDigestBytes)) == opened.substr(0, kDigestBytes);
  if (fits) plain = opened.substr(kDigestBytes);
  wipe(body);
  return fits ? ErrorCode::kOk : ErrorCode::kInvalidPassword;
}

}  // namespace rowvane

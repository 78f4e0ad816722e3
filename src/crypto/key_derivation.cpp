#include "crypto/key_derivation.h"

#include <cryptopp/pwdbased.h>
#include <cryptopp/sha.h>

#include "crypto/cipher.h"

namespace rowvane {

ErrorCode derive_key(const Secret& password, std::string_view salt, Secret& key) {
  using CryptoPP::byte;
  using CryptoPP::SHA1;
  if (salt.size() != kSaltBytes) return ErrorCode::kCryptographicKey;
  const auto bytes_of = [](std::string_view text) { return reinterpret_cast<const byte*>(text.data()); };
  try {
    CryptoPP::SecByteBlock hash(SHA1::DIGESTSIZE);
    SHA1().CalculateDigest(hash, bytes_of(password.view()), password.size());
    key = Secret::of_size(kKeyBytes);
    constexpr byte kNoPurpose = 0;
    CryptoPP::PKCS5_PBKDF2_HMAC<SHA1>().DeriveKey(reinterpret_cast<byte*>(key.bytes().data()), key.size(),
                                                  kNoPurpose, hash, hash.size(), bytes_of(salt), salt.size(),
                                                  kKeyIterations);
    return ErrorCode::kOk;
  } catch (const CryptoPP::Exception&) {
    return ErrorCode::kCryptographicKey;
  }
}

}  // namespace rowvane

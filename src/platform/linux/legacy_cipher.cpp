#include "platform/legacy_cipher.h"

#define CRYPTOPP_ENABLE_NAMESPACE_WEAK 1
#include <cryptopp/arc4.h>
#include <cryptopp/md5.h>
#include <cryptopp/secblock.h>

namespace rowvane::platform {

using CryptoPP::byte;

struct LegacyCipher::State {
  CryptoPP::Weak::ARC4 stream;
};

LegacyCipher::LegacyCipher() = default;
LegacyCipher::~LegacyCipher() = default;

bool LegacyCipher::start(std::string_view password, int key_bits) {
  constexpr size_t kLongKey = 16;
  constexpr size_t kShortKey = 5;
  state_.reset();
  try {
    CryptoPP::SecByteBlock hash(CryptoPP::Weak::MD5::DIGESTSIZE);
    CryptoPP::Weak::MD5().CalculateDigest(hash, reinterpret_cast<const byte*>(password.data()),
                                          password.size());
    auto state = std::make_unique<State>();
    state->stream.SetKey(hash, key_bits == 128 ? kLongKey : kShortKey);
    state_ = std::move(state);
    return true;
  } catch (const CryptoPP::Exception&) {
    return false;
  }
}

bool LegacyCipher::run(std::span<std::byte> bytes) {
  if (state_ == nullptr) return false;
  auto* const data = reinterpret_cast<byte*>(bytes.data());
  state_->stream.ProcessData(data, data, bytes.size());
  return true;
}

}  // namespace rowvane::platform

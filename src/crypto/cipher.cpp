#include "crypto/cipher.h"

#include <algorithm>
#include <array>

#include <cryptopp/blowfish.h>
#include <cryptopp/modes.h>
#include <cryptopp/twofish.h>

namespace rowvane {
namespace {

using CryptoPP::byte;
using CryptoPP::CFB_Mode;
using CryptoPP::SymmetricCipher;

struct Cipher {
  std::string_view name;
  size_t block_bytes;
  std::unique_ptr<SymmetricCipher> (*make)(CipherDirection direction);
};

template <typename BlockCipher>
std::unique_ptr<SymmetricCipher> make_mode(CipherDirection direction) {
  if (direction == CipherDirection::kEncrypt)
    return std::make_unique<typename CFB_Mode<BlockCipher>::Encryption>();
  return std::make_unique<typename CFB_Mode<BlockCipher>::Decryption>();
}

constexpr std::array kCiphers{Cipher{"Blowfish CFB", 8, make_mode<CryptoPP::Blowfish>},
                              Cipher{"Twofish CFB", 16, make_mode<CryptoPP::Twofish>}};

const Cipher& cipher_of(CipherAlgorithm algorithm) {
  return kCiphers[static_cast<size_t>(algorithm)];
}

const byte* bytes_of(std::string_view text) {
  return reinterpret_cast<const byte*>(text.data());
}

}  // namespace

std::string_view cipher_name(CipherAlgorithm algorithm) {
  return cipher_of(algorithm).name;
}

std::optional<CipherAlgorithm> cipher_named(std::string_view name) {
  const auto* const found = std::ranges::find(kCiphers, name, &Cipher::name);
  if (found == kCiphers.end()) return std::nullopt;
  return static_cast<CipherAlgorithm>(found - kCiphers.begin());
}

size_t block_bytes(CipherAlgorithm algorithm) {
  return cipher_of(algorithm).block_bytes;
}

struct CipherStream::Mode {
  std::unique_ptr<SymmetricCipher> cipher;
  ErrorCode failure = ErrorCode::kOk;  // what a failure of this direction is called
};

CipherStream::CipherStream() = default;
CipherStream::~CipherStream() = default;
CipherStream::CipherStream(CipherStream&&) noexcept = default;
CipherStream& CipherStream::operator=(CipherStream&&) noexcept = default;

ErrorCode CipherStream::start(CipherAlgorithm algorithm, CipherDirection direction, const Secret& key,
                              std::string_view iv) {
  if (key.size() != kKeyBytes || iv.size() != block_bytes(algorithm)) return ErrorCode::kCryptographicKey;
  try {
    const bool encrypts = direction == CipherDirection::kEncrypt;
    mode_ = std::make_unique<Mode>();
    mode_->cipher = cipher_of(algorithm).make(direction);
    mode_->failure = encrypts ? ErrorCode::kFileEncrypt : ErrorCode::kFileDecrypt;
    mode_->cipher->SetKeyWithIV(bytes_of(key.view()), key.size(), bytes_of(iv), iv.size());
    return ErrorCode::kOk;
  } catch (const CryptoPP::Exception&) {
    mode_.reset();
    return ErrorCode::kCryptographicKey;
  }
}

ErrorCode CipherStream::restart(std::string_view iv) {
  if (mode_ == nullptr || iv.size() != mode_->cipher->IVSize()) return ErrorCode::kCryptographicKey;
  try {
    mode_->cipher->Resynchronize(bytes_of(iv), static_cast<int>(iv.size()));
    return ErrorCode::kOk;
  } catch (const CryptoPP::Exception&) {
    return ErrorCode::kCryptographicKey;
  }
}

ErrorCode CipherStream::run(std::span<char> bytes) {
  if (mode_ == nullptr) return ErrorCode::kCryptographicKey;
  if (bytes.empty()) return ErrorCode::kOk;
  try {
    byte* const data = reinterpret_cast<byte*>(bytes.data());
    mode_->cipher->ProcessData(data, data, bytes.size());
    return ErrorCode::kOk;
  } catch (const CryptoPP::Exception&) {
    return mode_->failure;
  }
}

}  // namespace rowvane

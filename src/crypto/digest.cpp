#include "crypto/digest.h"

#include <cstdint>

#include <cryptopp/sha.h>

namespace rowvane {

struct ContentDigest::Hash {
  CryptoPP::SHA1 sha1;
};

ContentDigest::ContentDigest(std::string_view type)
    : hash_(std::make_unique<Hash>()), limit_(type == kDigestOfStart ? 1024 : SIZE_MAX) {}
ContentDigest::~ContentDigest() = default;
ContentDigest::ContentDigest(ContentDigest&&) noexcept = default;
ContentDigest& ContentDigest::operator=(ContentDigest&&) noexcept = default;

void ContentDigest::update(std::string_view bytes) {
  bytes = bytes.substr(0, limit_);
  hash_->sha1.Update(reinterpret_cast<const CryptoPP::byte*>(bytes.data()), bytes.size());
  if (limit_ != SIZE_MAX) limit_ -= bytes.size();
}

std::string ContentDigest::finish() {
  std::string digest(kDigestBytes, '\0');
  hash_->sha1.Final(reinterpret_cast<CryptoPP::byte*>(digest.data()));
  return digest;
}

}  // namespace rowvane

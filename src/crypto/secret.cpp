#include "crypto/secret.h"

#include <algorithm>
#include <utility>

#include <cryptopp/misc.h>

namespace rowvane {

void wipe(std::span<char> bytes) {
  CryptoPP::SecureWipeArray(reinterpret_cast<CryptoPP::byte*>(bytes.data()), bytes.size());
}

void wipe(std::string& text) {
  text.resize(text.capacity());
  wipe(std::span(text));
  text.clear();
}

Secret::Secret(std::string_view bytes) : Secret(of_size(bytes.size())) {
  std::copy(bytes.begin(), bytes.end(), bytes_.get());
}

Secret Secret::of_size(size_t size) {
  Secret secret;
  if (size > 0) secret.bytes_ = std::make_unique<char[]>(size);
  secret.size_ = size;
  return secret;
}

Secret Secret::take(std::string& text) {
  Secret secret{std::string_view(text)};
  wipe(text);
  return secret;
}

Secret::~Secret() {
  clear();
}

Secret::Secret(Secret&& other) noexcept
    : bytes_(std::move(other.bytes_)), size_(std::exchange(other.size_, 0)) {}

Secret& Secret::operator=(Secret&& other) noexcept {
  if (this == &other) return *this;
  clear();
  bytes_ = std::move(other.bytes_);
  size_ = std::exchange(other.size_, 0);
  return *this;
}

void Secret::clear() {
  wipe(bytes());
  bytes_.reset();
  size_ = 0;
}

bool Secret::operator==(const Secret& other) const {
  if (size_ != other.size_) return false;
  const auto* own = reinterpret_cast<const CryptoPP::byte*>(bytes_.get());
  return CryptoPP::VerifyBufsEqual(own, reinterpret_cast<const CryptoPP::byte*>(other.bytes_.get()), size_);
}

}  // namespace rowvane

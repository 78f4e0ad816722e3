#include "crypto/random_source.h"

#include <cryptopp/osrng.h>

namespace rowvane {

struct RandomSource::Pool {
  CryptoPP::AutoSeededRandomPool generator;
};

RandomSource::RandomSource() = default;
RandomSource::~RandomSource() = default;
RandomSource::RandomSource(RandomSource&&) noexcept = default;

ErrorCode RandomSource::fill(std::span<char> bytes) {
  try {
    if (pool_ == nullptr) pool_ = std::make_unique<Pool>();
    pool_->generator.GenerateBlock(reinterpret_cast<CryptoPP::byte*>(bytes.data()), bytes.size());
    return ErrorCode::kOk;
  } catch (const CryptoPP::Exception&) {
    return ErrorCode::kCryptographicKey;
  }
}

ErrorCode RandomSource::fill(size_t size, std::string& out) {
  out.assign(size, '\0');
  return fill(out);
}

}  // namespace rowvane

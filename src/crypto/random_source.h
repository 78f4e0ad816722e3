// Unpredictable bytes for salts and initialisation vectors.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "core/messages/error_code.h"

namespace rowvane {

// A generator seeded by the system. Belongs to one thread at a time.
class RandomSource {
 public:
  RandomSource();
  ~RandomSource();
  RandomSource(RandomSource&&) noexcept;

  // kCryptographicKey when the system gives no seed.
  ErrorCode fill(std::span<char> bytes);
  // SIZE bytes.
  ErrorCode fill(size_t size, std::string& out);

 private:
  struct Pool;
  std::unique_ptr<Pool> pool_;
};

}  // namespace rowvane

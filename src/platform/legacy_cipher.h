// The cipher of the old database format: RC4 with a key made of the MD5 of the password, without salt.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace rowvane::platform {

// One stream; encrypting and decrypting are the same. Belongs to one thread at a time.
class LegacyCipher {
 public:
  LegacyCipher();
  ~LegacyCipher();
  LegacyCipher(const LegacyCipher&) = delete;
  LegacyCipher& operator=(const LegacyCipher&) = delete;

  // Starts a stream. The key has 128 bits when KEY_BITS is 128, otherwise 40. False when the system can't
  // make it.
  bool start(std::string_view password, int key_bits);
  // Goes on with the next bytes, in place. False without a stream, or when the system fails.
  bool run(std::span<std::byte> bytes);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace rowvane::platform

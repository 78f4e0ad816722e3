#include "platform/legacy_cipher.h"

#include <algorithm>
#include <limits>

// wincrypt.h needs what windows.h declares.
// clang-format off
#include <windows.h>
#include <wincrypt.h>
// clang-format on

namespace rowvane::platform {
namespace {

// The strong provider, then the base one, each first with the default key set and then with a new one.
HCRYPTPROV acquire_provider() {
  HCRYPTPROV provider = 0;
  for (const wchar_t* name : {MS_STRONG_PROV_W, MS_DEF_PROV_W}) {
    for (const DWORD flags : {DWORD{0}, DWORD{CRYPT_NEWKEYSET}}) {
      if (CryptAcquireContextW(&provider, nullptr, name, PROV_RSA_FULL, flags) != 0) return provider;
    }
  }
  return 0;
}

}  // namespace

struct LegacyCipher::State {
  HCRYPTPROV provider = 0;
  HCRYPTHASH hash = 0;
  HCRYPTKEY key = 0;

  State() = default;
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() {
    if (key != 0) CryptDestroyKey(key);
    if (hash != 0) CryptDestroyHash(hash);
    if (provider != 0) CryptReleaseContext(provider, 0);
  }

  bool start(std::string_view password, int key_bits) {
    constexpr DWORD kShortKey = 40;
    constexpr DWORD kLongKey = 128;
    const DWORD bits = key_bits == static_cast<int>(kLongKey) ? kLongKey : kShortKey;
    provider = acquire_provider();
    return provider != 0 && CryptCreateHash(provider, CALG_MD5, 0, 0, &hash) != 0 &&
           CryptHashData(hash, reinterpret_cast<const BYTE*>(password.data()),
                         static_cast<DWORD>(password.size()), 0) != 0 &&
           CryptDeriveKey(provider, CALG_RC4, hash, (bits << 16) | CRYPT_NO_SALT, &key) != 0;
  }
};

LegacyCipher::LegacyCipher() = default;
LegacyCipher::~LegacyCipher() = default;

bool LegacyCipher::start(std::string_view password, int key_bits) {
  auto state = std::make_unique<State>();
  const bool started = state->start(password, key_bits);
  state_ = started ? std::move(state) : nullptr;
  return started;
}

bool LegacyCipher::run(std::span<std::byte> bytes) {
  if (state_ == nullptr) return false;
  while (!bytes.empty()) {
    constexpr size_t kMost = std::numeric_limits<DWORD>::max();
    auto count = static_cast<DWORD>(std::min(bytes.size(), kMost));
    // Not the final part: the stream would start anew.
    if (CryptDecrypt(state_->key, 0, FALSE, 0, reinterpret_cast<BYTE*>(bytes.data()), &count) == 0)
      return false;
    bytes = bytes.subspan(count);
  }
  return true;
}

}  // namespace rowvane::platform

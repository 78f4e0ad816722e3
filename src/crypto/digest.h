// SHA-1 digests of contents.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace rowvane {

inline constexpr size_t kDigestBytes = 20;
inline constexpr std::string_view kDigestOfStart =
    "SHA1/1K";  // of the first 1,024 bytes, or of all when less
inline constexpr std::string_view kDigestOfAll = "SHA1";

// The digest of a content that comes in pieces. Belongs to one thread at a time.
class ContentDigest {
 public:
  // TYPE is kDigestOfStart, or anything else for the whole content.
  explicit ContentDigest(std::string_view type = kDigestOfAll);
  ~ContentDigest();
  ContentDigest(ContentDigest&&) noexcept;
  ContentDigest& operator=(ContentDigest&&) noexcept;

  void update(std::string_view bytes);
  // The kDigestBytes bytes; nothing may follow.
  std::string finish();

 private:
  struct Hash;
  std::unique_ptr<Hash> hash_;
  size_t limit_;  // bytes that still count
};

}  // namespace rowvane

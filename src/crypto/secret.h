// Passwords and keys: bytes that leave no trace in memory.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace rowvane {

// Overwrites what TEXT holds, its unused room included, and empties it.
void wipe(std::string& text);
void wipe(std::span<char> bytes);

// Bytes that are overwritten before their memory is given back. Can be moved but not copied: a moved secret
// stays where it lies, so that there is one of it.
class Secret {
 public:
  Secret() = default;
  // A copy of BYTES, whose own place is the caller's to wipe.
  explicit Secret(std::string_view bytes);
  // SIZE zeros, to be filled through `bytes`.
  static Secret of_size(size_t size);
  // The content of TEXT, which is wiped.
  static Secret take(std::string& text);
  ~Secret();
  Secret(Secret&& other) noexcept;
  Secret& operator=(Secret&& other) noexcept;
  Secret(const Secret&) = delete;
  Secret& operator=(const Secret&) = delete;

  bool empty() const { return size_ == 0; }
  size_t size() const { return size_; }
  std::string_view view() const { return {bytes_.get(), size_}; }
  std::span<char> bytes() { return {bytes_.get(), size_}; }

  // Takes equally long for all secrets of one size.
  bool operator==(const Secret& other) const;

 private:
  void clear();

  std::unique_ptr<char[]> bytes_;
  size_t size_ = 0;
};

}  // namespace rowvane

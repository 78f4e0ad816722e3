// Text read with letter case folded away, without making a folded copy of it.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace rowvane {

// Walks over the bytes of platform::fold_case(TEXT). Allocates nothing for the texts that people write.
class FoldedBytes {
 public:
  explicit FoldedBytes(std::string_view text) : text_(text) {}

  bool at_end() const { return next_in_folded_ == folded_.size() && position_ == text_.size(); }
  // The next byte; there must be one.
  uint8_t next() {
    if (next_in_folded_ < folded_.size()) return static_cast<uint8_t>(folded_[next_in_folded_++]);
    const auto byte = static_cast<uint8_t>(text_[position_]);
    if (byte >= 0x80) return fold_character();
    ++position_;
    return byte >= 'A' && byte <= 'Z' ? static_cast<uint8_t>(byte + 32) : byte;
  }
  // Bytes of TEXT read so far. Between two characters only where `at_boundary`.
  size_t position() const { return position_; }
  bool at_boundary() const { return next_in_folded_ == folded_.size(); }

 private:
  uint8_t fold_character();

  std::string_view text_;
  size_t position_ = 0;
  std::string folded_;  // of the last character that is not ASCII
  size_t next_in_folded_ = 0;
};

// The order of the folded texts by code points.
std::strong_ordering compare_folded(std::string_view a, std::string_view b);

// True when TEXT begins with FRONT, letter case aside. A character of TEXT whose folded form is longer than
// one character may be matched in part: "Straße" begins with "stras".
bool begins_folded(std::string_view text, std::string_view front);
// The byte at or behind FROM, where a character of TEXT begins, at which WANTED stands in TEXT for the first
// time in the same sense.
std::optional<size_t> find_folded(std::string_view text, std::string_view wanted, size_t from = 0);

}  // namespace rowvane

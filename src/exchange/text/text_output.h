// A string that is appended to through a plain pointer.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace rowvane {

// Keeps the string longer than what was written, so that most appends are a comparison and a copy; `finish`,
// or the end of the output, cuts it to size. The string must not be used before.
class TextOutput {
 public:
  explicit TextOutput(std::string& text) : text_(text), length_(text.size()) { find_ends(); }
  ~TextOutput() { finish(); }
  TextOutput(const TextOutput&) = delete;
  TextOutput& operator=(const TextOutput&) = delete;

  // The place of the next byte, with room for BYTES.
  char* reserve(size_t bytes) {
    if (static_cast<size_t>(end_ - next_) < bytes) grow(bytes);
    return next_;
  }
  // What was written ends before TO.
  void advance(char* to) { next_ = to; }

  void append(std::string_view bytes) {
    char* const to = reserve(bytes.size());
    if (!bytes.empty()) std::memcpy(to, bytes.data(), bytes.size());
    advance(to + bytes.size());
  }
  void append(char byte) {
    char* const to = reserve(1);
    *to = byte;
    advance(to + 1);
  }
  void append(size_t count, char byte) {
    char* const to = reserve(count);
    std::fill_n(to, count, byte);
    advance(to + count);
  }

  // Bytes in the string, those from before included.
  size_t size() const { return static_cast<size_t>(next_ - text_.data()); }

  void finish() {
    text_.resize(size());
    length_ = text_.size();
    find_ends();
  }

 private:
  static constexpr size_t kFirstRoom = 4096;

  void grow(size_t bytes) {
    length_ = size();
    text_.resize(length_ + std::max({bytes, length_, kFirstRoom}));
    find_ends();
  }
  void find_ends() {
    next_ = text_.data() + length_;
    end_ = text_.data() + text_.size();
  }

  std::string& text_;
  size_t length_;
  char* next_ = nullptr;
  char* end_ = nullptr;
};

}  // namespace rowvane

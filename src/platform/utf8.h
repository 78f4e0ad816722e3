// UTF-8 read and written one character at a time.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace rowvane::platform {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

// Reads the character at POSITION, which must be inside TEXT, and moves POSITION behind it. A broken sequence
// reads as U+FFFD, once for the longest part of it that could have begun a character.
char32_t next_utf8(std::string_view text, size_t& position);

// Writes CHARACTER, a Unicode scalar value, to the up to four bytes at OUT; answers how many they are.
inline size_t put_utf8(char32_t character, char* out) {
  const auto tail = [&](int shift) { return static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) {
    out[0] = static_cast<char>(character);
    return 1;
  }
  if (character < 0x800) {
    out[0] = static_cast<char>(0xC0 | (character >> 6));
    out[1] = tail(0);
    return 2;
  }
  if (character < 0x10000) {
    out[0] = static_cast<char>(0xE0 | (character >> 12));
    out[1] = tail(6);
    out[2] = tail(0);
    return 3;
  }
  out[0] = static_cast<char>(0xF0 | (character >> 18));
  out[1] = tail(12);
  out[2] = tail(6);
  out[3] = tail(0);
  return 4;
}

// Appends CHARACTER, a Unicode scalar value.
void append_utf8(char32_t character, std::string& out);

// Length of the longest beginning of TEXT that has at most MOST bytes and no character cut at its end.
size_t whole_characters(std::string_view text, size_t most);

// Number of bytes from POSITION on that are ASCII.
size_t ascii_run(std::string_view text, size_t position);

}  // namespace rowvane::platform

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

// Appends CHARACTER, a Unicode scalar value.
void append_utf8(char32_t character, std::string& out);

// Number of bytes from POSITION on that are ASCII.
size_t ascii_run(std::string_view text, size_t position);

}  // namespace rowvane::platform

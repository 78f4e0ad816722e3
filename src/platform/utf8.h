// UTF-8 text: all text inside a database.
//
// Bytes that are no part of a well-formed character read as U+FFFD: once for each longest part that could
// have begun a character, so that a character that was cut counts once, and a byte that begins none counts
// alone. Well-formed are no overlong forms, no surrogates, nothing above U+10FFFF.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace rowvane {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;
// What may stand at the beginning of a UTF-8 text to tell its encoding.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// ---- reading

// Reads the character at POSITION, which must be inside TEXT, and moves POSITION behind it.
char32_t next_character(std::string_view text, size_t& position);
// Bytes of the well-formed character at POSITION, which must be inside TEXT; 0 when what stands there is
// broken.
size_t character_length(std::string_view text, size_t position);

bool is_valid_utf8(std::string_view text);
bool is_ascii(std::string_view text);
// Number of bytes from POSITION on that are ASCII.
size_t ascii_run(std::string_view text, size_t position);

// Number of characters (code points), as often as next_character reads one.
size_t count_characters(std::string_view text);

// ---- cutting

// The longest front of TEXT with at most MAX characters.
std::string_view truncate_characters(std::string_view text, size_t max);
// The longest front of TEXT with at most MAX bytes that cuts no character.
std::string_view truncate_bytes(std::string_view text, size_t max);

// ---- writing

// Writes CHARACTER, a Unicode scalar value, to the up to four bytes at OUT; answers how many they are.
inline size_t put_character(char32_t character, char* out) {
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

// Appends CHARACTER; surrogates and numbers above U+10FFFF become U+FFFD.
void append_character(char32_t character, std::string& out);

// TEXT with every byte that is no part of a well-formed character taken as a character of Windows code page
// 1252 and rewritten in UTF-8, so that it stays readable: text that an "ANSI" program wrote reads as it was
// meant.
std::string repair_utf8(std::string_view text);

}  // namespace rowvane

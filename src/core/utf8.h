// UTF-8 text: all text inside a database.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace rowvane {

// What may stand at the beginning of a UTF-8 text to tell its encoding.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// True when TEXT is well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool is_valid_utf8(std::string_view text);
bool is_ascii(std::string_view text);

// Number of characters (code points); a byte that is no part of a well-formed sequence counts as one.
size_t count_characters(std::string_view text);

// The longest front of TEXT with at most MAX characters.
std::string_view truncate_characters(std::string_view text, size_t max);
// The longest front of TEXT with at most MAX bytes that cuts no character.
std::string_view truncate_bytes(std::string_view text, size_t max);

// Reads the character at POSITION and moves POSITION behind it. A broken byte reads as U+FFFD.
char32_t next_character(std::string_view text, size_t& position);
// Appends CHARACTER; surrogates and numbers above U+10FFFF become U+FFFD.
void append_character(char32_t character, std::string& out);

// TEXT with every byte that is no part of a well-formed sequence taken as a character of Windows code page
// 1252 and rewritten in UTF-8, so that it stays readable: text that an "ANSI" program wrote reads as it was
// meant.
std::string repair_utf8(std::string_view text);

}  // namespace rowvane

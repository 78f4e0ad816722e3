// What Windows knows of the characters up to U+FFFF, asked for once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace rowvane::platform {

inline constexpr size_t kTableCharacters = 0x10000;

struct CharacterTable {
  std::array<char16_t, kTableCharacters> lower_case;
  std::array<uint16_t, kTableCharacters> kinds;   // C1_ALPHA and its kin
  std::array<uint16_t, kTableCharacters> traits;  // C3_NONSPACING and its kin

  bool is_letter(char32_t character) const;
  // A mark on, under or around the letter before it.
  bool is_nonspacing_mark(char32_t character) const;
  // Also a vowel sign with a place of its own.
  bool is_mark(char32_t character) const;
};

// Made on first use. All characters of it are in the table, others have no place in it.
const CharacterTable& character_table();

}  // namespace rowvane::platform

// The characters of one code page, laid out for conversion in both directions.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace rowvane::platform {

inline constexpr char16_t kNoCharacter = 0xFFFD;
inline constexpr uint16_t kNoBytes = 0;

struct CodePageTable {
  unsigned number = 0;
  // UTF-8 of a one-byte character, ready to be copied as four bytes of which LENGTH count.
  struct Utf8 {
    std::array<char, 4> bytes{};
    uint8_t length = 0;
  };

  std::array<Utf8, 256> single_bytes{};
  std::array<bool, 256> is_lead_byte{};
  // Characters by (lead byte << 8 | trail byte), or by the byte alone; only the first 256 for single-byte
  // pages.
  std::vector<char16_t> characters;
  // The bytes of each character up to U+FFFF, the lead byte high; kNoBytes for those the page does not hold.
  std::vector<uint16_t> bytes;
  bool is_double_byte = false;

  uint16_t bytes_of(char32_t character) const {
    return character < bytes.size() ? bytes[character] : kNoBytes;
  }
};

// What the system knows of code pages.

// A new table for the page NUMBER; null for pages that it does not know.
std::shared_ptr<const CodePageTable> make_code_page_table(unsigned number);
// The bytes of the character that TABLE holds and that can stand for CHARACTER, which it does not hold; those
// of
// "?" where there is none.
uint16_t best_fit(const CodePageTable& table, char32_t character);
// The user's page for WHICH, kDefaultAnsiCodePage or kDefaultOemCodePage.
unsigned default_code_page(unsigned which);

// Gives the one-byte character BYTE of TABLE its meaning.
void set_single_byte(unsigned byte, char16_t character, CodePageTable& table);
// Fills `bytes` from `characters`. Double-byte pages hold some characters twice: PREFERRED answers the place
// that the system takes, kNoBytes for none.
void invert_code_page(const std::function<uint16_t(char16_t)>& preferred, CodePageTable& table);

}  // namespace rowvane::platform

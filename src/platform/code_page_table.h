// The characters of one code page, laid out for conversion in both directions.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace rowvane::platform {

inline constexpr char16_t kNoCharacter = 0xFFFD;
inline constexpr uint16_t kNoBytes = 0;

struct CodePageTable {
  // UTF-8 of a one-byte character, ready to be copied as four bytes of which LENGTH count.
  struct Utf8 {
    std::array<char, 4> bytes{};
    uint8_t length = 0;
  };

  unsigned number = 0;
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

// The table of the page NUMBER, made on first use and kept; null for pages that are not known.
std::shared_ptr<const CodePageTable> code_page_table(unsigned number);

}  // namespace rowvane::platform

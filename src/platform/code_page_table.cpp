#include "platform/code_page_table.h"

#include <algorithm>
#include <string>

#include "platform/utf8.h"

namespace rowvane::platform {

void set_single_byte(unsigned byte, char16_t character, CodePageTable& table) {
  table.characters[byte] = character;
  std::string utf8;
  append_utf8(character, utf8);
  std::ranges::copy(utf8, table.single_bytes[byte].bytes.begin());
  table.single_bytes[byte].length = static_cast<uint8_t>(utf8.size());
}

void invert_code_page(const std::function<uint16_t(char16_t)>& preferred, CodePageTable& table) {
  table.bytes.assign(0x10000, kNoBytes);
  for (size_t code = 1; code < table.characters.size(); ++code) {
    const char16_t character = table.characters[code];
    if (character == kNoCharacter || table.bytes[character] != kNoBytes) continue;
    const uint16_t place = character < 0x80 ? kNoBytes : preferred(character);
    const bool is_counterpart = place < table.characters.size() && table.characters[place] == character;
    table.bytes[character] = is_counterpart ? place : static_cast<uint16_t>(code);
  }
}

}  // namespace rowvane::platform

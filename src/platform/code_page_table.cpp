#include "platform/code_page_table.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <string>

#include "platform/code_page_source.h"
#include "platform/utf8.h"

namespace rowvane::platform {
namespace {

void mark_lead_bytes(const CodePageSource& source, CodePageTable& table) {
  for (unsigned byte = 0x80; byte < 256; ++byte) {
    table.is_lead_byte[byte] = source.is_lead_byte(static_cast<unsigned char>(byte));
  }
  table.is_double_byte = std::ranges::find(table.is_lead_byte, true) != table.is_lead_byte.end();
}

void set_single_byte(unsigned byte, char16_t character, CodePageTable& table) {
  table.characters[byte] = character;
  std::string utf8;
  append_character(character, utf8);
  std::ranges::copy(utf8, table.single_bytes[byte].bytes.begin());
  table.single_bytes[byte].length = static_cast<uint8_t>(utf8.size());
}

void read_single_bytes(CodePageSource& source, CodePageTable& table) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    // Some pages have pictures in place of the control characters, which mean themselves in files.
    const char16_t character = byte < 0x80                ? static_cast<char16_t>(byte)
                               : table.is_lead_byte[byte] ? kNoCharacter
                                                          : source.character_of(byte, 1);
    set_single_byte(byte, character, table);
  }
}

void read_double_bytes(CodePageSource& source, CodePageTable& table) {
  for (unsigned lead = 0; lead < 256; ++lead) {
    if (!table.is_lead_byte[lead]) continue;
    for (unsigned trail = 0x40; trail < 0xFF; ++trail) {
      const unsigned code = lead << 8 | trail;
      table.characters[code] = source.character_of(code, 2);
    }
  }
}

void invert(CodePageSource& source, CodePageTable& table) {
  table.bytes.assign(0x10000, kNoBytes);
  for (size_t code = 1; code < table.characters.size(); ++code) {
    const char16_t character = table.characters[code];
    if (character == kNoCharacter || table.bytes[character] != kNoBytes) continue;
    // Double-byte pages hold some characters twice; the system knows which place is preferred.
    const uint16_t preferred = character < 0x80 ? kNoBytes : source.bytes_of(character);
    const bool is_counterpart =
        preferred < table.characters.size() && table.characters[preferred] == character;
    table.bytes[character] = is_counterpart ? preferred : static_cast<uint16_t>(code);
  }
}

std::shared_ptr<const CodePageTable> make_table(unsigned number) {
  const std::unique_ptr<CodePageSource> source = CodePageSource::open(number);
  if (source == nullptr) return nullptr;
  auto table = std::make_shared<CodePageTable>();
  table->number = number;
  mark_lead_bytes(*source, *table);
  table->characters.assign(table->is_double_byte ? 0x10000 : 0x100, kNoCharacter);
  read_single_bytes(*source, *table);
  if (table->is_double_byte) read_double_bytes(*source, *table);
  invert(*source, *table);
  return table;
}

}  // namespace

std::shared_ptr<const CodePageTable> code_page_table(unsigned number) {
  static std::mutex mutex;
  static std::map<unsigned, std::shared_ptr<const CodePageTable>> tables;
  const std::lock_guard lock(mutex);
  if (const auto known = tables.find(number); known != tables.end()) return known->second;
  std::shared_ptr<const CodePageTable> table = make_table(number);
  if (table != nullptr) tables.emplace(number, table);
  return table;
}

}  // namespace rowvane::platform

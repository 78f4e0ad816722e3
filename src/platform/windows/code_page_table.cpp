#include "platform/code_page_table.h"

#include <windows.h>

#include "platform/code_pages.h"

namespace rowvane::platform {
namespace {

// Not every system has page 858, which is page 850 with a euro sign in the place of the dotless i.
constexpr unsigned kPageWithEuro = 858;
constexpr unsigned kPageWithoutEuro = 850;
constexpr unsigned kEuroByte = 0xD5;
constexpr char16_t kEuro = 0x20AC;

// Windows gives bytes without a meaning characters of its private area.
bool is_private(wchar_t character) {
  return character >= 0xE000 && character < 0xF900;
}

// The character of one or two bytes; kNoCharacter when they have none.
char16_t character_of(unsigned page, unsigned code, int length) {
  const char bytes[] = {static_cast<char>(length == 2 ? code >> 8 : code), static_cast<char>(code)};
  wchar_t characters[4];
  const int count = ::MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes, length, characters, 4);
  if (count != 1 || is_private(characters[0])) return kNoCharacter;
  return static_cast<char16_t>(characters[0]);
}

uint16_t bytes_of(unsigned page, DWORD flags, std::wstring_view character) {
  char bytes[8];
  BOOL used_default = FALSE;
  const int count = ::WideCharToMultiByte(page, flags, character.data(), static_cast<int>(character.size()),
                                          bytes, sizeof bytes, nullptr, &used_default);
  if (count < 1 || count > 2 || used_default != FALSE) return kNoBytes;
  const auto first = static_cast<unsigned char>(bytes[0]);
  return static_cast<uint16_t>(count == 1 ? first : first << 8 | static_cast<unsigned char>(bytes[1]));
}

void mark_lead_bytes(const CPINFO& info, CodePageTable& table) {
  table.is_double_byte = info.MaxCharSize == 2;
  for (size_t i = 0; i + 1 < MAX_LEADBYTES && info.LeadByte[i] != 0; i += 2) {
    for (unsigned byte = info.LeadByte[i]; byte <= info.LeadByte[i + 1]; ++byte)
      table.is_lead_byte[byte] = true;
  }
}

void read_characters(CodePageTable& table) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    const char16_t character = byte < 0x80                ? static_cast<char16_t>(byte)
                               : table.is_lead_byte[byte] ? kNoCharacter
                                                          : character_of(table.number, byte, 1);
    set_single_byte(byte, character, table);
    for (unsigned trail = 0x40; table.is_lead_byte[byte] && trail < 0xFF; ++trail) {
      table.characters[byte << 8 | trail] = character_of(table.number, byte << 8 | trail, 2);
    }
  }
}

}  // namespace

std::shared_ptr<const CodePageTable> make_code_page_table(unsigned number) {
  constexpr unsigned kLeastNumber = 37;  // below are names for the user's pages
  const bool has_euro_for_dotless_i = number == kPageWithEuro && ::IsValidCodePage(number) == 0;
  const unsigned system_number = has_euro_for_dotless_i ? kPageWithoutEuro : number;
  CPINFO info;
  if (number < kLeastNumber || ::GetCPInfo(system_number, &info) == 0 || info.MaxCharSize > 2) return nullptr;
  auto table = std::make_shared<CodePageTable>();
  table->number = system_number;
  mark_lead_bytes(info, *table);
  table->characters.assign(table->is_double_byte ? 0x10000 : 0x100, kNoCharacter);
  read_characters(*table);
  if (has_euro_for_dotless_i) set_single_byte(kEuroByte, kEuro, *table);
  invert_code_page(
      [system_number](char16_t character) {
        const auto wide = static_cast<wchar_t>(character);
        return bytes_of(system_number, WC_NO_BEST_FIT_CHARS, std::wstring_view(&wide, 1));
      },
      *table);
  return table;
}

uint16_t best_fit(const CodePageTable& table, char32_t character) {
  if (character >= 0x10000) return '?';
  const auto wide = static_cast<wchar_t>(character);
  const uint16_t bytes = bytes_of(table.number, 0, std::wstring_view(&wide, 1));
  return bytes == kNoBytes ? '?' : bytes;
}

unsigned default_code_page(unsigned which) {
  return which == kDefaultAnsiCodePage ? ::GetACP() : ::GetOEMCP();
}

}  // namespace rowvane::platform

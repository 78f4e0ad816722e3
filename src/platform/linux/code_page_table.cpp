#include "platform/code_page_table.h"

#include <algorithm>
#include <iterator>

#include <unicode/ucnv.h>

namespace rowvane::platform {
namespace {

struct ByteRange {
  unsigned first = 1;
  unsigned last = 0;
};

struct KnownPage {
  unsigned number;
  const char* converter;
  ByteRange lead_bytes = {};
  ByteRange more_lead_bytes = {};
  bool has_micro_sign = false;  // at kMicroByte, where the converter has the Greek letter of the same look
};

constexpr unsigned kMicroByte = 0xE6;
constexpr char16_t kMicroSign = 0x00B5;

constexpr KnownPage kKnownPages[] = {
    {437, "ibm-437", {}, {}, true},
    {720, "ibm-720"},
    {737, "ibm-737"},
    {775, "ibm-775"},
    {850, "ibm-850"},
    {852, "ibm-852"},
    {855, "ibm-855"},
    {857, "ibm-857"},
    {858, "ibm-858"},
    {860, "ibm-860", {}, {}, true},
    {861, "ibm-861", {}, {}, true},
    {862, "ibm-862", {}, {}, true},
    {863, "ibm-863", {}, {}, true},
    {865, "ibm-865", {}, {}, true},
    {866, "ibm-866"},
    {869, "ibm-869"},
    {874, "windows-874"},
    {932, "windows-932", {0x81, 0x9F}, {0xE0, 0xFC}},
    {936, "windows-936", {0x81, 0xFE}},
    {949, "windows-949", {0x81, 0xFE}},
    {950, "windows-950", {0x81, 0xFE}},
    {1250, "windows-1250"},
    {1251, "windows-1251"},
    {1252, "windows-1252"},
    {1253, "windows-1253"},
    {1254, "windows-1254"},
    {1255, "windows-1255"},
    {1256, "windows-1256"},
    {1257, "windows-1257"},
    {1258, "windows-1258"},
    {28591, "ISO-8859-1"},
    {28592, "ISO-8859-2"},
    {28593, "ISO-8859-3"},
    {28594, "ISO-8859-4"},
    {28595, "ISO-8859-5"},
    {28596, "ISO-8859-6"},
    {28597, "ISO-8859-7"},
    {28598, "ISO-8859-8"},
    {28599, "ISO-8859-9"},
    {28603, "ISO-8859-13"},
    {28605, "ISO-8859-15"},
};

class Converter {
 public:
  explicit Converter(const char* name) : converter_(ucnv_open(name, &error_)) {
    if (is_open()) ucnv_setFallback(converter_, false);
  }
  ~Converter() {
    if (converter_ != nullptr) ucnv_close(converter_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  bool is_open() const { return U_SUCCESS(error_); }

  // The character of one or two bytes; kNoCharacter when they have none.
  char16_t character_of(unsigned code, int length) {
    const char bytes[] = {static_cast<char>(length == 2 ? code >> 8 : code), static_cast<char>(code)};
    UChar characters[4];
    UErrorCode error = U_ZERO_ERROR;
    const int32_t count = ucnv_toUChars(converter_, characters, 4, bytes, length, &error);
    if (U_FAILURE(error) || count != 1 || characters[0] == kSubstitute) return kNoCharacter;
    return characters[0];
  }

  uint16_t bytes_of(char16_t character) {
    char bytes[8];
    UErrorCode error = U_ZERO_ERROR;
    const int32_t count = ucnv_fromUChars(converter_, bytes, sizeof bytes, &character, 1, &error);
    if (U_FAILURE(error) || count < 1 || count > 2) return kNoBytes;
    const auto first = static_cast<unsigned char>(bytes[0]);
    return static_cast<uint16_t>(count == 1 ? first : first << 8 | static_cast<unsigned char>(bytes[1]));
  }

 private:
  // What some converters answer in place of U+FFFD for a byte without a meaning.
  static constexpr char16_t kSubstitute = 0x1A;

  UErrorCode error_ = U_ZERO_ERROR;
  UConverter* converter_;
};

void mark_lead_bytes(ByteRange range, CodePageTable& table) {
  for (unsigned byte = range.first; byte <= range.last; ++byte) table.is_lead_byte[byte] = true;
  if (range.first <= range.last) table.is_double_byte = true;
}

void read_single_bytes(Converter& converter, CodePageTable& table) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    // Some of the converters swap control characters among the first 128, which mean themselves in every
    // page.
    const char16_t character = byte < 0x80                ? static_cast<char16_t>(byte)
                               : table.is_lead_byte[byte] ? kNoCharacter
                                                          : converter.character_of(byte, 1);
    set_single_byte(byte, character, table);
  }
}

void read_double_bytes(Converter& converter, CodePageTable& table) {
  for (unsigned lead = 0; lead < 256; ++lead) {
    if (!table.is_lead_byte[lead]) continue;
    for (unsigned trail = 0x40; trail < 0xFF; ++trail) {
      const unsigned code = lead << 8 | trail;
      table.characters[code] = converter.character_of(code, 2);
    }
  }
}

}  // namespace

std::shared_ptr<const CodePageTable> make_code_page_table(unsigned number) {
  const auto* const page = std::ranges::find(kKnownPages, number, &KnownPage::number);
  if (page == std::end(kKnownPages)) return nullptr;
  Converter converter(page->converter);
  if (!converter.is_open()) return nullptr;
  auto table = std::make_shared<CodePageTable>();
  table->number = number;
  mark_lead_bytes(page->lead_bytes, *table);
  mark_lead_bytes(page->more_lead_bytes, *table);
  table->characters.assign(table->is_double_byte ? 0x10000 : 0x100, kNoCharacter);
  read_single_bytes(converter, *table);
  if (page->has_micro_sign) set_single_byte(kMicroByte, kMicroSign, *table);
  if (table->is_double_byte) read_double_bytes(converter, *table);
  invert_code_page([&](char16_t character) { return converter.bytes_of(character); }, *table);
  return table;
}

}  // namespace rowvane::platform

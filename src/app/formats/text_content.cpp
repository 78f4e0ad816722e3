#include "app/formats/text_content.h"

#include <algorithm>
#include <cstddef>

namespace rowvane {
namespace {

// Among so many characters one may be a control: old files hold some, and bytes at random several times more.
constexpr size_t kCharactersForAControl = 50;
// Of UTF-16 without a mark, one character of so many at least is ASCII: line ends and separators are.
constexpr size_t kCharactersForAscii = 200;

// Line ends, tabs and forms are text; so are escape sequences, the end mark of old systems and the separators
// of fields and records (0x1C to 0x1F).
bool is_strange_control(unsigned character) {
  return character < 0x09 || (character > 0x0D && character < 0x1A) || character == 0x7F;
}

struct Utf16Count {
  size_t units = 0;
  size_t ascii = 0;
  size_t controls = 0;
  size_t broken = 0;  // zeros, halves of surrogate pairs, what is no character
};

Utf16Count count_utf16(std::string_view bytes, bool big_endian) {
  const auto unit_at = [&](size_t at) {
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<unsigned>(big_endian ? first << 8 | second : second << 8 | first);
  };
  Utf16Count count;
  for (size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const unsigned unit = unit_at(at);
    ++count.units;
    if (unit >= 0xD800 && unit < 0xDC00) {
      const bool is_cut = at + 3 >= bytes.size();
      const bool is_pair = !is_cut && unit_at(at + 2) >= 0xDC00 && unit_at(at + 2) < 0xE000;
      if (is_pair) at += 2;
      if (!is_pair && !is_cut) ++count.broken;
    } else if (unit == 0 || (unit >= 0xDC00 && unit < 0xE000) || unit >= 0xFFFE) {
      ++count.broken;
    } else if (is_strange_control(unit)) {
      ++count.controls;
    } else if (unit < 0x80) {
      ++count.ascii;
    }
  }
  return count;
}

bool is_marked_utf16(std::string_view bytes, std::string_view mark, bool big_endian) {
  if (!bytes.starts_with(mark)) return false;
  const Utf16Count count = count_utf16(bytes.substr(mark.size()), big_endian);
  return count.controls + count.broken <= count.units / kCharactersForAControl;
}

bool is_unmarked_utf16(const Utf16Count& count, const Utf16Count& other_order) {
  return count.broken == 0 && count.controls <= count.units / kCharactersForAControl &&
         count.ascii >= count.units / kCharactersForAscii && count.ascii > other_order.ascii;
}

// Blanks, digits and line ends tell the order of the bytes in any language.
TextContent content_with_zeros(std::string_view bytes) {
  const Utf16Count little = count_utf16(bytes, false);
  const Utf16Count big = count_utf16(bytes, true);
  if (is_unmarked_utf16(little, big)) return TextContent::kUtf16;
  return is_unmarked_utf16(big, little) ? TextContent::kBigEndianUtf16 : TextContent::kBinary;
}

}  // namespace

TextContent text_content_of(std::string_view bytes) {
  if (is_marked_utf16(bytes, "\xFF\xFE", false)) return TextContent::kUtf16;
  if (is_marked_utf16(bytes, "\xFE\xFF", true)) return TextContent::kBigEndianUtf16;
  if (bytes.find('\0') != std::string_view::npos) return content_with_zeros(bytes);
  const auto controls = static_cast<size_t>(std::ranges::count_if(
      bytes, [](char byte) { return is_strange_control(static_cast<unsigned char>(byte)); }));
  return controls <= 1 + bytes.size() / kCharactersForAControl ? TextContent::kText : TextContent::kBinary;
}

}  // namespace rowvane

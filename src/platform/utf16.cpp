#include <array>
#include <cstdint>
#include <cstring>

#include "platform/code_pages.h"
#include "platform/utf8.h"

namespace rowvane::platform {
namespace {

constexpr size_t kChunk = 1024;

bool is_high_surrogate(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool is_low_surrogate(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

char32_t unit_at(std::string_view bytes, size_t position) {
  const auto low = static_cast<unsigned char>(bytes[position]);
  const auto high = static_cast<unsigned char>(bytes[position + 1]);
  return static_cast<char32_t>(low | (high << 8));
}

// Appends the ASCII characters from POSITION on, at most kChunk of them; answers how many there were.
size_t copy_ascii_units(std::string_view bytes, size_t position, std::string& out) {
  std::array<char, kChunk> chunk;
  size_t count = 0;
  for (; count < kChunk && position + 2 <= bytes.size(); position += 2) {
    const char32_t unit = unit_at(bytes, position);
    if (unit >= 0x80) break;
    chunk[count++] = static_cast<char>(unit);
  }
  out.append(chunk.data(), count);
  return count;
}

// Appends some of the characters from POSITION on; answers how many bytes they took, 0 when all of the
// character at POSITION is not there yet.
size_t convert_units(std::string_view bytes, size_t position, bool more_follows, std::string& out) {
  std::array<char, kChunk> chunk;
  size_t length = 0;
  const size_t start = position;
  while (length + 4 <= kChunk && position + 2 <= bytes.size()) {
    char32_t unit = unit_at(bytes, position);
    const bool has_next = position + 4 <= bytes.size();
    if (is_high_surrogate(unit) && !has_next && more_follows) break;
    position += 2;
    if (is_high_surrogate(unit) && has_next && is_low_surrogate(unit_at(bytes, position))) {
      unit = 0x10000 + ((unit - 0xD800) << 10) + (unit_at(bytes, position) - 0xDC00);
      position += 2;
    } else if (is_high_surrogate(unit) || is_low_surrogate(unit)) {
      unit = kReplacementCharacter;
    }
    length += put_character(unit, chunk.data() + length);
  }
  out.append(chunk.data(), length);
  return position - start;
}

size_t put_unit(char32_t unit, char* out) {
  out[0] = static_cast<char>(unit & 0xFF);
  out[1] = static_cast<char>(unit >> 8);
  return 2;
}

// Appends some of the characters from POSITION on, which must be inside TEXT; answers the position behind
// them.
size_t convert_characters(std::string_view text, size_t position, std::string& out) {
  std::array<char, kChunk> chunk;
  size_t length = 0;
  while (length + 4 <= kChunk && position < text.size()) {
    const char32_t character = next_character(text, position);
    char* const place = chunk.data() + length;
    if (character < 0x10000) {
      length += put_unit(character, place);
    } else {
      length += put_unit(0xD800 + ((character - 0x10000) >> 10), place);
      length += put_unit(0xDC00 + ((character - 0x10000) & 0x3FF), place + 2);
    }
  }
  out.append(chunk.data(), length);
  return position;
}

void append_ascii_units(std::string_view ascii, std::string& out) {
  const size_t start = out.size();
  out.resize(start + 2 * ascii.size());
  for (size_t i = 0; i < ascii.size(); ++i) out[start + 2 * i] = ascii[i];
}

}  // namespace

size_t utf16le_to_utf8(std::string_view bytes, bool more_follows, std::string& out) {
  size_t position = 0;
  for (;;) {
    const size_t ascii = 2 * copy_ascii_units(bytes, position, out);
    const size_t others = convert_units(bytes, position + ascii, more_follows, out);
    if (ascii + others == 0) return position;
    position += ascii + others;
  }
}

void utf8_to_utf16le(std::string_view text, std::string& out) {
  size_t position = 0;
  while (position < text.size()) {
    const size_t run = ascii_run(text, position);
    append_ascii_units(text.substr(position, run), out);
    position = convert_characters(text, position + run, out);
  }
}

}  // namespace rowvane::platform

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

void append_unit(char32_t unit, std::string& out) {
  const char bytes[] = {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
  out.append(bytes, 2);
}

void append_ascii_units(std::string_view ascii, std::string& out) {
  const size_t start = out.size();
  out.resize(start + 2 * ascii.size());
  for (size_t i = 0; i < ascii.size(); ++i) out[start + 2 * i] = ascii[i];
}

}  // namespace

size_t utf16le_to_utf8(std::string_view bytes, bool more_follows, std::string& out) {
  size_t position = 0;
  while (position + 2 <= bytes.size()) {
    if (const size_t count = copy_ascii_units(bytes, position, out); count > 0) {
      position += 2 * count;
      continue;
    }
    const char32_t unit = unit_at(bytes, position);
    const bool has_next = position + 4 <= bytes.size();
    if (is_high_surrogate(unit) && !has_next && more_follows) break;
    position += 2;
    if (is_high_surrogate(unit) && has_next && is_low_surrogate(unit_at(bytes, position))) {
      append_utf8(0x10000 + ((unit - 0xD800) << 10) + (unit_at(bytes, position) - 0xDC00), out);
      position += 2;
    } else {
      const bool is_lone = is_high_surrogate(unit) || is_low_surrogate(unit);
      append_utf8(is_lone ? kReplacementCharacter : unit, out);
    }
  }
  return position;
}

void utf8_to_utf16le(std::string_view text, std::string& out) {
  size_t position = 0;
  while (position < text.size()) {
    if (const size_t count = ascii_run(text, position); count > 0) {
      append_ascii_units(text.substr(position, count), out);
      position += count;
      continue;
    }
    const char32_t character = next_utf8(text, position);
    if (character < 0x10000) {
      append_unit(character, out);
    } else {
      append_unit(0xD800 + ((character - 0x10000) >> 10), out);
      append_unit(0xDC00 + ((character - 0x10000) & 0x3FF), out);
    }
  }
}

}  // namespace rowvane::platform

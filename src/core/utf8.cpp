#include "core/utf8.h"

#include "platform/utf8.h"

namespace rowvane {
namespace {

using platform::kReplacementCharacter;

unsigned char unsigned_at(std::string_view text, size_t i) {
  return static_cast<unsigned char>(text[i]);
}

bool is_continuation(std::string_view text, size_t i) {
  return i < text.size() && (unsigned_at(text, i) & 0xC0) == 0x80;
}

// Length of the well-formed sequence at POSITION, or 0.
size_t sequence_length(std::string_view text, size_t position) {
  constexpr std::string_view kWrittenReplacement = "\uFFFD";
  size_t end = position;
  const bool broken = platform::next_utf8(text, end) == kReplacementCharacter &&
                      text.substr(position, end - position) != kWrittenReplacement;
  return broken ? 0 : end - position;
}

// Position of the first byte that is not ASCII, at or behind POSITION.
size_t skip_ascii(std::string_view text, size_t position) {
  return position + platform::ascii_run(text, position);
}

}  // namespace

bool is_ascii(std::string_view text) {
  return skip_ascii(text, 0) == text.size();
}

bool is_valid_utf8(std::string_view text) {
  for (size_t i = skip_ascii(text, 0); i < text.size(); i = skip_ascii(text, i)) {
    const size_t length = sequence_length(text, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

size_t count_characters(std::string_view text) {
  size_t count = 0;
  for (size_t i = 0; i < text.size(); ++count) {
    const size_t length = sequence_length(text, i);
    i += length == 0 ? 1 : length;
  }
  return count;
}

std::string_view truncate_characters(std::string_view text, size_t max) {
  if (text.size() <= max) return text;
  size_t i = 0;
  for (size_t count = 0; i < text.size() && count < max; ++count) {
    const size_t length = sequence_length(text, i);
    i += length == 0 ? 1 : length;
  }
  return text.substr(0, i);
}

std::string_view truncate_bytes(std::string_view text, size_t max) {
  if (text.size() <= max) return text;
  for (size_t back = 0; back < 4 && back <= max; ++back) {
    if (!is_continuation(text, max - back)) return text.substr(0, max - back);
  }
  return text.substr(0, max);  // no character is cut: these bytes are broken
}

char32_t next_character(std::string_view text, size_t& position) {
  const size_t length = sequence_length(text, position);
  if (length == 0) {
    ++position;
    return kReplacementCharacter;
  }
  return platform::next_utf8(text, position);
}

void append_character(char32_t character, std::string& out) {
  const bool surrogate = character >= 0xD800 && character < 0xE000;
  platform::append_utf8(surrogate || character > 0x10FFFF ? kReplacementCharacter : character, out);
}

namespace {

// Windows code page 1252, 0x80 to 0x9F; the five bytes that it leaves open stay control characters.
constexpr char16_t kCodePage1252[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                        0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                        0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                        0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

}  // namespace

std::string repair_utf8(std::string_view text) {
  std::string out;
  out.reserve(text.size() + 16);
  for (size_t i = 0; i < text.size();) {
    const size_t length = sequence_length(text, i);
    if (length > 0) {
      out.append(text.substr(i, length));
      i += length;
      continue;
    }
    const unsigned char byte = unsigned_at(text, i++);
    append_character(byte < 0xA0 ? kCodePage1252[byte - 0x80] : byte, out);
  }
  return out;
}

}  // namespace rowvane

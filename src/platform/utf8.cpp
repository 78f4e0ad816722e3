#include "platform/utf8.h"

#include <cstdint>
#include <cstring>

namespace rowvane {
namespace {

// What a lead byte promises: how many bytes follow, and between which values the first of them lies.
struct Sequence {
  int following = 0;
  unsigned char lowest = 0x80;
  unsigned char highest = 0xBF;
};

Sequence sequence_of(unsigned char lead) {
  if (lead < 0xC2 || lead > 0xF4) return {};
  if (lead < 0xE0) return {.following = 1};
  if (lead == 0xE0) return {.following = 2, .lowest = 0xA0};
  if (lead == 0xED) return {.following = 2, .highest = 0x9F};
  if (lead < 0xF0) return {.following = 2};
  if (lead == 0xF0) return {.following = 3, .lowest = 0x90};
  if (lead == 0xF4) return {.following = 3, .highest = 0x8F};
  return {.following = 3};
}

}  // namespace

char32_t next_character(std::string_view text, size_t& position) {
  const auto lead = static_cast<unsigned char>(text[position++]);
  if (lead < 0x80) return lead;
  Sequence sequence = sequence_of(lead);
  if (sequence.following == 0) return kReplacementCharacter;
  char32_t character = lead & (0x3Fu >> sequence.following);
  for (; sequence.following > 0; --sequence.following) {
    if (position == text.size()) return kReplacementCharacter;
    const auto byte = static_cast<unsigned char>(text[position]);
    if (byte < sequence.lowest || byte > sequence.highest) return kReplacementCharacter;
    character = (character << 6) | (byte & 0x3Fu);
    sequence.lowest = 0x80;
    sequence.highest = 0xBF;
    ++position;
  }
  return character;
}

size_t character_length(std::string_view text, size_t position) {
  constexpr std::string_view kWrittenReplacement = "\uFFFD";
  size_t end = position;
  const bool broken = next_character(text, end) == kReplacementCharacter &&
                      text.substr(position, end - position) != kWrittenReplacement;
  return broken ? 0 : end - position;
}

size_t ascii_run(std::string_view text, size_t position) {
  constexpr uint64_t kHighBits = 0x8080808080808080;
  const size_t start = position;
  for (uint64_t word = 0; position + sizeof word <= text.size(); position += sizeof word) {
    std::memcpy(&word, text.data() + position, sizeof word);
    if ((word & kHighBits) != 0) break;
  }
  while (position < text.size() && static_cast<unsigned char>(text[position]) < 0x80) ++position;
  return position - start;
}

bool is_ascii(std::string_view text) {
  return ascii_run(text, 0) == text.size();
}

bool is_valid_utf8(std::string_view text) {
  for (size_t i = ascii_run(text, 0); i < text.size(); i += ascii_run(text, i)) {
    const size_t length = character_length(text, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

size_t count_characters(std::string_view text) {
  size_t count = 0;
  for (size_t i = 0; i < text.size(); ++count) next_character(text, i);
  return count;
}

std::string_view truncate_characters(std::string_view text, size_t max) {
  if (text.size() <= max) return text;
  size_t i = 0;
  for (size_t count = 0; i < text.size() && count < max; ++count) next_character(text, i);
  return text.substr(0, i);
}

std::string_view truncate_bytes(std::string_view text, size_t max) {
  if (text.size() <= max) return text;
  const auto is_tail = [&](size_t i) { return (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80; };
  size_t end = max;
  while (end > 0 && max - end < 3 && is_tail(end)) --end;
  // More tails than a character has are broken text, which may be cut anywhere.
  return text.substr(0, is_tail(end) ? max : end);
}

void append_character(char32_t character, std::string& out) {
  const bool is_scalar = character < 0xD800 || (character >= 0xE000 && character <= 0x10FFFF);
  char bytes[4];
  out.append(bytes, put_character(is_scalar ? character : kReplacementCharacter, bytes));
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
    const size_t length = character_length(text, i);
    if (length > 0) {
      out.append(text.substr(i, length));
      i += length;
      continue;
    }
    const unsigned char byte = static_cast<unsigned char>(text[i++]);
    append_character(byte < 0xA0 ? kCodePage1252[byte - 0x80] : byte, out);
  }
  return out;
}

}  // namespace rowvane

#include "platform/utf8.h"

#include <cstdint>
#include <cstring>

namespace rowvane::platform {
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

char32_t next_utf8(std::string_view text, size_t& position) {
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

void append_utf8(char32_t character, std::string& out) {
  char bytes[4];
  out.append(bytes, put_utf8(character, bytes));
}

size_t whole_characters(std::string_view text, size_t most) {
  if (text.size() <= most) return text.size();
  const auto is_tail = [&](size_t i) { return (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80; };
  size_t end = most;
  while (end > 0 && most - end < 3 && is_tail(end)) --end;
  // More tails than a character has are broken text, which may be cut anywhere.
  return is_tail(end) ? most : end;
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

}  // namespace rowvane::platform

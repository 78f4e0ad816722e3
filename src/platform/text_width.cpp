#include "platform/text_width.h"

#include "platform/character_width.h"
#include "platform/utf8.h"

namespace rowvane::platform {
namespace {

constexpr char32_t kSoftHyphen = 0xAD;

// The vowels and final consonants of Hangul join the syllable before them.
bool is_joining_jamo(char32_t character) {
  return character >= 0x1160 && character <= 0x11FF;
}

int width_of(char32_t character) {
  if ((character >= 0x20 && character < 0x7F) || character == kSoftHyphen) return 1;
  if (takes_no_column(character) || is_joining_jamo(character)) return 0;
  return is_wide(character) ? 2 : 1;
}

}  // namespace

int display_width(std::string_view text) {
  int width = 0;
  for (size_t position = 0; position < text.size();) width += width_of(next_character(text, position));
  return width;
}

}  // namespace rowvane::platform

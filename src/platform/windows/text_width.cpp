#include <algorithm>

#include "platform/characters.h"
#include "platform/terminal.h"
#include "platform/utf8.h"

namespace rowvane::platform {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Characters as wide as two others (East Asian Width W and F), in blocks. Windows has no call for them.
constexpr Range kWide[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},   {0x25FD, 0x25FE},
    {0x2614, 0x2615},   {0x2648, 0x2653},   {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x26C4, 0x26C5},
    {0x26F2, 0x26F3},   {0x270A, 0x270B},   {0x2753, 0x2755},   {0x2795, 0x2797},   {0x2B1B, 0x2B1C},
    {0x2E80, 0x303E},   {0x3041, 0x33FF},   {0x3400, 0x4DBF},   {0x4E00, 0xA4CF},   {0xA960, 0xA97F},
    {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE10, 0xFE19},   {0xFE30, 0xFE6F},   {0xFF01, 0xFF60},
    {0xFFE0, 0xFFE6},   {0x16FE0, 0x18CFF}, {0x1AFF0, 0x1B2FF}, {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A},
    {0x1F200, 0x1F320}, {0x1F32D, 0x1F393}, {0x1F3A0, 0x1F4FC}, {0x1F4FF, 0x1F64F}, {0x1F680, 0x1F6FC},
    {0x1F7E0, 0x1F7EB}, {0x1F90C, 0x1F9FF}, {0x1FA70, 0x1FAFF}, {0x20000, 0x3FFFD}};

// Controls, invisible signs, and the vowels and final consonants of Hangul, which join the syllable before
// them.
constexpr Range kNoWidth[] = {{0, 0x1F},        {0x7F, 0x9F},     {0x0600, 0x0605},  {0x061C, 0x061C},
                              {0x06DD, 0x06DD}, {0x070F, 0x070F}, {0x1160, 0x11FF},  {0x180E, 0x180E},
                              {0x200B, 0x200F}, {0x202A, 0x202E}, {0x2060, 0x206F},  {0xFE00, 0xFE0F},
                              {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0001, 0xE01EF}};

template <size_t count>
bool is_in(const Range (&ranges)[count], char32_t character) {
  const auto* const range = std::ranges::lower_bound(ranges, character, {}, &Range::last);
  return range != std::end(ranges) && range->first <= character;
}

int character_width(char32_t character) {
  if (character >= 0x20 && character < 0x7F) return 1;
  if (is_in(kNoWidth, character) || is_mark(character)) return 0;
  return is_in(kWide, character) ? 2 : 1;
}

}  // namespace

int display_width(std::string_view text) {
  int width = 0;
  for (size_t position = 0; position < text.size();) width += character_width(next_utf8(text, position));
  return width;
}

}  // namespace rowvane::platform

#include "platform/best_fit.h"

#include <algorithm>
#include <iterator>

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/utf16.h>

namespace rowvane::platform {
namespace {

constexpr int kMostSteps = 8;

struct Substitute {
  char32_t character;
  char32_t plainer;
};

// Characters that Unicode does not take apart though readers see the likeness. In order.
constexpr Substitute kSubstitutes[] = {
    {0x00A1, '!'},  {0x00A6, '|'},    {0x00A8, '"'},  {0x00A9, 'c'},    {0x00AB, '<'},  {0x00AD, '-'},
    {0x00AE, 'r'},  {0x00AF, '_'},    {0x00B4, '\''}, {0x00B7, '.'},    {0x00B8, ','},  {0x00BB, '>'},
    {0x00C6, 'A'},  {0x00D0, 0x0110}, {0x00D7, 'x'},  {0x00D8, 'O'},    {0x00E6, 'a'},  {0x00F0, 0x0111},
    {0x00F8, 'o'},  {0x0110, 'D'},    {0x0111, 'd'},  {0x0126, 'H'},    {0x0127, 'h'},  {0x0131, 'i'},
    {0x0141, 'L'},  {0x0142, 'l'},    {0x0152, 'O'},  {0x0153, 'o'},    {0x0166, 'T'},  {0x0167, 't'},
    {0x0192, 'f'},  {0x02C6, '^'},    {0x02DC, '~'},  {0x03BC, 0x00B5}, {0x2010, '-'},  {0x2011, '-'},
    {0x2012, '-'},  {0x2013, '-'},    {0x2014, '-'},  {0x2015, '-'},    {0x2018, '\''}, {0x2019, '\''},
    {0x201A, '\''}, {0x201C, '"'},    {0x201D, '"'},  {0x201E, '"'},    {0x2020, '+'},  {0x2022, '*'},
    {0x2026, '.'},  {0x2032, '\''},   {0x2033, '"'},  {0x2039, '<'},    {0x203A, '>'},  {0x2044, '/'},
    {0x2212, '-'},  {0x2215, '/'},    {0x2217, '*'},  {0x301C, 0xFF5E},
};

char32_t substitute_for(char32_t character) {
  const auto* const entry = std::ranges::lower_bound(kSubstitutes, character, {}, &Substitute::character);
  return entry != std::end(kSubstitutes) && entry->character == character ? entry->plainer : 0;
}

// The first character of the decomposition when nothing but accents follow it.
char32_t base_of(char32_t character) {
  constexpr int32_t kLongest = 32;
  UChar parts[kLongest];
  UErrorCode error = U_ZERO_ERROR;
  const UNormalizer2* const normalizer = unorm2_getNFKCInstance(&error);
  const int32_t length =
      unorm2_getRawDecomposition(normalizer, static_cast<UChar32>(character), parts, kLongest, &error);
  if (U_FAILURE(error) || length <= 0) return 0;
  int32_t position = 0;
  UChar32 base = 0;
  U16_NEXT(parts, position, length, base);
  while (position < length) {
    UChar32 accent = 0;
    U16_NEXT(parts, position, length, accent);
    if (u_charType(accent) != U_NON_SPACING_MARK) return 0;
  }
  return static_cast<char32_t>(base);
}

// A character that can stand for CHARACTER, one step plainer: with one accent less, say. 0 when there is
// none. Steps never circle.
char32_t plainer_form(char32_t character) {
  static_assert(std::ranges::is_sorted(kSubstitutes, {}, &Substitute::character));
  const char32_t substitute = substitute_for(character);
  return substitute != 0 ? substitute : base_of(character);
}

}  // namespace

uint16_t best_fit(const CodePageTable& page, char32_t character) {
  for (int step = 0; step < kMostSteps && character != 0; ++step) {
    character = plainer_form(character);
    if (const uint16_t bytes = page.bytes_of(character); bytes != kNoBytes) return bytes;
  }
  return '?';
}

}  // namespace rowvane::platform

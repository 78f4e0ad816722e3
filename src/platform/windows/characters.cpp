#include "platform/characters.h"

#include <algorithm>
#include <iterator>
#include <span>

#include <windows.h>

#include "platform/ascii.h"
#include "platform/utf8.h"
#include "platform/windows/character_ranges.h"
#include "platform/windows/character_table.h"

namespace rowvane::platform {
namespace {

struct Folding {
  char32_t character;
  std::u32string_view folded;
};

// Letters whose forms differ by more than what Windows takes for letter case. In order.
constexpr Folding kFoldings[] = {
    {0x00B5, U"μ"},   {0x00DF, U"ss"},  {0x0130, U"i\u0307"}, {0x0149, U"\u02BCn"}, {0x017F, U"s"},
    {0x01C5, U"ǆ"},   {0x01C8, U"ǉ"},   {0x01CB, U"ǌ"},       {0x01F0, U"j\u030C"}, {0x01F2, U"ǳ"},
    {0x0345, U"ι"},   {0x03C2, U"σ"},   {0x03D0, U"β"},       {0x03D1, U"θ"},       {0x03D5, U"φ"},
    {0x03D6, U"π"},   {0x03F0, U"κ"},   {0x03F1, U"ρ"},       {0x03F4, U"θ"},       {0x03F5, U"ε"},
    {0x0587, U"եւ"},  {0x1E9B, U"ṡ"},   {0x1E9E, U"ss"},      {0x1FBE, U"ι"},       {0x2126, U"ω"},
    {0x212A, U"k"},   {0x212B, U"å"},   {0xFB00, U"ff"},      {0xFB01, U"fi"},      {0xFB02, U"fl"},
    {0xFB03, U"ffi"}, {0xFB04, U"ffl"}, {0xFB05, U"st"},      {0xFB06, U"st"}};

// The same for capitals.
constexpr Folding kCapitals[] = {{0x00DF, U"SS"},  {0x0149, U"\u02BCN"}, {0x01F0, U"J\u030C"},
                                 {0x03C2, U"Σ"},   {0x0587, U"ԵՒ"},      {0xFB00, U"FF"},
                                 {0xFB01, U"FI"},  {0xFB02, U"FL"},      {0xFB03, U"FFI"},
                                 {0xFB04, U"FFL"}, {0xFB05, U"ST"},      {0xFB06, U"ST"}};

char32_t capital_of(char32_t character) {
  if (character >= kTableCharacters) return character;
  const auto wide = static_cast<wchar_t>(character);
  wchar_t capital = wide;
  ::LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, &wide, 1, &capital, 1, nullptr, nullptr, 0);
  return capital;
}

char32_t lower_case(char32_t character) {
  if (character < kTableCharacters) return character_table().lower_case[character];
  return supplementary_lower_case(character);
}

void append_mapped(char32_t character, std::span<const Folding> exceptions, char32_t (*map)(char32_t),
                   std::string& out) {
  const auto exception = std::ranges::lower_bound(exceptions, character, {}, &Folding::character);
  if (exception == exceptions.end() || exception->character != character) {
    append_character(map(character), out);
  } else {
    for (const char32_t part : exception->folded) append_character(part, out);
  }
}

// Maps what is well-formed in TEXT: ASCII by MAP_ASCII, EXCEPTIONS as they say, all else by MAP.
std::string map_text(std::string_view text, char (*map_ascii)(char), std::span<const Folding> exceptions,
                     char32_t (*map)(char32_t)) {
  std::string mapped;
  mapped.reserve(text.size());
  for (size_t position = 0; position < text.size();) {
    const size_t run = ascii_run(text, position);
    std::ranges::transform(text.substr(position, run), std::back_inserter(mapped), map_ascii);
    position += run;
    if (position == text.size()) break;
    const size_t start = position;
    const char32_t character = next_character(text, position);
    if (character == kReplacementCharacter) {
      mapped.append(text, start, position - start);  // it may stand for a broken sequence
    } else {
      append_mapped(character, exceptions, map, mapped);
    }
  }
  return mapped;
}

}  // namespace

bool is_letter(char32_t character) {
  if (character < kTableCharacters) return character_table().is_letter(character);
  return is_supplementary_letter(character);
}

bool is_mark(char32_t character) {
  return character < kTableCharacters && character_table().is_mark(character);
}

std::string fold_case(std::string_view text) {
  static_assert(std::ranges::is_sorted(kFoldings, {}, &Folding::character));
  return map_text(text, ascii::to_lower, kFoldings, lower_case);
}

std::string upper_case(std::string_view text) {
  static_assert(std::ranges::is_sorted(kCapitals, {}, &Folding::character));
  return map_text(text, ascii::to_upper, kCapitals, capital_of);
}

}  // namespace rowvane::platform

#include "platform/characters.h"

#include <algorithm>
#include <iterator>

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

char32_t lower_case(char32_t character) {
  if (character < kTableCharacters) return character_table().lower_case[character];
  return supplementary_lower_case(character);
}

void append_folded(char32_t character, std::string& out) {
  const auto* const folding = std::ranges::lower_bound(kFoldings, character, {}, &Folding::character);
  if (folding == std::end(kFoldings) || folding->character != character) {
    append_utf8(lower_case(character), out);
  } else {
    for (const char32_t part : folding->folded) append_utf8(part, out);
  }
}

void append_lower_ascii(std::string_view ascii, std::string& out) {
  std::ranges::transform(ascii, std::back_inserter(out),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
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
  std::string folded;
  folded.reserve(text.size());
  for (size_t position = 0; position < text.size();) {
    const size_t run = ascii_run(text, position);
    append_lower_ascii(text.substr(position, run), folded);
    position += run;
    if (position == text.size()) break;
    const size_t start = position;
    const char32_t character = next_utf8(text, position);
    if (character == kReplacementCharacter) {
      folded.append(text, start, position - start);  // it may stand for a broken sequence
    } else {
      append_folded(character, folded);
    }
  }
  return folded;
}

}  // namespace rowvane::platform

#include "platform/characters.h"

#include <algorithm>
#include <span>

#include <windows.h>

#include "platform/utf8.h"
#include "platform/windows/wide.h"

namespace rowvane::platform {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Where the letters behind the first plane lie: Windows tells nothing of those characters.
constexpr Range kUpperLetters[] = {{0x10000, 0x100FF}, {0x10280, 0x1031F}, {0x1032D, 0x1039D},
                                   {0x103A0, 0x103CF}, {0x10400, 0x1049D}, {0x104B0, 0x10855},
                                   {0x10860, 0x10876}, {0x10880, 0x1D0FF}, {0x1D400, 0x1D7CB},
                                   {0x1DF00, 0x1ECFF}, {0x1EE00, 0x1EEEF}, {0x20000, 0x3FFFF}};

// What becomes of a character when case no longer counts, where that is not its small letter.
struct Folding {
  char32_t character;
  const char* folded;
};

constexpr Folding kFoldings[] = {
    {0x00B5, "μ"},       {0x00DF, "ss"},  {0x0130, "i\u0307"}, {0x0149, "\u02BCn"}, {0x017F, "s"},
    {0x01F0, "j\u030C"}, {0x03C2, "σ"},   {0x03D0, "β"},       {0x03D1, "θ"},       {0x03D5, "φ"},
    {0x03D6, "π"},       {0x03F0, "κ"},   {0x03F1, "ρ"},       {0x03F5, "ε"},       {0x0587, "եւ"},
    {0x1E9B, "ṡ"},       {0x1E9E, "ss"},  {0x1FBE, "ι"},       {0xFB00, "ff"},      {0xFB01, "fi"},
    {0xFB02, "fl"},      {0xFB03, "ffi"}, {0xFB04, "ffl"},     {0xFB05, "st"},      {0xFB06, "st"}};

// The same for capitals.
constexpr Folding kCapitals[] = {{0x00DF, "SS"},  {0x0149, "\u02BCN"}, {0x01F0, "J\u030C"}, {0x0587, "ԵՒ"},
                                 {0xFB00, "FF"},  {0xFB01, "FI"},      {0xFB02, "FL"},      {0xFB03, "FFI"},
                                 {0xFB04, "FFL"}, {0xFB05, "ST"},      {0xFB06, "ST"}};

WORD kind_of(char32_t character, DWORD which) {
  const auto wide = static_cast<wchar_t>(character);
  WORD kind = 0;
  return ::GetStringTypeW(which, &wide, 1, &kind) == 0 ? WORD{0} : kind;
}

// MAPPING is LCMAP_LOWERCASE or LCMAP_UPPERCASE.
std::string map_case(std::wstring_view text, DWORD mapping) {
  std::wstring mapped(text.size(), L'\0');
  const int length =
      ::LCMapStringEx(LOCALE_NAME_INVARIANT, mapping, text.data(), static_cast<int>(text.size()),
                      mapped.data(), static_cast<int>(mapped.size()), nullptr, nullptr, 0);
  if (length <= 0) return to_utf8(text);
  mapped.resize(static_cast<size_t>(length));
  return to_utf8(mapped);
}

// Maps the well-formed TEXT; EXCEPTIONS are sorted by their characters.
std::string map_words(std::string_view text, DWORD mapping, std::span<const Folding> exceptions) {
  const std::string simple = map_case(to_wide(text), mapping);
  std::string mapped;
  for (size_t position = 0; position < simple.size();) {
    const size_t start = position;
    const char32_t character = next_utf8(simple, position);
    const auto entry = std::ranges::lower_bound(exceptions, character, {}, &Folding::character);
    if (entry != exceptions.end() && entry->character == character) {
      mapped += entry->folded;
    } else {
      mapped.append(simple, start, position - start);
    }
  }
  return mapped;
}

// The first byte from START on that belongs to no character, or the end of TEXT.
size_t end_of_characters(std::string_view text, size_t start) {
  constexpr std::string_view kReplacement = "\uFFFD";
  for (size_t position = start; position < text.size();) {
    const size_t before = position;
    const bool is_broken = next_utf8(text, position) == kReplacementCharacter &&
                           text.substr(before, position - before) != kReplacement;
    if (is_broken) return before;
  }
  return text.size();
}

// Maps what is well-formed in TEXT.
std::string map_text(std::string_view text, DWORD mapping, std::span<const Folding> exceptions) {
  std::string mapped;
  for (size_t position = 0; position < text.size();) {
    const size_t end = end_of_characters(text, position);
    mapped += map_words(text.substr(position, end - position), mapping, exceptions);
    if (end < text.size()) mapped += text[end];
    position = end + 1;
  }
  return mapped;
}

}  // namespace

bool is_letter(char32_t character) {
  if (character < 0x80) {
    const char32_t lower = character | 0x20;
    return lower >= 'a' && lower <= 'z';
  }
  if (character < 0x10000) return (kind_of(character, CT_CTYPE1) & C1_ALPHA) != 0 && !is_mark(character);
  return std::ranges::any_of(
      kUpperLetters, [&](Range range) { return character >= range.first && character <= range.last; });
}

bool is_mark(char32_t character) {
  if (character < 0x300 || character >= 0x10000) return false;
  constexpr WORD kMarks = C3_NONSPACING | C3_VOWELMARK;
  return (kind_of(character, CT_CTYPE3) & kMarks) != 0 && (kind_of(character, CT_CTYPE3) & C3_ALPHA) == 0;
}

std::string fold_case(std::string_view text) {
  static_assert(std::ranges::is_sorted(kFoldings, {}, &Folding::character));
  return map_text(text, LCMAP_LOWERCASE, kFoldings);
}

std::string upper_case(std::string_view text) {
  static_assert(std::ranges::is_sorted(kCapitals, {}, &Folding::character));
  return map_text(text, LCMAP_UPPERCASE, kCapitals);
}

}  // namespace rowvane::platform

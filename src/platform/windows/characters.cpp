#include "platform/characters.h"

#include <algorithm>
#include <iterator>

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

WORD kind_of(char32_t character, DWORD which) {
  const auto wide = static_cast<wchar_t>(character);
  WORD kind = 0;
  return ::GetStringTypeW(which, &wide, 1, &kind) == 0 ? WORD{0} : kind;
}

std::string lower_case(std::wstring_view text) {
  std::wstring lower(text.size(), L'\0');
  const int length =
      ::LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_LOWERCASE, text.data(), static_cast<int>(text.size()),
                      lower.data(), static_cast<int>(lower.size()), nullptr, nullptr, 0);
  if (length <= 0) return to_utf8(text);
  lower.resize(static_cast<size_t>(length));
  return to_utf8(lower);
}

// Folds the well-formed TEXT.
std::string fold_words(std::string_view text) {
  const std::string lower = lower_case(to_wide(text));
  std::string folded;
  for (size_t position = 0; position < lower.size();) {
    const size_t start = position;
    const char32_t character = next_utf8(lower, position);
    const auto* const entry = std::ranges::lower_bound(kFoldings, character, {}, &Folding::character);
    if (entry != std::end(kFoldings) && entry->character == character) {
      folded += entry->folded;
    } else {
      folded.append(lower, start, position - start);
    }
  }
  return folded;
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
  std::string folded;
  for (size_t position = 0; position < text.size();) {
    const size_t end = end_of_characters(text, position);
    folded += fold_words(text.substr(position, end - position));
    if (end < text.size()) folded += text[end];
    position = end + 1;
  }
  return folded;
}

}  // namespace rowvane::platform

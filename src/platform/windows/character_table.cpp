#include "platform/windows/character_table.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <vector>

#include <windows.h>

namespace rowvane::platform {
namespace {

constexpr char32_t kFirstMark =
    0x300;  // below are accents that stand alone, which Windows also calls non-spacing

std::unique_ptr<CharacterTable> make_table() {
  constexpr int kCount = static_cast<int>(kTableCharacters);
  std::vector<wchar_t> all(kTableCharacters);
  std::iota(all.begin(), all.end(), wchar_t{0});
  std::vector<wchar_t> lower = all;
  auto table = std::make_unique<CharacterTable>();
  ::LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_LOWERCASE, all.data(), kCount, lower.data(), kCount, nullptr,
                  nullptr, 0);
  std::ranges::copy(lower, table->lower_case.begin());
  ::GetStringTypeW(CT_CTYPE1, all.data(), kCount, table->kinds.data());
  ::GetStringTypeW(CT_CTYPE3, all.data(), kCount, table->traits.data());
  return table;
}

}  // namespace

bool CharacterTable::is_letter(char32_t character) const {
  return (kinds[character] & C1_ALPHA) != 0 && !is_mark(character);
}

bool CharacterTable::is_nonspacing_mark(char32_t character) const {
  return (traits[character] & C3_NONSPACING) != 0 && is_mark(character);
}

bool CharacterTable::is_mark(char32_t character) const {
  const WORD found = traits[character];
  // Letters with an accent are non-spacing too, but alphabetic.
  const bool joins_a_letter = (found & (C3_NONSPACING | C3_VOWELMARK)) != 0 && (found & C3_ALPHA) == 0;
  return character >= kFirstMark && joins_a_letter;
}

const CharacterTable& character_table() {
  static const std::unique_ptr<CharacterTable> table = make_table();
  return *table;
}

}  // namespace rowvane::platform

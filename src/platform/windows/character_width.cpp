#include "platform/character_width.h"

#include "platform/windows/character_ranges.h"
#include "platform/windows/character_table.h"

namespace rowvane::platform {

bool takes_no_column(char32_t character) {
  if (character < 0x20 || (character >= 0x7F && character < 0xA0)) return true;
  const bool is_mark = character < kTableCharacters && character_table().is_nonspacing_mark(character);
  return is_mark || is_format_character(character);
}

bool is_wide(char32_t character) {
  return is_in_wide_range(character);
}

}  // namespace rowvane::platform

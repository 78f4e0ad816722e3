#include "formula/language/field_names.h"

#include <algorithm>

#include "core/table/work_sheet.h"
#include "platform/characters.h"
#include "platform/utf8.h"
#include "text/folded_text.h"

namespace rowvane {
namespace {

char32_t character_at(std::string_view text, size_t position) {
  return position < text.size() ? next_character(text, position) : U'\0';
}

char32_t last_character(std::string_view text) {
  size_t start = text.size() - 1;
  while (start > 0 && (static_cast<uint8_t>(text[start]) & 0xC0) == 0x80) --start;
  return character_at(text, start);
}

}  // namespace

bool is_name_character(char32_t character) {
  if (character < 0x80) {
    return (character >= '0' && character <= '9') || character == '#' || character == '\\' ||
           character == '_' || platform::is_letter(character);
  }
  return platform::is_letter(character) || platform::is_mark(character);
}

FieldNames::FieldNames(const CWorkSheet& table) {
  for (size_t i = 0; i < table.field_count(); ++i) {
    const std::string& name = table.field(i).name;
    if (name.empty()) continue;
    entries_.push_back(
        {platform::fold_case(name), static_cast<uint16_t>(i), is_name_character(last_character(name))});
  }
  std::ranges::stable_sort(entries_, {}, &Entry::folded);
}

// Reads TEXT byte by byte and keeps the entries that begin with what was read.
std::optional<FieldNames::Match> FieldNames::match(std::string_view text) const {
  std::optional<Match> longest;
  auto first = entries_.begin();
  auto last = entries_.end();
  FoldedBytes bytes(text);
  for (size_t depth = 0; first != last && !bytes.at_end();) {
    const uint8_t byte = bytes.next();
    const auto byte_of = [depth](const Entry& entry) {
      return depth < entry.folded.size() ? static_cast<uint8_t>(entry.folded[depth]) : -1;
    };
    first = std::partition_point(first, last, [&](const Entry& entry) { return byte_of(entry) < byte; });
    last = std::partition_point(first, last, [&](const Entry& entry) { return byte_of(entry) == byte; });
    ++depth;
    if (first == last || first->folded.size() != depth || !bytes.at_boundary()) continue;
    const char32_t next = character_at(text, bytes.position());
    if (next == U'(' || (first->ends_with_word && is_name_character(next))) continue;
    longest = Match{first->field, bytes.position()};
  }
  return longest;
}

std::optional<uint16_t> FieldNames::find(std::string_view name) const {
  const auto found = std::ranges::lower_bound(entries_, platform::fold_case(name), {}, &Entry::folded);
  if (found == entries_.end() || found->folded != platform::fold_case(name)) return std::nullopt;
  return found->field;
}

}  // namespace rowvane

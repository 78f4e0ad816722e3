#include "core/table/search_key.h"

#include <algorithm>

#include "platform/ascii.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

// Calls `renumber` with the field of each expression and brings the expressions into order again.
template <typename Renumber>
void renumber_fields(std::vector<SearchKey>& keys, const Renumber& renumber) {
  for (SearchKey& key : keys) {
    for (SearchExpression& expression : key.expressions) {
      expression.field = static_cast<uint16_t>(renumber(size_t{expression.field}));
    }
    std::ranges::sort(key.expressions, {}, &SearchExpression::field);
  }
}

}  // namespace

bool is_valid_search_key_name(std::string_view name) {
  return name.size() <= kMaxBufferBytes && name.find_first_not_of(' ') != std::string_view::npos &&
         is_valid_utf8(name) && std::ranges::none_of(name, ascii::is_control);
}

bool is_stored_criterion(std::string_view criterion) {
  constexpr size_t kTextStart = 2;
  return criterion.size() >= kTextStart && criterion.size() - kTextStart <= kMaxBufferBytes &&
         criterion[0] >= 'a' && criterion[0] <= 'm' && criterion[1] == ':' &&
         criterion.find('\0') == std::string_view::npos && is_valid_utf8(criterion);
}

bool are_valid_expressions(const std::vector<SearchExpression>& expressions, size_t field_count) {
  size_t least = 0;
  for (const SearchExpression& expression : expressions) {
    if (expression.field < least || expression.field >= field_count) return false;
    if (!is_stored_criterion(expression.criterion)) return false;
    least = size_t{expression.field} + 1;
  }
  return true;
}

void insert_field_into(std::vector<SearchKey>& keys, size_t index) {
  renumber_fields(keys, [index](size_t field) { return field >= index ? field + 1 : field; });
}

void erase_field_from(std::vector<SearchKey>& keys, size_t index) {
  for (SearchKey& key : keys) {
    std::erase_if(key.expressions, [index](const SearchExpression& one) { return one.field == index; });
  }
  renumber_fields(keys, [index](size_t field) { return field > index ? field - 1 : field; });
}

void move_field_within(std::vector<SearchKey>& keys, size_t from, size_t to) {
  renumber_fields(keys, [from, to](size_t field) {
    if (field == from) return to;
    if (from < field && field <= to) return field - 1;
    return to <= field && field < from ? field + 1 : field;
  });
}

}  // namespace rowvane

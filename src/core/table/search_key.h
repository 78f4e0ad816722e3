// Search keys: named, saved sets of search expressions of a table, chosen to run a search again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/limits.h"

namespace rowvane {

// What a record must satisfy in one field, as it is stored: the letter of the criterion's kind ("a" to "m"),
// ":", and the criterion's text.
struct SearchExpression {
  uint16_t field = 0;  // 0-based
  std::string criterion;

  bool operator==(const SearchExpression&) const = default;
};

struct SearchKey {
  std::string name;
  std::vector<SearchExpression> expressions;  // by field, ascending; a field has at most one

  bool operator==(const SearchKey&) const = default;
};

// Not blank, valid UTF-8 without control characters, at most kMaxBufferBytes long.
bool is_valid_search_key_name(std::string_view name);

// A kind, ":" and valid UTF-8 without NUL of at most kMaxBufferBytes. What the text means is not looked at.
bool is_stored_criterion(std::string_view criterion);

// True when the expressions are in the order of their fields, each field once and one of FIELD_COUNT, and
// their criteria are well formed.
bool are_valid_expressions(const std::vector<SearchExpression>& expressions, size_t field_count);

// What becomes of the expressions when a field is inserted at, deleted from or moved to an index. Those of a
// deleted field go away; a key may be left without any.
void insert_field_into(std::vector<SearchKey>& keys, size_t index);
void erase_field_from(std::vector<SearchKey>& keys, size_t index);
void move_field_within(std::vector<SearchKey>& keys, size_t from, size_t to);

}  // namespace rowvane

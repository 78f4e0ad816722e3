// What several parts of the configuration read in the same way.
#pragma once

#include <algorithm>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/characters.h"
#include "platform/utf8.h"
#include "zip/byte_stream.h"

namespace rowvane {

inline constexpr size_t kLeastTextBytes = 4;  // of a stored text: its length

// A text that may be shown: what is not valid UTF-8 is repaired.
inline std::string get_utf8(ItemReader& in) {
  std::string text = in.get_text();
  return is_valid_utf8(text) ? text : repair_utf8(text);
}

// True when the names of ALL differ in more than letter case.
template <typename Named>
bool has_unique_names(const std::vector<Named>& all) {
  std::unordered_set<std::string> names;
  return std::all_of(all.begin(), all.end(), [&names](const Named& one) {
    return names.insert(platform::fold_case(one.name)).second;
  });
}

}  // namespace rowvane

// Whether named things can stand beside each other.
#pragma once

#include <algorithm>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/characters.h"

namespace rowvane {

// True when the names of ALL differ in more than letter case.
template <typename Named>
bool has_unique_names(const std::vector<Named>& all) {
  std::unordered_set<std::string> names;
  return std::all_of(all.begin(), all.end(), [&names](const Named& one) {
    return names.insert(platform::fold_case(one.name)).second;
  });
}

}  // namespace rowvane

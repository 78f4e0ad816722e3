// The order of a language in the ASCII characters, where it is one of single characters.
#pragma once

#include <cstdint>
#include <vector>

#include <unicode/coll.h>

namespace rowvane::platform {

// The weights of Collation::ascii_weights for texts whose case is folded with FOLD_OPTIONS before COLLATOR
// compares them. None where a language takes several of the folded characters together ("ch") or one apart,
// or where some differ in accents or less.
std::vector<uint8_t> folded_ascii_weights(const icu::Collator& collator, uint32_t fold_options);

}  // namespace rowvane::platform

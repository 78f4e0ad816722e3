// Sorting records by codes of few bits: one count of the codes and one move to the places.
#pragma once

#include <span>

#include "recordset/sort/key_sort.h"

namespace rowvane {

// More take so many places at a time that a processor's cache does not hold their ends.
inline constexpr int kMostCountedBits = 14;

// As the functions of key_sort.h, for codes of at most kMostCountedBits bits together: what stands at each
// place are the records, or their indices where WITH_INDICES, and only then is `differs` filled.
SortedIndices sort_by_counting(const KeyCodes& codes, std::span<const uint32_t> records, bool with_indices,
                               int threads, const Progress& progress);

}  // namespace rowvane

// Ordering records by the codes of their keys.
#pragma once

#include <span>

#include "core/plain_vector.h"
#include "recordset/key_codes.h"

namespace rowvane {

struct SortedRecords {
  PlainVector<uint32_t> indices;  // of the record set, in the order of the codes
  PlainVector<uint8_t> differs;   // at each place, whether the record has other codes than the one before
};

// Of records with equal codes the earlier one in RECORDS comes first. `differs` is left empty unless
// WITH_DIFFERENCES. Not complete when PROGRESS was cancelled.
SortedRecords sort_by_codes(const KeyCodes& codes, std::span<const uint32_t> records, bool with_differences,
                            int threads, Progress& progress);

}  // namespace rowvane

// Ordering records by the codes of their keys.
#pragma once

#include <span>
#include <vector>

#include "core/uninitialized_vector.h"
#include "recordset/record_set.h"
#include "recordset/sort/key_codes.h"

namespace rowvane {

// RECORDS in the order of the codes; of records with equal codes the earlier one comes first. Not complete
// when PROGRESS was cancelled.
RecordSet sort_by_codes(const KeyCodes& codes, std::span<const uint32_t> records, int threads,
                        Progress& progress);

struct SortedIndices {
  std::vector<uint32_t> indices;         // of the record set, in the order of the codes
  UninitializedVector<uint8_t> differs;  // at each place but the first, whether the record has other codes
                                         // than the one before
};

// The same as indices of RECORDS.
SortedIndices sort_indices_by_codes(const KeyCodes& codes, std::span<const uint32_t> records, int threads,
                                    Progress& progress);

}  // namespace rowvane

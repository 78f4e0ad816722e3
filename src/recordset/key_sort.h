// Ordering records by the codes of their keys.
#pragma once

#include <span>

#include "core/plain_vector.h"
#include "recordset/key_codes.h"

namespace rowvane {

// Indices of RECORDS in the order of the codes; of records with equal codes the earlier index comes first.
// Not complete when PROGRESS was cancelled.
PlainVector<uint32_t> sort_by_codes(const KeyCodes& codes, std::span<const uint32_t> records, int threads,
                                    Progress& progress);

}  // namespace rowvane

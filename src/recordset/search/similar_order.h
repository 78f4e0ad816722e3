// The order of records by how similar their texts are to the wanted ones.
#pragma once

#include "recordset/record_set.h"
#include "recordset/search/record_filter.h"
#include "recordset/search/search.h"

namespace rowvane {

// Puts RECORDS into the order of their similarity to the kSimilar criteria, the most similar first, of
// several criteria the sum; equally similar ones stay in their order. Stops early when STATE says that the
// search is over.
void sort_by_similarity(const CWorkSheet& table, const std::vector<FieldCriterion>& criteria, int threads,
                        SearchState& state, RecordSet& records);

}  // namespace rowvane

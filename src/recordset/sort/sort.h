// Sorting record sets.
#pragma once

#include <span>

#include "core/options.h"
#include "core/progress.h"
#include "recordset/record_set_result.h"
#include "recordset/sort/sort_keys.h"
#include "text/sort_options.h"

namespace rowvane {

class CWorkSheet;

// RECORDS in the order of RecordOrder; those that compare equal keep theirs. Without keys they stay as they
// are. Works on options.used_processor_cores threads, which makes no difference to the result. Memory: 16 to
// 32 bytes a record beside the result, and for each text field about what its texts take; long texts and
// codes are read and held whole.
//
// Errors: those of check_sort_keys, and what reading a long text or code answers.
RecordSetResult sort_records(const CWorkSheet& table, std::span<const uint32_t> records, const SortKeys& keys,
                             const SortOptions& sort_options, const Options& options,
                             Progress& progress = Progress::none());

}  // namespace rowvane

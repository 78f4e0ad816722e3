// The records that an operation looks at: all of a table, or those that are shown.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "recordset/sort/sort.h"

namespace rowvane {

// The records of the scope in the table's current order: those of SHOWN, or all, sorted by the keys by which
// the shown ones are.
RecordSetResult records_of_scope(const CWorkSheet& table, bool whole_table, const RecordSet& shown,
                                 const SortKeys& shown_by, const SortOptions& sort_options,
                                 const Options& options, Progress& progress = Progress::none());

// Why settings can't be used: nothing when they can; an empty text where a dialog beeps and stays open, and
// shows none.
using Refusal = std::optional<std::string>;

namespace texts {
inline constexpr std::string_view kNumericFieldNeeded = "Please specify a numeric field.";  // with a beep
}

// The refusal of the fields in which records are compared: none at all; more than 100 (message 127); one that
// the table lacks; an encrypted one (error 137).
Refusal check_compared_fields(const CWorkSheet& table, std::span<const size_t> fields);

}  // namespace rowvane

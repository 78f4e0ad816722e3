// The records that an operation looks at: all of a table, or those that are shown.
#pragma once

#include <span>
#include <string_view>

#include "core/messages/check.h"
#include "recordset/sort/sort.h"

namespace rowvane {

// The records of the scope in the table's current order: those of SHOWN, or all, sorted by the keys by which
// the shown ones are.
RecordSetResult records_of_scope(const CWorkSheet& table, bool whole_table, const RecordSet& shown,
                                 const SortKeys& shown_by, const SortOptions& sort_options,
                                 const Options& options, Progress& progress = Progress::none());

namespace texts {
inline constexpr std::string_view kNumericFieldNeeded = "Please specify a numeric field.";  // with a beep
inline constexpr std::string_view kNothingToFind = "there is nothing to find with this mode";
}  // namespace texts

// texts::kNothingToFind, for which a dialog only beeps.
Check nothing_to_find();

// The fields in which records are compared: refuses none at all (nothing_to_find); more than 100 (message
// 127); one that the table lacks; an encrypted one (error 137).
Check check_compared_fields(const CWorkSheet& table, std::span<const size_t> fields);

}  // namespace rowvane

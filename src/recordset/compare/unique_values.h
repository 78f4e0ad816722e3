// Finding unique values: "Find Unique Field(s) Values".
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "recordset/record_scope.h"

namespace rowvane {

// Indices of the list "Unique values in:".
enum class UniqueMode : int { kFirst, kLast };

inline constexpr std::array<std::string_view, 2> kUniqueModeTexts = {
    "Show the first found record from any group of duplicates",
    "Show the last found record from any group of duplicates"};

struct UniqueSearch {
  bool whole_table = true;     // or the current record set; see records_of_scope
  std::vector<size_t> fields;  // compared, in field order
  bool sort_results = true;    // by the fields, ascending; otherwise in the order of the scope
  UniqueMode mode = UniqueMode::kFirst;
  bool save_frequencies = false;  // "Save frequencies in:"
  size_t frequency_field = 0;     // of type Number
};

Check check_unique_values(const CWorkSheet& table, const UniqueSearch& search);

struct UniqueResult : RecordSetResult {
  std::vector<uint32_t> frequencies;  // of each record, the size of its group
};

// One record of SCOPE for each of the groups that are equal in all fields, in the sense of find_duplicates.
UniqueResult find_unique_values(const CWorkSheet& table, const RecordSet& scope, const UniqueSearch& search,
                                const SortOptions& sort_options, const Options& options,
                                Progress& progress = Progress::none());

// Stores the frequencies of RESULT in the frequency field of SEARCH, as one undo step. The errors of
// CWorkSheet::set_value, for the first record that is refused; nothing is stored then, as long as TABLE
// belongs to a database.
ErrorCode save_frequencies(CWorkSheet& table, const UniqueSearch& search, const UniqueResult& result);

}  // namespace rowvane

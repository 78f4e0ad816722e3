// Finding duplicated values: "Find Duplicated Field(s) Values".
#pragma once

#include <array>
#include <string_view>

#include "recordset/record_scope.h"

namespace rowvane {

// Indices of the list "Duplicates in:".
enum class DuplicatesMode : int { kAll, kFirst, kLast, kAllButFirst, kAllButLast };

inline constexpr std::array<std::string_view, 5> kDuplicatesModeTexts = {
    "Show all records with duplicates", "Show the first found record from each group of duplicates",
    "Show the last found record from each group of duplicates",
    "Show all duplicates except the first found record from each group",
    "Show all duplicates except the last found record from each group"};

struct DuplicatesSearch {
  bool whole_table = true;     // or the current record set; see records_of_scope
  std::vector<size_t> fields;  // compared, in field order
  bool sort_results = true;    // by the fields, ascending; otherwise in the order of the scope
  DuplicatesMode mode = DuplicatesMode::kAll;
};

Check check_duplicates(const CWorkSheet& table, const DuplicatesSearch& search);

// The records of SCOPE that are equal to another one of it in all fields, as far as the mode takes them.
// Equal is what RecordOrder takes for equal; empty values are equal to each other. Settings that
// check_duplicates refuses fail with error 24, 43 or 137.
RecordSetResult find_duplicates(const CWorkSheet& table, const RecordSet& scope,
                                const DuplicatesSearch& search, const SortOptions& sort_options,
                                const Options& options, Progress& progress = Progress::none());

// ---- the commands for the fields FIRST to END - 1 of the grid's selection, without a dialog; `fields` may
// be too many for check_duplicates

// "Find Duplicates": all records with duplicates, sorted.
DuplicatesSearch quick_duplicates(size_t first, size_t end);
// "Find Filtered Duplicates": all but the first record of each group, in the table's order.
DuplicatesSearch quick_filtered_duplicates(size_t first, size_t end);

}  // namespace rowvane

// The sort keys of a table: as codes of its fields, as rows of the Sort dialog, as the toolbar sets them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages/check.h"

namespace rowvane {

class CWorkSheet;

struct SortKey {
  size_t field = 0;
  bool descending = false;

  bool operator==(const SortKey&) const = default;
};

// The first key decides; each further one where those before it are equal.
using SortKeys = std::vector<SortKey>;

inline constexpr size_t kMaxSortKeys = 100;  // of one sort

// One code for each field of a table: 0 for no key, 10000 + n for the n-th key (n from 1) in ascending, 20000
// + n in descending order.
using SortCodes = std::vector<uint32_t>;
inline constexpr uint32_t kAscendingSortCode = 10'000;
inline constexpr uint32_t kDescendingSortCode = 20'000;

// The keys in the order of their ranks, which may have gaps. Codes that mean nothing are no keys.
SortKeys keys_of_sort_codes(std::span<const uint32_t> codes);
// Ranks without gaps in the order of KEYS. A field that stands in two keys takes the later one, which
// leaves a gap.
SortCodes sort_codes_of_keys(std::span<const SortKey> keys, size_t field_count);

// ---- the Sort dialog

inline constexpr size_t kSortRows = 10;
inline constexpr std::string_view kAscendingOrderText = "Ascending order";
inline constexpr std::string_view kDescendingOrderText = "Descending order";

// "1. sort key" for row 0: also what its list of fields begins with, for no field.
std::string sort_row_label(size_t row);

struct SortRow {
  std::optional<size_t> field;
  bool descending = false;

  bool operator==(const SortRow&) const = default;
};
using SortRows = std::array<SortRow, kSortRows>;

// What the rows show on opening: each the field whose rank is the number of the row; without any key,
// CURRENT_FIELD in the first.
SortRows opening_sort_rows(std::span<const uint32_t> codes, size_t current_field);
// What OK makes of the rows. Ranks count the rows that have a field.
SortCodes sort_codes_of_rows(const SortRows& rows, size_t field_count);

// ---- the toolbar

// "Ascending (+Shift)" and "Descending (+Shift)": FIELD becomes the sort key; with Shift a further one. A
// field that is a key keeps its rank then and takes the direction. kTooManySortKeys for an eleventh key, with
// CODES left as they are; kInvalidCacheIndex when there is no such field.
ErrorCode sort_by_field(SortCodes& codes, size_t field, bool descending, bool with_shift);
// "No Sorting".
void sort_by_nothing(SortCodes& codes);

// ---- running

// kInvalidCacheIndex for a field that TABLE lacks, kEncryptedField, kTooManySortKeys.
Check check_sort_keys(const CWorkSheet& table, std::span<const SortKey> keys);

// These fields as ascending keys.
SortKeys ascending_keys(std::span<const size_t> fields);

}  // namespace rowvane

#include "recordset/sort/sort_keys.h"

#include <algorithm>

#include "core/table/work_sheet.h"

namespace rowvane {
namespace {

constexpr uint32_t kCodeStep = 10'000;

// 0 when CODE is none of a key.
uint32_t rank_of(uint32_t code) {
  const uint32_t direction = code - code % kCodeStep;
  return direction == kAscendingSortCode || direction == kDescendingSortCode ? code % kCodeStep : 0;
}

bool is_descending(uint32_t code) {
  return code >= kDescendingSortCode;
}

uint32_t sort_code(size_t rank, bool descending) {
  return (descending ? kDescendingSortCode : kAscendingSortCode) + static_cast<uint32_t>(rank);
}

}  // namespace

SortKeys keys_of_sort_codes(std::span<const uint32_t> codes) {
  SortKeys keys;
  for (size_t field = 0; field < codes.size(); ++field) {
    if (rank_of(codes[field]) > 0) keys.push_back({field, is_descending(codes[field])});
  }
  std::ranges::stable_sort(keys, {}, [codes](const SortKey& key) { return rank_of(codes[key.field]); });
  return keys;
}

SortCodes sort_codes_of_keys(std::span<const SortKey> keys, size_t field_count) {
  SortCodes codes(field_count, 0);
  for (size_t i = 0; i < keys.size(); ++i) {
    if (keys[i].field < field_count) codes[keys[i].field] = sort_code(i + 1, keys[i].descending);
  }
  return codes;
}

std::string sort_row_label(size_t row) {
  return std::to_string(row + 1) + ". sort key";
}

SortRows opening_sort_rows(std::span<const uint32_t> codes, size_t current_field) {
  SortRows rows;
  bool has_key = false;
  for (size_t field = codes.size(); field-- > 0;) {  // of equal ranks the first field stays
    const uint32_t rank = rank_of(codes[field]);
    has_key = has_key || rank > 0;
    if (rank >= 1 && rank <= kSortRows) rows[rank - 1] = {field, is_descending(codes[field])};
  }
  if (!has_key && current_field < codes.size()) rows[0].field = current_field;
  return rows;
}

SortCodes sort_codes_of_rows(const SortRows& rows, size_t field_count) {
  SortKeys keys;
  for (const SortRow& row : rows) {
    if (row.field) keys.push_back({*row.field, row.descending});
  }
  return sort_codes_of_keys(keys, field_count);
}

ErrorCode sort_by_field(SortCodes& codes, size_t field, bool descending, bool with_shift) {
  if (field >= codes.size()) return ErrorCode::kInvalidCacheIndex;
  SortKeys keys = with_shift ? keys_of_sort_codes(codes) : SortKeys();
  const auto present = std::ranges::find(keys, field, &SortKey::field);
  if (present != keys.end()) {
    present->descending = descending;
  } else if (keys.size() < kSortRows) {
    keys.push_back({field, descending});
  } else {
    return ErrorCode::kTooManySortKeys;
  }
  codes = sort_codes_of_keys(keys, codes.size());
  return ErrorCode::kOk;
}

void sort_by_nothing(SortCodes& codes) {
  std::ranges::fill(codes, 0u);
}

Check check_sort_keys(const CWorkSheet& table, std::span<const SortKey> keys) {
  if (keys.size() > kMaxSortKeys) return ErrorCode::kTooManySortKeys;
  for (const SortKey& key : keys) {
    if (key.field >= table.field_count()) return ErrorCode::kInvalidCacheIndex;
    if (table.field(key.field).encrypted) return ErrorCode::kEncryptedField;
  }
  return {};
}

SortKeys ascending_keys(std::span<const size_t> fields) {
  SortKeys keys;
  for (const size_t field : fields) keys.push_back({field, false});
  return keys;
}

}  // namespace rowvane

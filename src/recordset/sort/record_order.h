// The order of a table's records by sort keys: the comparison that sorting, searching in a sorted table and
// groups of equal records share.
#pragma once

#include <atomic>
#include <span>

#include "core/table/work_sheet.h"
#include "recordset/sort/sort_keys.h"
#include "text/text_order.h"

namespace rowvane {

// The first key on which two records differ decides; records equal in all keys compare equal. Within an
// ascending key come
// - numbers, by size (0 and -0 are equal),
// - texts, by the sort options; links and the values of Text fields,
// - long texts and code by their text, images and files by their names joined by "; ". Where the sort options
//   find two of them equal, what they did not look at (TextOrder::ignored_part) is compared byte by byte,
//   so that different long texts are never taken for equal ones,
// - formula errors, by their codes,
// - empty values.
// A descending key has the reverse of all this, empty values first.
//
// The table must not change during the order's life. Any number of threads may use one at the same time.
class RecordOrder {
 public:
  // KEYS have passed check_sort_keys.
  RecordOrder(const CWorkSheet& table, SortKeys keys, const SortOptions& options);

  const CWorkSheet& table() const { return table_; }
  const SortKeys& keys() const { return keys_; }

  // Below 0, 0 or above 0, as the record at 0-based position A comes before the one at B, with it or behind
  // it.
  int compare(uint32_t a, uint32_t b) const;
  // The same against the values of the first keys: one value for each, at most as many as there are keys. A
  // value may be of another kind than its field.
  int compare(uint32_t a, std::span<const CellValue> values) const;

  // Why a long text or code could not be read for a comparison, the first time; it was taken as an empty
  // text. kOk while all were.
  ErrorCode error() const { return error_; }

 private:
  struct Operand;

  Operand operand_of(uint32_t position, size_t field) const;
  Operand operand_of(const CellValue& value) const;
  int compare(const Operand& a, const Operand& b) const;
  void keep(ErrorCode error) const;

  const CWorkSheet& table_;
  SortKeys keys_;
  TextOrder texts_;
  mutable std::atomic<ErrorCode> error_ = ErrorCode::kOk;
};

}  // namespace rowvane

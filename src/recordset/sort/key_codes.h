// The values of sort keys as integers, so that records are ordered without looking at a text again.
#pragma once

#include <atomic>
#include <bit>
#include <span>
#include <vector>

#include "core/messages/outcome.h"
#include "core/progress.h"
#include "core/table/work_sheet.h"
#include "recordset/record_set.h"
#include "recordset/sort/number_coding.h"
#include "recordset/sort/sort_keys.h"
#include "text/sort_options.h"

namespace rowvane {

// One sort key's values for the records of one record set.
class KeyColumn {
 public:
  // CELLS of the table's column, which must stay, by their coding.
  KeyColumn(std::span<const double> cells, const NumberCoding& coding, bool descending);
  // A code for each of CELLS, which are indices of CODES.
  KeyColumn(std::span<const uint32_t> cells, UninitializedVector<uint32_t> codes, uint32_t greatest,
            bool descending);

  int bits() const { return static_cast<int>(std::bit_width(greatest_)); }
  uint64_t code(uint32_t position) const {
    const uint64_t ascending = numbers_.empty() ? codes_[cells_[position]] : coding_.code(numbers_[position]);
    return descending_ ? greatest_ - ascending : ascending;
  }
  // Appends the codes of the records at POSITIONS to the words, at the low end.
  void append(std::span<const uint32_t> positions, uint64_t* words) const;

 private:
  template <typename CodeAt>
  void append_each(std::span<const uint32_t> positions, const CodeAt& code_at, uint64_t* words) const;

  std::span<const double> numbers_;
  NumberCoding coding_;
  std::span<const uint32_t> cells_;
  UninitializedVector<uint32_t> codes_;
  uint64_t greatest_;
  bool descending_;
};

// The bits of all columns together.
int bits_of(std::span<const KeyColumn> columns);
// Makes a word of each record's codes, the first column's in the highest bits; they must fit.
void join_codes(std::span<const KeyColumn> columns, std::span<const uint32_t> positions, uint64_t* words);

// The codes of all keys, first the first key's: records compare by them as by RecordOrder. Making them fails
// with the error of the first value that can't be read.
struct KeyCodes : Outcome {
  uint32_t table_records = 0;      // positions are below this
  std::vector<KeyColumn> columns;  // none for keys in which all records are equal
};

// KEYS have passed check_sort_keys. Of texts, each distinct one is looked at once; of long texts and code all
// are read.
KeyCodes make_key_codes(const CWorkSheet& table, std::span<const uint32_t> records,
                        std::span<const SortKey> keys, const SortOptions& options, int threads,
                        const Progress& progress);

}  // namespace rowvane

// A block of whole records, cut into cells at full speed.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "core/uninitialized_vector.h"
#include "exchange/text/text_rules.h"

namespace rowvane {

// The text of some whole records, and where their cells are. Texts are decoded in place: a cell is never
// longer than what it was made of.
class TextBlock {
 public:
  // Blocks are read with vector instructions; so many bytes behind the text must be readable.
  static constexpr size_t kPadding = 64;

  struct Cell {
    uint32_t start;
    uint32_t length;
  };

  // Room for SIZE bytes; what was there stays.
  char* reserve(size_t size);
  char* text() { return text_.data(); }
  size_t size() const { return size_; }
  void set_size(size_t size) { size_ = size; }
  size_t capacity() const { return text_.size() < kPadding ? 0 : text_.size() - kPadding; }
  void clear();

  // Cuts the text into cells.
  void tokenize(const TextRules& rules);

  size_t record_count() const { return record_starts_.size(); }
  // Largest number of cells in a record.
  size_t column_count() const { return column_count_; }
  // Null when the record has no such cell.
  const Cell* cell(size_t record, size_t column) const {
    const size_t index = record_starts_[record] + column;
    const size_t end = record + 1 < record_starts_.size() ? record_starts_[record + 1] : cells_.size();
    return index < end ? &cells_[index] : nullptr;
  }
  std::string_view view(const Cell& cell) const { return {text_.data() + cell.start, cell.length}; }
  // Drops the records behind the first COUNT.
  void keep_records(size_t count);
  // True when all records have the same number of cells; then cell (r, c) is cells()[r * column_count() + c].
  bool is_regular() const { return cells_.size() == record_starts_.size() * column_count_; }
  const Cell* cells() const { return cells_.data(); }

  // For blocks whose cells were found elsewhere: adds a cell, and ends a record.
  void add_cell(std::string_view cell);
  void end_record();
  // Cells of a block that is made that way and were longer than what was kept.
  bool has_cut_cells = false;

 private:
  friend class BlockTokenizer;

  UninitializedVector<char> text_;
  size_t size_ = 0;
  UninitializedVector<Cell> cells_;
  UninitializedVector<uint32_t> record_starts_;
  size_t open_record_ = 0;  // first cell of the record being added
  size_t column_count_ = 0;
};

// Where the last whole record of TEXT ends, TEXT beginning at a record's start; 0 when none is whole. A CR at
// the very end is not taken for a line end, because its LF may follow.
size_t last_record_end(std::string_view text, const TextRules& rules);

}  // namespace rowvane

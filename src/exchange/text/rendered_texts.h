// The texts of a column as cells, each made once.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "core/table/text_pool.h"
#include "core/uninitialized_vector.h"
#include "exchange/text/cell_writer.h"

namespace rowvane {

// The finished cell of every code of a pool, with what follows the cell in the line.
class RenderedTexts {
 public:
  RenderedTexts() = default;
  RenderedTexts(const TextPool& pool, const CellRules& rules, uint32_t width, std::string_view suffix);

  // True when a column of RECORD_COUNT cells repeats its texts often enough, and they are small enough.
  static bool are_worthwhile(const TextPool& pool, uint32_t record_count, uint32_t width);

  // True when a text was cut or a character replaced, maybe in a text that no record uses any more.
  bool has_losses() const { return losses_; }

  void append(TextPool::Code code, TextOutput& output) const {
    const uint64_t entry = entries_[code];
    const size_t length = entry & kLengthMask;
    const char* const from = bytes_.data() + (entry >> kLengthBits);
    // Most cells are short: a copy of known length, too long as a rule, is the fastest.
    char* const to = output.reserve(length + kShortCell);
    std::memcpy(to, from, kShortCell);
    if (length > kShortCell) std::memcpy(to + kShortCell, from + kShortCell, length - kShortCell);
    output.advance(to + length);
  }

 private:
  static constexpr size_t kShortCell = 32;
  static constexpr int kLengthBits = 24;
  static constexpr uint64_t kLengthMask = (uint64_t{1} << kLengthBits) - 1;

  std::string bytes_;                      // all cells, and kShortCell bytes more
  UninitializedVector<uint64_t> entries_;  // offset << kLengthBits | length
  bool losses_ = false;
};

}  // namespace rowvane

// The columns of one block of records, read side by side with other blocks.
#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/table/content.h"
#include "core/table/text_pool.h"
#include "core/uninitialized_vector.h"
#include "exchange/text/text_block.h"
#include "exchange/text/text_load_plan.h"
#include "platform/code_pages.h"

namespace rowvane {

// What is known so far of each column of the file. Written where blocks are merged, in their order, and read
// by all threads; a value that is seen late costs time and changes nothing in the result.
struct ColumnHints {
  std::array<std::atomic<bool>, kMaxImportColumns> text{};  // a cell that is no number was seen
  std::array<std::atomic<bool>, kMaxImportColumns>
      distinct{};  // the texts do not repeat: don't look for equal ones
};

// One column of a block.
struct BlockColumn {
  enum class Kind : uint8_t { kEmpty, kNumbers, kTexts, kContents };

  Kind kind = Kind::kEmpty;  // kEmpty: no cell has a text
  UninitializedVector<double> numbers;
  UninitializedVector<TextPool::Code> codes;  // into the pool of this block
  bool interned = true;                       // equal texts have equal codes
  TextPool pool;
  std::vector<std::string> finished;  // texts by code where they differ from the pool's; empty: none differs
  std::vector<Content> contents;

  std::string_view text(TextPool::Code code) const {
    return finished.empty() ? pool.text(code) : std::string_view(finished[code]);
  }
  void clear();
};

// What the user is told, once for the whole file.
struct TextLoadFindings {
  bool cut_cells = false;
  bool not_numeric = false;
  bool invalid_utf8 = false;

  void add(const TextLoadFindings& other) {
    cut_cells = cut_cells || other.cut_cells;
    not_numeric = not_numeric || other.not_numeric;
    invalid_utf8 = invalid_utf8 || other.invalid_utf8;
  }
};

// Reads the cells of blocks. One a thread.
class BlockReader {
 public:
  BlockReader(const TextLoadPlan& plan, ColumnHints& hints);

  // Reads the cells of COLUMN from record FIRST on.
  void read(const TextBlock& block, size_t first, size_t column, BlockColumn& out);
  // As `read`, but as text whatever the plan says.
  void read_texts(const TextBlock& block, size_t first, size_t column, BlockColumn& out);
  // A cell as UTF-8 text, for field names.
  std::string decode(std::string_view cell);

  TextLoadFindings findings;  // of what was read since this was taken
  TextLoadFindings take_findings() { return std::exchange(findings, {}); }

 private:
  bool read_numbers(const TextBlock& block, size_t first, size_t column, BlockColumn& out);
  void read_contents(const TextBlock& block, size_t first, size_t column, BlockColumn& out);
  void finish_texts(size_t column, BlockColumn& out);
  bool parse(std::string_view cell, ColumnLoad load, double& number) const;

  const TextLoadPlan& plan_;
  ColumnHints& hints_;
  std::unique_ptr<platform::CodePage> code_page_;
  bool generic_numbers_;
};

}  // namespace rowvane

// The results of formulas as fields store them.
#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "core/table/column.h"
#include "formula/evaluation/scalar_operations.h"
#include "formula/passes/block_vector.h"

namespace rowvane {

// RESULT as a number field stores it: a text as the number it reads as, otherwise "#VALUE!"; an empty one as
// empty.
double number_cell_of(const Scalar& result, const ScalarContext& context);
// RESULT as a text field stores it: numbers as "&" writes them, errors by their names, cut to the longest
// text that a field holds.
std::string_view text_cell_of(const Scalar& result, const ScalarContext& context);

// Writes the results of COUNT records to CELLS.
void write_number_cells(const BlockVector& results, size_t count, const ScalarContext& context,
                        double* cells);

// The positions that one thread of a pass works on, to the one before `end`.
struct ThreadBlock {
  uint64_t first = 0;
  uint64_t end = 0;
};

// The texts that one thread of a pass finds, with codes of its own.
class TextResults {
 public:
  // Writes the codes of the results of COUNT records to CODES. All calls get the results of one evaluator.
  void write(const BlockVector& results, size_t count, const ScalarContext& context, TextPool::Code* codes);
  TextPool::Code code_for(std::string_view text);

 private:
  friend TextColumn join_text_results(std::vector<TextResults>&, std::span<const ThreadBlock>,
                                      TextColumn::Cells);

  void watch_repetition();

  std::shared_ptr<TextPool> pool_ = std::make_shared<TextPool>();
  bool interning_ = true;
  size_t looked_up_ = 0;
  std::vector<TextPool::Code> known_;  // own code + 1 by the code of the results
};

// One column of the CELLS that the threads of a pass wrote, thread i those of BLOCKS[i].
TextColumn join_text_results(std::vector<TextResults>& threads, std::span<const ThreadBlock> blocks,
                             TextColumn::Cells cells);

// True when both hold the same values.
bool same_values(const Column& a, const Column& b);

}  // namespace rowvane

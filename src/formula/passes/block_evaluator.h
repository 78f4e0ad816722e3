// Evaluates a formula for many records at a time.
#pragma once

#include "formula/passes/block_nodes.h"

namespace rowvane {

// What FormulaEvaluator::evaluate gives for each record, bit for bit. Works on columns where the formula
// allows it: no arrays, no ranges, only pure functions of single values; record by record otherwise. One
// thread at a time; the table must not change meanwhile.
class BlockEvaluator {
 public:
  // PROGRAM is borrowed and has a table.
  explicit BlockEvaluator(const FormulaProgram& program, uint16_t mode = 0, uint32_t options = 0);

  // The results for the records at the 0-based positions FIRST to FIRST + COUNT - 1, at most kBlockRecords;
  // errors are values, of arrays the first element is taken. They live until the next call.
  const BlockVector& run(uint32_t first, size_t count);

  // False where the formula is evaluated record by record.
  bool works_on_columns() const { return works_on_columns_; }

 private:
  BlockNodePointer make_nodes();

  const FormulaProgram& program_;
  WorkArea area_{WorkArea::kUnlimited};
  BlockContext context_;
  BlockNodePointer root_;
  bool works_on_columns_ = false;
};

}  // namespace rowvane

// The parts of an expression that work on blocks of records.
#pragma once

#include <memory>
#include <vector>

#include "formula/passes/block_vector.h"
#include "formula/passes/formula_program.h"

namespace rowvane {

// What all nodes of a formula share while a block is worked on.
struct BlockContext {
  const CWorkSheet& table;
  ScalarContext scalars;  // its area is cleared before each block
  uint32_t first = 0;     // position of the first record
  size_t count = 0;       // records, at most kBlockRecords
};

// One operand, operator or function. `run` works out the values of the block into `out`, whose form never
// changes.
class BlockNode {
 public:
  virtual ~BlockNode() = default;
  virtual void run(BlockContext& context) = 0;
  const BlockVector& out() const { return out_; }
  BlockVector::Form form() const { return out_.form; }

 protected:
  BlockVector out_;
};

using BlockNodePointer = std::unique_ptr<BlockNode>;

// An operator or a single-value function.
struct ScalarOperation {
  Kind operation = Kind::kError;
  const SingleValueFunction* function = nullptr;  // null: `operation`

  Scalar run(std::span<const Scalar> operands, const ScalarContext& context) const;
};

BlockNodePointer make_constant_node(const Scalar& constant);
BlockNodePointer make_field_node(const CWorkSheet& table, uint16_t field);
// Takes the fastest way that the forms of the operands allow.
BlockNodePointer make_operation_node(const ScalarOperation& operation, std::vector<BlockNodePointer> operands,
                                     const ScalarContext& context);
// Goes through the steps of PROGRAM record by record.
BlockNodePointer make_program_node(const FormulaProgram& program, uint16_t mode, uint32_t options);

}  // namespace rowvane

#include "formula/passes/block_evaluator.h"

#include <algorithm>

namespace rowvane {
namespace {

// True when every value of the formula is a single one and every function pure.
bool is_made_of_single_values(const FormulaProgram& program) {
  return std::ranges::all_of(program.steps(), [](const FormulaStep& step) {
    switch (step.kind) {
      case FormulaStep::Kind::kPush:
        return !step.value.is_array();
      case FormulaStep::Kind::kApply:
        return step.operation < Kind::kIntersection;
      default:
        return evaluation_entry(step.function).single.function != nullptr;
    }
  });
}

}  // namespace

BlockEvaluator::BlockEvaluator(const FormulaProgram& program, uint16_t mode, uint32_t options)
    : program_(program),
      context_{*program.table(), {area_, program.settings().of(program.separators()), mode, options}} {
  if (program.error() != FormulaError::kNone) {
    root_ = make_constant_node(Scalar::of(program.error()));
  } else if (is_made_of_single_values(program)) {
    root_ = make_nodes();
    works_on_columns_ = true;
  } else {
    root_ = make_program_node(program, mode, options);
  }
}

BlockNodePointer BlockEvaluator::make_nodes() {
  std::vector<BlockNodePointer> stack;
  for (const FormulaStep& step : program_.steps()) {
    if (step.kind == FormulaStep::Kind::kPush) {
      const Value& value = step.value;
      stack.push_back(value.kind == Kind::kReference
                          ? make_field_node(context_.table, value.reference.first_column)
                          : make_constant_node(value.single()));
      continue;
    }
    const bool calls = step.kind == FormulaStep::Kind::kCall;
    const size_t count = calls ? step.arguments : is_unary(step.operation) ? 1 : 2;
    const auto first = stack.end() - static_cast<std::ptrdiff_t>(count);
    std::vector<BlockNodePointer> operands(std::make_move_iterator(first),
                                           std::make_move_iterator(stack.end()));
    stack.erase(first, stack.end());
    const ScalarOperation operation{step.operation,
                                    calls ? &evaluation_entry(step.function).single : nullptr};
    stack.push_back(make_operation_node(operation, std::move(operands), context_.scalars));
  }
  return std::move(stack.back());
}

const BlockVector& BlockEvaluator::run(uint32_t first, size_t count) {
  area_.clear();
  context_.first = first;
  context_.count = count;
  root_->run(context_);
  return root_->out();
}

}  // namespace rowvane

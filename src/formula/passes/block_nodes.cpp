#include "formula/passes/block_nodes.h"

#include <algorithm>
#include <array>

#include "core/table/work_sheet.h"
#include "formula/passes/block_arithmetic.h"
#include "formula/passes/choice_node.h"

namespace rowvane {
namespace {

using Form = BlockVector::Form;

constexpr size_t kMaxMemoEntries = size_t{1} << 22;
constexpr size_t kFewTexts = 1024;     // a pool of so many is always worth remembering results for
constexpr size_t kRecordsPerText = 4;  // so is one whose texts repeat that often

class ConstantNode final : public BlockNode {
 public:
  explicit ConstantNode(const Scalar& constant) : area_(WorkArea::kUnlimited) {
    out_.constant = constant.is_text() ? area_.keep(constant.text) : constant;
  }
  void run(BlockContext&) override {}

 private:
  WorkArea area_;
};

class NumberFieldNode final : public BlockNode {
 public:
  explicit NumberFieldNode(const NumberColumn& column) : column_(column) { out_.form = Form::kNumbers; }
  void run(BlockContext& context) override { out_.numbers = column_.cells.data() + context.first; }

 private:
  const NumberColumn& column_;
};

class TextFieldNode final : public BlockNode {
 public:
  TextFieldNode(const TextColumn& column, bool calculated) : column_(column) {
    dictionary_.pool = column.pool.get();
    dictionary_.calculated = calculated;
    dictionary_.bound = column.pool->size();
    out_.form = Form::kCodes;
    out_.dictionary = &dictionary_;
  }
  void run(BlockContext& context) override { out_.codes = column_.cells.data() + context.first; }

 private:
  const TextColumn& column_;
  ValueDictionary dictionary_;
};

// The base of nodes whose values are worked out one by one.
class ScalarsNode : public BlockNode {
 protected:
  ScalarsNode() {
    out_.form = Form::kScalars;
    out_.scalars = values_.data();
  }
  std::array<Scalar, kBlockRecords> values_;
};

class AnyFieldNode final : public ScalarsNode {
 public:
  explicit AnyFieldNode(uint16_t field) : field_(field) {}
  void run(BlockContext& context) override {
    for (size_t i = 0; i < context.count; ++i) {
      values_[i] = read_cell(context.table, field_, context.first + i, context.scalars.area);
    }
  }

 private:
  uint16_t field_;
};

// Operators on number cells.
class CellsNode final : public BlockNode {
 public:
  CellsNode(Kind operation, std::vector<BlockNodePointer> operands, const ScalarContext& context)
      : operation_(operation), operands_(std::move(operands)) {
    for (size_t i = 0; i < operands_.size(); ++i)
      constants_[i] = cell_of(operands_[i]->out().constant, context);
    out_.form = Form::kNumbers;
    out_.numbers = cells_.data();
  }

  void run(BlockContext& context) override {
    for (const BlockNodePointer& operand : operands_) operand->run(context);
    if (operands_.size() == 1) {
      return compute_cells(operation_, operands_[0]->out().numbers, context.count, cells_.data());
    }
    compute_cells(operation_, operand(0), operand(1), context.count, cells_.data());
  }

 private:
  static double cell_of(const Scalar& constant, const ScalarContext& context) {
    const Scalar number = to_number(constant, context);
    return number.is_error() ? error_number(number.error) : number.number;
  }
  NumberOperand operand(size_t i) const { return {operands_[i]->out().numbers, constants_[i]}; }

  Kind operation_;
  std::vector<BlockNodePointer> operands_;
  std::array<double, 2> constants_{};
  std::array<double, kBlockRecords> cells_;
};

// An operation on one or two expressions with few values: worked out once for each combination of them.
class MemoNode final : public BlockNode {
 public:
  MemoNode(const ScalarOperation& operation, std::vector<BlockNodePointer> operands)
      : operation_(operation),
        operands_(std::move(operands)),
        singles_(operands_.size()),
        area_(WorkArea::kUnlimited) {
    for (size_t i = 0; i < operands_.size(); ++i) {
      if (operands_[i]->form() == Form::kCodes) varying_.push_back(i);
    }
    dictionary_.bound = 1;
    for (const size_t i : varying_) dictionary_.bound *= operands_[i]->out().dictionary->bound;
    second_bound_ = operands_[varying_.back()]->out().dictionary->bound;
    known_.resize(dictionary_.bound, 0);
    out_.form = Form::kCodes;
    out_.dictionary = &dictionary_;
    out_.codes = codes_.data();
  }

  void run(BlockContext& context) override {
    for (const BlockNodePointer& operand : operands_) operand->run(context);
    const uint32_t* first = operands_[varying_.front()]->out().codes;
    const uint32_t* second = operands_[varying_.back()]->out().codes;
    const bool pairs = varying_.size() == 2;
    for (size_t i = 0; i < context.count; ++i) {
      uint32_t& known = known_[pairs ? first[i] * second_bound_ + second[i] : first[i]];
      if (known == 0) known = add(i, context) + 1;
      codes_[i] = known - 1;
    }
  }

 private:
  uint32_t add(size_t i, const BlockContext& context) {
    for (size_t k = 0; k < operands_.size(); ++k) singles_[k] = operands_[k]->out().at(i);
    Scalar value = operation_.run(singles_, context.scalars);
    if (value.is_text()) value = area_.keep(value.text);
    dictionary_.values.push_back(value);
    return static_cast<uint32_t>(dictionary_.values.size() - 1);
  }

  ScalarOperation operation_;
  std::vector<BlockNodePointer> operands_;
  std::vector<size_t> varying_;  // the operands that are codes
  size_t second_bound_ = 1;
  std::vector<uint32_t> known_;  // code + 1 by the codes of the operands; 0: not worked out yet
  std::vector<Scalar> singles_;
  ValueDictionary dictionary_;
  WorkArea area_;  // its texts
  std::array<uint32_t, kBlockRecords> codes_;
};

class GenericNode final : public ScalarsNode {
 public:
  GenericNode(const ScalarOperation& operation, std::vector<BlockNodePointer> operands)
      : operation_(operation), operands_(std::move(operands)), singles_(operands_.size()) {}

  void run(BlockContext& context) override {
    for (const BlockNodePointer& operand : operands_) operand->run(context);
    for (size_t i = 0; i < context.count; ++i) {
      for (size_t k = 0; k < operands_.size(); ++k) singles_[k] = operands_[k]->out().at(i);
      values_[i] = operation_.run(singles_, context.scalars);
    }
  }

 private:
  ScalarOperation operation_;
  std::vector<BlockNodePointer> operands_;
  std::vector<Scalar> singles_;
};

class ProgramNode final : public ScalarsNode {
 public:
  ProgramNode(const FormulaProgram& program, uint16_t mode, uint32_t options)
      : program_(program),
        mode_(mode),
        options_(options),
        evaluator_(program.settings(), program.separators()) {
    evaluator_.set_table(program.table());
  }

  void run(BlockContext& context) override {
    for (size_t i = 0; i < context.count; ++i) {
      evaluator_.set_record(context.first + static_cast<uint32_t>(i));
      program_.run(evaluator_, mode_, options_);
      const Scalar result = evaluator_.result();
      values_[i] = result.is_text() ? context.scalars.area.keep(result.text) : result;
    }
  }

 private:
  const FormulaProgram& program_;
  uint16_t mode_;
  uint32_t options_;
  FormulaEvaluator evaluator_;
};

bool is_constant(const BlockNodePointer& node) {
  return node->form() == Form::kConstant;
}

// Numbers, or a constant that reads as one. A text compares as a text.
bool works_on_cells(Kind operation, const std::vector<BlockNodePointer>& operands) {
  if (operation == Kind::kConcatenate) return false;
  const bool compares = operation < Kind::kAdd;
  return std::ranges::all_of(operands, [compares](const BlockNodePointer& operand) {
    if (!is_constant(operand)) return operand->form() == Form::kNumbers;
    return !compares || !operand->out().constant.is_text();
  });
}

bool has_few_values(const std::vector<BlockNodePointer>& operands) {
  size_t varying = 0;
  size_t bound = 1;
  for (const BlockNodePointer& operand : operands) {
    if (is_constant(operand)) continue;
    if (operand->form() != Form::kCodes || ++varying > 2) return false;
    const size_t more = operand->out().dictionary->bound;
    if (more > kMaxMemoEntries / bound) return false;
    bound *= more;
  }
  return varying > 0;
}

}  // namespace

Scalar ScalarOperation::run(std::span<const Scalar> operands, const ScalarContext& context) const {
  if (function != nullptr) return call_function(*function, operands, context);
  return is_unary(operation) ? apply_unary(operation, operands[0], context)
                             : apply_binary(operation, operands[0], operands[1], context);
}

BlockNodePointer make_constant_node(const Scalar& constant) {
  return std::make_unique<ConstantNode>(constant);
}

BlockNodePointer make_field_node(const CWorkSheet& table, uint16_t field) {
  const Column& column = table.column(field);
  if (const auto* numbers = std::get_if<NumberColumn>(&column))
    return std::make_unique<NumberFieldNode>(*numbers);
  if (const auto* texts = std::get_if<TextColumn>(&column)) {
    const size_t size = texts->pool->size();
    const bool repeats = size <= std::max(kFewTexts, texts->cells.size() / kRecordsPerText);
    if (repeats && size <= kMaxMemoEntries) {
      return std::make_unique<TextFieldNode>(*texts, !table.field(field).formula.empty());
    }
  }
  return std::make_unique<AnyFieldNode>(field);
}

BlockNodePointer make_operation_node(const ScalarOperation& operation, std::vector<BlockNodePointer> operands,
                                     const ScalarContext& context) {
  if (std::ranges::all_of(operands, is_constant)) {
    std::vector<Scalar> constants;
    for (const BlockNodePointer& operand : operands) constants.push_back(operand->out().constant);
    return make_constant_node(operation.run(constants, context));
  }
  if (operation.function == nullptr && works_on_cells(operation.operation, operands)) {
    return std::make_unique<CellsNode>(operation.operation, std::move(operands), context);
  }
  if (has_few_values(operands)) return std::make_unique<MemoNode>(operation, std::move(operands));
  if (is_choice(operation)) {
    if (BlockNodePointer choice = make_choice_node(operands)) return choice;
  }
  return std::make_unique<GenericNode>(operation, std::move(operands));
}

BlockNodePointer make_program_node(const FormulaProgram& program, uint16_t mode, uint32_t options) {
  return std::make_unique<ProgramNode>(program, mode, options);
}

}  // namespace rowvane

#include "formula/passes/choice_node.h"

#include <array>

#include "formula/functions/choose.h"
#include "formula/passes/block_arithmetic.h"

namespace rowvane {
namespace {

using Form = BlockVector::Form;

// What the test says for each record of the block.
class Test {
 public:
  explicit Test(BlockNodePointer node) : node_(std::move(node)) {}

  const uint8_t* run(BlockContext& context) {
    node_->run(context);
    const BlockVector& values = node_->out();
    if (values.form == Form::kNumbers) {
      has_errors_ = truth_of_cells(values.numbers, context.count, truth_.data());
    } else {
      has_errors_ = false;
      for (size_t i = 0; i < context.count; ++i) {
        truth_[i] = truth_of(values.at(i), context.scalars);
        has_errors_ = has_errors_ || truth_[i] == kIsError;
      }
    }
    return truth_.data();
  }
  // Whether there is a kIsError in the block.
  bool has_errors() const { return has_errors_; }

  // Of the records where the truth is kIsError.
  FormulaError error_at(size_t i) const {
    const Scalar value = node_->out().at(i);
    return value.is_error() ? value.error : FormulaError::kValue;
  }

 private:
  static uint8_t truth_of(const Scalar& value, const ScalarContext& context) {
    const auto truth = to_truth(value, context);
    return truth ? (*truth ? kIsTrue : kIsFalse) : kIsError;
  }

  BlockNodePointer node_;
  std::array<uint8_t, kBlockRecords> truth_;
  bool has_errors_ = false;
};

// Branches that are numbers.
class NumberChoiceNode final : public BlockNode {
 public:
  NumberChoiceNode(BlockNodePointer test, BlockNodePointer if_true, BlockNodePointer if_false)
      : test_(std::move(test)), branches_{std::move(if_false), std::move(if_true)} {
    for (size_t i = 0; i < 2; ++i) constants_[i].fill(cell_of(branches_[i]->out().constant));
    out_.form = Form::kNumbers;
    out_.numbers = cells_.data();
  }

  void run(BlockContext& context) override {
    const uint8_t* truth = test_.run(context);
    const double* if_false = cells(0, context);
    const double* if_true = cells(1, context);
    for (size_t i = 0; i < context.count; ++i) cells_[i] = truth[i] == kIsTrue ? if_true[i] : if_false[i];
    for (size_t i = 0; test_.has_errors() && i < context.count; ++i) {
      if (truth[i] == kIsError) cells_[i] = error_number(test_.error_at(i));
    }
  }

 private:
  static double cell_of(const Scalar& constant) {
    if (constant.is_number()) return constant.number;
    return constant.is_error() ? error_number(constant.error) : kEmptyNumber;
  }
  const double* cells(size_t branch, BlockContext& context) {
    branches_[branch]->run(context);
    const double* numbers = branches_[branch]->out().numbers;
    return numbers != nullptr ? numbers : constants_[branch].data();
  }

  Test test_;
  std::array<BlockNodePointer, 2> branches_;
  std::array<std::array<double, kBlockRecords>, 2> constants_;
  std::array<double, kBlockRecords> cells_;
};

// Branches with few values: both dictionaries become one.
class CodeChoiceNode final : public BlockNode {
 public:
  CodeChoiceNode(BlockNodePointer test, BlockNodePointer if_true, BlockNodePointer if_false)
      : test_(std::move(test)), branches_{std::move(if_false), std::move(if_true)} {
    dictionary_.bound = 256;  // the errors
    for (size_t i = 0; i < 2; ++i) {
      const size_t bound = bound_of(*branches_[i]);
      known_[i].resize(bound, 0);
      dictionary_.bound += bound;
    }
    error_codes_.fill(0);
    out_.form = Form::kCodes;
    out_.dictionary = &dictionary_;
    out_.codes = codes_.data();
  }

  void run(BlockContext& context) override {
    const uint8_t* truth = test_.run(context);
    for (const BlockNodePointer& branch : branches_) branch->run(context);
    const bool constants = branches_[0]->form() == Form::kConstant && branches_[1]->form() == Form::kConstant;
    if (constants) {
      choose_constants(truth, context.count);
    } else {
      choose_codes(truth, context.count);
    }
    for (size_t i = 0; test_.has_errors() && i < context.count; ++i) {
      if (truth[i] == kIsError) codes_[i] = code_of_error(test_.error_at(i));
    }
  }

 private:
  void choose_constants(const uint8_t* truth, size_t count) {
    const uint32_t if_false = code_of(0, 0, 0);
    const uint32_t if_true = code_of(1, 0, 0);
    for (size_t i = 0; i < count; ++i) codes_[i] = truth[i] == kIsTrue ? if_true : if_false;
  }

  void choose_codes(const uint8_t* truth, size_t count) {
    for (size_t i = 0; i < count; ++i) {
      const size_t branch = truth[i] == kIsTrue ? 1 : 0;
      const uint32_t* codes = branches_[branch]->out().codes;
      codes_[i] = code_of(branch, codes != nullptr ? codes[i] : 0, i);
    }
  }

  // The code that stands for CODE of a branch, seen in record I.
  uint32_t code_of(size_t branch, uint32_t code, size_t i) {
    uint32_t& known = known_[branch][code];
    if (known == 0) known = add(branches_[branch]->out().at(i)) + 1;
    return known - 1;
  }

  static size_t bound_of(const BlockNode& branch) {
    return branch.form() == Form::kCodes ? branch.out().dictionary->bound : 1;
  }
  // The texts are the branches'.
  uint32_t add(const Scalar& value) {
    dictionary_.values.push_back(value);
    return static_cast<uint32_t>(dictionary_.values.size() - 1);
  }
  uint32_t code_of_error(FormulaError error) {
    uint32_t& known = error_codes_[static_cast<uint8_t>(error)];
    if (known == 0) known = add(Scalar::of(error)) + 1;
    return known - 1;
  }

  Test test_;
  std::array<BlockNodePointer, 2> branches_;
  std::array<std::vector<uint32_t>, 2> known_;  // code + 1 by the codes of the branch
  std::array<uint32_t, 256> error_codes_;       // the same by error
  ValueDictionary dictionary_;
  std::array<uint32_t, kBlockRecords> codes_;
};

bool is_number_branch(const BlockNode& branch) {
  return branch.form() == Form::kNumbers ||
         (branch.form() == Form::kConstant && !branch.out().constant.is_text());
}
bool is_code_branch(const BlockNode& branch) {
  return branch.form() == Form::kCodes || branch.form() == Form::kConstant;
}

}  // namespace

bool is_choice(const ScalarOperation& operation) {
  return operation.function != nullptr && operation.function->function == choose;
}

BlockNodePointer make_choice_node(std::vector<BlockNodePointer>& operands) {
  if (operands.size() == 2) operands.push_back(make_constant_node(Scalar::of(false)));
  const bool numbers = is_number_branch(*operands[1]) && is_number_branch(*operands[2]);
  const bool codes = is_code_branch(*operands[1]) && is_code_branch(*operands[2]);
  if (!numbers && !codes) return nullptr;
  if (numbers) {
    return std::make_unique<NumberChoiceNode>(std::move(operands[0]), std::move(operands[1]),
                                              std::move(operands[2]));
  }
  return std::make_unique<CodeChoiceNode>(std::move(operands[0]), std::move(operands[1]),
                                          std::move(operands[2]));
}

}  // namespace rowvane

// A formula that was read once, to be evaluated for many records.
#pragma once

#include <string_view>
#include <vector>

#include "formula/evaluation/formula_evaluator.h"

namespace rowvane {

// One step of an evaluation, in the order in which the parser takes them.
struct FormulaStep {
  enum class Kind : uint8_t { kPush, kApply, kCall };

  Kind kind = Kind::kPush;
  Value value;                                      // of kPush
  rowvane::Kind operation = rowvane::Kind::kError;  // of kApply
  uint16_t function = 0;                            // of kCall
  uint16_t arguments = 0;                           // of kCall
};

// The steps of a formula. Lives for one pass: it holds on to the fields as the table has them now. Reading it
// from several threads is safe.
class FormulaProgram {
 public:
  // Names are those of TABLE's fields; null: there are none. SETTINGS are borrowed.
  FormulaProgram(std::string_view formula, const CWorkSheet* table, const FormulaSettings& settings,
                 SeparatorSet set = SeparatorSet::kGeneric);
  FormulaProgram(const FormulaProgram&) = delete;
  FormulaProgram& operator=(const FormulaProgram&) = delete;

  // "#SYNTAX!" when the formula can't be read; the steps are of no use then.
  FormulaError error() const { return error_; }
  const std::vector<FormulaStep>& steps() const { return steps_; }
  const CWorkSheet* table() const { return lexer_.table(); }
  const FormulaSettings& settings() const { return settings_; }
  SeparatorSet separators() const { return set_; }

  // Goes through the steps with EVALUATOR, which has the same table, for its record. What `evaluate` answers.
  Kind run(FormulaEvaluator& evaluator, uint16_t mode = 0, uint32_t options = 0) const;

 private:
  friend class FormulaParser<FormulaProgram>;

  void push(const Token& token);
  void push_empty() { steps_.emplace_back(); }
  FormulaError apply(Kind operation);
  FormulaError call(uint16_t function, size_t arguments);

  const FormulaSettings& settings_;
  SeparatorSet set_;
  FormulaLexer lexer_;  // holds the texts and arrays of the steps
  std::vector<FormulaStep> steps_;
  FormulaError error_;
};

}  // namespace rowvane

#include "formula/passes/formula_program.h"

namespace rowvane {

FormulaProgram::FormulaProgram(std::string_view formula, const CWorkSheet* table,
                               const FormulaSettings& settings, SeparatorSet set)
    : settings_(settings), set_(set), lexer_(settings) {
  lexer_.set_table(table);
  error_ = FormulaParser<FormulaProgram>(lexer_, set, *this).read(formula);
}

void FormulaProgram::push(const Token& token) {
  steps_.emplace_back();
  steps_.back().value = value_of(token);
}

FormulaError FormulaProgram::apply(Kind operation) {
  steps_.emplace_back();
  steps_.back().kind = FormulaStep::Kind::kApply;
  steps_.back().operation = operation;
  return FormulaError::kNone;
}

FormulaError FormulaProgram::call(uint16_t function, size_t arguments) {
  steps_.emplace_back();
  steps_.back().kind = FormulaStep::Kind::kCall;
  steps_.back().function = function;
  steps_.back().arguments = static_cast<uint16_t>(arguments);
  const EvaluationEntry& entry = evaluation_entry(function);
  const bool wrong_count = entry.single.function != nullptr && !takes_arguments(entry.single, arguments);
  return wrong_count ? FormulaError::kSyntax : FormulaError::kNone;
}

Kind FormulaProgram::run(FormulaEvaluator& evaluator, uint16_t mode, uint32_t options) const {
  evaluator.start(mode, options);
  FormulaError error = error_;
  for (auto step = steps_.begin(); step != steps_.end() && error == FormulaError::kNone; ++step) {
    switch (step->kind) {
      case FormulaStep::Kind::kPush:
        evaluator.push(step->value);
        break;
      case FormulaStep::Kind::kApply:
        error = evaluator.apply(step->operation);
        break;
      case FormulaStep::Kind::kCall:
        error = evaluator.call(step->function, step->arguments);
        break;
    }
  }
  return evaluator.finish(error);
}

}  // namespace rowvane

#include <array>

#include "formula/evaluation/formula_evaluator.h"
#include "formula/functions/categories.h"
#include "formula/functions/choose.h"

namespace rowvane {

Scalar choose(std::span<const Scalar> arguments, const ScalarContext& context) {
  if (arguments[0].is_error()) return Scalar::of(arguments[0].error);
  const auto truth = to_truth(arguments[0], context);
  if (!truth) return Scalar::of(FormulaError::kValue);
  if (*truth) return arguments[1];
  return arguments.size() > 2 ? arguments[2] : Scalar::of(false);
}

namespace {

using Arguments = std::span<const Scalar>;

Scalar always_true(Arguments, const ScalarContext&) {
  return Scalar::of(true);
}
Scalar always_false(Arguments, const ScalarContext&) {
  return Scalar::of(false);
}

// How AND and OR go on: the value that decides, and the one where nothing does.
Scalar first_deciding(Arguments arguments, const ScalarContext& context, bool deciding) {
  bool decided = false;
  for (const Scalar& argument : arguments) {
    const auto truth = to_truth(argument, context);
    if (!truth) return Scalar::of(FormulaError::kValue);
    decided = decided || *truth == deciding;
  }
  return Scalar::of(decided ? deciding : !deciding);
}

Scalar all_true(Arguments arguments, const ScalarContext& context) {
  return first_deciding(arguments, context, false);
}
Scalar any_true(Arguments arguments, const ScalarContext& context) {
  return first_deciding(arguments, context, true);
}

Scalar negation(Arguments arguments, const ScalarContext& context) {
  const auto truth = to_truth(arguments[0], context);
  return truth ? Scalar::of(!*truth) : Scalar::of(FormulaError::kValue);
}

// The same where there are fields of all records, ranges or arrays among the arguments: their numbers count,
// texts and empty cells there do not. "#VALUE!" where nothing counts.
template <bool kDeciding>
void decide_cells(FormulaEvaluator& evaluator) {
  bool decided = false;
  bool counted = false;
  for (size_t i = 0; i < evaluator.argument_count(); ++i) {
    const bool single = !evaluator.holds_cells(evaluator.argument(i));
    ArrayView cells;
    if (!evaluator.array_of(evaluator.argument(i), cells)) {
      return evaluator.give(Scalar::of(FormulaError::kMemory));
    }
    for (const Scalar& cell : std::span(cells.cells, cells.size())) {
      if (cell.is_error()) return evaluator.give(cell);
      if (!single && !cell.is_number()) continue;
      const auto truth = to_truth(cell, evaluator.context());
      if (!truth) return evaluator.give(Scalar::of(FormulaError::kValue));
      decided = decided || *truth == kDeciding;
      counted = true;
    }
  }
  if (!counted) return evaluator.give(Scalar::of(FormulaError::kValue));
  evaluator.give(Scalar::of(decided ? kDeciding : !kDeciding));
}

constexpr std::array kLogicalEvaluation = {
    EvaluationEntry{decide_cells<false>, "AND(", {all_true, 1, 255}},
    EvaluationEntry{nullptr, "FALSE(", {always_false, 0, 0}},
    EvaluationEntry{nullptr, "IF(", {choose, 2, 3, true}},
    EvaluationEntry{nullptr, "NOT(", {negation, 1, 1}},
    EvaluationEntry{decide_cells<true>, "OR(", {any_true, 1, 255}},
    EvaluationEntry{nullptr, "TRUE(", {always_true, 0, 0}},
};

constexpr auto kLogical = FunctionCategory::kLogical;

constexpr std::array kLogicalDocumentation = {
    DocumentationEntry{
        documentation_flags(kLogical, 0, true), "and", "value1\0value2\0...\0", "0000000",
        "and(value1, value2, ...)\r\n\r\nTRUE when all values are numbers other than 0. Texts and empty "
        "values in fields of all records, ranges and arrays are left out.\r\n\r\n=and(5 > 3, 1)    returns "
        "1\r\n=and({1,0})    returns 0"},
    DocumentationEntry{
        documentation_flags(kLogical, 0), "false", "\0", "",
        "false()\r\n\r\nThe logical value FALSE, which is the number 0.\r\n\r\n=false()    returns 0"},
    DocumentationEntry{
        documentation_flags(kLogical, 3), "if", "testValue\0ifTrue\0ifFalse\0", "000",
        "if(testValue, ifTrue, ifFalse)\r\n\r\nThe second argument when the first one is a number other "
        "than 0, otherwise the third; 0 when there is none.\r\n\r\n=if(5 > 3, \"more\", \"less\")    "
        "returns more"},
    DocumentationEntry{
        documentation_flags(kLogical, 1), "not", "value\0", "0",
        "not(value)\r\n\r\nTRUE when the value is 0, FALSE for any other number.\r\n\r\n=not(5 > 3)    "
        "returns 0"},
    DocumentationEntry{
        documentation_flags(kLogical, 0, true), "or", "value1\0value2\0...\0", "0000000",
        "or(value1, value2, ...)\r\n\r\nTRUE when one of the values is a number other than 0. Texts and "
        "empty "
        "values in fields of all records, ranges and arrays are left out.\r\n\r\n=or(5 > 3, 0)    returns "
        "1\r\n=or({0,0})    returns 0"},
    DocumentationEntry{
        documentation_flags(kLogical, 0), "true", "\0", "",
        "true()\r\n\r\nThe logical value TRUE, which is the number 1.\r\n\r\n=true()    returns 1"},
};

}  // namespace

FunctionTables logical_functions() {
  return {kLogicalEvaluation, kLogicalDocumentation};
}

}  // namespace rowvane

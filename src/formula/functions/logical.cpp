#include <array>

#include "formula/formula_evaluator.h"
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

constexpr std::array kEvaluation = {
    EvaluationEntry{nullptr, "FALSE(", {always_false, 0, 0}},
    EvaluationEntry{nullptr, "IF(", {choose, 2, 3, true}},
    EvaluationEntry{nullptr, "TRUE(", {always_true, 0, 0}},
};

constexpr auto kLogical = FunctionCategory::kLogical;

constexpr std::array kDocumentation = {
    DocumentationEntry{
        documentation_flags(kLogical, 0), "false", "\0", "",
        "false()\r\n\r\nThe logical value FALSE, which is the number 0.\r\n\r\n=false()    returns 0"},
    DocumentationEntry{
        documentation_flags(kLogical, 3), "if", "testValue\0ifTrue\0ifFalse\0", "000",
        "if(testValue, ifTrue, ifFalse)\r\n\r\nThe second argument when the first one is a number other "
        "than 0, otherwise the third; 0 when there is none.\r\n\r\n=if(5 > 3, \"more\", \"less\")    "
        "returns more"},
    DocumentationEntry{
        documentation_flags(kLogical, 0), "true", "\0", "",
        "true()\r\n\r\nThe logical value TRUE, which is the number 1.\r\n\r\n=true()    returns 1"},
};

}  // namespace

FunctionTables logical_functions() {
  return {kEvaluation, kDocumentation};
}

}  // namespace rowvane

#include <array>

#include "formula/evaluation/formula_evaluator.h"
#include "formula/functions/categories.h"

namespace rowvane {
namespace {

using Arguments = std::span<const Scalar>;

Scalar is_blank(Arguments arguments, const ScalarContext&) {
  return Scalar::of(arguments[0].is_empty());
}
Scalar is_error(Arguments arguments, const ScalarContext&) {
  return Scalar::of(arguments[0].is_error());
}
Scalar is_na(Arguments arguments, const ScalarContext&) {
  return Scalar::of(arguments[0].error == FormulaError::kNotAvailable);
}
Scalar is_number(Arguments arguments, const ScalarContext&) {
  return Scalar::of(arguments[0].is_number());
}
Scalar is_text(Arguments arguments, const ScalarContext&) {
  return Scalar::of(arguments[0].is_text());
}
Scalar na(Arguments, const ScalarContext&) {
  return Scalar::of(FormulaError::kNotAvailable);
}

constexpr std::array kInformationalEvaluation = {
    EvaluationEntry{nullptr, "ISBLANK(", {is_blank, 1, 1, true}},
    EvaluationEntry{nullptr, "ISERROR(", {is_error, 1, 1, true}},
    EvaluationEntry{nullptr, "ISNA(", {is_na, 1, 1, true}},
    EvaluationEntry{nullptr, "ISNUMBER(", {is_number, 1, 1, true}},
    EvaluationEntry{nullptr, "ISTEXT(", {is_text, 1, 1, true}},
    EvaluationEntry{nullptr, "NA(", {na, 0, 0}},
};

constexpr auto kInformational = FunctionCategory::kInformational;

constexpr std::array kInformationalDocumentation = {
    DocumentationEntry{documentation_flags(kInformational, 1), "isBlank", "value\0", "0",
                       "isBlank(value)\r\n\r\nTRUE when the value is empty.\r\n\r\n=isBlank(1)    returns 0"},
    DocumentationEntry{
        documentation_flags(kInformational, 1), "isError", "value\0", "0",
        "isError(value)\r\n\r\nTRUE when the value is an error.\r\n\r\n=isError(1/0)    returns 1"},
    DocumentationEntry{
        documentation_flags(kInformational, 1), "isNA", "value\0", "0",
        "isNA(value)\r\n\r\nTRUE when the value is the error #N/A!.\r\n\r\n=isNA(na())    returns 1"},
    DocumentationEntry{
        documentation_flags(kInformational, 1), "isNumber", "value\0", "0",
        "isNumber(value)\r\n\r\nTRUE when the value is a number.\r\n\r\n=isNumber(\"1\")    returns 0"},
    DocumentationEntry{
        documentation_flags(kInformational, 1), "isText", "value\0", "0",
        "isText(value)\r\n\r\nTRUE when the value is a text.\r\n\r\n=isText(\"1\")    returns 1"},
    DocumentationEntry{documentation_flags(kInformational, 0), "na", "\0", "",
                       "na()\r\n\r\nThe error #N/A!: no value is available.\r\n\r\n=na()    returns #N/A!"},
};

}  // namespace

FunctionTables informational_functions() {
  return {kInformationalEvaluation, kInformationalDocumentation};
}

}  // namespace rowvane

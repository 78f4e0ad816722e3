#include <algorithm>
#include <array>

#include "core/utf8.h"
#include "formula/formula_evaluator.h"
#include "formula/functions/categories.h"
#include "platform/characters.h"

namespace rowvane {
namespace {

using Arguments = std::span<const Scalar>;

Scalar concatenate(Arguments arguments, const ScalarContext& context) {
  Scalar joined = Scalar::of(std::string_view());
  for (const Scalar& argument : arguments) {
    const Scalar text = to_text(argument, context);
    if (text.is_error()) return text;
    joined = context.area.join(joined.text, text.text);
    if (joined.is_error()) return joined;
  }
  return joined;
}

Scalar exact(Arguments arguments, const ScalarContext& context) {
  return Scalar::of(to_text(arguments[0], context).text == to_text(arguments[1], context).text);
}

Scalar left(Arguments arguments, const ScalarContext& context) {
  const Scalar text = to_text(arguments[0], context);
  const Scalar count = arguments.size() > 1 ? to_number(arguments[1], context) : Scalar::of(1.0);
  if (count.is_error()) return count;
  if (count.number < 0) return Scalar::of(FormulaError::kValue);
  const auto characters = static_cast<size_t>(std::min(count.number, 1e9));
  return Scalar::of(truncate_characters(text.text, characters));
}

Scalar len(Arguments arguments, const ScalarContext& context) {
  return Scalar::of(static_cast<double>(count_characters(to_text(arguments[0], context).text)));
}

Scalar upper(Arguments arguments, const ScalarContext& context) {
  return context.area.keep(platform::upper_case(to_text(arguments[0], context).text));
}

constexpr std::array kEvaluation = {
    EvaluationEntry{nullptr, "CONCATENATE(", {concatenate, 0, 255}},
    EvaluationEntry{nullptr, "EXACT(", {exact, 2, 2}},
    EvaluationEntry{nullptr, "LEFT(", {left, 1, 2}},
    EvaluationEntry{nullptr, "LEN(", {len, 1, 1}},
    EvaluationEntry{nullptr, "UPPER(", {upper, 1, 1}},
};

constexpr auto kTextual = FunctionCategory::kTextual;

constexpr std::array kDocumentation = {
    DocumentationEntry{documentation_flags(kTextual, 0, true), "concatenate", "text1\0text2\0...\0",
                       "0000000",
                       "concatenate(text1, text2, ...)\r\n\r\nThe texts joined into one, as by &.\r\n\r\n"
                       "=concatenate(\"a\", 1, \"b\")    returns a1b"},
    DocumentationEntry{
        documentation_flags(kTextual, 2), "exact", "text1\0text2\0", "00",
        "exact(text1, text2)\r\n\r\nTRUE when both texts are the same, letter case included; the "
        "operator = ignores it.\r\n\r\n=exact(\"Word\", \"word\")    returns 0"},
    DocumentationEntry{
        documentation_flags(kTextual, 2), "left", "text\0[characters]\0", "00",
        "left(text, [characters])\r\n\r\nThe first characters of a text; one when their number is "
        "left out.\r\n\r\n=left(\"Rowvane\", 3)    returns Row"},
    DocumentationEntry{
        documentation_flags(kTextual, 1), "len", "text\0", "0",
        "len(text)\r\n\r\nThe number of characters of a text.\r\n\r\n=len(\"Rowvane\")    returns 7"},
    DocumentationEntry{
        documentation_flags(kTextual, 1), "upper", "text\0", "0",
        "upper(text)\r\n\r\nThe text in capitals.\r\n\r\n=upper(\"Rowvane\")    returns ROWVANE"},
};

}  // namespace

FunctionTables textual_functions() {
  return {kEvaluation, kDocumentation};
}

}  // namespace rowvane

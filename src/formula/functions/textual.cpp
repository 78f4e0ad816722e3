#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "formula/evaluation/formula_evaluator.h"
#include "formula/functions/categories.h"
#include "platform/characters.h"
#include "platform/utf8.h"
#include "text/folded_text.h"

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

using Finder = std::optional<size_t> (*)(std::string_view text, std::string_view wanted, size_t from);

// The character of the second argument, counted from 1, at which FINDER finds the first one; 0 where it does
// not, so that a result can be compared and counts as true or false.
Scalar position_of(Arguments arguments, const ScalarContext& context, Finder finder) {
  const std::string_view text = to_text(arguments[1], context).text;
  const std::string_view wanted = to_text(arguments[0], context).text;
  const bool with_start = arguments.size() > 2 && !arguments[2].is_empty();
  const Scalar start = with_start ? to_number(arguments[2], context) : Scalar::of(1.0);
  if (start.is_error()) return start;
  const double before = std::trunc(start.number) - 1;
  if (before < 0 || before > static_cast<double>(count_characters(text)))
    return Scalar::of(FormulaError::kValue);
  const size_t from = truncate_characters(text, static_cast<size_t>(before)).size();
  const auto found = finder(text, wanted, from);
  if (!found) return Scalar::of(0.0);
  return Scalar::of(static_cast<double>(count_characters(text.substr(0, *found)) + 1));
}

std::optional<size_t> find_exactly(std::string_view text, std::string_view wanted, size_t from) {
  const size_t found = text.find(wanted, from);
  if (found == std::string_view::npos) return std::nullopt;
  return found;
}

Scalar find(Arguments arguments, const ScalarContext& context) {
  return position_of(arguments, context, find_exactly);
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

Scalar search(Arguments arguments, const ScalarContext& context) {
  return position_of(arguments, context, find_folded);
}

Scalar trim(Arguments arguments, const ScalarContext& context) {
  const std::string_view text = to_text(arguments[0], context).text;
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return Scalar::of(std::string_view());
  const std::string_view inner = text.substr(first, text.find_last_not_of(' ') + 1 - first);
  if (inner.find("  ") == std::string_view::npos) return Scalar::of(inner);
  std::string single(inner);
  const auto both_blank = [](char a, char b) { return a == ' ' && b == ' '; };
  single.erase(std::unique(single.begin(), single.end(), both_blank), single.end());
  return context.area.keep(single);
}

Scalar upper(Arguments arguments, const ScalarContext& context) {
  return context.area.keep(platform::upper_case(to_text(arguments[0], context).text));
}

constexpr std::array kTextualEvaluation = {
    EvaluationEntry{nullptr, "CONCATENATE(", {concatenate, 0, 255}},
    EvaluationEntry{nullptr, "EXACT(", {exact, 2, 2}},
    EvaluationEntry{nullptr, "FIND(", {find, 2, 3}},
    EvaluationEntry{nullptr, "LEFT(", {left, 1, 2}},
    EvaluationEntry{nullptr, "LEN(", {len, 1, 1}},
    EvaluationEntry{nullptr, "SEARCH(", {search, 2, 3}},
    EvaluationEntry{nullptr, "TRIM(", {trim, 1, 1}},
    EvaluationEntry{nullptr, "UPPER(", {upper, 1, 1}},
};

constexpr auto kTextual = FunctionCategory::kTextual;

constexpr std::array kTextualDocumentation = {
    DocumentationEntry{documentation_flags(kTextual, 0, true), "concatenate", "text1\0text2\0...\0",
                       "0000000",
                       "concatenate(text1, text2, ...)\r\n\r\nThe texts joined into one, as by &.\r\n\r\n"
                       "=concatenate(\"a\", 1, \"b\")    returns a1b"},
    DocumentationEntry{
        documentation_flags(kTextual, 2), "exact", "text1\0text2\0", "00",
        "exact(text1, text2)\r\n\r\nTRUE when both texts are the same, letter case included; the "
        "operator = ignores it.\r\n\r\n=exact(\"Word\", \"word\")    returns 0"},
    DocumentationEntry{
        documentation_flags(kTextual, 3), "find", "wanted\0text\0[start]\0", "000",
        "find(wanted, text, [start])\r\n\r\nThe character of the text, counted from 1, at which the wanted "
        "text "
        "stands for the first time, letter case included; 0 when it is not there. Looks from the character "
        "start on, or from the first one.\r\n\r\n=find(\"v\", \"Rowvane\")    returns 4\r\n=find(\"V\", "
        "\"Rowvane\")    returns 0"},
    DocumentationEntry{
        documentation_flags(kTextual, 2), "left", "text\0[characters]\0", "00",
        "left(text, [characters])\r\n\r\nThe first characters of a text; one when their number is "
        "left out.\r\n\r\n=left(\"Rowvane\", 3)    returns Row"},
    DocumentationEntry{
        documentation_flags(kTextual, 1), "len", "text\0", "0",
        "len(text)\r\n\r\nThe number of characters of a text.\r\n\r\n=len(\"Rowvane\")    returns 7"},
    DocumentationEntry{
        documentation_flags(kTextual, 3), "search", "wanted\0text\0[start]\0", "000",
        "search(wanted, text, [start])\r\n\r\nThe character of the text, counted from 1, at which the wanted "
        "text stands for the first time, whatever the letter case; 0 when it is not there. Looks from the "
        "character start on, or from the first one.\r\n\r\n=search(\"VANE\", \"Rowvane\")    returns "
        "4\r\n=search(\"x\", \"Rowvane\",)    returns 0"},
    DocumentationEntry{documentation_flags(kTextual, 1), "trim", "text\0", "0",
                       "trim(text)\r\n\r\nThe text without blanks at its ends, and with a single one "
                       "wherever several follow "
                       "each other.\r\n\r\n=trim(\"  a   b \")    returns a b"},
    DocumentationEntry{
        documentation_flags(kTextual, 1), "upper", "text\0", "0",
        "upper(text)\r\n\r\nThe text in capitals.\r\n\r\n=upper(\"Rowvane\")    returns ROWVANE"},
};

}  // namespace

FunctionTables textual_functions() {
  return {kTextualEvaluation, kTextualDocumentation};
}

}  // namespace rowvane

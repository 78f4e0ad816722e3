#include <array>

#include "formula/evaluation/formula_evaluator.h"
#include "formula/functions/categories.h"

namespace rowvane {
namespace {

// A sum that keeps what rounding takes from it (Neumaier's variant of compensated summation).
class CompensatedSum {
 public:
  void add(double number) {
    const double next = sum_ + number;
    lost_ += std::abs(sum_) >= std::abs(number) ? (sum_ - next) + number : (number - next) + sum_;
    sum_ = next;
  }
  // Infinities have no rest to add.
  double result() const { return std::isfinite(lost_) ? sum_ + lost_ : sum_; }

 private:
  double sum_ = 0;
  double lost_ = 0;
};

using Arguments = std::span<const Scalar>;

Scalar abs_of(Arguments arguments, const ScalarContext& context) {
  const Scalar number = to_number(arguments[0], context);
  return number.is_error() ? number : Scalar::of(std::abs(number.number));
}

// NUMBER rounded at DIGITS behind the decimal point, halves away from zero. The number is first taken at its
// 15 significant digits, so that 1.005 rounds as it is written and not as it is stored.
double round_at(double number, double digits) {
  const double power = std::pow(10.0, std::min(std::abs(digits), 308.0));
  const double scaled = digits >= 0 ? number * power : number / power;
  if (!std::isfinite(scaled) || std::abs(scaled) >= 4503599627370496.0) return number;
  const double whole = std::trunc(scaled);
  const double tolerance = std::abs(scaled) * 4.5e-16;
  const double rounded =
      std::abs(scaled - whole) + tolerance >= 0.5 ? whole + std::copysign(1.0, scaled) : whole;
  return digits >= 0 ? rounded / power : rounded * power;
}

Scalar round_of(Arguments arguments, const ScalarContext& context) {
  const Scalar number = to_number(arguments[0], context);
  const Scalar digits = arguments.size() > 1 ? to_number(arguments[1], context) : Scalar::of(0.0);
  if (number.is_error()) return number;
  if (digits.is_error()) return digits;
  return Scalar::computed(round_at(number.number, std::trunc(digits.number)));
}

Scalar pi(Arguments, const ScalarContext&) {
  return Scalar::of(3.14159265358979323846);
}

// Adds the numbers of a field, a range or an array; texts and empty cells there do not count.
FormulaError add_cells(FormulaEvaluator& evaluator, const Value& argument, CompensatedSum& sum) {
  ArrayView cells;
  if (!evaluator.array_of(argument, cells)) return FormulaError::kMemory;
  for (size_t i = 0; i < cells.size(); ++i) {
    if (cells.cells[i].is_error()) return cells.cells[i].error;
    if (cells.cells[i].is_number()) sum.add(cells.cells[i].number);
  }
  return FormulaError::kNone;
}

void sum(FormulaEvaluator& evaluator) {
  CompensatedSum total;
  for (size_t i = 0; i < evaluator.argument_count(); ++i) {
    const Value& argument = evaluator.argument(i);
    FormulaError error = FormulaError::kNone;
    if (argument.is_array() || argument.kind == Kind::kReference) {
      error = add_cells(evaluator, argument, total);
    } else {
      const Scalar number = to_number(argument.scalar, evaluator.context());
      error = number.error;
      total.add(number.number);
    }
    if (error != FormulaError::kNone) return evaluator.give(Scalar::of(error));
  }
  evaluator.give(Scalar::computed(total.result()));
}

constexpr std::array kMathematicalEvaluation = {
    EvaluationEntry{nullptr, "ABS(", {abs_of, 1, 1}},
    EvaluationEntry{nullptr, "PI(", {pi, 0, 0}},
    EvaluationEntry{nullptr, "ROUND(", {round_of, 1, 2}},
    EvaluationEntry{sum, "SUM(", {}},
};

constexpr auto kMathematical = FunctionCategory::kMathematical;

constexpr std::array kMathematicalDocumentation = {
    DocumentationEntry{documentation_flags(kMathematical, 1), "abs", "number\0", "0",
                       "abs(number)\r\n\r\nThe absolute value of a number.\r\n\r\n=abs(-2.5)    returns 2.5"},
    DocumentationEntry{
        documentation_flags(kMathematical, 0), "pi", "\0", "",
        "pi()\r\n\r\nThe ratio of a circle's circumference to its diameter.\r\n\r\n=pi()    returns "
        "3.14159265358979"},
    DocumentationEntry{
        documentation_flags(kMathematical, 2), "round", "number\0digits\0", "00",
        "round(number, digits)\r\n\r\nThe number rounded to so many digits behind the decimal "
        "separator, halves away from zero. With negative digits it is rounded before the "
        "separator.\r\n\r\n=round(2.345, 2)    returns 2.35\r\n=round(1234, -2)    returns 1200"},
    DocumentationEntry{
        documentation_flags(kMathematical, 0, true), "sum", "number1\0number2\0...\0", "0000000",
        "sum(number1, number2, ...)\r\n\r\nThe sum of numbers. Texts and empty values in fields, "
        "ranges and arrays are left out.\r\n\r\n=sum(1, 2, 3)    returns 6\r\n=sum({1,2;3,4})    "
        "returns 10"},
};

}  // namespace

FunctionTables mathematical_functions() {
  return {kMathematicalEvaluation, kMathematicalDocumentation};
}

}  // namespace rowvane

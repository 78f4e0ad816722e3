#include "formula/passes/block_arithmetic.h"

#include <limits>

#include "formula/evaluation/scalar_operations.h"

namespace rowvane {
namespace {

// CELL as an operand: empty is 0. False when it is an error.
bool read_operand(double& cell) {
  if (cell == cell) return true;
  if (!is_empty_number(cell)) return false;
  cell = 0;
  return true;
}

// `holds` on two numbers, in a form that compilers turn into vector instructions.
template <Kind operation>
bool compares(double a, double b) {
  if constexpr (operation == Kind::kEqual) return a == b;
  if constexpr (operation == Kind::kLess) return a < b;
  if constexpr (operation == Kind::kLessOrEqual) return a <= b;
  if constexpr (operation == Kind::kGreater) return a > b;
  if constexpr (operation == Kind::kGreaterOrEqual) return a >= b;
  return a != b;
}

template <Kind operation>
double combine(double a, double b) {
  if constexpr (operation < Kind::kAdd) {
    return compares<operation>(a, b) ? 1.0 : 0.0;
  } else {
    return compute(operation, a, b);
  }
}

template <Kind operation>
double combine_checked(double a, double b) {
  if (!read_operand(a)) return error_number(error_of_number(a));
  if (!read_operand(b)) return error_number(error_of_number(b));
  const double result = combine<operation>(a, b);
  return std::isfinite(result) ? result : error_number(FormulaError::kValue);
}

// Plain arithmetic over the block; false when it met anything but numbers and the block has to be gone over
// again.
template <Kind operation, typename A, typename B>
bool combine_plain(const A& a, const B& b, size_t count, double* result) {
  constexpr double kGreatest = std::numeric_limits<double>::max();
  uint64_t plain = ~uint64_t{0};
  for (size_t i = 0; i < count; ++i) {
    const double x = a(i);
    const double y = b(i);
    const double z = combine<operation>(x, y);
    // A comparison hides NaN operands, so they are looked for; elsewhere they show in the result.
    const double probe = operation < Kind::kAdd ? (x - x) + (y - y) : z;
    plain &= std::abs(probe) <= kGreatest ? ~uint64_t{0} : 0;
    result[i] = z;
  }
  return plain != 0;
}

template <Kind operation, typename A, typename B>
void combine_all(const A& a, const B& b, size_t count, double* result) {
  // A power can be a number although an operand is none: NaN to the 0, and 1 to the NaN.
  if constexpr (operation != Kind::kPower) {
    if (combine_plain<operation>(a, b, count, result)) return;
  }
  for (size_t i = 0; i < count; ++i) result[i] = combine_checked<operation>(a(i), b(i));
}

template <Kind operation>
void combine_operands(const NumberOperand& a, const NumberOperand& b, size_t count, double* result) {
  const auto cells = [](const NumberOperand& operand) {
    return [cells = operand.cells](size_t i) { return cells[i]; };
  };
  const auto constant = [](const NumberOperand& operand) {
    return [one = operand.constant](size_t) { return one; };
  };
  if (a.cells == nullptr) return combine_all<operation>(constant(a), cells(b), count, result);
  if (b.cells == nullptr) return combine_all<operation>(cells(a), constant(b), count, result);
  combine_all<operation>(cells(a), cells(b), count, result);
}

}  // namespace

void compute_cells(Kind operation, const NumberOperand& a, const NumberOperand& b, size_t count,
                   double* result) {
  switch (operation) {
    case Kind::kEqual:
      return combine_operands<Kind::kEqual>(a, b, count, result);
    case Kind::kLess:
      return combine_operands<Kind::kLess>(a, b, count, result);
    case Kind::kLessOrEqual:
      return combine_operands<Kind::kLessOrEqual>(a, b, count, result);
    case Kind::kGreater:
      return combine_operands<Kind::kGreater>(a, b, count, result);
    case Kind::kGreaterOrEqual:
      return combine_operands<Kind::kGreaterOrEqual>(a, b, count, result);
    case Kind::kNotEqual:
      return combine_operands<Kind::kNotEqual>(a, b, count, result);
    case Kind::kAdd:
      return combine_operands<Kind::kAdd>(a, b, count, result);
    case Kind::kSubtract:
      return combine_operands<Kind::kSubtract>(a, b, count, result);
    case Kind::kMultiply:
      return combine_operands<Kind::kMultiply>(a, b, count, result);
    case Kind::kDivide:
      return combine_operands<Kind::kDivide>(a, b, count, result);
    default:
      return combine_operands<Kind::kPower>(a, b, count, result);
  }
}

void compute_cells(Kind operation, const double* operand, size_t count, double* result) {
  for (size_t i = 0; i < count; ++i) {
    double cell = operand[i];
    if (!read_operand(cell)) {
      result[i] = error_number(error_of_number(cell));
      continue;
    }
    const double number = operation == Kind::kNegate ? -cell : cell / 100;
    result[i] = std::isfinite(number) ? number : error_number(FormulaError::kValue);
  }
}

bool truth_of_cells(const double* cells, size_t count, uint8_t* truth) {
  bool plain = true;
  for (size_t i = 0; i < count; ++i) {
    truth[i] = cells[i] != 0 ? kIsTrue : kIsFalse;
    plain &= cells[i] == cells[i];
  }
  if (plain) return false;
  bool errors = false;
  for (size_t i = 0; i < count; ++i) {
    if (cells[i] == cells[i]) continue;
    truth[i] = is_empty_number(cells[i]) ? kIsFalse : kIsError;
    errors = errors || truth[i] == kIsError;
  }
  return errors;
}

}  // namespace rowvane

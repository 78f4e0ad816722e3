// The operators on single values. Everything that evaluates formulas computes with these.
#pragma once

#include <optional>

#include "formula/evaluation/kind.h"
#include "formula/evaluation/scalar.h"
#include "formula/evaluation/work_area.h"
#include "formula/language/formula_settings.h"

namespace rowvane {

// What operators and functions on single values need beside their operands.
struct ScalarContext {
  WorkArea& area;                   // for texts; what is made lives until it is cleared
  const FormulaSeparators& active;  // of the formula
  uint16_t mode = 0;                // the two words given to `evaluate`
  uint32_t options = 0;
};

// VALUE as a number: empty is 0; a text is the number it reads as, otherwise "#VALUE!"; errors stay.
Scalar to_number(const Scalar& value, const ScalarContext& context);
// VALUE as a text: empty is the empty text; a number has at most 15 significant digits; errors stay.
Scalar to_text(const Scalar& value, const ScalarContext& context);
// Whether VALUE counts as true: a number other than 0, or a text that reads as one. Nothing for an error and
// for another text.
std::optional<bool> to_truth(const Scalar& value, const ScalarContext& context);

// OPERATION on two plain numbers: kAdd, kSubtract, kMultiply, kDivide or kPower. Infinite or NaN where there
// is no result.
inline double compute(Kind operation, double a, double b) {
  switch (operation) {
    case Kind::kAdd:
      return a + b;
    case Kind::kSubtract:
      return a - b;
    case Kind::kMultiply:
      return a * b;
    case Kind::kDivide:
      return a / b;
    default:
      return std::pow(a, b);
  }
}

// OPERATION is kEqual to kNotEqual; ORDER as of <=>.
inline bool holds(Kind operation, std::partial_ordering order) {
  switch (operation) {
    case Kind::kEqual:
      return order == 0;
    case Kind::kLess:
      return order < 0;
    case Kind::kLessOrEqual:
      return order <= 0;
    case Kind::kGreater:
      return order > 0;
    case Kind::kGreaterOrEqual:
      return order >= 0;
    default:
      return order != 0;
  }
}

// Numbers stand before texts, texts are compared without letter case; an empty value is 0 beside a number and
// the empty text beside a text. A and B are no errors.
std::partial_ordering compare_scalars(const Scalar& a, const Scalar& b);

// OPERATION is kEqual to kPower. An error among the operands is the result, the left one first.
Scalar apply_binary(Kind operation, const Scalar& a, const Scalar& b, const ScalarContext& context);
// kNegate or kPercent.
Scalar apply_unary(Kind operation, const Scalar& operand, const ScalarContext& context);

}  // namespace rowvane

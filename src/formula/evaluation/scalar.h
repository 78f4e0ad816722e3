// A single value of a formula.
#pragma once

#include <cmath>
#include <string_view>

#include "core/values/number_cell.h"

namespace rowvane {

// Empty, a number (logical values are 0 and 1), a text or an error. Texts are borrowed: from the formula,
// from a column's pool or from a work area.
struct Scalar {
  enum class Kind : uint8_t { kEmpty, kNumber, kText, kError };

  Kind kind = Kind::kEmpty;
  FormulaError error = FormulaError::kNone;
  double number = 0;
  std::string_view text;

  static Scalar of(double number) { return {Kind::kNumber, FormulaError::kNone, number, {}}; }
  static Scalar of(bool truth) { return of(truth ? 1.0 : 0.0); }
  static Scalar of(std::string_view text) { return {Kind::kText, FormulaError::kNone, 0, text}; }
  static Scalar of(FormulaError error) { return {Kind::kError, error, 0, {}}; }
  // The outcome of a computation: "#VALUE!" when NUMBER is infinite or not a number.
  static Scalar computed(double number) {
    return std::isfinite(number) ? of(number) : of(FormulaError::kValue);
  }
  // What a number column's cell holds.
  static Scalar of_cell(double cell) {
    if (cell == cell) return of(cell);
    return is_empty_number(cell) ? Scalar() : of(error_of_number(cell));
  }

  bool is_empty() const { return kind == Kind::kEmpty; }
  bool is_number() const { return kind == Kind::kNumber; }
  bool is_text() const { return kind == Kind::kText; }
  bool is_error() const { return kind == Kind::kError; }
};

}  // namespace rowvane

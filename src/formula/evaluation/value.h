// What stands on the evaluator's value stack.
#pragma once

#include <cstddef>
#include <cstdint>

#include "formula/evaluation/kind.h"
#include "formula/evaluation/scalar.h"

namespace rowvane {

class CWorkSheet;

// Cells of a table: record positions and field indices, each from the first to the one before the end.
struct Reference {
  const CWorkSheet* source = nullptr;
  uint32_t first_row = 0;
  uint32_t end_row = 1;
  uint16_t first_column = 0;
  uint16_t end_column = 1;
  bool current_record = false;  // the rows are the current record, whatever they say

  static Reference field_of_record(const CWorkSheet& table, uint16_t field) {
    return {&table, 0, 1, field, static_cast<uint16_t>(field + 1), true};
  }

  bool is_single_cell() const { return columns() == 1 && (current_record || rows() == 1); }
  size_t rows() const { return end_row - first_row; }
  size_t columns() const { return static_cast<size_t>(end_column - first_column); }
};

// Row by row. The cells are borrowed.
struct ArrayView {
  size_t rows = 0;
  size_t columns = 0;
  const Scalar* cells = nullptr;

  size_t size() const { return rows * columns; }
  const Scalar& at(size_t row, size_t column) const { return cells[row * columns + column]; }
};

struct Value {
  Kind kind = Kind::kNoValue;
  bool literal = false;  // of a text: it was quoted, it is no name
  Scalar scalar;         // of a number, a text, an error or nothing; an unknown name is an error with a text
  Reference reference;   // of a reference, and of the error that stands for one to an encrypted field
  ArrayView array;

  Value() = default;
  explicit Value(const Scalar& single) : kind(kind_of(single)), scalar(single) {}
  explicit Value(const Reference& cells) : kind(Kind::kReference), reference(cells) {}
  Value(Kind array_kind, const ArrayView& cells) : kind(array_kind), array(cells) {}

  bool is_array() const { return kind == Kind::kArray || kind == Kind::kArrayResult; }
  // Of a value that is no reference and no array.
  Scalar single() const { return scalar.is_error() ? Scalar::of(scalar.error) : scalar; }

  static Kind kind_of(const Scalar& scalar) {
    return scalar.is_number() ? Kind::kNumber : scalar.is_text() ? Kind::kText : Kind::kNoValue;
  }
};

}  // namespace rowvane

// Array constants in formulas: {1,2;3,4}.
#pragma once

#include <string_view>
#include <vector>

#include "formula/evaluation/value.h"
#include "formula/evaluation/work_area.h"
#include "formula/language/formula_settings.h"

namespace rowvane {

// Reads one array constant. All rows must have the same number of elements.
class ArrayConstantReader {
 public:
  // Cells and texts are put into AREA.
  ArrayConstantReader(std::string_view text, const FormulaSeparators& active, WorkArea& area)
      : text_(text), active_(active), area_(area) {}

  // CURSOR stands on "{" and is moved behind "}". False when the constant can't be read.
  bool read(size_t& cursor);
  const ArrayView& array() const { return array_; }

 private:
  bool read_rows();
  bool read_element(Scalar& element);
  bool read_number(Scalar& element);
  bool read_text(Scalar& element);
  bool read_word(Scalar& element);
  void skip_blanks();
  bool take(std::string_view what);
  std::string_view rest() const { return text_.substr(cursor_); }
  // Counts the elements, so that their cells can be taken in one piece.
  size_t count_elements() const;
  bool add(const Scalar& element);

  std::string_view text_;
  const FormulaSeparators& active_;
  WorkArea& area_;
  size_t cursor_ = 0;
  Scalar* cells_ = nullptr;
  size_t room_ = 0;
  size_t count_ = 0;
  ArrayView array_;
};

}  // namespace rowvane

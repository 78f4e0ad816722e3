// The values of an expression for a block of records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/table/text_pool.h"
#include "formula/evaluation/formula_evaluator.h"

namespace rowvane {

inline constexpr size_t kBlockRecords = 1024;

// The different values of an expression that has few of them, by code.
struct ValueDictionary {
  const TextPool* pool = nullptr;  // of a text field: its codes are the field's
  bool calculated = false;         // the text field's values are calculated
  std::vector<Scalar> values;      // otherwise
  size_t bound = 1;                // there will never be more

  Scalar at(uint32_t code) const {
    return pool != nullptr ? read_text_cell(pool->text(code), calculated) : values[code];
  }
};

// All arrays are borrowed.
struct BlockVector {
  enum class Form : uint8_t {
    kConstant,  // the same for all records
    kNumbers,   // numbers, empty values and errors as cells of a number column
    kCodes,     // codes into a dictionary
    kScalars,   // anything
  };

  Form form = Form::kConstant;
  Scalar constant;
  const double* numbers = nullptr;
  const uint32_t* codes = nullptr;
  const ValueDictionary* dictionary = nullptr;
  const Scalar* scalars = nullptr;

  Scalar at(size_t i) const {
    switch (form) {
      case Form::kConstant:
        return constant;
      case Form::kNumbers:
        return Scalar::of_cell(numbers[i]);
      case Form::kCodes:
        return dictionary->at(codes[i]);
      default:
        return scalars[i];
    }
  }
};

}  // namespace rowvane

// The operators on blocks of number cells.
#pragma once

#include <cstddef>

#include "formula/evaluation/kind.h"

namespace rowvane {

// The operand of a loop over cells: an array of them, or one for all.
struct NumberOperand {
  const double* cells = nullptr;  // null: `constant`
  double constant = 0;
};

// RESULT[i] = A[i] OPERATION B[i], cell by cell as apply_binary does it; OPERATION is kEqual to kPower
// without kConcatenate.
void compute_cells(Kind operation, const NumberOperand& a, const NumberOperand& b, size_t count,
                   double* result);
// kNegate or kPercent.
void compute_cells(Kind operation, const double* operand, size_t count, double* result);
// Whether each of CELLS counts as true. Answers whether there is an error among them.
enum : uint8_t { kIsFalse, kIsTrue, kIsError };
bool truth_of_cells(const double* cells, size_t count, uint8_t* truth);

}  // namespace rowvane

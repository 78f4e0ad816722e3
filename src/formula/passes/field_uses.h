// Which fields a formula reads.
#pragma once

#include <vector>

#include "formula/passes/formula_program.h"

namespace rowvane {

struct FieldUse {
  const CWorkSheet* table = nullptr;
  uint16_t field = 0;
  bool all_records = false;  // otherwise of the formula's own record

  bool operator==(const FieldUse&) const = default;
};

struct FieldUses {
  std::vector<FieldUse> fields;  // each once
  bool unknown_names = false;    // it also reads names of nothing
};

// What PROGRAM names. Tables that are named by a text that the formula itself makes are not among it.
FieldUses fields_used_by(const FormulaProgram& program);

}  // namespace rowvane

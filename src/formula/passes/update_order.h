// In which order calculated fields are brought up to date.
#pragma once

#include <string>
#include <vector>

#include "core/table/field.h"
#include "formula/passes/field_uses.h"

namespace rowvane {

class Database;

struct CalculatedField {
  CWorkSheet* table = nullptr;
  size_t field = 0;
  FieldUses uses;  // what its formula reads
};

struct UpdateOrder {
  // Each field behind those that its formula reads. Fields of types that can't be calculated, and encrypted
  // ones, are not among them.
  std::vector<CalculatedField> fields;
  // Not empty: formulas that read each other, as "a -> b -> a". There is no order then.
  std::string circle;
};

// Of all calculated fields of DATABASE.
UpdateOrder find_update_order(const Database& database, const FormulaSettings& settings);

// True for the types that a calculated field can have: Text and Number.
bool can_be_calculated(const Field& field);

}  // namespace rowvane

// Keeps formulas meaning what they mean when fields, tables and folders get other names or places.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "formula/language/formula_settings.h"

namespace rowvane {

class CWorkSheet;
class Database;

// Made before names change; what it points to must outlive it.
class NameKeeper {
 public:
  // Looks at the formulas and validation formulas of all fields. Those that can't be read are left alone.
  NameKeeper(const Database& database, const FormulaSettings& settings);

  // After the change: writes names that are other ones now into the formulas. A name that a formula can't
  // hold, and a formula that would get too long, stay as they are.
  void update_formulas();

 private:
  // A name in a formula: a field's, or the path of a table.
  struct Use {
    size_t start;
    size_t bytes;
    const CWorkSheet* table;
    std::optional<size_t> field;
    std::string name;
    bool qualified;  // the field stands behind "!"
    bool quoted;
  };
  struct Formula {
    CWorkSheet* table;
    size_t field;
    bool is_validation;
    std::vector<Use> uses;
  };

  std::vector<Use> find_uses(const CWorkSheet& table, const std::string& formula) const;
  std::string updated(const Formula& formula, std::string text) const;

  const FormulaSettings& settings_;
  std::vector<Formula> formulas_;
};

}  // namespace rowvane

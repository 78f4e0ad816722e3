#include "formula/language/formula_settings.h"

namespace rowvane {

FormulaSettings formula_settings_of(const platform::RegionalSettings& region) {
  FormulaSettings settings;
  FormulaSeparators& own = settings.regional;
  if (!region.decimal_separator.empty()) own.numbers.decimal = region.decimal_separator;
  if (!region.list_separator.empty()) own.list = region.list_separator;
  if (own.list == own.numbers.decimal) own.list = ";";
  if (own.list == own.row) own.row = "|";
  return settings;
}

}  // namespace rowvane

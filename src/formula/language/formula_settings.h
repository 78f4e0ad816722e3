// The separators that formulas are written with.
#pragma once

#include <string>

#include "core/values/number_text.h"
#include "platform/regional_settings.h"

namespace rowvane {

// One way to write formulas.
struct FormulaSeparators {
  NumberSeparators numbers;  // never grouped
  std::string list = ",";    // between arguments, and between the elements of an array's row
  std::string row = ";";     // between the rows of an array
};

enum class SeparatorSet : uint8_t { kGeneric, kRegional };

// Both sets. Stored formulas use the generic one; the other follows the user's regional settings.
struct FormulaSettings {
  FormulaSeparators generic;
  FormulaSeparators regional;

  const FormulaSeparators& of(SeparatorSet set) const {
    return set == SeparatorSet::kGeneric ? generic : regional;
  }
};

// The decimal and list separators of REGION. Where one of them is taken already, the list separator is ";"
// and the row separator "|".
FormulaSettings formula_settings_of(const platform::RegionalSettings& region);

}  // namespace rowvane

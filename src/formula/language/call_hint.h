// What a formula that is being written is asking for: the call around the cursor and its parameters.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "formula/language/formula_settings.h"

namespace rowvane {

struct CallHint {
  std::string text;  // "if(testValue, ifTrue, ifFalse)"
  size_t begin = 0;  // the parameter that is being written, as bytes of the text; empty for none
  size_t end = 0;
};

// For the innermost call of a documented function that FORMULA, the text before the cursor, leaves open.
std::optional<CallHint> call_hint(std::string_view formula, const FormulaSeparators& separators);

}  // namespace rowvane

#include "core/values/number_cell.h"

#include <array>

#include "platform/ascii.h"

namespace rowvane {
namespace {

// In the order of the codes: entry i is the text of code 32 * (i + 1).
constexpr std::array<std::string_view, 7> kErrorNames = {"#VALUE!",  "#NAME?", "#REF!",   "#NULL!",
                                                         "#MEMORY!", "#DATA!", "#SYNTAX!"};
constexpr std::string_view kNotAvailableName = "#N/A!";

}  // namespace

std::string_view formula_error_text(FormulaError error) {
  const size_t code = static_cast<uint8_t>(error);
  if (error == FormulaError::kNotAvailable) return kNotAvailableName;
  return code == 0 ? std::string_view() : code % 32 == 0 ? kErrorNames[code / 32 - 1] : kErrorNames[0];
}

FormulaError formula_error_named(std::string_view text) {
  for (size_t i = 0; i < kErrorNames.size(); ++i) {
    if (ascii::equal_ignoring_case(text, kErrorNames[i])) return static_cast<FormulaError>(32 * (i + 1));
  }
  return ascii::equal_ignoring_case(text, kNotAvailableName) ? FormulaError::kNotAvailable
                                                             : FormulaError::kNone;
}

}  // namespace rowvane

// Criteria as formulas.
#pragma once

#include <string>
#include <string_view>

#include "core/table/field.h"
#include "recordset/search/criterion.h"

namespace rowvane {

// The formula that is true for the same records as CRITERION on FIELD; values are compared as numbers where
// the field is one of numbers, as texts otherwise. At most kMaxBufferBytes long.
//
// The text of a formula and the pattern of a regular expression stay as they are. Empty where there is no
// formula: kSimilar and kFlag, kBetween without two words, kAnd and kOr without any, and one that would be
// too long. The text is put into the formula as it stands, so that the formula of a text with a double quote
// can't be read.
std::string equivalent_formula(const Field& field, const Criterion& criterion);

}  // namespace rowvane

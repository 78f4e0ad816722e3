// Criteria as they are typed on the command line.
#pragma once

#include <string>

#include "recordset/search/search.h"

namespace rowvane::cli {

// Reads "FIELD:KIND:TEXT" for a field of TABLE. Answers a status and reports what is wrong.
int read_field_criterion(const CWorkSheet& table, const std::string& typed, FieldCriterion& criterion);

}  // namespace rowvane::cli

// Finds the tables that formulas name.
#pragma once

#include <string_view>

namespace rowvane {

class CWorkSheet;

// The table PATH of the database that OWN, the formula's table, belongs to; OWN itself where PATH names it.
// Null when there is none.
const CWorkSheet* find_named_table(const CWorkSheet* own, std::string_view path);

}  // namespace rowvane

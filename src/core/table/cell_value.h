// The value of one cell, as it passes between columns, dialogs and scripts.
#pragma once

#include <string>
#include <variant>

#include "core/table/content.h"

namespace rowvane {

// Empty; a number (or a formula error, coded as in number_cell.h); a text; a long text or code; files and
// images.
using CellValue = std::variant<std::monostate, double, std::string, Content, FileList>;

inline bool is_empty(const CellValue& value) {
  return std::holds_alternative<std::monostate>(value);
}

}  // namespace rowvane

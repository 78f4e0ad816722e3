// Works out what the parts of one section of a format code mean together.
#pragma once

#include <string>
#include <string_view>

#include "formula/formats/format_code.h"

namespace rowvane {

// Turns the parts as the lexer reads them into those that are shown, and fills the rest of SECTION. CODE is
// what the parts point into. Answers what is wrong; empty when nothing is.
std::string_view arrange_section(std::string_view code, FormatSection& section);

}  // namespace rowvane

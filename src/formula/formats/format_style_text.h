// Styles of display formats as people type them in commands and scripts.
#pragma once

#include <string>
#include <string_view>

#include "formula/formats/format_style.h"

namespace rowvane {

// What a typed style means.
struct StyleEntry {
  FormatStyle style;  // kCustom: the text is a format code itself
  Check check;
};

// Reads the name of a style, in any letter case, and its options with blanks between:
//   decimals=2  thousands  negative=plain|red|parentheses|red-parentheses  zeros=5  symbol=€  placement=0..3
//   form=1 (of a date, or of a time alone)  time=6 (of a date with a time)  digits=2  denominator=16
//   exponent=3 (or -3: fixed)
// A text that does not begin with the name of a style is a format code. Options start as 2 decimal places and
// thousands separators for money, SYMBOL being its sign, and as 0 or off for the other styles.
StyleEntry read_format_style(std::string_view text, std::string_view symbol);

}  // namespace rowvane

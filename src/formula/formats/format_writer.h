// Writes values as the sections of a format code say, one function a layout.
#pragma once

#include <string>
#include <string_view>

#include "formula/formats/number_format.h"

namespace rowvane {

// What a section is written with and to.
struct FormatOutput {
  const FormatCode& code;
  const FormatSection& section;
  const DisplayRegion& region;
  std::string& out;
  ShownValue shown;

  // Writes a part that looks the same for every value; false for one that does not.
  bool append_fixed(const FormatPart& part);
};

// NUMBER is finite. False, with nothing written, when it can't be shown.
void write_digits(FormatOutput& output, double number);
bool write_fraction(FormatOutput& output, double number);
bool write_date(FormatOutput& output, double number);

// The digits of the places before and behind the point are those of DIGITS, which are rounded.
class DecimalDigits;
void write_place(FormatOutput& output, const FormatPart& part, const DecimalDigits& digits, int power);

// A whole number in the WIDTH places of PART: zeros before it for '0', blanks for '?'.
void write_whole_number(const FormatPart& part, int64_t number, std::string& out);

}  // namespace rowvane

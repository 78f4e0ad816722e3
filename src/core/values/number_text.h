// Numbers as text and back: the program's number parser and writer.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace rowvane {

// The separators of number text. `generic` is what files and scripts use on every machine.
struct NumberSeparators {
  std::string decimal = ".";  // UTF-8, not empty
  std::string group;          // thousands; empty when numbers are not grouped

  bool is_generic() const { return group.empty() && decimal == "."; }
};

// The number that TEXT reads as, or nothing. Blanks before and after are skipped; between them stand an
// optional sign, digits with at most one decimal separator (".5" and "5." are numbers) and an optional
// exponent. Group separators may stand between groups of three digits before the decimal separator, the first
// group holding one to three. Hexadecimal forms, "inf" and "nan" are no numbers, nor is a value beyond the
// range of a double.
std::optional<double> parse_number(std::string_view text, const NumberSeparators& separators);

// As parse_number, but a number only when nothing that the text says is lost by storing the double:
// - the digits before the decimal separator do not begin with a zero that another digit follows ("00501" and
//   "-07" stay text, "0.5" and "0" are numbers);
// - there is no leading "+" (dialling codes stay text);
// - the decimal value of the text equals that of the shortest text that reads back to the same double.
//   This holds for every number of at most 15 significant digits in the normal range; of longer ones it
//   leaves out those that a double cannot carry (20-digit account numbers), and numbers that would become
//   zero or denormal.
// How the number is written (1.50, 1e-5, " 2 ", 1,000) does not count as lost.
std::optional<double> parse_number_exactly(std::string_view text, const NumberSeparators& separators);

// The generic-separator form of parse_number_exactly for the bytes [first, end), without leading or trailing
// blanks; the inner loop of reading text files.
bool parse_plain_number_exactly(const char* first, const char* end, double& number);

// Appends the shortest digits that read back to the same double, with the decimal separator given; with an
// exponent ("1e+21", "1e-07") only below 1e-5 and from 1e15 on. NUMBER must be finite.
void append_number(double number, std::string_view decimal_separator, std::string& out);
std::string number_to_text(double number, const NumberSeparators& separators = {});
// The same of what a cell holds: errors by their names, nothing for an empty cell.
std::string number_cell_text(double cell, const NumberSeparators& separators = {});

}  // namespace rowvane

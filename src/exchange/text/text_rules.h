// The tokenizing rules of one text file, taken out of its settings.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "exchange/text/text_file_settings.h"

namespace rowvane {

// How the bytes of a text fall into records and cells.
//
// Separated text (the usual form). A field begins behind leading spaces, unless the separator is a space. A
// field that begins with the quoting symbol is quoted: separators and line ends in it are text, two symbols
// stand for one, a single one closes it. Blanks behind the closing symbol are skipped (only tabs when the
// separator is a space, only spaces when it is a tab, otherwise both); when no separator, line end or end of
// the data follows, the symbol did not close the field: its text becomes symbol + text so far + symbol and
// goes on, unquoted, to the next separator or line end. Quoted text that is never closed runs to the end of
// the data.
//
// Fixed widths: a field ends when it has taken its width in characters, the field behind the last width at
// the line end. Blanks at the end of a cell are padding and dropped.
//
// No separator: a line is a field.
//
// CR, LF and CR LF end a record; so does the end of the data, unless a line end came right before it. Any
// other character below 0x20 is stored as a space, unless `keep_controls`.
struct TextRules {
  bool separated = true;
  bool quoting = true;
  bool keep_controls = false;  // for the tables of database files
  char separator = ',';
  char quote = '"';
  std::vector<uint16_t> widths;  // not empty: fixed widths
  bool utf8 = true;              // how characters are counted
  // Lead bytes of the double-byte characters of a code page; null when every byte is a character.
  std::shared_ptr<const std::array<bool, 256>> lead_bytes;

  bool fixed() const { return !widths.empty(); }
  bool skips_leading_spaces() const { return separated && separator != ' '; }
  bool is_separator(char c) const { return separated && c == separator; }
  // A blank that may stand between a closing quoting symbol and the separator.
  bool is_blank_after_quote(char c) const {
    return (c == ' ' && separator != ' ') || (c == '\t' && separator != '\t');
  }
};

TextRules text_rules(const TextFileSettings& settings);

inline bool is_line_end(char c) {
  return c == '\r' || c == '\n';
}
inline bool is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20;
}

}  // namespace rowvane

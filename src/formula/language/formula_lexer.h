// Turns the text of a formula into tokens.
#pragma once

#include <array>
#include <string_view>

#include "formula/evaluation/value.h"
#include "formula/evaluation/work_area.h"
#include "formula/language/field_names.h"
#include "formula/language/formula_settings.h"

namespace rowvane {

inline constexpr size_t kMaxFormulaStrings = 50;          // literals and unknown names of one formula
inline constexpr size_t kMaxFormulaStringBytes = 24'494;  // of them, without the terminating zeros
inline constexpr size_t kMaxFormulaArrays = 50;

struct Token {
  Kind kind = Kind::kError;
  bool literal = false;                      // of a text: it was quoted
  FormulaError error = FormulaError::kNone;  // the operand is this error
  uint16_t function = 0;                     // index in the evaluation table
  double number = 0;
  std::string_view text;
  Reference reference;
  ArrayView array;
};

// The operand as a value.
Value value_of(const Token& token);

// Reads one formula at a time. What tokens point to lives until the next `start`.
class FormulaLexer {
 public:
  explicit FormulaLexer(const FormulaSettings& settings) : settings_(settings) {}

  // Names of TABLE's fields are references from now on; null for none. TABLE's fields must not change
  // meanwhile.
  void set_table(const CWorkSheet* table);
  const CWorkSheet* table() const { return table_; }
  const FieldNames& field_names() const { return names_; }

  // Forgets what was read of the last formula.
  void start();
  // Reads the token at CURSOR, a position in TEXT, and moves CURSOR behind it. Answers its kind. kError: the
  // text can't be read, `error()` tells why.
  Kind next_token(std::string_view text, size_t& cursor, Token& token, SeparatorSet set);

  FormulaError error() const { return error_; }

 private:
  Kind read_number(Token& token);
  Kind read_literal(Token& token);
  Kind read_operator(Token& token);
  Kind read_name(Token& token);
  bool read_reference(Token& token);
  bool read_quoted_reference(Token& token);
  bool read_constant(Token& token);
  Kind read_bare_name(Token& token);
  Kind read_array(Token& token);
  Kind fail();

  std::string_view rest() const { return text_.substr(cursor_); }
  bool take(std::string_view what);
  // Puts TEXT into the string pool; false when it is full.
  bool keep_string(std::string_view text, std::string_view& kept);

  const FormulaSettings& settings_;
  const CWorkSheet* table_ = nullptr;
  FieldNames names_;

  // Of the call of next_token that is running.
  std::string_view text_;
  size_t cursor_ = 0;
  const FormulaSeparators* active_ = nullptr;

  FormulaError error_ = FormulaError::kNone;
  std::array<char, kMaxFormulaStringBytes + kMaxFormulaStrings> strings_;
  size_t string_count_ = 0;
  size_t string_bytes_ = 0;
  size_t array_count_ = 0;
  WorkArea array_cells_;
};

// The error that TEXT begins with, of those that formulas can be written with, in any letter case; kNone for
// none. BYTES becomes the length of its name.
FormulaError leading_error(std::string_view text, size_t& bytes);

// Reads the number at the start of TEXT: digits with at most one decimal separator, and an exponent. Answers
// its length; 0 when there is none. "#VALUE!" through ERROR when it is infinite or below the normal range.
size_t read_leading_number(std::string_view text, std::string_view decimal_separator, double& number,
                           FormulaError& error);

}  // namespace rowvane

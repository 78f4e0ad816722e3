// Evaluates formulas.
#pragma once

#include <array>
#include <string_view>

#include "formula/evaluation/scalar_operations.h"
#include "formula/functions/function_registry.h"
#include "formula/language/formula_lexer.h"
#include "formula/language/formula_parser.h"

namespace rowvane {

// Reads a formula and works out its value for one record in a single pass. The object is large and made to be
// used for many records: once it has seen the largest texts and arrays it allocates nothing. One thread at a
// time.
//
// What results point to lives until the next `evaluate` and as long as the table does not change.
class FormulaEvaluator {
 public:
  // SETTINGS are borrowed.
  explicit FormulaEvaluator(const FormulaSettings& settings, SeparatorSet set = SeparatorSet::kGeneric)
      : settings_(settings), set_(set), lexer_(settings) {}

  // The table whose fields formulas may name; null for none. Call it again when the table's fields have
  // changed.
  void set_table(const CWorkSheet* table) { lexer_.set_table(table); }
  const CWorkSheet* table() const { return lexer_.table(); }
  // The record that fields are read of: its 0-based position. With kNoRecord, references to fields are
  // "#REF!".
  static constexpr uint32_t kNoRecord = 0xFFFF'FFFF;
  void set_record(uint32_t position) { record_ = position; }
  // FIELD of the current record reads as VALUE from now on; null: as it is stored. VALUE is borrowed.
  void set_entry(uint16_t field, const Scalar* value);

  // FORMULA begins with "=" or "+". MODE and OPTIONS are handed to the functions. Answers kNumber, kText
  // (also for an empty result) or kArray; kError when the result is an error, which `error` then names.
  Kind evaluate(std::string_view formula, uint16_t mode = 0, uint32_t options = 0);
  Kind next_token(std::string_view text, size_t& cursor, Token& token, SeparatorSet set) {
    return lexer_.next_token(text, cursor, token, set);
  }

  FormulaError error() const { return error_; }
  // The result as a single value: of an array its first element, an error included.
  Scalar result() const;
  const ArrayView& array_result() const { return values_[0].array; }

  // ---- for what reads a formula in another way: the steps of an evaluation

  void start(uint16_t mode, uint32_t options);
  void push(const Token& token) { values_[value_count_++] = value_of(token); }
  void push(const Value& value) { values_[value_count_++] = value; }
  void push_empty() { values_[value_count_++] = Value(); }
  FormulaError apply(Kind operation);
  FormulaError call(uint16_t function, size_t arguments);
  // Classifies the value that is left, or ERROR.
  Kind finish(FormulaError error);

  // ---- for functions

  size_t argument_count() const { return value_count_ - first_argument_; }
  const Value& argument(size_t index) const { return values_[first_argument_ + index]; }
  // A single value: a reference is read for the current record, of an array the first element is taken.
  Scalar single(const Value& value);
  // True for an array, and for a reference to more than one cell.
  bool holds_cells(const Value& value) const;
  // All cells of VALUE; false when there is no memory for them.
  bool array_of(const Value& value, ArrayView& array);
  // Replaces the arguments by the result.
  void give(const Value& result);
  void give(const Scalar& result) { give(Value(result)); }
  // The call as a whole is wrong: the formula fails with ERROR.
  void fail(FormulaError error) { call_error_ = error; }
  ScalarContext context() { return {area_, settings_.of(set_), mode_, options_}; }

 private:
  Value& top(size_t below = 0) { return values_[value_count_ - 1 - below]; }
  Value apply_binary_to(Kind operation, const Value& left, const Value& right);
  Value apply_unary_to(Kind operation, const Value& operand);
  Value intersect(const Value& left, const Value& right) const;
  Value span(const Value& left, const Value& right) const;
  Value qualify(const Value& left, const Value& right) const;
  Reference with_rows(Reference reference) const;
  Scalar read_reference(const Reference& reference);
  void call_single(const SingleValueFunction& function);
  bool arguments_hold_cells() const;

  const FormulaSettings& settings_;
  SeparatorSet set_;
  FormulaLexer lexer_;
  WorkArea area_;
  std::array<Value, kMaxStackItems + 1> values_;
  std::array<Scalar, kMaxStackItems> singles_;  // the arguments of the call that is running
  size_t value_count_ = 0;
  size_t first_argument_ = 0;
  FormulaError error_ = FormulaError::kNone;
  FormulaError call_error_ = FormulaError::kNone;
  uint32_t record_ = kNoRecord;
  uint16_t mode_ = 0;
  uint32_t options_ = 0;
  const Scalar* entry_ = nullptr;
  uint16_t entry_field_ = 0;
};

// What the cell of FIELD at POSITION is to a formula: long texts whole, files as their names joined by "; ".
// The text of an error in a calculated text field is that error.
Scalar read_cell(const CWorkSheet& table, size_t field, size_t position, WorkArea& area);
// What TEXT of a text field is to a formula.
Scalar read_text_cell(std::string_view text, bool calculated);

}  // namespace rowvane

// Reads a formula by the priorities of its operators and tells in which order they apply.
#pragma once

#include <array>
#include <string_view>

#include "formula/language/formula_lexer.h"

namespace rowvane {

inline constexpr size_t kMaxStackItems = 50;  // values and operators together

// An operator precedence parser with two stacks. The operator stack is its own; the values are TARGET's,
// which does what the parser tells:
//   void push(const Token&)       an operand comes onto the value stack
//   void push_empty()             an empty argument does
//   FormulaError apply(Kind)      an operator takes its operands from there and leaves its result
//   FormulaError call(uint16_t function, size_t arguments)   a function does the same
// An error answered by TARGET ends the reading. Every operator gets the operands that belong to it: TARGET
// never sees too few.
template <typename Target>
class FormulaParser {
 public:
  FormulaParser(FormulaLexer& lexer, SeparatorSet set, Target& target)
      : lexer_(lexer), set_(set), target_(target) {}

  // kNone when one value is left at the end of FORMULA.
  FormulaError read(std::string_view formula);

 private:
  // What was read last, as far as it decides what may follow.
  enum class Previous { kStart, kOperator, kNegate, kOperand, kPercent, kOpen, kCallOpen, kSeparator };

  struct Item {
    Kind kind = Kind::kError;
    uint16_t function = 0;
    uint16_t first_value = 0;  // of a function's arguments
  };

  bool after_operand() const { return previous_ == Previous::kOperand || previous_ == Previous::kPercent; }
  FormulaError take(const Token& token);
  FormulaError take_operand(const Token& token);
  FormulaError take_open(const Token& token);
  FormulaError take_separator();
  FormulaError take_close();
  FormulaError take_operator(Kind kind);
  FormulaError take_negate();
  FormulaError finish();
  FormulaError end_argument();
  FormulaError apply_top();
  // Applies the operators above the nearest bracket or function.
  FormulaError apply_to_bracket();
  FormulaError close_call();

  Item& top() { return operators_[operator_count_ - 1]; }
  void push(Kind kind, uint16_t function = 0) {
    operators_[operator_count_++] = {kind, function, static_cast<uint16_t>(value_count_)};
  }

  FormulaLexer& lexer_;
  SeparatorSet set_;
  Target& target_;
  std::array<Item, kMaxStackItems> operators_;
  size_t operator_count_ = 0;
  size_t value_count_ = 0;
  Previous previous_ = Previous::kStart;
};

template <typename Target>
FormulaError FormulaParser<Target>::read(std::string_view formula) {
  lexer_.start();
  if (formula.empty() || (formula.front() != '=' && formula.front() != '+')) return FormulaError::kSyntax;
  size_t cursor = 1;
  Token token;
  while (value_count_ + operator_count_ + 2 <= kMaxStackItems) {
    const Kind kind = lexer_.next_token(formula, cursor, token, set_);
    if (kind == Kind::kError) return lexer_.error();
    if (kind == Kind::kEnd) return finish();
    if (const auto error = take(token); error != FormulaError::kNone) return error;
  }
  return FormulaError::kSyntax;
}

template <typename Target>
FormulaError FormulaParser<Target>::take(const Token& token) {
  if (is_operand(token.kind)) return take_operand(token);
  switch (token.kind) {
    case Kind::kOpen:
    case Kind::kFunction:
      return take_open(token);
    case Kind::kClose:
      return take_close();
    case Kind::kSeparator:
      return take_separator();
    default:
      return take_operator(token.kind);
  }
}

template <typename Target>
FormulaError FormulaParser<Target>::take_operand(const Token& token) {
  if (after_operand()) return FormulaError::kSyntax;
  target_.push(token);
  ++value_count_;
  previous_ = Previous::kOperand;
  return FormulaError::kNone;
}

template <typename Target>
FormulaError FormulaParser<Target>::take_open(const Token& token) {
  if (after_operand()) return FormulaError::kSyntax;
  push(Kind::kOpen);
  previous_ = Previous::kOpen;
  if (token.kind == Kind::kFunction) {
    push(Kind::kFunction, token.function);
    previous_ = Previous::kCallOpen;
  }
  return FormulaError::kNone;
}

template <typename Target>
FormulaError FormulaParser<Target>::take_operator(Kind kind) {
  if (!after_operand()) return kind == Kind::kSubtract ? take_negate() : FormulaError::kSyntax;
  if (kind == Kind::kPercent && previous_ == Previous::kPercent) return FormulaError::kSyntax;
  while (operator_count_ > 0 && is_operator(top().kind) && priority(top().kind) >= priority(kind)) {
    if (const auto error = apply_top(); error != FormulaError::kNone) return error;
  }
  push(kind);
  previous_ = kind == Kind::kPercent ? Previous::kPercent : Previous::kOperator;
  return FormulaError::kNone;
}

// An operator that binds tighter would have to apply before its right operand is there.
template <typename Target>
FormulaError FormulaParser<Target>::take_negate() {
  const bool binds_tighter =
      operator_count_ > 0 && is_operator(top().kind) && priority(top().kind) >= priority(Kind::kNegate);
  if (previous_ == Previous::kNegate || binds_tighter) return FormulaError::kSyntax;
  push(Kind::kNegate);
  previous_ = Previous::kNegate;
  return FormulaError::kNone;
}

// Before a separator or the end of a call.
template <typename Target>
FormulaError FormulaParser<Target>::end_argument() {
  if (!after_operand()) {
    target_.push_empty();
    ++value_count_;
  }
  return apply_to_bracket();
}

template <typename Target>
FormulaError FormulaParser<Target>::take_separator() {
  const bool empty = previous_ == Previous::kSeparator || previous_ == Previous::kCallOpen;
  if (!empty && !after_operand()) return FormulaError::kSyntax;
  if (const auto error = end_argument(); error != FormulaError::kNone) return error;
  if (operator_count_ == 0 || top().kind != Kind::kFunction) return FormulaError::kSyntax;
  previous_ = Previous::kSeparator;
  return FormulaError::kNone;
}

template <typename Target>
FormulaError FormulaParser<Target>::take_close() {
  if (previous_ == Previous::kSeparator || after_operand()) {
    if (const auto error = end_argument(); error != FormulaError::kNone) return error;
  } else if (previous_ != Previous::kCallOpen) {
    return FormulaError::kSyntax;
  }
  if (operator_count_ == 0) return FormulaError::kSyntax;
  if (top().kind == Kind::kFunction) {
    if (const auto error = close_call(); error != FormulaError::kNone) return error;
  }
  --operator_count_;
  previous_ = Previous::kOperand;
  return FormulaError::kNone;
}

template <typename Target>
FormulaError FormulaParser<Target>::close_call() {
  const Item function = top();
  --operator_count_;
  const size_t arguments = value_count_ - function.first_value;
  value_count_ = function.first_value + size_t{1};
  return target_.call(function.function, arguments);
}

template <typename Target>
FormulaError FormulaParser<Target>::apply_to_bracket() {
  while (operator_count_ > 0 && is_operator(top().kind)) {
    if (const auto error = apply_top(); error != FormulaError::kNone) return error;
  }
  return FormulaError::kNone;
}

template <typename Target>
FormulaError FormulaParser<Target>::apply_top() {
  const Kind kind = top().kind;
  --operator_count_;
  if (!is_unary(kind)) --value_count_;
  return target_.apply(kind);
}

template <typename Target>
FormulaError FormulaParser<Target>::finish() {
  if (!after_operand()) return FormulaError::kSyntax;
  if (const auto error = apply_to_bracket(); error != FormulaError::kNone) return error;
  return operator_count_ == 0 && value_count_ == 1 ? FormulaError::kNone : FormulaError::kSyntax;
}

}  // namespace rowvane

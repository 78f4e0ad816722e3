#include "formula/evaluation/scalar_operations.h"

#include "text/folded_text.h"

namespace rowvane {
namespace {

Scalar concatenate(const Scalar& a, const Scalar& b, const ScalarContext& context) {
  const Scalar left = to_text(a, context);
  const Scalar right = to_text(b, context);
  if (left.is_error()) return left;
  return right.is_error() ? right : context.area.join(left.text, right.text);
}

}  // namespace

Scalar to_number(const Scalar& value, const ScalarContext& context) {
  switch (value.kind) {
    case Scalar::Kind::kNumber:
    case Scalar::Kind::kError:
      return value;
    case Scalar::Kind::kEmpty:
      return Scalar::of(0.0);
    case Scalar::Kind::kText:
      break;
  }
  const auto number = parse_number(value.text, context.active.numbers);
  return number ? Scalar::of(*number) : Scalar::of(FormulaError::kValue);
}

Scalar to_text(const Scalar& value, const ScalarContext& context) {
  switch (value.kind) {
    case Scalar::Kind::kText:
    case Scalar::Kind::kError:
      return value;
    case Scalar::Kind::kEmpty:
      return Scalar::of(std::string_view());
    case Scalar::Kind::kNumber:
      break;
  }
  return Scalar::of(context.area.number_text(value.number, context.active.numbers.decimal));
}

std::optional<bool> to_truth(const Scalar& value, const ScalarContext& context) {
  const Scalar number = to_number(value, context);
  if (number.is_error()) return std::nullopt;
  return number.number != 0;
}

std::partial_ordering compare_scalars(const Scalar& a, const Scalar& b) {
  if (!a.is_text() && !b.is_text()) return a.number <=> b.number;
  const bool number_beside_text = a.is_number() || b.is_number();
  if (number_beside_text) return a.is_number() ? std::partial_ordering::less : std::partial_ordering::greater;
  return compare_folded(a.text, b.text);
}

Scalar apply_binary(Kind operation, const Scalar& a, const Scalar& b, const ScalarContext& context) {
  if (operation == Kind::kConcatenate) return concatenate(a, b, context);
  if (operation < Kind::kAdd) {
    if (a.is_error()) return a;
    if (b.is_error()) return b;
    return Scalar::of(holds(operation, compare_scalars(a, b)));
  }
  const Scalar left = to_number(a, context);
  if (left.is_error()) return left;
  const Scalar right = to_number(b, context);
  if (right.is_error()) return right;
  return Scalar::computed(compute(operation, left.number, right.number));
}

Scalar apply_unary(Kind operation, const Scalar& operand, const ScalarContext& context) {
  const Scalar number = to_number(operand, context);
  if (number.is_error()) return number;
  return Scalar::computed(operation == Kind::kNegate ? -number.number : number.number / 100);
}

}  // namespace rowvane

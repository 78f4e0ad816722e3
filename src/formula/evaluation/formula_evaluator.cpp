#include "formula/evaluation/formula_evaluator.h"

#include <algorithm>
#include <limits>

#include "core/table/work_sheet.h"
#include "formula/language/table_names.h"

namespace rowvane {

Scalar read_text_cell(std::string_view text, bool calculated) {
  if (text.empty()) return Scalar();
  if (calculated && text.front() == '#') {
    const FormulaError error = formula_error_named(text);
    if (error != FormulaError::kNone) return Scalar::of(error);
  }
  return Scalar::of(text);
}

Scalar read_cell(const CWorkSheet& table, size_t field, size_t position, WorkArea& area) {
  const Column& column = table.column(field);
  if (const auto* numbers = std::get_if<NumberColumn>(&column))
    return Scalar::of_cell(numbers->cells[position]);
  if (const auto* texts = std::get_if<TextColumn>(&column)) {
    return read_text_cell(texts->text(position), !table.field(field).formula.empty());
  }
  const std::string text = table.value_text(record_number(static_cast<uint32_t>(position)), field);
  return text.empty() ? Scalar() : area.keep(text);
}

void FormulaEvaluator::set_entry(uint16_t field, const Scalar* value) {
  entry_field_ = field;
  entry_ = value;
}

void FormulaEvaluator::start(uint16_t mode, uint32_t options) {
  mode_ = mode;
  options_ = options;
  value_count_ = 0;
  error_ = FormulaError::kNone;
  call_error_ = FormulaError::kNone;
  area_.clear();
}

Kind FormulaEvaluator::evaluate(std::string_view formula, uint16_t mode, uint32_t options) {
  start(mode, options);
  return finish(FormulaParser<FormulaEvaluator>(lexer_, set_, *this).read(formula));
}

Kind FormulaEvaluator::finish(FormulaError error) {
  error_ = error;
  Value& result = values_[0];
  if (error == FormulaError::kNone && result.kind == Kind::kReference) {
    ArrayView cells;
    if (!holds_cells(result)) {
      result = Value(single(result));
    } else if (array_of(result, cells)) {
      result = Value(Kind::kArrayResult, cells);
    } else {
      result = Value(Scalar::of(FormulaError::kMemory));
    }
  }
  if (error == FormulaError::kNone && !result.is_array()) error_ = result.scalar.error;
  if (error_ != FormulaError::kNone) {
    result = Value(Scalar::of(error_));
    return Kind::kError;
  }
  if (result.is_array()) return Kind::kArray;
  return result.scalar.is_number() ? Kind::kNumber : Kind::kText;
}

Scalar FormulaEvaluator::result() const {
  const Value& value = values_[0];
  if (!value.is_array()) return value.scalar;
  return value.array.size() > 0 ? value.array.cells[0] : Scalar::of(FormulaError::kValue);
}

// ---- operands

Reference FormulaEvaluator::with_rows(Reference reference) const {
  if (reference.current_record) {
    reference.first_row = record_;
    reference.end_row = record_ + 1;
  }
  return reference;
}

Scalar FormulaEvaluator::read_reference(const Reference& given) {
  const Reference cell = with_rows(given);
  if (entry_ != nullptr && given.current_record && cell.first_column == entry_field_) return *entry_;
  if (cell.first_row >= cell.source->record_count()) return Scalar::of(FormulaError::kRef);
  return read_cell(*cell.source, cell.first_column, cell.first_row, area_);
}

Scalar FormulaEvaluator::single(const Value& value) {
  if (value.kind == Kind::kReference) return read_reference(value.reference);
  if (!value.is_array()) return value.single();
  return value.array.size() > 0 ? value.array.cells[0] : Scalar::of(FormulaError::kValue);
}

bool FormulaEvaluator::holds_cells(const Value& value) const {
  return value.is_array() || (value.kind == Kind::kReference && !value.reference.is_single_cell());
}

bool FormulaEvaluator::array_of(const Value& value, ArrayView& array) {
  array = value.array;
  if (value.is_array()) return true;
  const bool range = value.kind == Kind::kReference && !value.reference.is_single_cell();
  const Reference cells = with_rows(value.reference);
  array.rows = range ? cells.rows() : 1;
  array.columns = range ? cells.columns() : 1;
  Scalar* out = area_.cells(array.size());
  if (out == nullptr) return false;
  array.cells = out;
  if (!range) {
    *out = single(value);
    return true;
  }
  for (size_t row = 0; row < array.rows; ++row) {
    for (size_t column = 0; column < array.columns; ++column) {
      Reference cell = value.reference;
      cell.first_row = cells.first_row + static_cast<uint32_t>(row);
      cell.end_row = cell.first_row + 1;
      cell.first_column = static_cast<uint16_t>(cells.first_column + column);
      cell.end_column = static_cast<uint16_t>(cell.first_column + 1);
      *out++ = read_reference(cell);
    }
  }
  return true;
}

// ---- operators

namespace {

// The element of ARRAY at a place of a larger one: single rows and columns repeat; null where there is none.
const Scalar* element_at(const ArrayView& array, size_t row, size_t column) {
  if (array.rows == 1) row = 0;
  if (array.columns == 1) column = 0;
  return row < array.rows && column < array.columns ? &array.at(row, column) : nullptr;
}

// Rows and columns that hold all of ARRAYS; nothing where one of them is empty.
ArrayView common_shape(std::span<const ArrayView> arrays) {
  ArrayView shape;
  for (const ArrayView& array : arrays) {
    if (array.size() == 0) return {};
    shape.rows = std::max(shape.rows, array.rows);
    shape.columns = std::max(shape.columns, array.columns);
  }
  return shape;
}

// Calls COMBINE with the elements of ARRAYS for each place of their common shape.
template <typename Combine>
Value combine_elements(std::span<const ArrayView> arrays, WorkArea& area, const Combine& combine) {
  ArrayView shape = common_shape(arrays);
  Scalar* out = area.cells(shape.size());
  if (out == nullptr) return Value(Scalar::of(FormulaError::kMemory));
  shape.cells = out;
  std::array<Scalar, kMaxStackItems> elements;
  for (size_t row = 0; row < shape.rows; ++row) {
    for (size_t column = 0; column < shape.columns; ++column) {
      bool complete = true;
      for (size_t i = 0; i < arrays.size(); ++i) {
        const Scalar* element = element_at(arrays[i], row, column);
        complete = complete && element != nullptr;
        if (element != nullptr) elements[i] = *element;
      }
      *out++ = complete ? combine(std::span<const Scalar>(elements.data(), arrays.size()))
                        : Scalar::of(FormulaError::kNotAvailable);
    }
  }
  return Value(Kind::kArrayResult, shape);
}

}  // namespace

FormulaError FormulaEvaluator::apply(Kind operation) {
  if (is_unary(operation)) {
    top() = apply_unary_to(operation, top());
    return FormulaError::kNone;
  }
  Value& left = top(1);
  const Value& right = top();
  switch (operation) {
    case Kind::kIntersection:
      left = intersect(left, right);
      break;
    case Kind::kQualifier:
      left = qualify(left, right);
      break;
    case Kind::kRange:
      left = span(left, right);
      break;
    default:
      left = apply_binary_to(operation, left, right);
  }
  --value_count_;
  return FormulaError::kNone;
}

Value FormulaEvaluator::apply_binary_to(Kind operation, const Value& left, const Value& right) {
  const ScalarContext scalars = context();
  if (!holds_cells(left) && !holds_cells(right)) {
    const Scalar a = single(left);
    return Value(apply_binary(operation, a, single(right), scalars));
  }
  std::array<ArrayView, 2> arrays;
  if (!array_of(left, arrays[0]) || !array_of(right, arrays[1]))
    return Value(Scalar::of(FormulaError::kMemory));
  return combine_elements(arrays, area_, [&](std::span<const Scalar> pair) {
    return apply_binary(operation, pair[0], pair[1], scalars);
  });
}

Value FormulaEvaluator::apply_unary_to(Kind operation, const Value& operand) {
  const ScalarContext scalars = context();
  if (!holds_cells(operand)) return Value(apply_unary(operation, single(operand), scalars));
  std::array<ArrayView, 1> array;
  if (!array_of(operand, array[0])) return Value(Scalar::of(FormulaError::kMemory));
  return combine_elements(array, area_, [&](std::span<const Scalar> element) {
    return apply_unary(operation, element[0], scalars);
  });
}

namespace {

// What an operator on references makes of operands that are none: an error among them, or "#REF!".
Value no_reference(const Value& left, const Value& right) {
  for (const Value* operand : {&left, &right}) {
    if (operand->scalar.is_error()) return Value(Scalar::of(operand->scalar.error));
  }
  return Value(Scalar::of(FormulaError::kRef));
}

bool are_of_one_table(const Value& left, const Value& right) {
  return left.kind == Kind::kReference && right.kind == Kind::kReference &&
         left.reference.source == right.reference.source;
}

}  // namespace

// The cells that both have; "#NULL!" where there is none.
Value FormulaEvaluator::intersect(const Value& left, const Value& right) const {
  if (!are_of_one_table(left, right)) return no_reference(left, right);
  const Reference a = with_rows(left.reference);
  const Reference b = with_rows(right.reference);
  Reference common = a;
  common.first_row = std::max(a.first_row, b.first_row);
  common.end_row = std::min(a.end_row, b.end_row);
  common.first_column = std::max(a.first_column, b.first_column);
  common.end_column = std::min(a.end_column, b.end_column);
  common.current_record = a.current_record || b.current_record;
  const bool none = common.first_row >= common.end_row || common.first_column >= common.end_column;
  return none ? Value(Scalar::of(FormulaError::kNull)) : Value(common);
}

// The smallest range that holds both.
Value FormulaEvaluator::span(const Value& left, const Value& right) const {
  if (!are_of_one_table(left, right)) return no_reference(left, right);
  const Reference a = with_rows(left.reference);
  const Reference b = with_rows(right.reference);
  Reference both = a;
  both.first_row = std::min(a.first_row, b.first_row);
  both.end_row = std::max(a.end_row, b.end_row);
  both.first_column = std::min(a.first_column, b.first_column);
  both.end_column = std::max(a.end_column, b.end_column);
  both.current_record = a.current_record && b.current_record;
  for (size_t field = both.first_column; field < both.end_column; ++field) {
    if (both.source->field(field).encrypted) return Value(Scalar::of(FormulaError::kRef));
  }
  return Value(both);
}

namespace {

// The field that OPERAND names: a text, an unknown name or a field of the formula's own table.
std::string_view named_field(const Value& operand) {
  if (operand.kind == Kind::kText) return operand.scalar.text;
  const bool field = operand.kind == Kind::kReference && operand.reference.current_record &&
                     operand.reference.is_single_cell();
  return field ? std::string_view(operand.reference.source->field(operand.reference.first_column).name)
               : std::string_view();
}

}  // namespace

// TABLE!FIELD: the field of all records.
Value FormulaEvaluator::qualify(const Value& left, const Value& right) const {
  if (left.kind != Kind::kText) return no_reference(left, right);
  const Value missing(Scalar::of(FormulaError::kRef));
  const CWorkSheet* table = find_named_table(lexer_.table(), left.scalar.text);
  const std::string_view name = named_field(right);
  if (table == nullptr || name.empty()) return missing;
  const auto field = table->find_field(name);
  if (!field || table->field(*field).encrypted) return missing;
  if (table->record_count() == 0) return Value(Scalar::of(FormulaError::kNull));
  const auto column = static_cast<uint16_t>(*field);
  return Value(Reference{table, 0, table->record_count(), column, static_cast<uint16_t>(column + 1), false});
}

// ---- functions

FormulaError FormulaEvaluator::call(uint16_t function, size_t arguments) {
  first_argument_ = value_count_ - arguments;
  const EvaluationEntry& entry = evaluation_entry(function);
  call_error_ = FormulaError::kNone;
  const bool has_single = entry.single.function != nullptr;
  if (entry.implementation != nullptr && (!has_single || arguments_hold_cells())) {
    entry.implementation(*this);
  } else {
    call_single(entry.single);
  }
  return call_error_;
}

void FormulaEvaluator::give(const Value& result) {
  values_[first_argument_] = result;
  value_count_ = first_argument_ + 1;
}

bool FormulaEvaluator::arguments_hold_cells() const {
  for (size_t i = 0; i < argument_count(); ++i) {
    if (holds_cells(argument(i))) return true;
  }
  return false;
}

void FormulaEvaluator::call_single(const SingleValueFunction& function) {
  const size_t count = argument_count();
  if (!takes_arguments(function, count)) {
    fail(FormulaError::kSyntax);
    return give(Scalar::of(FormulaError::kSyntax));
  }
  const ScalarContext scalars = context();
  const std::span<const Value> arguments(values_.data() + first_argument_, count);
  if (!arguments_hold_cells()) {
    for (size_t i = 0; i < count; ++i) singles_[i] = single(arguments[i]);
    return give(call_function(function, {singles_.data(), count}, scalars));
  }
  std::array<ArrayView, kMaxStackItems> arrays;
  for (size_t i = 0; i < count; ++i) {
    if (!array_of(arguments[i], arrays[i])) return give(Scalar::of(FormulaError::kMemory));
  }
  give(combine_elements({arrays.data(), count}, area_, [&](std::span<const Scalar> elements) {
    return call_function(function, elements, scalars);
  }));
}

}  // namespace rowvane

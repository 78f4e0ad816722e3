#include "recordset/sort/record_order.h"

#include <algorithm>

#include "recordset/search/outside_text.h"

namespace rowvane {
namespace {

template <typename Number>
int order_of(Number a, Number b) {
  return a < b ? -1 : a > b ? 1 : 0;
}

}  // namespace

// One value of a comparison.
struct RecordOrder::Operand {
  // In ascending order.
  enum class Kind { kNumber, kText, kError, kEmpty };

  Kind kind = Kind::kEmpty;
  double number = 0;
  FormulaError error = FormulaError::kNone;
  std::string_view text;
  std::string read;  // instead of `text`, of a value outside the record
  bool is_outside = false;

  static Operand of(double cell) {
    Operand operand;
    if (is_empty_number(cell)) return operand;
    operand.error = error_of_number(cell);
    operand.kind = operand.error == FormulaError::kNone ? Kind::kNumber : Kind::kError;
    operand.number = cell;
    return operand;
  }
  static Operand of(std::string_view text) {
    Operand operand;
    operand.kind = text.empty() ? Kind::kEmpty : Kind::kText;
    operand.text = text;
    return operand;
  }
  static Operand of_outside(std::string read) {
    Operand operand;
    operand.kind = Kind::kText;
    operand.read = std::move(read);
    operand.is_outside = true;
    return operand;
  }

  std::string_view shown_text() const { return is_outside ? std::string_view(read) : text; }
};

RecordOrder::RecordOrder(const CWorkSheet& table, SortKeys keys, const SortOptions& options)
    : table_(table), keys_(std::move(keys)), texts_(options) {}

void RecordOrder::keep(ErrorCode error) const {
  ErrorCode none = ErrorCode::kOk;
  if (error != ErrorCode::kOk) error_.compare_exchange_strong(none, error);
}

RecordOrder::Operand RecordOrder::operand_of(uint32_t position, size_t field) const {
  const Column& column = table_.column(field);
  if (const auto* numbers = std::get_if<NumberColumn>(&column)) return Operand::of(numbers->cells[position]);
  if (const auto* texts = std::get_if<TextColumn>(&column)) return Operand::of(texts->text(position));
  if (outside_reference(column, position) == 0) return Operand();
  std::string text;
  keep(read_outside_text(table_, position, field, text));
  return Operand::of_outside(std::move(text));
}

RecordOrder::Operand RecordOrder::operand_of(const CellValue& value) const {
  if (is_empty(value)) return Operand();
  if (const auto* number = std::get_if<double>(&value)) return Operand::of(*number);
  if (const auto* text = std::get_if<std::string>(&value)) return Operand::of(*text);
  std::string text;
  keep(read_outside_text(value, text));
  return Operand::of_outside(std::move(text));
}

int RecordOrder::compare(const Operand& a, const Operand& b) const {
  if (a.kind != b.kind) return order_of(a.kind, b.kind);
  switch (a.kind) {
    case Operand::Kind::kNumber:
      return order_of(a.number, b.number);
    case Operand::Kind::kError:
      return order_of(a.error, b.error);
    case Operand::Kind::kEmpty:
      return 0;
    case Operand::Kind::kText:
      break;
  }
  const int order = texts_.compare(a.shown_text(), b.shown_text());
  if (order != 0 || !a.is_outside || !b.is_outside) return order;
  return texts_.ignored_part(a.read).compare(texts_.ignored_part(b.read));
}

int RecordOrder::compare(uint32_t a, uint32_t b) const {
  for (const SortKey& key : keys_) {
    const int order = compare(operand_of(a, key.field), operand_of(b, key.field));
    if (order != 0) return key.descending ? order_of(0, order) : order;
  }
  return 0;
}

int RecordOrder::compare(uint32_t a, std::span<const CellValue> values) const {
  for (size_t i = 0; i < std::min(values.size(), keys_.size()); ++i) {
    const int order = compare(operand_of(a, keys_[i].field), operand_of(values[i]));
    if (order != 0) return keys_[i].descending ? order_of(0, order) : order;
  }
  return 0;
}

}  // namespace rowvane

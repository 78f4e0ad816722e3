#include "formula/passes/field_uses.h"

#include <algorithm>

#include "core/table/work_sheet.h"
#include "formula/language/table_names.h"

namespace rowvane {
namespace {

// What is known of a value without working it out.
struct KnownValue {
  enum class Kind : uint8_t { kAny, kName, kFields };

  Kind kind = Kind::kAny;
  std::string_view name;              // of kName
  bool literal = false;               // the name is a text between quotes
  const CWorkSheet* table = nullptr;  // of kFields
  uint16_t first = 0;
  uint16_t end = 0;
  bool all_records = false;
};

// Goes through the steps with known values. A field counts as used when something reads it, not where its
// name is only part of a range or a qualified name.
class UseFinder {
 public:
  explicit UseFinder(const FormulaProgram& program) : program_(program) {}

  FieldUses run() {
    for (const FormulaStep& step : program_.steps()) take(step);
    for (const KnownValue& value : stack_) use(value);
    return std::move(uses_);
  }

 private:
  void take(const FormulaStep& step) {
    if (step.kind == FormulaStep::Kind::kPush) {
      stack_.push_back(known(step.value));
    } else if (step.kind == FormulaStep::Kind::kCall) {
      read(step.arguments);
    } else if (step.operation == Kind::kRange || step.operation == Kind::kIntersection) {
      combine();
    } else if (step.operation == Kind::kQualifier) {
      qualify();
    } else {
      read(is_unary(step.operation) ? 1 : 2);
    }
  }

  static KnownValue known(const Value& value) {
    KnownValue result;
    if (value.kind == Kind::kText) {
      result.kind = KnownValue::Kind::kName;
      result.name = value.scalar.text;
      result.literal = value.literal;
    } else if (value.reference.source != nullptr) {
      const Reference& cells = value.reference;
      result = fields(*cells.source, cells.first_column, cells.end_column, false);
    }
    return result;
  }

  static KnownValue fields(const CWorkSheet& table, uint16_t first, uint16_t end, bool all_records) {
    KnownValue result;
    result.kind = KnownValue::Kind::kFields;
    result.table = &table;
    result.first = first;
    result.end = end;
    result.all_records = all_records;
    return result;
  }

  KnownValue pop() {
    const KnownValue value = stack_.back();
    stack_.pop_back();
    return value;
  }

  void read(size_t count) {
    for (size_t i = 0; i < count; ++i) use(pop());
    stack_.emplace_back();
  }

  void combine() {
    const KnownValue right = pop();
    KnownValue left = pop();
    if (left.kind != KnownValue::Kind::kFields || right.kind != left.kind || left.table != right.table) {
      use(left);
      use(right);
      left = KnownValue();
    } else {
      left.first = std::min(left.first, right.first);
      left.end = std::max(left.end, right.end);
      left.all_records = left.all_records || right.all_records;
    }
    stack_.push_back(left);
  }

  void qualify() {
    const KnownValue field = pop();
    const KnownValue path = pop();
    KnownValue result;
    const bool is_field =
        field.kind == KnownValue::Kind::kFields && field.first + 1 == field.end && !field.all_records;
    const CWorkSheet* table =
        path.kind == KnownValue::Kind::kName ? find_named_table(program_.table(), path.name) : nullptr;
    const std::string_view name =
        is_field ? std::string_view(field.table->field(field.first).name) : field.name;
    if (const auto found = table != nullptr ? table->find_field(name) : std::nullopt) {
      const auto index = static_cast<uint16_t>(*found);
      result = fields(*table, index, static_cast<uint16_t>(index + 1), true);
    } else {
      uses_.unknown_names = true;
    }
    stack_.push_back(result);
  }

  void use(const KnownValue& value) {
    if (value.kind == KnownValue::Kind::kName && !value.literal) uses_.unknown_names = true;
    if (value.kind != KnownValue::Kind::kFields) return;
    for (uint32_t field = value.first; field < value.end; ++field) {
      const FieldUse found{value.table, static_cast<uint16_t>(field), value.all_records};
      if (std::ranges::find(uses_.fields, found) == uses_.fields.end()) uses_.fields.push_back(found);
    }
  }

  const FormulaProgram& program_;
  std::vector<KnownValue> stack_;
  FieldUses uses_;
};

}  // namespace

FieldUses fields_used_by(const FormulaProgram& program) {
  if (program.error() != FormulaError::kNone) return {};
  return UseFinder(program).run();
}

}  // namespace rowvane

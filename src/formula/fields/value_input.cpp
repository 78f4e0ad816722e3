#include "formula/fields/value_input.h"

#include "core/table/work_sheet.h"
#include "formula/formats/typed_value.h"

namespace rowvane {
namespace {

ValueReading read_number_value(std::string_view text, const platform::RegionalSettings& region) {
  if (const auto typed = read_typed_value(text, region)) return {ErrorCode::kOk, typed->number};
  const FormulaError error = formula_error_named(text);
  if (error != FormulaError::kNone) return {ErrorCode::kOk, error_number(error)};
  return {ErrorCode::kFieldTypeMismatch, {}};
}

}  // namespace

std::optional<double> ValueReading::number() const {
  const auto* read = std::get_if<double>(&value);
  return read != nullptr ? std::optional(*read) : std::nullopt;
}

ValueReading read_field_value(const Field& field, std::string_view text,
                              const platform::RegionalSettings& region) {
  if (text.empty()) return {};
  switch (field.type) {
    case FieldType::kText: {
      const ErrorCode error = validate_text(text);
      return {error, error == ErrorCode::kOk ? CellValue(std::string(text)) : CellValue()};
    }
    case FieldType::kNumber:
      return read_number_value(text, region);
    case FieldType::kLongText:
    case FieldType::kCode:
      return {ErrorCode::kOk, Content::of(std::string(text))};
    case FieldType::kFiles:
      break;
  }
  return {ErrorCode::kFieldTypeMismatch, {}};
}

}  // namespace rowvane

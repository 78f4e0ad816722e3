#include "recordset/find/shown_texts.h"

#include <algorithm>

#include "core/values/number_text.h"
#include "text/rich_text.h"

namespace rowvane {
namespace {

ErrorCode read_content(const Content& content, FieldType type, std::string& text) {
  const ErrorCode error = content.read(text);
  if (error != ErrorCode::kOk) {
    text.clear();
  } else if (type == FieldType::kLongText && is_rich_text(text)) {
    text = plain_text_of(text);
  }
  return error;
}

}  // namespace

std::vector<size_t> shown_fields(const CWorkSheet& table) {
  std::vector<size_t> fields;
  for (size_t i = 0; i < table.field_count(); ++i) {
    if (!table.field(i).hidden) fields.push_back(i);
  }
  std::ranges::stable_sort(fields, {}, [&table](size_t i) { return table.field(i).position; });
  return fields;
}

ShownTexts::ShownTexts(const CWorkSheet& table, const DisplayRegion& region)
    : table_(table), decimal_(region.decimal) {
  for (const Field& field : table.data().fields) {
    std::optional<NumberFormat>& format = formats_.emplace_back();
    if (field.type != FieldType::kNumber || field.format.empty()) continue;
    format.emplace(field.format, region);
    if (!format->problem().empty()) format.reset();
  }
}

ShownValue ShownTexts::read_number(double cell, size_t field, std::string& text) const {
  text.clear();
  if (is_empty_number(cell)) return {};
  const FormulaError error = error_of_number(cell);
  if (error != FormulaError::kNone) {
    text = formula_error_text(error);
  } else if (formats_[field]) {
    return formats_[field]->append(cell, text);
  } else {
    append_number(cell, decimal_, text);
  }
  return {};
}

ErrorCode ShownTexts::read(uint32_t position, size_t field, std::string& text, ShownValue* how) const {
  const Column& column = table_.column(field);
  text.clear();
  if (const auto* numbers = std::get_if<NumberColumn>(&column)) {
    const ShownValue shown = read_number(numbers->cells[position], field, text);
    if (how != nullptr) *how = shown;
  } else if (const auto* texts = std::get_if<TextColumn>(&column)) {
    text = texts->text(position);
  } else if (const auto* contents = std::get_if<ContentColumn>(&column)) {
    const Content* content = contents->value(position);
    if (content != nullptr) return read_content(*content, table_.field(field).type, text);
  } else if (const FileList* files = std::get<FilesColumn>(column).value(position); files != nullptr) {
    append_file_names(*files, text);
  }
  return ErrorCode::kOk;
}

}  // namespace rowvane

#include "recordset/search/field_texts.h"

namespace rowvane {

ErrorCode FieldTexts::read(uint32_t position) {
  texts_.clear();
  if (const auto* texts = std::get_if<TextColumn>(&column_)) {
    const std::string_view text = texts->text(position);
    const bool failed = errors_ == Errors::kNone && calculated_ && text.starts_with('#') &&
                        formula_error_named(text) != FormulaError::kNone;
    if (!failed) texts_.push_back(text);
    return ErrorCode::kOk;
  }
  if (const auto* numbers = std::get_if<NumberColumn>(&column_)) {
    add_number(numbers->cells[position]);
    return ErrorCode::kOk;
  }
  if (const auto* files = std::get_if<FilesColumn>(&column_)) {
    add_names(files->value(position));
    return ErrorCode::kOk;
  }
  buffer_.clear();
  const Content* content = std::get<ContentColumn>(column_).value(position);
  if (content != nullptr) {
    if (const ErrorCode error = content->read(buffer_); error != ErrorCode::kOk) return error;
  }
  texts_.push_back(buffer_);
  return ErrorCode::kOk;
}

void FieldTexts::add_number(double cell) {
  const FormulaError error = error_of_number(cell);
  if (error != FormulaError::kNone) {
    if (errors_ == Errors::kNamed) texts_.push_back(formula_error_text(error));
  } else if (is_empty_number(cell)) {
    texts_.emplace_back();
  } else {
    area_.clear();
    texts_.push_back(area_.number_text(cell, "."));
  }
}

void FieldTexts::add_names(const FileList* files) {
  buffer_.clear();
  if (files != nullptr && names_ == FileNames::kEach) {
    for (const FileObject& file : *files) texts_.push_back(file.name);
  } else if (files != nullptr) {
    append_file_names(*files, buffer_);
  }
  if (texts_.empty()) texts_.push_back(buffer_);
}

}  // namespace rowvane

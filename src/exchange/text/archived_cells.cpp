#include "exchange/text/archived_cells.h"

#include <string_view>
#include <utility>

#include "core/database/binary_names.h"
#include "zip/zip_writer.h"

namespace rowvane {
namespace {

ErrorCode add_member(const std::string& name, const Content& content, ZipWriter& archive) {
  std::string bytes;
  const ErrorCode error = content.read(bytes);
  return error == ErrorCode::kOk ? archive.add(name, bytes, ZipMethod::kDeflated) : error;
}

}  // namespace

ArchivedCells::ArchivedCells(const CWorkSheet& table, std::string name, bool files, bool long_texts)
    : table_(table),
      name_(std::move(name)),
      files_(files),
      long_texts_(long_texts),
      rich_texts_(table.field_count()) {
  for (size_t field = 0; field < table.field_count(); ++field) {
    const auto* column = std::get_if<ContentColumn>(&table.column(field));
    if (column != nullptr && long_texts) rich_texts_[field].resize(column->values.size() + 1);
  }
}

std::string ArchivedCells::folder_of(uint32_t position, size_t field) const {
  return binary_folder_name(name_, table_.name(), record_number(position), field + 1);
}

bool ArchivedCells::holds_long_texts(size_t field) const {
  return long_texts_ && std::holds_alternative<ContentColumn>(table_.column(field));
}

ErrorCode ArchivedCells::archive(uint32_t position, size_t field, ZipWriter& archive) {
  if (holds_files(field)) return archive_files(position, field, archive);
  return holds_long_texts(field) ? archive_text(position, field, archive) : ErrorCode::kOk;
}

ErrorCode ArchivedCells::archive_text(uint32_t position, size_t field, ZipWriter& archive) {
  const auto& column = std::get<ContentColumn>(table_.column(field));
  const Content* content = column.value(position);
  if (content == nullptr) return ErrorCode::kOk;
  std::string text;
  if (const auto error = content->read(text); error != ErrorCode::kOk) return error;
  const std::string_view file_name = long_text_file_name(text);
  rich_texts_[field][column.cells[position]] = file_name == kRichTextFileName;
  const std::string name = folder_of(position, field).append(file_name);
  return archive.add(name, text, ZipMethod::kDeflated);
}

ErrorCode ArchivedCells::archive_files(uint32_t position, size_t field, ZipWriter& archive) {
  const FileList* files = std::get<FilesColumn>(table_.column(field)).value(position);
  if (files == nullptr) return ErrorCode::kOk;
  for (const FileObject& file : *files) {
    if (file.is_shortcut()) continue;
    const auto error = add_member(folder_of(position, field) + file.name, file.content, archive);
    if (error != ErrorCode::kOk) return error;
  }
  return ErrorCode::kOk;
}

void ArchivedCells::append_names(uint32_t position, size_t field, std::string& out) const {
  if (const auto* texts = std::get_if<ContentColumn>(&table_.column(field))) {
    const uint32_t reference = texts->cells[position];
    if (reference == 0) return;
    out += folder_of(position, field);
    out += rich_texts_[field][reference] ? kRichTextFileName : kPlainTextFileName;
    return;
  }
  const FileList* files = std::get<FilesColumn>(table_.column(field)).value(position);
  if (files == nullptr) return;
  for (const FileObject& file : *files) {
    if (&file != &files->front()) out += "; ";
    out += file.is_shortcut() ? file.shortcut : folder_of(position, field) + file.name;
  }
}

}  // namespace rowvane

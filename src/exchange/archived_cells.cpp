#include "exchange/archived_cells.h"

#include <array>
#include <cstdio>
#include <string_view>

#include "exchange/text_export.h"

namespace rowvane {
namespace {

std::string folder_of(uint32_t position, size_t field) {
  std::array<char, 48> name;
  std::snprintf(name.data(), name.size(), "r%09lluf%05zu/", static_cast<unsigned long long>(position) + 1,
                field + 1);
  return name.data();
}

bool is_rich_text(std::string_view text) {
  return text.starts_with("{\\rtf") || text.starts_with("{urtf");
}

std::string_view long_text_name(bool rich) {
  return rich ? "text.rtf" : "text.txt";
}

}  // namespace

ArchivedCells::ArchivedCells(const CWorkSheet& table, bool files, bool long_texts)
    : table_(table), files_(files), long_texts_(long_texts), rich_texts_(table.field_count()) {
  for (size_t field = 0; field < table.field_count(); ++field) {
    const auto* column = std::get_if<ContentColumn>(&table.column(field));
    if (column != nullptr && long_texts) rich_texts_[field].resize(column->values.size() + 1);
  }
}

bool ArchivedCells::holds_long_texts(size_t field) const {
  return long_texts_ && std::holds_alternative<ContentColumn>(table_.column(field));
}

ErrorCode ArchivedCells::archive(uint32_t position, size_t field, ExportArchive& archive) {
  if (holds_files(field)) return archive_files(position, field, archive);
  return holds_long_texts(field) ? archive_text(position, field, archive) : ErrorCode::kOk;
}

ErrorCode ArchivedCells::archive_text(uint32_t position, size_t field, ExportArchive& archive) {
  const auto& column = std::get<ContentColumn>(table_.column(field));
  const Content* content = column.value(position);
  if (content == nullptr) return ErrorCode::kOk;
  std::string text;
  if (const auto error = content->read(text); error != ErrorCode::kOk) return error;
  const bool rich = is_rich_text(text);
  rich_texts_[field][column.cells[position]] = rich;
  const std::string name = folder_of(position, field) + std::string(long_text_name(rich));
  return archive.add(name, Content::of(std::move(text)));
}

ErrorCode ArchivedCells::archive_files(uint32_t position, size_t field, ExportArchive& archive) {
  const FileList* files = std::get<FilesColumn>(table_.column(field)).value(position);
  if (files == nullptr) return ErrorCode::kOk;
  for (const FileObject& file : *files) {
    if (file.is_shortcut()) continue;
    const auto error = archive.add(folder_of(position, field) + file.name, file.content);
    if (error != ErrorCode::kOk) return error;
  }
  return ErrorCode::kOk;
}

void ArchivedCells::append_names(uint32_t position, size_t field, std::string& out) const {
  if (const auto* texts = std::get_if<ContentColumn>(&table_.column(field))) {
    const uint32_t reference = texts->cells[position];
    if (reference == 0) return;
    out += folder_of(position, field);
    out += long_text_name(rich_texts_[field][reference]);
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

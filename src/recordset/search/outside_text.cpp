#include "recordset/search/outside_text.h"

namespace rowvane {
namespace {

ErrorCode read_text(const Content& content, std::string& out) {
  out.clear();
  const ErrorCode error = content.read(out);
  if (error != ErrorCode::kOk) out.clear();
  return error;
}

ErrorCode read_text(const FileList& files, std::string& out) {
  out.clear();
  append_file_names(files, out);
  return ErrorCode::kOk;
}

template <typename Value>
ErrorCode read_present(const Value* value, std::string& out) {
  if (value != nullptr) return read_text(*value, out);
  out.clear();
  return ErrorCode::kOk;
}

}  // namespace

uint32_t outside_reference(const Column& column, uint32_t position) {
  if (const auto* files = std::get_if<FilesColumn>(&column)) return files->cells[position];
  const auto* contents = std::get_if<ContentColumn>(&column);
  return contents != nullptr ? contents->cells[position] : 0;
}

ErrorCode read_outside_text(const CWorkSheet& table, uint32_t position, size_t field, std::string& out) {
  const Column& column = table.column(field);
  if (const auto* files = std::get_if<FilesColumn>(&column)) return read_present(files->value(position), out);
  const auto* contents = std::get_if<ContentColumn>(&column);
  return read_present(contents != nullptr ? contents->value(position) : nullptr, out);
}

ErrorCode read_outside_text(const CellValue& value, std::string& out) {
  if (const auto* files = std::get_if<FileList>(&value)) return read_present(files, out);
  return read_present(std::get_if<Content>(&value), out);
}

}  // namespace rowvane

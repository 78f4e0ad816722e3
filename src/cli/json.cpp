#include "cli/json.h"

#include <cstdio>

#include "platform/utf8.h"

namespace rowvane::cli {

void append_json_string(std::string_view text, std::string& out) {
  out += '"';
  for (const char c : is_valid_utf8(text) ? std::string(text) : repair_utf8(text)) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (c == '\n') {
      out += "\\n";
    } else if (static_cast<unsigned char>(c) < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
      out += escape;
    } else {
      out += c;
    }
  }
  out += '"';
}

void append_json_value(const CWorkSheet& table, RecordNumber record, size_t field, std::string& out) {
  const CellValue value = table.value(record, field);
  if (is_empty(value)) {
    out += "null";
  } else if (const auto* number = std::get_if<double>(&value)) {
    const FormulaError error = error_of_number(*number);
    if (error == FormulaError::kNone) {
      append_number(*number, ".", out);
    } else {
      out += "{\"error\": \"";
      out += formula_error_text(error);
      out += "\"}";
    }
  } else if (const auto* files = std::get_if<FileList>(&value)) {
    out += '[';
    for (const FileObject& file : *files) {
      if (out.back() != '[') out += ", ";
      append_json_string(file.name, out);
    }
    out += ']';
  } else {
    append_json_string(table.value_text(record, field), out);
  }
}

}  // namespace rowvane::cli

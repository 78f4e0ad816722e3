// Reads text files for tests that are not written in C++.
//   text_tool cells FILE         the records as JSON: an array of objects
//   text_tool again FILE COPY    saves the table as COPY and opens that; fails when a cell or a type differs
#include <cstdio>
#include <iostream>
#include <string>

#include "exchange/text/text_export.h"
#include "exchange/text/text_import.h"

using namespace rowvane;

namespace {

std::string quoted(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    const bool control = static_cast<unsigned char>(c) < 0x20;
    if (control || c == '"' || c == '\\') {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(static_cast<unsigned char>(c)));
      out += escape;
    } else {
      out += c;
    }
  }
  return out + '"';
}

std::unique_ptr<CWorkSheet> opened(const std::string& path) {
  TextImportResult result = import_text_file(path, {});
  if (result.table == nullptr) std::cerr << path << ": " << result.failure.text() << '\n';
  for (const UserText& notice : result.notices) std::cerr << path << ": " << notice.text() << '\n';
  return std::move(result.table);
}

int print_cells(const std::string& path) {
  const auto table = opened(path);
  if (table == nullptr) return 1;
  std::cout << '[';
  for (RecordNumber record = 1; record < table->end_record(); ++record) {
    std::cout << (record > 1 ? ",{" : "{");
    for (size_t field = 0; field < table->field_count(); ++field) {
      std::cout << (field > 0 ? "," : "") << quoted(table->field(field).name) << ':'
                << quoted(table->value_text(record, field));
    }
    std::cout << '}';
  }
  std::cout << "]\n";
  return 0;
}

bool same_tables(const CWorkSheet& a, const CWorkSheet& b) {
  if (a.record_count() != b.record_count() || a.field_count() != b.field_count()) return false;
  for (size_t field = 0; field < a.field_count(); ++field) {
    if (a.field(field).name != b.field(field).name || a.field(field).type != b.field(field).type)
      return false;
    for (RecordNumber record = 1; record < a.end_record(); ++record) {
      if (a.value_text(record, field) == b.value_text(record, field)) continue;
      std::cerr << "record " << record << ", " << a.field(field).name << ": " << a.value_text(record, field)
                << " became " << b.value_text(record, field) << '\n';
      return false;
    }
  }
  return true;
}

int save_and_open(const std::string& path, const std::string& copy) {
  const auto table = opened(path);
  if (table == nullptr) return 1;
  if (export_text(*table, copy, {}).status() != Status::kOk) return 1;
  const auto again = opened(copy);
  if (again == nullptr || !same_tables(*table, *again)) return 1;
  std::cout << table->record_count() << " records of " << table->field_count() << " fields\n";
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "cells" && argc == 3) return print_cells(argv[2]);
  if (command == "again" && argc == 4) return save_and_open(argv[2], argv[3]);
  std::cerr << "text_tool cells FILE | again FILE COPY\n";
  return 2;
}

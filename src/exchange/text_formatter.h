// Records as lines of delimited or fixed-width text.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/number_text.h"
#include "core/work_sheet.h"
#include "exchange/text_file_settings.h"

namespace rowvane {

// What a text file holds of its table beyond the settings of the dialogs.
struct TextDialect {
  NumberSeparators numbers;  // generic in database files, the user's in exported files
  // The tables of database files, which must read back to the same cells: control characters stay, texts with leading
  // blanks are quoted, the values outside the records are left out (they are files of their own); files appear as one
  // line for each object: its name, or the shortcut with a "|" before it.
  bool native = false;
};

// Formats records of one table. Const after construction and safe from several threads; the table must not change
// meanwhile.
class TextFormatter {
 public:
  // FIELDS are the chosen fields in their order.
  TextFormatter(const CWorkSheet& table, std::vector<size_t> fields, const TextFileSettings& settings,
                const TextDialect& dialect);

  // Appends the line of field names, UTF-8.
  void append_names(std::string& out) const;
  // Appends the records at 0-based positions FIRST to LAST - 1, UTF-8. kOk, or the error of a value that can't be read.
  ErrorCode append_range(uint32_t first, uint32_t last, std::string& out) const;
  // Appends the records at POSITIONS in that order.
  ErrorCode append_records(std::span<const uint32_t> positions, std::string& out) const;
};

}  // namespace rowvane

// What the cells of a field say, as text.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/table/work_sheet.h"
#include "formula/evaluation/work_area.h"

namespace rowvane {

// Reads cells of one field of any type. One thread at a time; the table must not change meanwhile.
class FieldTexts {
 public:
  enum class Errors {
    kNone,   // a cell with a formula error has no text
    kNamed,  // its text is the name of the error
  };
  enum class FileNames {
    kJoined,  // of all files, with "; " between them
    kEach,    // a text for each file
  };

  FieldTexts(const CWorkSheet& table, size_t field, Errors errors, FileNames names)
      : column_(table.column(field)),
        calculated_(!table.field(field).formula.empty()),
        errors_(errors),
        names_(names) {}

  // Reads the cell at this 0-based position: numbers with at most 15 significant digits and a decimal point,
  // long texts and codes whole. kOk, or why a long text could not be read; there is no text then.
  ErrorCode read(uint32_t position);
  // Of the last cell; they live until the next one is read.
  std::span<const std::string_view> texts() const { return texts_; }

 private:
  void add_number(double cell);
  void add_names(const FileList* files);

  const Column& column_;
  bool calculated_;
  Errors errors_;
  FileNames names_;
  std::vector<std::string_view> texts_;
  std::string buffer_;
  WorkArea area_{WorkArea::kUnlimited};
};

}  // namespace rowvane

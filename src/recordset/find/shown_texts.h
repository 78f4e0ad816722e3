// The texts of cells as views show them: what a search in the shown text looks at.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/table/work_sheet.h"
#include "formula/formats/number_format.h"

namespace rowvane {

// The fields that are shown, in the order in which they stand in the table's view.
std::vector<size_t> shown_fields(const CWorkSheet& table);

// For any number of threads. Holds on to the fields as the table has them now.
class ShownTexts {
 public:
  explicit ShownTexts(const CWorkSheet& table, const DisplayRegion& region = DisplayRegion());

  const CWorkSheet& table() const { return table_; }
  // Numbers with this field's display format, or with the decimal separator of the region; errors by their
  // names; rich long texts as plain text; files by their names joined by "; ". HOW gets what the format says
  // beside the text. An error only where a long text can't be read; TEXT is empty then.
  ErrorCode read(uint32_t position, size_t field, std::string& text, ShownValue* how = nullptr) const;
  // Of a number field.
  ShownValue read_number(double cell, size_t field, std::string& text) const;
  // False where all numbers of a field look as they are stored, decimal separator aside.
  bool has_format(size_t field) const { return formats_[field].has_value(); }
  const std::string& decimal_separator() const { return decimal_; }

 private:
  const CWorkSheet& table_;
  std::vector<std::optional<NumberFormat>> formats_;  // by field
  std::string decimal_;
};

}  // namespace rowvane

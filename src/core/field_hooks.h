// What the formula engine does for the data model, which lies below it.
#pragma once

#include <cstdint>
#include <string>

#include "core/cell_value.h"

namespace rowvane {

class CWorkSheet;

class FieldHooks {
 public:
  virtual ~FieldHooks() = default;

  // True when VALUE, about to be stored in the 1-based RECORD, satisfies the validation formula of FIELD.
  // Called only for fields that have one.
  virtual bool accepts(const CWorkSheet& table, uint32_t record, size_t field,
                       const CellValue& value) const = 0;

  // NUMBER as the display format code FORMAT shows it. Called only for fields that have one.
  virtual std::string format_number(const std::string& format, double number) const = 0;
};

}  // namespace rowvane

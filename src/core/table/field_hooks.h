// What the formula engine does for the data model, which lies below it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "core/table/cell_value.h"
#include "core/table/record_number.h"

namespace rowvane {

class CWorkSheet;

class FieldHooks {
 public:
  virtual ~FieldHooks() = default;

  // True when VALUE, about to be stored in RECORD, satisfies the validation formula of FIELD.
  // Called only for fields that have one.
  virtual bool accepts(const CWorkSheet& table, RecordNumber record, size_t field,
                       const CellValue& value) const = 0;

  // Called inside the undo step of a change to TABLE, after it, so that what the hook changes belongs to the
  // step: new values in FIELD (nothing: in all fields) at the 0-based POSITIONS, which ascend. No positions:
  // records were deleted.
  virtual void values_changed(CWorkSheet& table, std::optional<size_t> field,
                              std::span<const uint32_t> positions) const {
    (void)table;
    (void)field;
    (void)positions;
  }
  // The same for a field that is new, whose formula is new, or whose values all are.
  virtual void field_changed(CWorkSheet& table, size_t field) const {
    (void)table;
    (void)field;
  }

  // The same after fields, tables or folders were deleted: what formulas call by these names is gone.
  virtual void names_deleted() const {}
  // Called before fields, tables or folders get other names or places; what it answers is called after that,
  // inside the undo step, so that formulas go on to mean what they did.
  virtual std::function<void()> before_renaming() const {
    return [] {};
  }

  // NUMBER as the display format code FORMAT shows it. Called only for fields that have one.
  virtual std::string format_number(const std::string& format, double number) const = 0;
};

}  // namespace rowvane

// The definition of a field as a user enters it: the rules of what inserts and changes fields.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/messages/check.h"
#include "core/messages/outcome.h"
#include "core/progress.h"
#include "core/table/work_sheet.h"
#include "formula/fields/field_conversion.h"
#include "formula/language/formula_settings.h"
#include "platform/regional_settings.h"

namespace rowvane {

struct FieldEntry {
  // The field that changes; nothing: a new one. The new one comes before field `before`.
  std::optional<size_t> index;
  size_t before = 0;
  // What it is to be. `encrypted` and `encryption` are not read. The default value is written as REGION has
  // it, as it is entered into a cell.
  Field field;
  platform::RegionalSettings region = platform::RegionalSettings::generic();
};

enum class FieldPart { kNone, kName, kType, kFormat, kFormula, kValidation, kDefaultValue, kDropDownList };

// Messages 180 and 158 for the name; what check_conversion says about the type; a display format of a field
// that is none of numbers, or that can't be read; formulas that can't be read, or in a field that can't be
// calculated; a default value that is none of the type; a drop-down list that the database does not have. Of
// an encrypted field neither type, formula nor default value can change (error 137).
Check check_field_entry(const CWorkSheet& table, const FieldEntry& entry, const FormulaSettings& formulas);
// What the refusal is about.
FieldPart wrong_field_part(const CWorkSheet& table, const FieldEntry& entry, const FormulaSettings& formulas);

// What a change of the type would lose, which takes a look at all values; to be asked for once the entry has
// passed the check. Values that a formula will work out anew do not count.
ConversionLoss find_entry_loss(const CWorkSheet& table, const FieldEntry& entry,
                               Progress& progress = Progress::none());

// Inserts or changes a field that has passed the check, as one undo step. It fails where formulas would need
// each other's results, too. After a failure and a cancel all is as it was. Notices: of the conversion.
Outcome apply_field_entry(CWorkSheet& table, const FieldEntry& entry, const FormulaSettings& formulas,
                          Progress& progress = Progress::none());

// FORMULA as fields store it: one that was typed without "=" gets it; blanks around it go.
std::string stored_formula(std::string_view formula);

}  // namespace rowvane

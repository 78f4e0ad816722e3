// Changing the type of a field, with every value in it.
#pragma once

#include <string>

#include "core/messages/check.h"
#include "core/messages/outcome.h"
#include "core/progress.h"
#include "core/table/work_sheet.h"
#include "core/values/number_text.h"

namespace rowvane {

struct FieldConversion {
  size_t field = 0;
  FieldType type = FieldType::kText;
  bool link = false;            // for FieldType::kText
  NumberSeparators separators;  // of numbers in texts, in both directions
};

// Text, Number, Long Text and Code convert into each other; Long Text and Code also into Images/Files and
// back:
// - a long text becomes one file, "text.rtf" or "text.txt" by its beginning;
// - a value of one inserted file becomes that file's content as text. A field with values of several files,
// with
//   shortcuts, or with contents that are not UTF-8 text can't be converted without loss and is refused.
Check check_conversion(const CWorkSheet& table, const FieldConversion& settings);

// Converts a field for which check_conversion has no refusal, as one undo step. Texts that do not read as
// numbers leave their cells empty; a notice tells of them, and one of texts that were cut. A cancelled
// conversion changes nothing.
Outcome convert_field(CWorkSheet& table, const FieldConversion& settings,
                      Progress& progress = Progress::none());

}  // namespace rowvane

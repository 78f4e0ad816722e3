// Changing the type of a field, with every value in it.
#pragma once

#include <string>
#include <vector>

#include "core/messages/error_code.h"
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

struct ConversionCheck {
  std::string refusal;   // not empty: the conversion can't be made
  std::string question;  // not empty: to be answered with Yes before it is made
};

// Text, Number, Long Text and Code convert into each other; Long Text and Code also into Images/Files and
// back:
// - a long text becomes one file, "text.rtf" or "text.txt" by its beginning;
// - a value of one inserted file becomes that file's content as text. A field with values of several files,
// with
//   shortcuts, or with contents that are not UTF-8 text can't be converted without loss and is refused.
ConversionCheck check_conversion(const CWorkSheet& table, const FieldConversion& settings);

struct ConversionResult {
  ErrorCode error = ErrorCode::kOk;
  std::vector<std::string> messages;  // each at most once: texts that are no numbers, texts that were cut
};

// Converts a field for which check_conversion has no refusal, as one undo step. Texts that do not read as
// numbers leave their cells empty. A cancelled conversion changes nothing and answers kOk without messages.
ConversionResult convert_field(CWorkSheet& table, const FieldConversion& settings,
                               Progress& progress = Progress::none());

}  // namespace rowvane

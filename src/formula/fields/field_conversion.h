// Changing the type of a field, with every value in it.
#pragma once

#include <string>
#include <vector>

#include "core/messages/check.h"
#include "core/messages/outcome.h"
#include "core/progress.h"
#include "core/table/work_sheet.h"
#include "platform/regional_settings.h"

namespace rowvane {

struct FieldConversion {
  size_t field = 0;
  FieldType type = FieldType::kText;
  bool link = false;  // for FieldType::kText
  // By whose signs texts are read and numbers are written.
  platform::RegionalSettings region = platform::RegionalSettings::generic();
};

// Text, Number, Long Text and Code convert into each other; Long Text and Code also into Images/Files and
// back:
// - a text becomes the number that it would become if it were typed into a cell (read_field_value); other
//   texts leave their cells empty;
// - a number becomes its shortest text; one that the field's format shows as a date or a time becomes
//   "YYYY-MM-DD", with "Thh:mm:ss" behind it where there is a time of day, or the time alone or a length of
//   time, "hh:mm:ss", rounded to seconds;
// - a long text becomes a Text of at most 8169 characters;
// - a long text becomes one file, "text.rtf" or "text.txt" by its beginning;
// - a value of one inserted file becomes that file's content as text. A field with values of several files,
//   with shortcuts, or with contents that are not UTF-8 text can't be converted without loss and is refused.
// What values the conversion would lose is for find_conversion_loss to say.
Check check_conversion(const CWorkSheet& table, const FieldConversion& settings);

// What a conversion loses: texts that are no numbers, or what is cut from texts.
struct ConversionLoss : Outcome {
  static constexpr size_t kMostExamples = 5;

  uint64_t values = 0;
  std::vector<std::string> examples;  // the first different ones, each on one line of at most 60 characters
  Check check;                        // asks about them where there are any
};

// Goes through all values as convert_field would, and changes nothing.
ConversionLoss find_conversion_loss(const CWorkSheet& table, const FieldConversion& settings,
                                    Progress& progress = Progress::none());

// Converts a field for which check_conversion has no refusal, as one undo step. Notices: of texts that are no
// numbers, of texts that were cut. A cancelled conversion changes nothing.
Outcome convert_field(CWorkSheet& table, const FieldConversion& settings,
                      Progress& progress = Progress::none());

}  // namespace rowvane

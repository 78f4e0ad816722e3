// What a text becomes in a field, wherever it comes from: typed, pasted, filled in, given on a command line,
// left by a replacement, or in the field while its type changes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/messages/error_code.h"
#include "core/table/cell_value.h"
#include "core/table/field.h"
#include "platform/regional_settings.h"

namespace rowvane {

struct ValueReading {
  ErrorCode error = ErrorCode::kOk;  // why the text is refused
  CellValue value;

  // Nothing also for an empty value.
  std::optional<double> number() const;
};

// TEXT as a value of FIELD, by the signs of REGION. The empty text is the empty value in every field.
// - Text: as it is. kOutputTooLong for more than 8169 characters, kInvalidUtf8.
// - Number: what read_typed_value reads, and the names of formula errors. kFieldTypeMismatch for other texts.
// - Long Text and Code: as it is.
// - Images/Files: kFieldTypeMismatch. Who knows where files are reads their names.
// Whether the record may have the value is for CWorkSheet::set_value to say.
ValueReading read_field_value(const Field& field, std::string_view text,
                              const platform::RegionalSettings& region);

}  // namespace rowvane

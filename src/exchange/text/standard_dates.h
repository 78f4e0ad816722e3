// Dates in texts as standard date strings: while a text file is read, and in the fields of a table ("Convert
// Field Data > Text To Standard Date String").
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages/check.h"
#include "core/messages/outcome.h"
#include "core/progress.h"
#include "core/table/work_sheet.h"
#include "platform/regional_settings.h"

namespace rowvane {

// What TEXT says as a standard date string, when its first 30 characters are a date to the user's locale.
std::optional<std::string> standard_date_of(std::string_view text, const platform::RegionalSettings& region);

struct DateConversionSettings {
  std::vector<size_t> fields;
  platform::RegionalSettings region;
};

// kEncryptedField, or kConversionRule when one of the fields holds no text or calculates it.
Check check_date_conversion(const CWorkSheet& table, const DateConversionSettings& settings);

// A cancelled conversion changes nothing.
struct DateConversionResult : Outcome {
  uint64_t converted = 0;    // values that are dates, those among them that were standard already
  uint64_t other_texts = 0;  // values that are none and stay, or that the field's validation keeps
};

// Converts the values of all records in one step of DATABASE, which TABLE belongs to.
DateConversionResult convert_to_standard_dates(Database& database, CWorkSheet& table,
                                               const DateConversionSettings& settings, Progress& progress);

}  // namespace rowvane

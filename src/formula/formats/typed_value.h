// Numbers and dates as people type them.
#pragma once

#include <optional>
#include <string_view>

#include "formula/formats/format_style.h"
#include "platform/regional_settings.h"

namespace rowvane {

struct TypedValue {
  double number = 0;
  FormatKind kind = FormatKind::kGeneral;  // the style that the text is written in
};

// What the UTF-8 TEXT reads as by the signs of REGION, or nothing. In this order:
// - a number, thousands separated or not; where a blank separates them, any kind of blank does.
//   The separators are those that display formats show, so a region that does not group its numbers takes
//   ",";
// - a percentage ("12.5%", "% 12.5"), which is divided by 100;
// - an amount: the currency symbol of REGION or "$", "€", "£", "¥" before or behind the number;
// - a number in parentheses, with or without a symbol, which is negative;
// - a fraction ("3 1/2", "-1/3");
// - a length of time ("36:30", "-1:30:00.5") with hours of any number of digits, where it is no time of day;
// - a date, a time or both, as platform::text_to_date reads them.
std::optional<TypedValue> read_typed_value(std::string_view text, const platform::RegionalSettings& region);

}  // namespace rowvane

// Shows numbers and texts by a display format code.
#pragma once

#include <string>
#include <string_view>

#include "formula/formats/format_code.h"
#include "platform/date_names.h"
#include "platform/regional_settings.h"

namespace rowvane {

// How shown values look to the user, whatever signs the code is written with.
struct DisplayRegion {
  DisplayRegion() = default;
  // Where REGION does not group numbers, a format that does takes "," (or "." where "," separates decimals).
  explicit DisplayRegion(const platform::RegionalSettings& region);

  std::string decimal = ".";
  std::string group = ",";
  platform::DateNames names = platform::DateNames::english();
};

// What a place that is too narrow, and a value that can't be shown as a date, look like.
inline constexpr std::string_view kNotShown = "####";

// What a format says beside the text.
struct ShownValue {
  static constexpr size_t kNoFill = static_cast<size_t>(-1);

  uint8_t color = 0;               // FormatColor, or the number of a [colorN]; 0: the usual one
  size_t fill_position = kNoFill;  // byte of the text where `fill` is repeated up to the width of the column
  std::string_view fill;           // one character, of the format
};

// A format code, prepared. For any number of threads.
class NumberFormat {
 public:
  NumberFormat(std::string_view code, DisplayRegion region,
               const FormatSeparators& separators = FormatSeparators())
      : code_(code, separators), region_(std::move(region)) {}

  // What is wrong with the code, as a text to show; empty for one that can be used. Values are shown as
  // without a format by one that can't.
  const std::string& problem() const { return code_.problem(); }

  // Appends NUMBER as it is shown. kNotShown for a date outside the years 100 to 9999, for an elapsed time of
  // 10^9 days and more, for an improper fraction beyond 10^15, and for what is no finite number.
  ShownValue append(double number, std::string& out) const;
  // Appends TEXT as it is shown.
  ShownValue append_text(std::string_view text, std::string& out) const;

 private:
  FormatCode code_;
  DisplayRegion region_;
};

}  // namespace rowvane

// Display format codes in the form that is prepared once and used for every record.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formula/formats/format_style.h"

namespace rowvane {

inline constexpr size_t kMaxFormatCodeBytes = 1024;

enum class FormatPartKind : uint8_t {
  kText,          // as it stands
  kBlank,         // as wide as a character that is not shown
  kFill,          // repeated up to the width of the column
  kPoint,         // the decimal separator
  kWholePlace,    // one digit before the decimal separator
  kDecimalPlace,  // one digit behind it
  kExponent,      // "e" and its sign
  kExponentPlaces,
  kNumerator,
  kSlash,  // of a fraction
  kDenominator,
  kFixedDenominator,
  kGeneral,  // the number as it is shown without a format
  kEntered,  // the text, or the number as it is shown without a format
  kYear,
  kMonth,
  kDay,
  kHour,
  kMinute,
  kSecond,
  kSubsecond,
  kHalf,  // AM or PM
  kElapsedHours,
  kElapsedMinutes,
  kElapsedSeconds,
  // While a section is being read:
  kPlace,
  kGroup,
  kPercent,
  kDigits,
};

struct FormatPart {
  FormatPartKind kind = FormatPartKind::kText;
  char sign = 0;       // of places: '0', '#' or '?'; of an exponent: '+' or '-'; of AM/PM: 1 for one letter
  uint16_t width = 1;  // places or letters
  uint16_t start = 0;  // of the text in the code
  uint16_t length = 0;
};

enum class FormatLayout : uint8_t { kText, kNumber, kScientific, kFraction, kDate };

enum class FormatComparison : uint8_t {
  kNone,
  kLess,
  kLessOrEqual,
  kEqual,
  kNotEqual,
  kGreaterOrEqual,
  kGreater
};

struct FormatSection {
  FormatLayout layout = FormatLayout::kText;
  FormatComparison comparison = FormatComparison::kNone;
  double limit = 0;             // of the comparison
  uint8_t color = 0;            // FormatColor, or the number of a [colorN]
  bool shows_sign = true;       // negative numbers get a minus
  bool grouped = false;         // thousands are separated
  bool optional_point = false;  // the decimal separator goes with the digits behind it
  bool fixed_exponent = false;
  bool elapsed = false;  // a length of time, not a moment
  bool has_half = false;
  bool has_calendar_part = false;  // a year, a month or a day
  bool has_day = false;            // a day of the month stands beside the month
  uint8_t subsecond_places = 0;
  uint16_t whole_places = 0;
  uint16_t decimal_places = 0;
  int power = 0;            // of ten that the number is multiplied with
  int exponent = 0;         // the fixed one
  int64_t denominator = 0;  // the fixed one, or the largest
  std::vector<FormatPart> parts;
};

// The colours with names; 9 to 56 are those of [colorN].
enum class FormatColor : uint8_t {
  kNone = 0,
  kBlack = 1,
  kWhite = 2,
  kRed = 3,
  kGreen = 4,
  kBlue = 5,
  kYellow = 6,
  kMagenta = 7,
  kCyan = 8,
};
inline constexpr int kLastFormatColor = 56;

class FormatCode {
 public:
  // Reads CODE. What can't be used leaves a problem, and no sections.
  explicit FormatCode(std::string_view code, const FormatSeparators& separators = FormatSeparators());

  // What is wrong, as a text to show; empty for a code that can be used.
  const std::string& problem() const { return problem_; }

  // The section that shows NUMBER; null when all have conditions and none is met.
  const FormatSection* section_of(double number) const;
  // The section that shows texts; null when they are shown as they are.
  const FormatSection* text_section() const { return has_text_section_ ? &sections_.back() : nullptr; }

  std::string_view text_of(const FormatPart& part) const {
    return std::string_view(code_).substr(part.start, part.length);
  }

 private:
  void set_default_conditions();

  std::string code_;  // the texts of the parts lie in it
  std::string problem_;
  std::vector<FormatSection> sections_;  // the one for texts is the last
  bool has_text_section_ = false;
};

}  // namespace rowvane

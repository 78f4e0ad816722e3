#include "formula/formats/format_section.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace rowvane {
namespace {

constexpr size_t kMostSubsecondPlaces = 6;

bool is_date_part(FormatPartKind kind) {
  return kind >= FormatPartKind::kYear && kind <= FormatPartKind::kElapsedSeconds;
}

bool is_number_part(FormatPartKind kind) {
  return kind == FormatPartKind::kPlace || kind == FormatPartKind::kExponent ||
         kind == FormatPartKind::kDigits;
}

std::optional<int64_t> whole_number(std::string_view digits) {
  int64_t number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (result.ec != std::errc() || result.ptr != digits.data() + digits.size() || digits.empty())
    return std::nullopt;
  return number;
}

// A section that shows a moment or a length of time.
class DateSection {
 public:
  explicit DateSection(FormatSection& section) : section_(section), parts_(section.parts) {}

  std::string_view arrange() {
    section_.layout = FormatLayout::kDate;
    take_subseconds();
    find_minutes();
    for (FormatPart& part : parts_) {
      if (is_number_part(part.kind)) return "a date has no places for digits";
      if (part.kind == FormatPartKind::kGeneral || part.kind == FormatPartKind::kEntered)
        return "a date can't stand beside the value itself";
      if (part.kind == FormatPartKind::kPoint && !is_decimal_point(part)) part.kind = FormatPartKind::kText;
      if (part.kind == FormatPartKind::kGroup || part.kind == FormatPartKind::kSlash ||
          part.kind == FormatPartKind::kPercent)
        part.kind = FormatPartKind::kText;
      section_.has_calendar_part |= part.kind >= FormatPartKind::kYear && part.kind <= FormatPartKind::kDay;
      section_.has_half |= part.kind == FormatPartKind::kHalf;
      section_.has_day |= part.kind == FormatPartKind::kDay && part.width <= 2;
      section_.elapsed |=
          part.kind >= FormatPartKind::kElapsedHours && part.kind <= FormatPartKind::kElapsedSeconds;
    }
    return {};
  }

 private:
  bool is_decimal_point(const FormatPart& part) const {
    const auto next = static_cast<size_t>(&part - parts_.data()) + 1;
    return next < parts_.size() && parts_[next].kind == FormatPartKind::kSubsecond;
  }

  // Zeros behind seconds and one separator are fractions of the second.
  void take_subseconds() {
    for (size_t i = 0; i + 2 < parts_.size(); ++i) {
      if (parts_[i].kind != FormatPartKind::kSecond && parts_[i].kind != FormatPartKind::kElapsedSeconds)
        continue;
      size_t end = i + 2;
      while (end < parts_.size() && parts_[end].kind == FormatPartKind::kPlace && parts_[end].sign == '0')
        ++end;
      const size_t width = end - i - 2;
      if (width == 0 || width > kMostSubsecondPlaces || !is_separator(parts_[i + 1])) continue;
      parts_[i + 2].kind = FormatPartKind::kSubsecond;
      parts_[i + 2].width = static_cast<uint16_t>(width);
      parts_.erase(parts_.begin() + static_cast<ptrdiff_t>(i) + 3,
                   parts_.begin() + static_cast<ptrdiff_t>(end));
      section_.subsecond_places = static_cast<uint8_t>(std::max<size_t>(section_.subsecond_places, width));
    }
  }

  static bool is_separator(const FormatPart& part) {
    return part.kind == FormatPartKind::kPoint || part.kind == FormatPartKind::kGroup ||
           part.kind == FormatPartKind::kText;
  }

  // "m" and "mm" are minutes behind hours or before seconds, otherwise months.
  void find_minutes() {
    FormatPartKind before = FormatPartKind::kText;
    for (size_t i = 0; i < parts_.size(); ++i) {
      FormatPart& part = parts_[i];
      if (!is_date_part(part.kind) || part.kind == FormatPartKind::kHalf) continue;
      const bool is_behind_hours = before == FormatPartKind::kHour || before == FormatPartKind::kElapsedHours;
      if (part.kind == FormatPartKind::kMonth && part.width <= 2 && (is_behind_hours || is_before_seconds(i)))
        part.kind = FormatPartKind::kMinute;
      before = part.kind;
    }
  }

  bool is_before_seconds(size_t i) const {
    const auto next = std::find_if(parts_.begin() + static_cast<ptrdiff_t>(i) + 1, parts_.end(),
                                   [](const FormatPart& part) { return is_date_part(part.kind); });
    return next != parts_.end() &&
           (next->kind == FormatPartKind::kSecond || next->kind == FormatPartKind::kElapsedSeconds);
  }

  FormatSection& section_;
  std::vector<FormatPart>& parts_;
};

// A section that shows digits.
class NumberSection {
 public:
  NumberSection(std::string_view code, FormatSection& section)
      : code_(code), section_(section), parts_(section.parts) {}

  std::string_view arrange() {
    section_.layout = FormatLayout::kNumber;
    if (const std::string_view problem = take_exponent(); !problem.empty()) return problem;
    if (section_.layout == FormatLayout::kNumber) {
      if (const std::string_view problem = take_fraction(); !problem.empty()) return problem;
    }
    name_places();
    take_groups();
    finish();
    return {};
  }

 private:
  // Joins the places from FIRST on into one part of KIND; '0' among them makes the part fill with zeros.
  void join_places(size_t first, FormatPartKind kind) {
    FormatPart& part = parts_[first];
    size_t end = first;
    for (; end < parts_.size() && parts_[end].kind == FormatPartKind::kPlace; ++end) {
      if (parts_[end].sign == '0' || (parts_[end].sign == '?' && part.sign == '#'))
        part.sign = parts_[end].sign;
    }
    part.kind = kind;
    part.width = static_cast<uint16_t>(end - first);
    parts_.erase(parts_.begin() + static_cast<ptrdiff_t>(first) + 1,
                 parts_.begin() + static_cast<ptrdiff_t>(end));
  }

  std::string_view take_exponent() {
    const auto found = std::ranges::find(parts_, FormatPartKind::kExponent, &FormatPart::kind);
    if (found == parts_.end()) return {};
    const auto next = static_cast<size_t>(found - parts_.begin()) + 1;
    if (next >= parts_.size()) return "the exponent has no digits";
    section_.layout = FormatLayout::kScientific;
    if (parts_[next].kind == FormatPartKind::kPlace) {
      join_places(next, FormatPartKind::kExponentPlaces);
      return {};
    }
    const auto exponent =
        parts_[next].kind == FormatPartKind::kText ? whole_number(text(parts_[next])) : std::nullopt;
    if (!exponent || *exponent < 0 || *exponent > kMaxFixedExponent) return "the exponent has no digits";
    section_.fixed_exponent = true;
    section_.exponent = static_cast<int>(found->sign == '-' ? -*exponent : *exponent);
    return {};
  }

  // "?/?", "?/16" or "?/"16"": places before the slash, places or a number behind it.
  std::string_view take_fraction() {
    for (size_t i = 1; i + 1 < parts_.size(); ++i) {
      if (parts_[i].kind != FormatPartKind::kSlash || parts_[i - 1].kind != FormatPartKind::kPlace) continue;
      FormatPart& below = parts_[i + 1];
      if (below.kind == FormatPartKind::kPlace) {
        join_places(i + 1, FormatPartKind::kDenominator);
        if (below.width > kMaxFractionDigits) return "the denominator has too many digits";
        section_.denominator = 1;
        for (int n = 0; n < below.width; ++n) section_.denominator *= 10;
        --section_.denominator;
      } else if (const auto number = whole_number(text(below)); number) {
        if (*number < 1 || *number > kMaxDenominator) return "the denominator is out of range";
        section_.denominator = *number;
        below.kind = FormatPartKind::kFixedDenominator;
      } else {
        continue;
      }
      section_.layout = FormatLayout::kFraction;
      size_t first = i;
      while (first > 0 && parts_[first - 1].kind == FormatPartKind::kPlace) --first;
      join_places(first, FormatPartKind::kNumerator);
      return {};
    }
    return {};
  }

  void name_places() {
    bool behind_point = false;
    for (FormatPart& part : parts_) {
      if (part.kind == FormatPartKind::kPoint) {
        if (behind_point || section_.layout == FormatLayout::kFraction) part.kind = FormatPartKind::kText;
        behind_point = true;
      } else if (part.kind == FormatPartKind::kPlace) {
        part.kind = behind_point ? FormatPartKind::kDecimalPlace : FormatPartKind::kWholePlace;
        ++(behind_point ? section_.decimal_places : section_.whole_places);
      } else if (part.kind == FormatPartKind::kPercent) {
        section_.power += 2;
        part.kind = FormatPartKind::kText;
      }
    }
  }

  // A separator between places before the point separates thousands; one directly behind the last place
  // there, or behind the last of all, divides by 1000; any other is a text.
  void take_groups() {
    for (size_t i = 0; i < parts_.size(); ++i) {
      if (parts_[i].kind != FormatPartKind::kGroup) continue;
      const bool is_inside = has_place(0, i, FormatPartKind::kWholePlace) &&
                             has_place(i + 1, parts_.size(), FormatPartKind::kWholePlace);
      size_t before = i;
      while (before > 0 && parts_[before - 1].kind == FormatPartKind::kGroup) --before;
      const FormatPartKind left = before > 0 ? parts_[before - 1].kind : FormatPartKind::kText;
      const bool is_behind = left == FormatPartKind::kWholePlace || (left == FormatPartKind::kDecimalPlace &&
                                                                     !has_place(i + 1, parts_.size(), left));
      if (is_inside) {
        section_.grouped = true;
      } else if (is_behind) {
        section_.power -= 3;
      } else {
        parts_[i].kind = FormatPartKind::kText;
      }
    }
    std::erase_if(parts_, [](const FormatPart& part) { return part.kind == FormatPartKind::kGroup; });
  }

  bool has_place(size_t first, size_t end, FormatPartKind kind) const {
    return std::any_of(parts_.begin() + static_cast<ptrdiff_t>(first),
                       parts_.begin() + static_cast<ptrdiff_t>(end),
                       [kind](const FormatPart& part) { return part.kind == kind; });
  }

  // Digits have no gaps: from the first '0' before the point to the last one behind it all places are shown.
  void fill_gaps() {
    bool behind_zero = false;
    for (FormatPart& part : parts_) {
      if (part.kind != FormatPartKind::kWholePlace) continue;
      behind_zero |= part.sign == '0';
      if (behind_zero) part.sign = '0';
    }
    bool before_zero = false;
    for (auto part = parts_.rbegin(); part != parts_.rend(); ++part) {
      if (part->kind != FormatPartKind::kDecimalPlace) continue;
      before_zero |= part->sign == '0';
      if (before_zero) part->sign = '0';
    }
  }

  void finish() {
    fill_gaps();
    section_.optional_point = section_.decimal_places > 0;
    for (FormatPart& part : parts_) {
      if (part.kind == FormatPartKind::kDecimalPlace && part.sign != '#') section_.optional_point = false;
      if (part.kind == FormatPartKind::kDigits) part.kind = FormatPartKind::kText;
      if (part.kind == FormatPartKind::kSlash && section_.layout != FormatLayout::kFraction)
        part.kind = FormatPartKind::kText;
    }
  }

  std::string_view text(const FormatPart& part) const { return code_.substr(part.start, part.length); }

  std::string_view code_;
  FormatSection& section_;
  std::vector<FormatPart>& parts_;
};

bool has_part(const FormatSection& section, bool (*test)(FormatPartKind)) {
  return std::ranges::any_of(section.parts, test, &FormatPart::kind);
}

}  // namespace

std::string_view arrange_section(std::string_view code, FormatSection& section) {
  if (has_part(section, is_date_part)) return DateSection(section).arrange();
  const bool shows_value = has_part(section, [](FormatPartKind kind) {
    return kind == FormatPartKind::kGeneral || kind == FormatPartKind::kEntered;
  });
  if (has_part(section, is_number_part)) {
    if (shows_value) return "places for digits can't stand beside the value itself";
    return NumberSection(code, section).arrange();
  }
  for (FormatPart& part : section.parts) {
    if (part.kind == FormatPartKind::kPercent && shows_value) section.power += 2;
    if (part.kind == FormatPartKind::kPoint || part.kind == FormatPartKind::kGroup ||
        part.kind == FormatPartKind::kSlash || part.kind == FormatPartKind::kPercent)
      part.kind = FormatPartKind::kText;
  }
  return {};
}

}  // namespace rowvane

#include "formula/formats/number_format.h"

#include <algorithm>
#include <cmath>

#include "core/values/number_text.h"
#include "formula/formats/format_writer.h"

namespace rowvane {
namespace {

bool is_value(const FormatPart& part) {
  return part.kind == FormatPartKind::kGeneral || part.kind == FormatPartKind::kEntered;
}

// The value itself among texts, or texts alone, which hide it.
void write_value(FormatOutput& output, double number) {
  const FormatSection& section = output.section;
  const double scaled = std::abs(number) * std::pow(10.0, section.power);
  if (number < 0 && section.shows_sign && std::ranges::any_of(section.parts, is_value)) output.out += '-';
  for (const FormatPart& part : section.parts) {
    if (!is_value(part)) {
      output.append_fixed(part);
    } else if (std::isfinite(scaled)) {
      append_number(scaled, output.region.decimal, output.out);
    } else {
      output.out += kNotShown;
    }
  }
}

bool write(FormatOutput& output, double number) {
  switch (output.section.layout) {
    case FormatLayout::kDate:
      return write_date(output, number);
    case FormatLayout::kFraction:
      return write_fraction(output, number);
    case FormatLayout::kNumber:
    case FormatLayout::kScientific:
      write_digits(output, number);
      return true;
    case FormatLayout::kText:
      break;
  }
  write_value(output, number);
  return true;
}

}  // namespace

DisplayRegion::DisplayRegion(const platform::RegionalSettings& region)
    : names(platform::DateNames::of(region.locale)) {
  const FormatSeparators separators = format_separators_of(region);
  decimal = separators.decimal;
  group = separators.group;
}

ShownValue NumberFormat::append(double number, std::string& out) const {
  if (!std::isfinite(number)) {
    out += kNotShown;
    return {};
  }
  const FormatSection* const section = code_.section_of(number);
  if (section == nullptr) {
    append_number(number, region_.decimal, out);
    return {};
  }
  FormatOutput output{code_, *section, region_, out, {}};
  output.shown.color = section->color;
  if (!write(output, number)) out += kNotShown;
  return output.shown;
}

ShownValue NumberFormat::append_text(std::string_view text, std::string& out) const {
  const FormatSection* const section = code_.text_section();
  if (section == nullptr) {
    out += text;
    return {};
  }
  FormatOutput output{code_, *section, region_, out, {}};
  output.shown.color = section->color;
  for (const FormatPart& part : section->parts) {
    if (part.kind == FormatPartKind::kEntered) {
      out += text;
    } else {
      output.append_fixed(part);
    }
  }
  return output.shown;
}

bool FormatOutput::append_fixed(const FormatPart& part) {
  switch (part.kind) {
    case FormatPartKind::kText:
      out += code.text_of(part);
      return true;
    case FormatPartKind::kBlank:
      out += ' ';
      return true;
    case FormatPartKind::kFill:
      shown.fill_position = out.size();
      shown.fill = code.text_of(part);
      return true;
    case FormatPartKind::kPoint:
      out += region.decimal;
      return true;
    default:
      return false;
  }
}

}  // namespace rowvane

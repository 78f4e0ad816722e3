// Numbers and numbers with exponents by a section of a format code.
#include <array>
#include <charconv>
#include <cmath>

#include "formula/formats/decimal_digits.h"
#include "formula/formats/format_writer.h"

namespace rowvane {
namespace {

char digit_sign(int digit) {
  return static_cast<char>('0' + digit);
}

int floor_to_multiple(int number, int step) {
  const int rest = number % step;
  return number - (rest < 0 ? rest + step : rest);
}

// Rounds DIGITS and takes the exponent out of them. With several places before the point the exponent is a
// multiple of their number.
int take_exponent(const FormatSection& section, DecimalDigits& digits) {
  if (section.fixed_exponent) {
    digits.shift(-section.exponent);
    digits.round_to(-section.decimal_places);
    return section.exponent;
  }
  const int step = section.whole_places > 1 ? section.whole_places : 1;
  int exponent = floor_to_multiple(digits.top(), step);
  digits.round_to(exponent - section.decimal_places);
  exponent = floor_to_multiple(digits.top(), step);  // 9.99 may have become 10.0
  digits.shift(-exponent);
  return exponent;
}

void write_exponent_sign(FormatOutput& output, const FormatPart& part, int exponent) {
  output.out += output.code.text_of(part);
  if (output.section.fixed_exponent) {
    output.out += part.sign;
  } else if (exponent < 0) {
    output.out += '-';
  } else if (part.sign == '+') {
    output.out += '+';
  }
}

void write_separator_behind(FormatOutput& output, int power) {
  if (output.section.grouped && power > 0 && power % 3 == 0) output.out += output.region.group;
}

}  // namespace

void write_place(FormatOutput& output, const FormatPart& part, const DecimalDigits& digits, int power) {
  const bool has_digit =
      power >= 0 ? !digits.is_zero() && power <= digits.top() : digits.has_digits_from(power);
  if (has_digit || part.sign == '0') {
    output.out += digit_sign(digits.digit(power));
    write_separator_behind(output, power);
  } else if (part.sign == '?') {
    output.out += ' ';
    if (output.section.grouped && power > 0 && power % 3 == 0) output.out += ' ';
  }
}

void write_whole_number(const FormatPart& part, int64_t number, std::string& out) {
  std::array<char, 24> text;
  const char* const end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
  const auto length = static_cast<size_t>(end - text.data());
  if (length < part.width && part.sign != '#') out.append(part.width - length, part.sign == '0' ? '0' : ' ');
  out.append(text.data(), length);
}

void write_digits(FormatOutput& output, double number) {
  const FormatSection& section = output.section;
  DecimalDigits digits(std::abs(number));
  digits.shift(section.power);
  int exponent = 0;
  if (section.layout == FormatLayout::kScientific) {
    exponent = take_exponent(section, digits);
  } else {
    digits.round_to(-section.decimal_places);
  }
  if (number < 0 && section.shows_sign && !digits.is_zero()) output.out += '-';
  int power = section.whole_places - 1;
  bool is_first = true;
  for (const FormatPart& part : section.parts) {
    switch (part.kind) {
      case FormatPartKind::kWholePlace:
        for (int p = digits.top(); is_first && p > power && !digits.is_zero(); --p) {
          output.out += digit_sign(digits.digit(p));
          write_separator_behind(output, p);
        }
        is_first = false;
        // A mantissa is never empty.
        if (power == 0 && digits.is_zero() && section.layout == FormatLayout::kScientific) {
          output.out += '0';
        } else {
          write_place(output, part, digits, power);
        }
        --power;
        break;
      case FormatPartKind::kPoint:
        for (int p = digits.top(); is_first && p >= 0 && !digits.is_zero(); --p)
          output.out += digit_sign(digits.digit(p));  // no place before the point: all the same
        is_first = false;
        power = -1;
        if (!section.optional_point || digits.has_digits_from(-1)) output.out += output.region.decimal;
        break;
      case FormatPartKind::kDecimalPlace:
        write_place(output, part, digits, power--);
        break;
      case FormatPartKind::kExponent:
        write_exponent_sign(output, part, exponent);
        break;
      case FormatPartKind::kExponentPlaces:
        write_whole_number(part, std::abs(exponent), output.out);
        break;
      default:
        output.append_fixed(part);
    }
  }
}

}  // namespace rowvane

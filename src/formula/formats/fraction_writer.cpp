// Numbers as fractions by a section of a format code.
#include <algorithm>
#include <cmath>

#include "formula/formats/decimal_digits.h"
#include "formula/formats/format_writer.h"

namespace rowvane {
namespace {

struct Fraction {
  int64_t numerator = 0;
  int64_t denominator = 1;
};

double distance(double value, const Fraction& fraction) {
  return std::abs(value -
                  static_cast<double>(fraction.numerator) / static_cast<double>(fraction.denominator));
}

// The fraction nearest to VALUE, 0 to 1, whose denominator is at most MOST: its continued fraction as far as
// the denominator allows, then the largest step that still fits (Khinchin, Continued Fractions, section 6).
Fraction nearest_fraction(double value, int64_t most) {
  constexpr double kSmallestRest = 1e-12;
  Fraction before{1, 0};
  Fraction best{static_cast<int64_t>(std::floor(value)), 1};
  double rest = value - std::floor(value);
  while (rest > kSmallestRest) {
    const double inverse = 1 / rest;
    const auto step = static_cast<int64_t>(std::min(inverse, 1e9));
    const int64_t room = (most - before.denominator) / best.denominator;
    if (step > room) {
      const Fraction between{before.numerator + room * best.numerator,
                             before.denominator + room * best.denominator};
      if (between.denominator > 0 && distance(value, between) < distance(value, best)) best = between;
      break;
    }
    const Fraction next{before.numerator + step * best.numerator,
                        before.denominator + step * best.denominator};
    before = best;
    best = next;
    rest = inverse - std::floor(inverse);
  }
  return best;
}

Fraction fraction_of(const FormatSection& section, double value, bool is_fixed) {
  if (!is_fixed) return nearest_fraction(value, section.denominator);
  return {std::llround(value * static_cast<double>(section.denominator)), section.denominator};
}

// Denominators are filled up behind, so that slashes stand below each other.
void write_denominator(const FormatPart& part, int64_t denominator, std::string& out) {
  const size_t start = out.size();
  out += std::to_string(denominator);
  const size_t length = out.size() - start;
  if (length < part.width && part.sign != '#') out.append(part.width - length, ' ');
}

class FractionWriter {
 public:
  FractionWriter(FormatOutput& output, double size) : output_(output), section_(output.section) {
    const bool is_fixed = std::ranges::any_of(section_.parts, [](const FormatPart& part) {
      return part.kind == FormatPartKind::kFixedDenominator;
    });
    has_whole_ = section_.whole_places > 0;
    whole_ = has_whole_ ? std::floor(size) : 0;
    fraction_ = fraction_of(section_, size - whole_, is_fixed);
    if (has_whole_ && fraction_.numerator == fraction_.denominator) {
      ++whole_;
      fraction_ = {0, 1};
    }
  }

  bool is_zero() const { return whole_ == 0 && fraction_.numerator == 0; }

  void write() {
    const DecimalDigits whole(whole_);
    int power = section_.whole_places - 1;
    for (const FormatPart& part : section_.parts) {
      switch (part.kind) {
        case FormatPartKind::kWholePlace:
          for (int p = power == section_.whole_places - 1 ? whole.top() : -1; p > power; --p)
            output_.out += static_cast<char>('0' + whole.digit(p));
          write_whole_place(part, whole, power--);
          break;
        case FormatPartKind::kNumerator:
          if (is_hidden(part)) return write_hidden();
          write_whole_number(part, fraction_.numerator, output_.out);
          break;
        case FormatPartKind::kSlash:
          output_.out += '/';
          break;
        case FormatPartKind::kDenominator:
          write_denominator(part, fraction_.denominator, output_.out);
          break;
        case FormatPartKind::kFixedDenominator:
          output_.out += output_.code.text_of(part);
          break;
        default:
          output_.append_fixed(part);
      }
    }
  }

 private:
  // Of zero something must be seen.
  void write_whole_place(const FormatPart& part, const DecimalDigits& whole, int power) {
    if (power == 0 && is_zero()) {
      output_.out += '0';
    } else {
      write_place(output_, part, whole, power);
    }
  }

  // A whole number has no fraction to show, unless zeros ask for one.
  bool is_hidden(const FormatPart& numerator) const {
    return has_whole_ && fraction_.numerator == 0 && numerator.sign != '0';
  }

  // Blanks as wide as the fraction, where its places keep their width; texts behind it stay.
  void write_hidden() {
    bool is_aligned = false;
    bool is_behind = false;
    for (const FormatPart& part : section_.parts) {
      size_t width = 0;
      if (part.kind == FormatPartKind::kNumerator) {
        is_aligned = part.sign == '?';
        width = part.width;
        is_behind = true;
      } else if (part.kind == FormatPartKind::kSlash) {
        width = 1;
      } else if (part.kind == FormatPartKind::kDenominator) {
        width = part.width;
      } else if (part.kind == FormatPartKind::kFixedDenominator) {
        width = part.length;
      } else if (is_behind) {
        output_.append_fixed(part);
      }
      if (is_aligned) output_.out.append(width, ' ');
    }
  }

  FormatOutput& output_;
  const FormatSection& section_;
  bool has_whole_ = false;
  double whole_ = 0;
  Fraction fraction_;
};

}  // namespace

bool write_fraction(FormatOutput& output, double number) {
  constexpr double kLargestImproper = 1e15;
  const double size = std::abs(number) * std::pow(10.0, output.section.power);
  const auto denominator = static_cast<double>(output.section.denominator);
  if (!std::isfinite(size)) return false;
  if (output.section.whole_places == 0 && size * denominator > kLargestImproper) return false;
  FractionWriter writer(output, size);
  if (number < 0 && output.section.shows_sign && !writer.is_zero()) output.out += '-';
  writer.write();
  return true;
}

}  // namespace rowvane

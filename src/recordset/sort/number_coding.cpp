#include "recordset/sort/number_coding.h"

#include <algorithm>

namespace rowvane {

void NumberSurvey::add(const NumberSurvey& other) {
  least = std::min(least, other.least);
  greatest = std::max(greatest, other.greatest);
  only_integers = only_integers && other.only_integers;
  has_errors = has_errors || other.has_errors;
  used_bits |= other.used_bits;
}

NumberCoding::NumberCoding(const NumberSurvey& survey) {
  constexpr uint64_t kErrorCodes = 256;
  if (survey.has_numbers()) {
    integers_ = survey.only_integers;
    if (!integers_) dropped_bits_ = std::countr_zero(survey.used_bits);
    // The code of the least number is 0.
    base_ =
        integers_ ? static_cast<uint64_t>(static_cast<int64_t>(survey.least)) : ordered_bits(survey.least);
    errors_ = number_code(survey.greatest) + 1;
  }
  empty_ = errors_ + (survey.has_errors ? kErrorCodes : 0);
}

}  // namespace rowvane

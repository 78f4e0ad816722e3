#include "formula/formats/decimal_digits.h"

#include <charconv>

namespace rowvane {

DecimalDigits::DecimalDigits(double size) {
  if (size == 0) return;
  std::array<char, 32> text;
  const char* const end =
      std::to_chars(text.data(), text.data() + text.size(), size, std::chars_format::scientific).ptr;
  const char* place = text.data();
  for (; place < end && *place != 'e'; ++place) {
    if (*place != '.' && count_ < kMost)
      digits_[static_cast<size_t>(count_++)] = static_cast<uint8_t>(*place - '0');
  }
  place += place + 1 < end && place[1] == '+' ? 2 : 1;
  std::from_chars(place, end, top_);
  while (count_ > 0 && digits_[static_cast<size_t>(count_ - 1)] == 0) --count_;
}

int DecimalDigits::digit(int power) const {
  const int index = top_ - power;
  return index >= 0 && index < count_ ? digits_[static_cast<size_t>(index)] : 0;
}

void DecimalDigits::round_to(int power) {
  const int kept = top_ - power + 1;
  if (kept >= count_) return;
  if (kept < 0) {
    count_ = 0;
    return;
  }
  const bool up = digits_[static_cast<size_t>(kept)] >= 5;
  count_ = kept;
  if (up) {
    while (count_ > 0 && digits_[static_cast<size_t>(count_ - 1)] == 9) --count_;
    if (count_ > 0) {
      ++digits_[static_cast<size_t>(count_ - 1)];
    } else {
      digits_[0] = 1;
      count_ = 1;
      ++top_;
    }
  }
  while (count_ > 0 && digits_[static_cast<size_t>(count_ - 1)] == 0) --count_;
}

}  // namespace rowvane

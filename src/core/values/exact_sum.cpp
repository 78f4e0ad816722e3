#include "core/values/exact_sum.h"

#include <bit>

namespace rowvane {
namespace {

constexpr int kMantissaBits = 52;
constexpr int kLeastExponent = -1074;  // of the lowest bit of all doubles
constexpr uint64_t kDigitMask = 0xFFFF'FFFF;

}  // namespace

void ExactSum::add(const ExactSum& other) {
  Digits digits = other.digits_;
  move_carries(digits);
  if (++pending_ >= kMaxPending) {
    move_carries(digits_);
    pending_ = 1;
  }
  for (size_t i = 0; i < kDigits; ++i) digits_[i] += digits[i];
  add_whole(other.small_);
}

void ExactSum::add_digits(double number) {
  if (++pending_ >= kMaxPending) {
    move_carries(digits_);
    pending_ = 1;
  }
  const uint64_t bits = std::bit_cast<uint64_t>(number);
  const int exponent = static_cast<int>(bits >> kMantissaBits & 0x7FF);
  uint64_t mantissa = bits & ((uint64_t{1} << kMantissaBits) - 1);
  if (exponent > 0) mantissa |= uint64_t{1} << kMantissaBits;
  const int place = exponent > 0 ? exponent - 1 : 0;
  const auto shifted = static_cast<unsigned __int128>(mantissa) << (place % kDigitBits);
  int64_t* const digit = &digits_[static_cast<size_t>(place / kDigitBits)];
  const int64_t sign = std::signbit(number) ? -1 : 1;
  digit[0] += sign * static_cast<int64_t>(static_cast<uint64_t>(shifted) & kDigitMask);
  digit[1] += sign * static_cast<int64_t>(static_cast<uint64_t>(shifted >> kDigitBits) & kDigitMask);
  digit[2] += sign * static_cast<int64_t>(static_cast<uint64_t>(shifted >> (2 * kDigitBits)));
}

void ExactSum::flush_small() {
  const int64_t small = small_;
  small_ = 0;
  small_count_ = 0;
  add_whole(small);
}

// In two halves, each of which a double holds exactly.
void ExactSum::add_whole(int64_t number) {
  constexpr int64_t kHalf = int64_t{1} << 31;
  const int64_t upper = number / kHalf;
  add_digits(static_cast<double>(upper) * static_cast<double>(kHalf));
  add_digits(static_cast<double>(number % kHalf));
}

// Afterwards all digits but the last lie between 0 and 2^32 - 1.
void ExactSum::move_carries(Digits& digits) {
  for (size_t i = 0; i + 1 < kDigits; ++i) {
    digits[i + 1] += digits[i] >> kDigitBits;
    digits[i] = static_cast<int64_t>(static_cast<uint64_t>(digits[i]) & kDigitMask);
  }
}

double ExactSum::scaled(int exponent) const {
  ExactSum all = *this;
  all.flush_small();
  Digits& digits = all.digits_;
  move_carries(digits);
  const bool negative = digits.back() < 0;
  if (negative) {
    for (int64_t& digit : digits) digit = -digit;
    move_carries(digits);
  }
  size_t top = kDigits - 1;
  while (top > 2 && digits[top] == 0) --top;
  unsigned __int128 leading = 0;
  for (size_t i = 0; i < 3; ++i) leading = leading << kDigitBits | static_cast<uint64_t>(digits[top - i]);
  bool rest = false;
  for (size_t i = 0; i + 2 < top; ++i) rest = rest || digits[i] != 0;
  // 64 leading bits, the last of which stands for all that follow, round as the whole does.
  int shift = 0;
  for (; leading >> 64 != 0; ++shift) {
    rest = rest || (leading & 1) != 0;
    leading >>= 1;
  }
  const uint64_t rounded_to_odd = static_cast<uint64_t>(leading) | (rest ? 1 : 0);
  const int place = static_cast<int>(top - 2) * kDigitBits + kLeastExponent + shift + exponent;
  const double size = std::ldexp(static_cast<double>(rounded_to_odd), place);
  return negative ? -size : size;
}

double ExactSum::mean(uint64_t count) const {
  const double sum = rounded();
  if (std::isfinite(sum)) return sum / static_cast<double>(count);
  constexpr int kRoom = 64;  // as many doublings as there may be numbers
  return std::ldexp(scaled(-kRoom) / static_cast<double>(count), kRoom);
}

}  // namespace rowvane

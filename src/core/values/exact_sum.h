// Sums of doubles without rounding, so that neither the order of the numbers nor the number of threads shows.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>

namespace rowvane {

// The exact sum of up to 2^63 finite numbers, kept as a fixed-point number wide enough for all doubles (after
// R. Neal, "Fast exact summation using small and large superaccumulators", 2015).
class ExactSum {
 public:
  // NUMBER must be finite.
  void add(double number) {
    constexpr double kSmall = 2147483648.0;
    if (std::abs(number) <= kSmall && static_cast<double>(static_cast<int64_t>(number)) == number) {
      small_ += static_cast<int64_t>(number);
      if (++small_count_ == kMaxPending) flush_small();
    } else {
      add_digits(number);
    }
  }
  void add(const ExactSum& other);

  // The nearest double (of two the even one); infinite when it is too large.
  double rounded() const { return scaled(0); }
  // The sum divided by COUNT, which is not 0; finite, as the numbers were.
  double mean(uint64_t count) const;

 private:
  static constexpr uint32_t kMaxPending = uint32_t{1} << 30;  // additions before carries must be moved on
  static constexpr int kDigitBits = 32;
  static constexpr size_t kDigits = 70;  // 2046 exponents, 53 bits and 64 for carries
  using Digits = std::array<int64_t, kDigits>;

  void add_digits(double number);
  void flush_small();
  void add_whole(int64_t number);
  static void move_carries(Digits& digits);
  // The nearest double to the sum times 2^EXPONENT.
  double scaled(int exponent) const;

  int64_t small_ = 0;  // the sum of small integers
  uint32_t small_count_ = 0;
  uint32_t pending_ = 0;
  Digits digits_{};  // digit i counts 2^(32 * i - 1074)
};

}  // namespace rowvane

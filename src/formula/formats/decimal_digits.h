// The decimal digits of a number, as people read them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace rowvane {

// The shortest digits that read back to the same double: 2.675 is 2.675 here, not the 2.67499... that the
// double holds. Shifting and rounding work on these digits, so they never see binary fractions.
class DecimalDigits {
 public:
  // SIZE is finite and not negative.
  explicit DecimalDigits(double size);

  bool is_zero() const { return count_ == 0; }
  // The power of ten of the first digit; 0 for zero.
  int top() const { return is_zero() ? 0 : top_; }
  // The digit of 10^POWER, 0 to 9.
  int digit(int power) const;
  // True when a digit other than 0 stands at POWER or behind it.
  bool has_digits_from(int power) const { return !is_zero() && top_ - count_ + 1 <= power; }

  // Multiplies by 10^POWER.
  void shift(int power) { top_ += power; }
  // Keeps the digits from 10^POWER up; half rounds away from zero.
  void round_to(int power);

 private:
  static constexpr int kMost = 18;

  std::array<uint8_t, kMost> digits_{};  // no zero at either end
  int count_ = 0;
  int top_ = 0;
};

}  // namespace rowvane

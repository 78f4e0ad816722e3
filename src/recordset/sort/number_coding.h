// Cells of a number column as integers that compare as the cells do, in as few bits as the column needs.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "core/values/number_cell.h"

namespace rowvane {

// What a coding must hold, collected from all cells.
struct NumberSurvey {
  double least = std::numeric_limits<double>::infinity();
  double greatest = -std::numeric_limits<double>::infinity();
  bool only_integers = true;  // below 2^53 in size
  bool has_errors = false;
  uint64_t used_bits = 0;  // of the ordered bits of all numbers

  void add(double cell);
  void add(const NumberSurvey& other);
  bool has_numbers() const { return least <= greatest; }
};

// Numbers come first, then errors by their codes, then empty cells. Small ranges of integers have small
// codes; other numbers are coded by their bits, without those that are zero in all.
class NumberCoding {
 public:
  NumberCoding() = default;
  explicit NumberCoding(const NumberSurvey& survey);

  uint64_t code(double cell) const {
    if (cell == cell) return number_code(cell);
    if (is_empty_number(cell)) return empty_;
    return errors_ + static_cast<uint64_t>(error_of_number(cell));
  }
  uint64_t greatest_code() const { return empty_; }

 private:
  uint64_t number_code(double number) const;

  bool integers_ = true;
  int dropped_bits_ = 0;
  uint64_t base_ = 0;
  uint64_t errors_ = 0;
  uint64_t empty_ = 0;
};

// The bits of NUMBER as a two's complement that orders as numbers do; 0 and -0 have the same.
inline uint64_t ordered_bits(double number) {
  const uint64_t bits = std::bit_cast<uint64_t>(number);
  const uint64_t size = bits & ~(uint64_t{1} << 63);
  return bits == size ? bits : 0 - size;
}

inline uint64_t NumberCoding::number_code(double number) const {
  const uint64_t bits =
      integers_ ? static_cast<uint64_t>(static_cast<int64_t>(number)) : ordered_bits(number);
  return (bits - base_) >> dropped_bits_;
}

inline void NumberSurvey::add(double cell) {
  if (cell != cell) {
    has_errors = has_errors || !is_empty_number(cell);
    return;
  }
  constexpr double kIntegerLimit = 9007199254740992.0;
  if (cell < least) least = cell;
  if (cell > greatest) greatest = cell;
  only_integers = only_integers && std::abs(cell) < kIntegerLimit &&
                  static_cast<double>(static_cast<int64_t>(cell)) == cell;
  used_bits |= ordered_bits(cell);
}

}  // namespace rowvane

// How a number column codes what is not a number.
//
// A cell is one double. Empty cells and formula errors are quiet NaNs with fixed payloads, told apart by
// their bits:
//   0x7FF8'5256'0000'0000          empty
//   0x7FF8'5256'0000'0000 + code   a formula error (code 1 to 255)
// Any other NaN counts as the error "#VALUE!", so that no computation can produce an empty cell by accident.
#pragma once

#include <bit>
#include <cstdint>
#include <string_view>

namespace rowvane {

// The values that a failed formula has. Multiples of 32, but for the one that only lookups answer and that
// formulas can't be written with.
enum class FormulaError : uint8_t {
  kNone = 0,
  kNotAvailable = 16,
  kValue = 32,
  kName = 64,
  kRef = 96,
  kNull = 128,
  kMemory = 160,
  kData = 192,
  kSyntax = 224,
};

// "#VALUE!" and so on; empty for kNone.
std::string_view formula_error_text(FormulaError error);
// The error named by TEXT, in any letter case; kNone when it names none.
FormulaError formula_error_named(std::string_view text);

inline constexpr uint64_t kEmptyNumberBits = 0x7FF8'5256'0000'0000ull;
inline constexpr double kEmptyNumber = std::bit_cast<double>(kEmptyNumberBits);

inline bool is_empty_number(double cell) {
  return std::bit_cast<uint64_t>(cell) == kEmptyNumberBits;
}

constexpr double error_number(FormulaError error) {
  return std::bit_cast<double>(kEmptyNumberBits + static_cast<uint8_t>(error));
}

// The error that CELL holds; kNone for numbers and empty cells.
inline FormulaError error_of_number(double cell) {
  const uint64_t bits = std::bit_cast<uint64_t>(cell);
  if (cell == cell || bits == kEmptyNumberBits) return FormulaError::kNone;
  const uint64_t code = bits - kEmptyNumberBits;
  return code < 256 ? static_cast<FormulaError>(code) : FormulaError::kValue;
}

}  // namespace rowvane

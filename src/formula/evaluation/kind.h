// The kinds of tokens and values, one word for both.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace rowvane {

// Operators are numbered and index the priority table; everything else is a single bit. The codes are fixed.
enum class Kind : uint16_t {
  kError = 0,
  kEqual = 1,
  kLess = 2,
  kLessOrEqual = 3,
  kGreater = 4,
  kGreaterOrEqual = 5,
  kNotEqual = 6,
  kAdd = 7,
  kSubtract = 8,
  kConcatenate = 9,
  kMultiply = 10,
  kDivide = 11,
  kPower = 12,
  kNegate = 13,
  kPercent = 14,
  kIntersection = 15,
  kQualifier = 16,
  kRange = 17,
  kNumber = 32,        // also logical values and error constants
  kReference = 64,     // a field, or a range of a table
  kArrayResult = 128,  // an array that an operator or a function made
  kText = 256,
  kNoValue = 512,  // empty, or an error value
  kOpen = 1024,
  kClose = 2048,
  kEnd = 4096,
  kSeparator = 8192,
  kFunction = 16384,
  kArray = 32768,  // an array constant; as the kind of a result any array
};

constexpr bool is_operator(Kind kind) {
  return kind >= Kind::kEqual && kind <= Kind::kRange;
}
constexpr bool is_unary(Kind kind) {
  return kind == Kind::kNegate || kind == Kind::kPercent;
}
constexpr bool is_operand(Kind kind) {
  return kind == Kind::kNumber || kind == Kind::kReference || kind == Kind::kText || kind == Kind::kArray;
}

// By operator code; higher binds tighter.
inline constexpr std::array<uint8_t, 18> kPriorities = {0, 1, 1, 1, 1, 1, 1, 2, 2, 2, 3, 3, 4, 5, 5, 6, 6, 7};

constexpr int priority(Kind kind) {
  return kPriorities[static_cast<size_t>(kind)];
}

}  // namespace rowvane

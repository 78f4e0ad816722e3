// Questions about ASCII characters, whatever the user's language is. All other bytes are none of these, and
// stay as they are.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace rowvane::ascii {

constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool is_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
// The control characters below the blank, and DEL.
constexpr bool is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

constexpr char to_lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr char to_upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
inline std::string to_lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = to_lower(c);
  return lower;
}

constexpr bool equal_ignoring_case(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char x, char y) { return to_lower(x) == to_lower(y); });
}

}  // namespace rowvane::ascii

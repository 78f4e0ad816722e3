// Bytes as the known answers of the ciphers are written.
#pragma once

#include <string>
#include <string_view>

namespace rowvane {

inline std::string from_hex(std::string_view digits) {
  std::string bytes;
  for (size_t i = 0; i + 1 < digits.size(); i += 2)
    bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
  return bytes;
}

inline std::string to_hex(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += kDigits[byte / 16];
    text += kDigits[byte % 16];
  }
  return text;
}

// The bytes FIRST, FIRST + 1, ...
inline std::string counting(size_t count, int first = 0) {
  std::string bytes;
  for (size_t i = 0; i < count; ++i) bytes += static_cast<char>(first + static_cast<int>(i));
  return bytes;
}

}  // namespace rowvane

#include "core/values/base64.h"

#include <array>
#include <cstdint>

namespace rowvane {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr uint8_t kNoDigit = 0xFF;

constexpr std::array<uint8_t, 256> make_digit_values() {
  std::array<uint8_t, 256> values{};
  values.fill(kNoDigit);
  for (size_t i = 0; i < kAlphabet.size(); ++i) {
    values[static_cast<unsigned char>(kAlphabet[i])] = static_cast<uint8_t>(i);
  }
  return values;
}

constexpr std::array<uint8_t, 256> kDigitValues = make_digit_values();

uint32_t byte_at(std::string_view bytes, size_t position) {
  return position < bytes.size() ? static_cast<unsigned char>(bytes[position]) : 0;
}

size_t padding_of(std::string_view text) {
  if (text.ends_with("==")) return 2;
  return text.ends_with('=') ? 1 : 0;
}

}  // namespace

std::string base64_encode(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const uint32_t group = byte_at(bytes, i) << 16 | byte_at(bytes, i + 1) << 8 | byte_at(bytes, i + 2);
    text += kAlphabet[group >> 18];
    text += kAlphabet[group >> 12 & 63];
    text += i + 1 < bytes.size() ? kAlphabet[group >> 6 & 63] : '=';
    text += i + 2 < bytes.size() ? kAlphabet[group & 63] : '=';
  }
  return text;
}

std::optional<std::string> base64_decode(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  text.remove_suffix(padding_of(text));

  std::string bytes;
  bytes.reserve(text.size() * 3 / 4);
  uint32_t bits = 0;
  int bit_count = 0;
  for (const char character : text) {
    const uint8_t digit = kDigitValues[static_cast<unsigned char>(character)];
    if (digit == kNoDigit) return std::nullopt;
    bits = bits << 6 | digit;
    bit_count += 6;
    if (bit_count >= 8) {
      bit_count -= 8;
      bytes += static_cast<char>(bits >> bit_count & 0xFF);
      bits &= (1U << bit_count) - 1;
    }
  }
  if (bits != 0) return std::nullopt;
  return bytes;
}

}  // namespace rowvane

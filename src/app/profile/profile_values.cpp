#include "app/profile/profile_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <limits>

#include "core/limits.h"
#include "platform/ascii.h"
#include "platform/utf8.h"

namespace rowvane::profile {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr size_t kMaxWords = 1'000;

std::string_view trim(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Takes the next run of characters that are none of BORDERS; empty at the end.
std::string_view take_word(std::string_view& text, std::string_view borders) {
  text.remove_prefix(std::min(text.find_first_not_of(borders), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(borders));
  text.remove_prefix(word.size());
  return word;
}

}  // namespace

std::string flag_text(bool value) {
  return value ? "true" : "false";
}

std::optional<bool> parse_flag(std::string_view text) {
  const std::string word = ascii::to_lower(trim(text));
  if (word == "true" || word == "yes" || word == "on" || word == "1") return true;
  if (word == "false" || word == "no" || word == "off" || word == "0") return false;
  return std::nullopt;
}

std::string number_text(int64_t value) {
  return std::to_string(value);
}

std::optional<int64_t> parse_number(std::string_view text, NumberRange range) {
  text = trim(text);
  int64_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  if (value < range.least || value > range.most) return std::nullopt;
  return value;
}

std::string color_text(uint32_t value) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "#%02X%02X%02X", (value >> 16) & 0xFFU, (value >> 8) & 0xFFU,
                value & 0xFFU);
  return text.data();
}

std::optional<uint32_t> parse_color(std::string_view text) {
  text = trim(text);
  if (text.size() != 7 || text[0] != '#') return std::nullopt;
  uint32_t value = 0;
  const auto result = std::from_chars(text.data() + 1, text.data() + text.size(), value, 16);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

std::string placement_text(const FramePlacement& value) {
  std::string text;
  for (const int part : {value.flags, value.show_state, value.left, value.top, value.right, value.bottom}) {
    if (!text.empty()) text += ' ';
    text += std::to_string(part);
  }
  return text;
}

std::optional<FramePlacement> parse_placement(std::string_view text) {
  constexpr NumberRange kAny{std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
  FramePlacement value;
  for (int* const part :
       {&value.flags, &value.show_state, &value.left, &value.top, &value.right, &value.bottom}) {
    const auto number = parse_number(take_word(text, kBlanks), kAny);
    if (!number) return std::nullopt;
    *part = static_cast<int>(*number);
  }
  if (!trim(text).empty()) return std::nullopt;
  return value;
}

std::string words_text(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += ' ';
    text += word;
  }
  return text;
}

std::optional<std::vector<std::string>> parse_words(std::string_view text) {
  std::vector<std::string> words;
  for (;;) {
    std::string_view word = take_word(text, " \t\r\n,;");
    if (word.empty()) return words;
    if (word.starts_with("*.")) word.remove_prefix(2);
    if (word.starts_with('.')) word.remove_prefix(1);
    if (word.empty() || word.find_first_of("/\\*?:") != std::string_view::npos || !is_valid_utf8(word) ||
        words.size() == kMaxWords) {
      return std::nullopt;
    }
    words.push_back(ascii::to_lower(word));
  }
}

std::optional<std::string> parse_text(std::string_view text) {
  if (text.size() > kMaxBufferBytes || !is_valid_utf8(text)) return std::nullopt;
  return std::string(text);
}

}  // namespace rowvane::profile

#include "platform/collation.h"

#include <algorithm>

namespace rowvane::platform {
namespace {

std::string_view compared_part(std::string_view text) {
  size_t length = std::min(text.size(), kMostComparedBytes);
  const auto is_inside_character = [&] { return length < text.size() && (text[length] & 0xC0) == 0x80; };
  while (length > 0 && is_inside_character()) --length;
  return text.substr(0, length);
}

}  // namespace

int Collation::compare(std::string_view a, std::string_view b) const {
  a = compared_part(a);
  b = compared_part(b);
  return a == b ? 0 : compare_cut(a, b);
}

void Collation::append_key(std::string_view text, std::string& key) const {
  append_key_of_cut(compared_part(text), key);
}

}  // namespace rowvane::platform

#include "platform/collation.h"

#include "platform/utf8.h"

namespace rowvane::platform {
namespace {

std::string_view compared_part(std::string_view text) {
  return truncate_bytes(text, kMostComparedBytes);
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

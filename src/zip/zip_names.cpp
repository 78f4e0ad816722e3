#include "zip/zip_names.h"

#include <algorithm>
#include <cstdint>

#include "platform/ascii.h"
#include "platform/code_pages.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

constexpr size_t kMaxMemberNameBytes = 65535;
constexpr unsigned kZipCodePage = 437;

bool has_parent_component(std::string_view name) {
  while (!name.empty()) {
    const size_t slash = std::min(name.find('/'), name.size());
    if (name.substr(0, slash) == "..") return true;
    name.remove_prefix(std::min(slash + 1, name.size()));
  }
  return false;
}

}  // namespace

bool is_safe_member_name(std::string_view name) {
  if (name.empty() || name.size() > kMaxMemberNameBytes || name.front() == '/') return false;
  if (name.size() >= 2 && name[1] == ':' && ascii::is_letter(name[0])) return false;
  if (name.find('\\') != name.npos || name.find('\0') != name.npos) return false;
  return !has_parent_component(name);
}

bool is_writable_member_name(std::string_view name) {
  return is_safe_member_name(name) && is_valid_utf8(name) && std::ranges::none_of(name, ascii::is_control);
}

bool decode_member_name(std::string_view bytes, bool flagged_utf8, std::string& name) {
  name.clear();
  if (is_valid_utf8(bytes)) {
    name = bytes;
    return true;
  }
  if (flagged_utf8) return false;
  const auto page = platform::CodePage::open(kZipCodePage);
  if (!page) return false;
  page->to_utf8(bytes, name);
  return true;
}

}  // namespace rowvane

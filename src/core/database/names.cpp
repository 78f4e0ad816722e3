#include "core/database/names.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "platform/ascii.h"
#include "platform/characters.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

bool is_forbidden_in_file_names(char c) {
  return std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos;
}

// What separates names in paths, and names in the lists of files that tables hold.
bool is_file_list_mark(char c) {
  return c == '/' || c == '\\' || c == '|';
}

bool starts_with_letter(std::string_view name) {
  size_t position = 0;
  return !name.empty() && platform::is_letter(next_character(name, position));
}

}  // namespace

bool same_name(std::string_view a, std::string_view b) {
  if (a == b) return true;
  if (is_ascii(a) && is_ascii(b)) return ascii::equal_ignoring_case(a, b);
  return platform::fold_case(a) == platform::fold_case(b);
}

bool is_valid_field_name(std::string_view name) {
  return name.size() <= kMaxNameBytes && is_valid_utf8(name) && starts_with_letter(name) &&
         std::none_of(name.begin(), name.end(), ascii::is_control);
}

bool is_valid_table_name(std::string_view name) {
  if (name.empty() || name.size() > kMaxTableNameBytes || !is_valid_utf8(name)) return false;
  if (name.front() == ' ' || name.back() == ' ' || name.front() == '.' || name.back() == '.') return false;
  return std::none_of(name.begin(), name.end(),
                      [](char c) { return ascii::is_control(c) || is_forbidden_in_file_names(c); });
}

bool is_reserved_name(std::string_view name) {
  const std::string folded = platform::fold_case(name);
  return folded == "this-version" || folded == "min-version" || folded == "meta-inf" ||
         folded.ends_with(".rvb-bin");
}

bool is_valid_file_name(std::string_view name) {
  if (name.empty() || name.size() > kMaxFileNameBytes || name == "." || name == "..") return false;
  return is_valid_utf8(name) && std::none_of(name.begin(), name.end(), [](char c) {
           return ascii::is_control(c) || is_file_list_mark(c);
         });
}

bool is_valid_shortcut(std::string_view path) {
  return is_valid_utf8(path) && std::none_of(path.begin(), path.end(), ascii::is_control);
}

std::string repair_file_name(std::string_view name) {
  std::string repaired = is_valid_utf8(name) ? std::string(name) : repair_utf8(name);
  repaired = truncate_bytes(repaired, kMaxFileNameBytes);
  for (char& c : repaired) {
    if (ascii::is_control(c) || is_file_list_mark(c)) c = '_';
  }
  return is_valid_file_name(repaired) ? repaired : "_" + repaired;
}

std::string repair_field_name(std::string_view heading, size_t column) {
  std::string name = is_valid_utf8(heading) ? std::string(heading) : repair_utf8(heading);
  std::replace_if(name.begin(), name.end(), ascii::is_control, ' ');
  name = truncate_bytes(name, kMaxNameBytes);
  if (name.empty()) return "field" + std::to_string(column);
  if (starts_with_letter(name)) return name;
  const std::string prefixed = "field_" + name;
  return prefixed.size() <= kMaxNameBytes ? prefixed : "field" + std::to_string(column);
}

void make_names_unique(std::span<std::string> names) {
  std::unordered_set<std::string> taken;
  std::unordered_map<std::string, int> next_number;
  for (std::string& name : names) {
    const std::string base(truncate_bytes(name, kMaxNameBytes - 8));
    while (!taken.insert(platform::fold_case(name)).second) {
      int& number = next_number.try_emplace(platform::fold_case(base), 2).first->second;
      name = base + "_" + std::to_string(number++);
    }
  }
}

std::string repair_table_name(std::string_view name) {
  std::string repaired = is_valid_utf8(name) ? std::string(name) : repair_utf8(name);
  repaired =
      truncate_bytes(repaired, kMaxTableNameBytes - 1);  // leaves a byte for the "_" of a reserved name
  for (char& c : repaired) {
    if (ascii::is_control(c) || is_forbidden_in_file_names(c)) c = '_';
  }
  while (!repaired.empty() && (repaired.back() == ' ' || repaired.back() == '.')) repaired.pop_back();
  const size_t start = repaired.find_first_not_of(" .");
  repaired.erase(0, std::min(start, repaired.size()));
  if (is_reserved_name(repaired)) repaired += '_';
  return repaired.empty() ? "table" : repaired;
}

}  // namespace rowvane

#include "platform/locale_name.h"

#include <algorithm>

namespace rowvane::platform {
namespace {

std::string script_of_modifier(std::string_view modifier) {
  if (modifier == "latin") return "Latn";
  if (modifier == "cyrillic") return "Cyrl";
  return {};
}

void transform_ascii(std::string& text, char first, char last, int distance) {
  std::ranges::transform(text, text.begin(), [=](char c) {
    return c >= first && c <= last ? static_cast<char>(c + distance) : c;
  });
}

// The part of TEXT before the first "_", which is taken off.
std::string_view take_part(std::string_view& text) {
  const size_t end = std::min(text.find_first_of("_-"), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

}  // namespace

std::string LocaleName::joined(char separator) const {
  std::string name = language;
  if (!script.empty()) name += separator + script;
  if (!territory.empty()) name += separator + territory;
  return name;
}

LocaleName parse_locale_name(std::string_view name) {
  LocaleName result;
  const size_t at = name.find('@');
  if (at != std::string_view::npos) result.script = script_of_modifier(name.substr(at + 1));
  name = name.substr(0, name.find_first_of(".@"));
  if (name.empty() || name == "C" || name == "POSIX") return result;
  result.language = take_part(name);
  transform_ascii(result.language, 'A', 'Z', 'a' - 'A');
  std::string_view part = take_part(name);
  if (part.size() == 4) {
    result.script = part;
    part = take_part(name);
  }
  result.territory = part;
  transform_ascii(result.territory, 'a', 'z', 'A' - 'a');
  return result;
}

}  // namespace rowvane::platform

#include "app/profile/recent_files.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "platform/utf8.h"

namespace rowvane {
namespace {

struct Suffix {
  size_t comma;
  int number;
};

// A comma and a decimal number at the end of TEXT.
std::optional<Suffix> number_suffix(std::string_view text) {
  const size_t comma = text.rfind(',');
  if (comma == std::string_view::npos || comma + 1 == text.size()) return std::nullopt;
  const std::string_view digits = text.substr(comma + 1);
  if (digits.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  int number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (result.ec != std::errc()) return std::nullopt;
  return Suffix{comma, number};
}

size_t utf16_units(char32_t character) {
  return character > 0xFFFF ? 2 : 1;
}

}  // namespace

size_t path_characters(std::string_view path) {
  size_t count = 0;
  for (size_t position = 0; position < path.size();) count += utf16_units(next_character(path, position));
  return count;
}

std::string cut_path(std::string_view path) {
  size_t end = 0;
  size_t count = 0;
  while (end < path.size()) {
    size_t next = end;
    count += utf16_units(next_character(path, next));
    if (count > kMaxPathCharacters) break;
    end = next;
  }
  return std::string(path.substr(0, end));
}

std::string recent_file_text(const RecentFile& file) {
  if (file.number == 0 && !number_suffix(file.path)) return file.path;
  return file.path + "," + std::to_string(file.number);
}

RecentFile parse_recent_file(std::string_view text) {
  RecentFile file;
  if (const auto suffix = number_suffix(text)) {
    file.number = suffix->number;
    text = text.substr(0, suffix->comma);
  }
  if (path_characters(text) <= kMaxPathCharacters) file.path = text;
  return file;
}

void add_recent_file(std::vector<RecentFile>& files, RecentFile file, size_t most) {
  std::erase_if(files, [&](const RecentFile& other) { return other.path == file.path; });
  files.insert(files.begin(), std::move(file));
  if (files.size() > most) files.resize(most);
}

}  // namespace rowvane

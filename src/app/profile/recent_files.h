// The files that were opened last, as the File menu lists them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace rowvane {

inline constexpr size_t kMaxPathCharacters = 259;  // of a path in the profile or on the command line

// Characters of PATH as the system counts them in a path: UTF-16 units.
size_t path_characters(std::string_view path);
// The longest front of PATH with at most kMaxPathCharacters.
std::string cut_path(std::string_view path);

struct RecentFile {
  std::string path;
  int number = 0;  // kept with the entry; never negative

  bool operator==(const RecentFile&) const = default;
};

// An entry as the profile holds it: the path, and "," with the number when there is one. A path that ends as
// if it had a number gets ",0".
std::string recent_file_text(const RecentFile& file);
// Reads an entry; a path of more than kMaxPathCharacters gives an empty one.
RecentFile parse_recent_file(std::string_view text);

// Puts FILE at the front of FILES, where an entry with its path goes away, and drops what is beyond MOST.
void add_recent_file(std::vector<RecentFile>& files, RecentFile file, size_t most);

}  // namespace rowvane

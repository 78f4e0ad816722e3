#include "platform/linux/xdg_folders.h"

#include <array>
#include <cstdlib>
#include <sstream>

#include <pwd.h>
#include <unistd.h>

#include "platform/file.h"
#include "platform/paths.h"

namespace rowvane::platform {
namespace {

constexpr uint64_t kMaxUserDirsBytes = 1 << 16;

// Relative paths are to be ignored.
std::string absolute_from(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && value[0] == '/' ? value : std::string();
}

std::string base_folder(const char* variable, const char* below_home) {
  std::string folder = absolute_from(variable);
  if (!folder.empty()) return folder;
  const std::string home = home_folder();
  return home.empty() ? std::string() : join_path(home, below_home);
}

// The value of `KEY="$HOME/..."` or `KEY="/..."` in LINE, otherwise empty.
std::string user_dirs_value(std::string_view line, std::string_view key) {
  constexpr std::string_view kHome = "$HOME/";
  const size_t first = line.find_first_not_of(" \t");
  if (first == std::string_view::npos || !line.substr(first).starts_with(key)) return {};
  line.remove_prefix(first + key.size());
  const size_t end = line.rfind('"');
  if (!line.starts_with("=\"") || end < 2) return {};
  line = line.substr(2, end - 2);
  std::string plain;
  for (size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '\\' && i + 1 < line.size()) ++i;
    plain += line[i];
  }
  if (plain.starts_with('/')) return plain;
  return plain.starts_with(kHome) ? join_path(home_folder(), plain.substr(kHome.size())) : std::string();
}

}  // namespace

std::string home_folder() {
  std::string home = absolute_from("HOME");
  if (!home.empty()) return home;
  struct passwd entry {};
  struct passwd* found = nullptr;
  std::array<char, 4096> buffer{};
  if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr &&
      found->pw_dir != nullptr && found->pw_dir[0] == '/') {
    home = found->pw_dir;
  }
  return home;
}

std::string data_home() {
  return base_folder("XDG_DATA_HOME", ".local/share");
}

std::string config_home() {
  return base_folder("XDG_CONFIG_HOME", ".config");
}

std::string user_folder(const std::string& key, const std::string& fallback) {
  std::string content;
  const std::string file = join_path(config_home(), "user-dirs.dirs");
  if (read_whole_file(file, content, kMaxUserDirsBytes) == FileStatus::kOk) {
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);) {
      std::string value = user_dirs_value(line, key);
      if (!value.empty()) return value;
    }
  }
  const std::string home = home_folder();
  return home.empty() ? std::string() : join_path(home, fallback);
}

}  // namespace rowvane::platform

#include "platform/paths.h"

#include <algorithm>

#include "platform/ascii.h"

namespace rowvane::platform {
namespace {

#ifdef _WIN32
constexpr std::string_view kSeparators = "/\\";
constexpr std::string_view kNameBorders = "/\\:";  // "C:name" lies in the current folder of drive C
constexpr char kSeparator = '\\';
#else
constexpr std::string_view kSeparators = "/";
constexpr std::string_view kNameBorders = "/";
constexpr char kSeparator = '/';
#endif

bool is_separator(char c) {
  return kSeparators.find(c) != std::string_view::npos;
}

std::string_view name_part(std::string_view path) {
  const size_t border = path.find_last_of(kNameBorders);
  return border == std::string_view::npos ? path : path.substr(border + 1);
}

// Where the extension's point stands in NAME, or npos.
size_t extension_point(std::string_view name) {
  const size_t point = name.rfind('.');
  const bool has_stem = point != std::string_view::npos && name.find_first_not_of('.') < point;
  return has_stem ? point : std::string_view::npos;
}

}  // namespace

std::string file_name(std::string_view path) {
  return std::string(name_part(path));
}

std::string file_stem(std::string_view path) {
  const std::string_view name = name_part(path);
  return std::string(name.substr(0, extension_point(name)));
}

std::string extension(std::string_view path) {
  const std::string_view name = name_part(path);
  const size_t point = extension_point(name);
  if (point == std::string_view::npos) return {};
  return ascii::to_lower(name.substr(point + 1));
}

std::string parent_folder(std::string_view path) {
  const std::string_view folder = path.substr(0, path.size() - name_part(path).size());
  if (folder.empty()) return ".";
  const size_t last = folder.find_last_not_of(kSeparators);
  if (last == std::string_view::npos) return std::string(folder.substr(0, 1));
  // The separator behind a drive's colon tells its root from its current folder.
  return std::string(folder.substr(0, folder[last] == ':' && kSeparator == '\\' ? last + 2 : last + 1));
}

std::string join_path(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty() && !is_separator(path.back())) path += kSeparator;
  return path.append(name);
}

}  // namespace rowvane::platform

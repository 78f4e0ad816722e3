#include "exchange/text/file_list_text.h"

namespace rowvane {
namespace {

constexpr char kMark = '|';

// On any system: the path may come from another one.
std::string_view last_part(std::string_view path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

}  // namespace

void append_file_list(const FileList& files, std::string& out) {
  for (const FileObject& file : files) {
    if (&file != &files.front()) out += '\n';
    if (!file.is_shortcut()) {
      out += file.name;
      continue;
    }
    const bool short_form =
        file.name == last_part(file.shortcut) && file.shortcut.find(kMark) == std::string::npos;
    if (!short_form) out.append(1, kMark).append(file.name);
    out.append(1, kMark).append(file.shortcut);
  }
}

FileObject parse_file_line(std::string_view line) {
  if (!line.starts_with(kMark)) return {std::string(line), {}, Content()};
  line.remove_prefix(1);
  const size_t mark = line.find(kMark);
  if (mark == std::string_view::npos) return {std::string(last_part(line)), std::string(line), Content()};
  return {std::string(line.substr(0, mark)), std::string(line.substr(mark + 1)), Content()};
}

}  // namespace rowvane

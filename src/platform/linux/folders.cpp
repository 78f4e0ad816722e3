#include "platform/folders.h"

#include <filesystem>

#include <unistd.h>

#include "platform/linux/xdg_folders.h"
#include "platform/paths.h"

namespace rowvane::platform {

KnownFolders known_folders() {
  KnownFolders folders;
  std::error_code error;
  folders.program_file = std::filesystem::read_symlink("/proc/self/exe", error).string();
  if (!folders.program_file.empty()) folders.program_folder = parent_folder(folders.program_file);
  const std::string name = file_name(folders.program_folder);
  folders.is_program_folder_shared = name == "bin" || name == "sbin" || name == "games";
  folders.installation_folders = {"/usr", "/opt", "/bin"};
  if (const std::string home = home_folder(); !home.empty()) {
    folders.installation_folders.push_back(join_path(home, ".local"));
  }
  folders.local_app_data = config_home();
  folders.documents = user_folder("XDG_DOCUMENTS_DIR", "Documents");
  folders.common_documents = "/usr/share/rowvane";
  const std::string data = data_home();
  const std::string desktop = user_folder("XDG_DESKTOP_DIR", "Desktop");
  if (!data.empty()) folders.shortcuts.push_back(join_path(data, "applications/rowvane.desktop"));
  if (!desktop.empty()) folders.shortcuts.push_back(join_path(desktop, "rowvane.desktop"));
  folders.are_shortcuts_complete = !data.empty() && !desktop.empty();
  folders.is_administrator = ::geteuid() == 0;
  return folders;
}

}  // namespace rowvane::platform

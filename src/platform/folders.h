// Where the system keeps the user's and the programs' files.
#pragma once

#include <string>
#include <vector>

namespace rowvane::platform {

// Absolute paths in UTF-8, whether or not they exist; empty where the system does not tell.
//
// On Linux the XDG variables and HOME choose the user's folders, and XDG_CONFIG_HOME stands for local
// application data.
struct KnownFolders {
  std::string program_file;    // the running executable
  std::string program_folder;  // that holds it
  // True where program_folder belongs to the whole system, as "/usr/bin" does: what lies there beside the
  // executable is not Rowvane's.
  bool is_program_folder_shared = false;
  // Programs in these are installed for good; in any other folder they are portable.
  std::vector<std::string> installation_folders;
  std::string local_app_data;
  std::string documents;
  std::string common_documents;
  std::vector<std::string> shortcuts;  // full paths of what may start Rowvane from a menu or a desktop
  bool are_shortcuts_complete = true;  // false when the system did not tell all folders for them
  bool is_administrator = false;
};

KnownFolders known_folders();

}  // namespace rowvane::platform

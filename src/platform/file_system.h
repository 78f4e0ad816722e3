// Folders and files made, listed and removed. Paths are UTF-8; nothing throws.
#pragma once

#include <string>
#include <vector>

#include "platform/file.h"

namespace rowvane::platform {

bool folder_exists(const std::string& path);
// Makes the folder PATH and those above it that are missing. kOk when it is there already.
[[nodiscard]] FileStatus create_folders(const std::string& path);
// Removes a file, or the link itself where PATH is one; kNotFound when there is none.
[[nodiscard]] FileStatus remove_file(const std::string& path);
// Removes an empty folder. kInUse when something is in it.
[[nodiscard]] FileStatus remove_folder(const std::string& path);
// The names of all files directly in FOLDER, sorted; folders are left out.
[[nodiscard]] FileStatus list_files(const std::string& folder, std::vector<std::string>& names);

}  // namespace rowvane::platform

// The backup of a file, and renames that last.
#pragma once

#include <string>

#include "platform/file.h"

namespace rowvane::platform {

// Keeps the file TARGET under BACKUP_PATH too, in place of what was there. TARGET stays where it is.
FileStatus keep_backup(const std::string& target, const std::string& backup_path);

// Makes a rename in the folder of PATH last through a power failure, where the file system can.
void flush_folder_of(const std::string& path);

}  // namespace rowvane::platform

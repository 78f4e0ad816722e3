// The backup of a file, and what a new file takes over from the one that it replaces.
#pragma once

#include <string>

#include "platform/file.h"

namespace rowvane::platform {

// Keeps the file TARGET under BACKUP_PATH too, in place of what was there. TARGET stays where it is.
FileStatus keep_backup(const std::wstring& target, const std::string& backup_path);

// Gives the file TO the access list and the attributes of FROM, as far as the user may.
void take_over_permissions(const std::wstring& from, const std::wstring& to);

}  // namespace rowvane::platform

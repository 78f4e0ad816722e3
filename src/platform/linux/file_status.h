// What the errors of the system mean as FileStatus.
#pragma once

#include <string>

#include <sys/stat.h>

#include "platform/file.h"

namespace rowvane::platform {

// What ERROR, a value of errno, means to the program; OTHERWISE for those that have no status of their own.
FileStatus file_status_of(int error, FileStatus otherwise);

// False for paths that the system would cut short at a zero byte.
bool is_usable_path(const std::string& path);

// Calls stat() on PATH, with a status in place of errno.
FileStatus look_up(const std::string& path, struct stat& info);

}  // namespace rowvane::platform

// How the temporary files beside a target are made and cleared away.
#pragma once

#include <string>

#include <sys/stat.h>

#include "platform/file.h"

namespace rowvane::platform {

// A name beside TARGET that no other process uses.
std::string own_temporary_name(const std::string& target);

// Makes a new file beside TARGET with the permission bits MODE, locked for as long as it is open. On success
// NAME is its path and HANDLE its descriptor, both for the caller to remove and close.
FileStatus create_temporary(const std::string& target, mode_t mode, std::string& name, int& handle);

}  // namespace rowvane::platform

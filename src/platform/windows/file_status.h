// Paths as the calls of Windows take them, and what its errors mean as FileStatus.
#pragma once

#include <cstdint>
#include <string>

#include "platform/file.h"

namespace rowvane::platform {

// What ERROR, an answer of GetLastError, means to the program; OTHERWISE for those that have no status of
// their own.
FileStatus file_status_of(uint32_t error, FileStatus otherwise);

// The UTF-8 PATH, absolute, in the form in which it may be longer than 260 characters where it needs that.
// kNotFound for an empty path and one with a zero, kPathTooLong for names that no file can have.
FileStatus wide_path_of(const std::string& path, std::wstring& wide);

bool is_folder(const std::wstring& path);

}  // namespace rowvane::platform

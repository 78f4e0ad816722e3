#include "platform/file_system.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/file_status.h"

namespace rowvane::platform {

bool folder_exists(const std::string& path) {
  struct stat info {};
  return look_up(path, info) == FileStatus::kOk && S_ISDIR(info.st_mode);
}

FileStatus create_folders(const std::string& path) {
  if (!is_usable_path(path)) return FileStatus::kNotFound;
  if (folder_exists(path)) return FileStatus::kOk;
  std::error_code error;
  std::filesystem::create_directories(path, error);
  return error ? file_status_of(error.value(), FileStatus::kWriteError) : FileStatus::kOk;
}

FileStatus remove_file(const std::string& path) {
  if (!is_usable_path(path)) return FileStatus::kNotFound;
  if (::unlink(path.c_str()) == 0) return FileStatus::kOk;
  return file_status_of(errno, FileStatus::kWriteError);
}

FileStatus remove_folder(const std::string& path) {
  if (!is_usable_path(path)) return FileStatus::kNotFound;
  if (::rmdir(path.c_str()) == 0) return FileStatus::kOk;
  if (errno == ENOTEMPTY || errno == EEXIST) return FileStatus::kInUse;
  return file_status_of(errno, FileStatus::kWriteError);
}

FileStatus list_files(const std::string& folder, std::vector<std::string>& names) {
  names.clear();
  if (!is_usable_path(folder)) return FileStatus::kNotFound;
  std::error_code error;
  std::filesystem::directory_iterator entries(folder, error);
  for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
    std::error_code ignored;
    if (!entries->is_directory(ignored)) names.push_back(entries->path().filename().string());
  }
  std::ranges::sort(names);
  return error ? file_status_of(error.value(), FileStatus::kReadError) : FileStatus::kOk;
}

}  // namespace rowvane::platform

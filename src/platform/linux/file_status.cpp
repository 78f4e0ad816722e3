#include "platform/linux/file_status.h"

#include <cerrno>

namespace rowvane::platform {

FileStatus file_status_of(int error, FileStatus otherwise) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
      return FileStatus::kNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
      return FileStatus::kAccessDenied;
    case EBUSY:
    case ETXTBSY:
      return FileStatus::kInUse;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return FileStatus::kNoSpace;
    case EISDIR:
      return FileStatus::kIsFolder;
    case ENAMETOOLONG:
      return FileStatus::kPathTooLong;
    default:
      return otherwise;
  }
}

bool is_usable_path(const std::string& path) {
  return !path.empty() && path.find('\0') == std::string::npos;
}

FileStatus look_up(const std::string& path, struct stat& info) {
  if (!is_usable_path(path)) return FileStatus::kNotFound;
  if (::stat(path.c_str(), &info) != 0) return file_status_of(errno, FileStatus::kReadError);
  return FileStatus::kOk;
}

}  // namespace rowvane::platform

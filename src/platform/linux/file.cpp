#include "platform/file.h"

#include <sys/stat.h>

#include "platform/linux/file_status.h"

namespace rowvane::platform {

bool file_exists(const std::string& path) {
  struct stat info {};
  return look_up(path, info) == FileStatus::kOk && !S_ISDIR(info.st_mode);
}

bool is_same_file(const std::string& a, const std::string& b) {
  struct stat info_a {};
  struct stat info_b {};
  return look_up(a, info_a) == FileStatus::kOk && look_up(b, info_b) == FileStatus::kOk &&
         info_a.st_dev == info_b.st_dev && info_a.st_ino == info_b.st_ino;
}

}  // namespace rowvane::platform

#include "platform/linux/temporary_files.h"

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <limits>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "platform/linux/file_status.h"
#include "platform/paths.h"
#include "platform/temporary_names.h"

namespace rowvane::platform {
namespace {

constexpr int kMostTries = 1000;

bool is_running(uint32_t process) {
  if (process > static_cast<uint32_t>(std::numeric_limits<pid_t>::max())) return false;
  return ::kill(static_cast<pid_t>(process), 0) == 0 || errno != ESRCH;
}

// A lock shows a writer that a process id cannot: one on another machine or in another container.
bool is_locked(const std::string& path) {
  const int handle = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
  if (handle < 0) return false;
  const bool locked = ::flock(handle, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  ::close(handle);
  return locked;
}

}  // namespace

std::string own_temporary_name(const std::string& target) {
  return temporary_name(target, static_cast<uint32_t>(::getpid()));
}

FileStatus create_temporary(const std::string& target, mode_t mode, std::string& name, int& handle) {
  for (int tries = 0; tries < kMostTries; ++tries) {
    name = own_temporary_name(target);
    handle = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (handle >= 0) {
      // Some file systems know no locks; the process id guards the file there.
      static_cast<void>(::flock(handle, LOCK_EX | LOCK_NB));
      return FileStatus::kOk;
    }
    if (errno != EEXIST && errno != EINTR) break;
  }
  return file_status_of(errno, FileStatus::kWriteError);
}

void remove_stale_replacements(const std::string& target) {
  if (!is_usable_path(target)) return;
  std::error_code error;
  std::filesystem::directory_iterator entries(parent_folder(target), error);
  for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
    const std::string path = entries->path().string();
    const std::optional<uint32_t> owner = owner_of_temporary(file_name(path), target);
    std::error_code type_error;
    const bool is_file = entries->symlink_status(type_error).type() == std::filesystem::file_type::regular;
    if (owner && is_file && !is_running(*owner) && !is_locked(path)) ::unlink(path.c_str());
  }
}

}  // namespace rowvane::platform

#include "platform/linux/temporary_names.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "platform/linux/file_status.h"
#include "platform/paths.h"

namespace rowvane::platform {
namespace {

constexpr std::string_view kMark = ".rvtmp-";
constexpr size_t kLongestStem =
    200;  // leaves room for the mark and the numbers within the 255 bytes of a name
constexpr int kMostTries = 1000;

// TARGET's own name as far as it goes into the temporary's, with the mark behind it.
std::string marked_name(const std::string& target) {
  std::string name = file_name(target);
  size_t length = std::min(name.size(), kLongestStem);
  const auto is_inside_character = [&](size_t i) { return i < name.size() && (name[i] & 0xC0) == 0x80; };
  while (length > 0 && is_inside_character(length)) --length;
  name.resize(length);
  return name.append(kMark);
}

// The process id in NAME when it is MARKED followed by "PID-N", otherwise nothing.
std::optional<pid_t> owner_of(std::string_view name, std::string_view marked) {
  if (!name.starts_with(marked)) return std::nullopt;
  const char* const end = name.data() + name.size();
  pid_t owner = 0;
  const auto [dash, error] = std::from_chars(name.data() + marked.size(), end, owner);
  if (error != std::errc() || owner <= 0 || dash == end || *dash != '-') return std::nullopt;
  unsigned long number = 0;
  const auto [last, number_error] = std::from_chars(dash + 1, end, number);
  if (number_error != std::errc() || last != end) return std::nullopt;
  return owner;
}

bool is_running(pid_t process) {
  return ::kill(process, 0) == 0 || errno != ESRCH;
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

std::string temporary_name(const std::string& target) {
  static std::atomic<unsigned> counter = 0;
  const std::string numbers = std::to_string(::getpid()) + "-" + std::to_string(++counter);
  return join_path(parent_folder(target), marked_name(target) + numbers);
}

FileStatus create_temporary(const std::string& target, mode_t mode, std::string& name, int& handle) {
  for (int tries = 0; tries < kMostTries; ++tries) {
    name = temporary_name(target);
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
  const std::string marked = marked_name(target);
  std::error_code error;
  std::filesystem::directory_iterator entries(parent_folder(target), error);
  for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
    const std::string path = entries->path().string();
    const std::optional<pid_t> owner = owner_of(file_name(path), marked);
    std::error_code type_error;
    const bool is_file = entries->symlink_status(type_error).type() == std::filesystem::file_type::regular;
    if (owner && is_file && !is_running(*owner) && !is_locked(path)) ::unlink(path.c_str());
  }
}

}  // namespace rowvane::platform

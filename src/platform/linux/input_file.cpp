#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file.h"
#include "platform/linux/file_status.h"

namespace rowvane::platform {

InputFile::InputFile() = default;

InputFile::~InputFile() {
  close();
}

InputFile::InputFile(InputFile&& other) noexcept
    : handle_(std::exchange(other.handle_, kNoHandle)), size_(std::exchange(other.size_, 0)) {}

InputFile& InputFile::operator=(InputFile&& other) noexcept {
  if (this != &other) {
    close();
    handle_ = std::exchange(other.handle_, kNoHandle);
    size_ = std::exchange(other.size_, 0);
  }
  return *this;
}

FileStatus InputFile::open(const std::string& path) {
  close();
  if (!is_usable_path(path)) return FileStatus::kNotFound;
  // Without O_NONBLOCK a named pipe would wait here for somebody to write to it.
  const int handle = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (handle < 0) return file_status_of(errno, FileStatus::kReadError);
  handle_ = handle;
  struct stat info {};
  if (::fstat(handle, &info) == 0 && S_ISREG(info.st_mode)) {
    size_ = static_cast<uint64_t>(info.st_size);
    return FileStatus::kOk;
  }
  close();
  return S_ISDIR(info.st_mode) ? FileStatus::kIsFolder : FileStatus::kReadError;
}

void InputFile::close() {
  if (handle_ != kNoHandle) ::close(static_cast<int>(handle_));
  handle_ = kNoHandle;
  size_ = 0;
}

FileStatus InputFile::read_at(uint64_t offset, std::span<std::byte> buffer, size_t& read) const {
  read = 0;
  while (read < buffer.size()) {
    const auto place = static_cast<off_t>(offset + read);
    const ssize_t count =
        ::pread(static_cast<int>(handle_), buffer.data() + read, buffer.size() - read, place);
    if (count == 0) break;
    if (count > 0) {
      read += static_cast<size_t>(count);
    } else if (errno != EINTR) {
      return file_status_of(errno, FileStatus::kReadError);
    }
  }
  return FileStatus::kOk;
}

}  // namespace rowvane::platform

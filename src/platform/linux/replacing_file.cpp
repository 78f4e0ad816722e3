#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file.h"
#include "platform/linux/backup.h"
#include "platform/linux/file_status.h"
#include "platform/linux/temporary_files.h"
#include "platform/paths.h"

namespace rowvane::platform {
namespace {

constexpr int kMostLinks = 40;
constexpr mode_t kAnyoneWrites = S_IWUSR | S_IWGRP | S_IWOTH;
constexpr mode_t kPermissionBits = 07777;
constexpr mode_t kNewFileMode = 0666;  // less what the user's umask takes away
constexpr uint64_t kEarlyFlushBytes = uint64_t{8} << 20;

// The absolute path of the file that PATH names, behind any chain of symbolic links. That file need not
// exist.
FileStatus resolve_links(const std::string& path, std::string& resolved) {
  namespace fs = std::filesystem;
  std::error_code error;
  fs::path current = fs::absolute(path, error);
  for (int links = 0; links <= kMostLinks; ++links) {
    if (error) return file_status_of(error.value(), FileStatus::kWriteError);
    std::error_code not_a_link;
    const fs::path next = fs::read_symlink(current, not_a_link);
    if (not_a_link) {
      resolved = current.string();
      return FileStatus::kOk;
    }
    current = current.parent_path() / next;
  }
  return FileStatus::kNotFound;
}

// The bits are looked at too because the system lets its administrator write to everything.
FileStatus writable_status(const std::string& path, mode_t mode, int access) {
  if ((mode & kAnyoneWrites) == 0) return FileStatus::kAccessDenied;
  if (::faccessat(AT_FDCWD, path.c_str(), access, AT_EACCESS) != 0) {
    return file_status_of(errno, FileStatus::kWriteError);
  }
  return FileStatus::kOk;
}

FileStatus folder_status(const std::string& target) {
  const std::string folder = parent_folder(target);
  struct stat info {};
  if (const FileStatus status = look_up(folder, info); status != FileStatus::kOk) return status;
  if (!S_ISDIR(info.st_mode)) return FileStatus::kNotFound;
  return writable_status(folder, info.st_mode, W_OK | X_OK);
}

// Whether TARGET may be replaced; MODE gets the permission bits for the file that will replace it.
FileStatus target_status(const std::string& target, mode_t& mode) {
  struct stat info {};
  const FileStatus status = look_up(target, info);
  mode = kNewFileMode;
  if (status == FileStatus::kNotFound)
    return file_name(target).empty() ? FileStatus::kIsFolder : FileStatus::kOk;
  if (status != FileStatus::kOk) return status;
  if (S_ISDIR(info.st_mode)) return FileStatus::kIsFolder;
  if (!S_ISREG(info.st_mode)) return FileStatus::kWriteError;  // a device or a pipe must stay what it is
  mode = info.st_mode & 0777;
  return writable_status(target, info.st_mode, W_OK);
}

// Gives the file behind HANDLE the owner and the permission bits in INFO as far as the user may.
FileStatus take_over_owner_and_mode(int handle, const struct stat& info) {
  if (::fchown(handle, info.st_uid, info.st_gid) != 0) {
    static_cast<void>(::fchown(handle, static_cast<uid_t>(-1), info.st_gid) == 0);
  }
  // After the owner, because a change of owner clears some of the bits.
  if (::fchmod(handle, info.st_mode & kPermissionBits) == 0) return FileStatus::kOk;
  return file_status_of(errno, FileStatus::kWriteError);
}

FileStatus write_all(int handle, uint64_t offset, std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::pwrite(handle, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (count >= 0) {
      bytes = bytes.subspan(static_cast<size_t>(count));
      offset += static_cast<uint64_t>(count);
    } else if (errno != EINTR) {
      return file_status_of(errno, FileStatus::kWriteError);
    }
  }
  return FileStatus::kOk;
}

// Has the disk begin with what is complete of the file's parts of kEarlyFlushBytes, now that it grew from
// START to END: the flush before the replacement would otherwise find all of it still to do. Only a hint, so
// errors wait for the flush.
void begin_flush(int handle, uint64_t start, uint64_t end) {
  const uint64_t first = start / kEarlyFlushBytes * kEarlyFlushBytes;
  const uint64_t last = end / kEarlyFlushBytes * kEarlyFlushBytes;
  if (first == last) return;
  static_cast<void>(::sync_file_range(handle, static_cast<off_t>(first), static_cast<off_t>(last - first),
                                      SYNC_FILE_RANGE_WRITE));
}

// Puts TEMPORARY, open as HANDLE, in the place of TARGET.
FileStatus replace(int handle, const std::string& temporary, const std::string& target,
                   const std::string& backup_path) {
  struct stat former {};
  const FileStatus found = look_up(target, former);
  if (found != FileStatus::kOk && found != FileStatus::kNotFound) return found;
  const bool has_former = found == FileStatus::kOk;
  if (has_former) {
    if (const FileStatus status = take_over_owner_and_mode(handle, former); status != FileStatus::kOk)
      return status;
  }
  if (::fsync(handle) != 0) return file_status_of(errno, FileStatus::kWriteError);
  if (has_former && !backup_path.empty()) {
    if (const FileStatus status = keep_backup(target, backup_path); status != FileStatus::kOk) return status;
    flush_folder_of(backup_path);
  }
  if (::rename(temporary.c_str(), target.c_str()) != 0) return file_status_of(errno, FileStatus::kWriteError);
  flush_folder_of(target);
  return FileStatus::kOk;
}

}  // namespace

ReplacingFile::ReplacingFile() = default;

ReplacingFile::~ReplacingFile() {
  discard();
}

FileStatus ReplacingFile::create(const std::string& target) {
  discard();
  if (!is_usable_path(target)) return FileStatus::kNotFound;
  mode_t mode = 0;
  FileStatus status = resolve_links(target, target_);
  if (status == FileStatus::kOk) status = target_status(target_, mode);
  if (status == FileStatus::kOk) status = folder_status(target_);
  if (status != FileStatus::kOk) return status;
  int handle = -1;
  status = create_temporary(target_, mode, temporary_, handle);
  if (status == FileStatus::kOk) handle_ = handle;
  return status;
}

FileStatus ReplacingFile::write(std::span<const std::byte> bytes) {
  const uint64_t start = position_;
  position_ += bytes.size();
  const FileStatus status = write_at(start, bytes);
  if (status != FileStatus::kOk) {
    position_ = start;
  } else {
    begin_flush(static_cast<int>(handle_), start, position_);
  }
  return status;
}

FileStatus ReplacingFile::write_at(uint64_t offset, std::span<const std::byte> bytes) {
  if (handle_ == kNoHandle) return FileStatus::kWriteError;
  const bool is_inside = offset <= position_ && bytes.size() <= position_ - offset;
  const FileStatus status =
      is_inside ? write_all(static_cast<int>(handle_), offset, bytes) : FileStatus::kWriteError;
  if (status != FileStatus::kOk) discard();
  return status;
}

FileStatus ReplacingFile::commit(const std::string& backup_path) {
  if (handle_ == kNoHandle) return FileStatus::kWriteError;
  const FileStatus status = replace(static_cast<int>(handle_), temporary_, target_, backup_path);
  if (status != FileStatus::kOk) {
    discard();
    return status;
  }
  // Closed only now: the lock guards the temporary until it has its final name.
  ::close(static_cast<int>(std::exchange(handle_, kNoHandle)));
  return status;
}

void ReplacingFile::discard() {
  position_ = 0;
  if (handle_ == kNoHandle) return;
  ::unlink(temporary_.c_str());
  ::close(static_cast<int>(std::exchange(handle_, kNoHandle)));
}

}  // namespace rowvane::platform

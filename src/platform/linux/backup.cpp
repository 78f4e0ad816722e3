#include "platform/linux/backup.h"

#include <cerrno>
#include <cstdio>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/file_status.h"
#include "platform/linux/temporary_files.h"
#include "platform/paths.h"

namespace rowvane::platform {
namespace {

constexpr size_t kCopyBlock = size_t{1} << 20;

FileStatus copy_bytes(const InputFile& source, int handle) {
  std::vector<std::byte> block(kCopyBlock);
  uint64_t offset = 0;
  for (;;) {
    size_t read = 0;
    if (const FileStatus status = source.read_at(offset, block, read); status != FileStatus::kOk)
      return status;
    if (read == 0) break;
    for (size_t written = 0; written < read;) {
      const ssize_t count = ::write(handle, block.data() + written, read - written);
      if (count >= 0) {
        written += static_cast<size_t>(count);
      } else if (errno != EINTR) {
        return file_status_of(errno, FileStatus::kWriteError);
      }
    }
    offset += read;
  }
  return ::fsync(handle) == 0 ? FileStatus::kOk : file_status_of(errno, FileStatus::kWriteError);
}

// A copy of TARGET beside BACKUP_PATH; COPY gets its name.
FileStatus copy_beside(const std::string& target, const std::string& backup_path, std::string& copy) {
  InputFile source;
  if (const FileStatus status = source.open(target); status != FileStatus::kOk) return status;
  struct stat info {};
  if (const FileStatus status = look_up(target, info); status != FileStatus::kOk) return status;
  int handle = -1;
  const FileStatus created = create_temporary(backup_path, info.st_mode & 0777, copy, handle);
  if (created != FileStatus::kOk) return created;
  const FileStatus copied = copy_bytes(source, handle);
  ::close(handle);
  if (copied != FileStatus::kOk) ::unlink(copy.c_str());
  return copied;
}

}  // namespace

FileStatus keep_backup(const std::string& target, const std::string& backup_path) {
  if (!is_usable_path(backup_path)) return FileStatus::kNotFound;
  std::string second_name = own_temporary_name(backup_path);
  // Another disk and some file systems refuse a second name for a file; only a copy is left then.
  if (::link(target.c_str(), second_name.c_str()) != 0) {
    const FileStatus status = copy_beside(target, backup_path, second_name);
    if (status != FileStatus::kOk) return status;
  }
  const bool renamed = ::rename(second_name.c_str(), backup_path.c_str()) == 0;
  const int error = errno;
  // Renaming between two names of one file does nothing and leaves both.
  ::unlink(second_name.c_str());
  return renamed ? FileStatus::kOk : file_status_of(error, FileStatus::kWriteError);
}

void flush_folder_of(const std::string& path) {
  const int folder = ::open(parent_folder(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return;
  // Not every file system can; the rename is done either way.
  static_cast<void>(::fsync(folder));
  ::close(folder);
}

}  // namespace rowvane::platform

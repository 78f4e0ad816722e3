#include <algorithm>
#include <utility>

#include "platform/file.h"
#include "platform/paths.h"
#include "platform/windows/backup.h"
#include "platform/windows/file_status.h"
#include "platform/windows/handle.h"
#include "platform/windows/temporary_files.h"
#include "platform/windows/wide.h"

namespace rowvane::platform {
namespace {

// The path of the file behind any chain of links; PATH itself when it is no link.
FileStatus resolve_links(const std::wstring& path, std::wstring& resolved) {
  resolved = path;
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    return FileStatus::kOk;
  }
  const Handle file(
      ::CreateFileW(path.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file.is_open()) return file_status_of(::GetLastError(), FileStatus::kWriteError);
  const DWORD size = ::GetFinalPathNameByHandleW(file.get(), nullptr, 0, VOLUME_NAME_DOS);
  resolved.resize(size);
  const DWORD length = ::GetFinalPathNameByHandleW(file.get(), resolved.data(), size, VOLUME_NAME_DOS);
  if (length == 0 || length >= size) return FileStatus::kWriteError;
  resolved.resize(length);
  return FileStatus::kOk;
}

// Whether the file TARGET, which need not exist, may be replaced.
FileStatus target_status(const std::wstring& target) {
  const auto status_of_failure = [](DWORD error) {
    return error == ERROR_FILE_NOT_FOUND ? FileStatus::kOk : file_status_of(error, FileStatus::kWriteError);
  };
  const DWORD attributes = ::GetFileAttributesW(target.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return status_of_failure(::GetLastError());
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return FileStatus::kIsFolder;
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) return FileStatus::kAccessDenied;
  const Handle file(
      ::CreateFileW(target.c_str(), GENERIC_WRITE | DELETE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file.is_open()) return status_of_failure(::GetLastError());
  return ::GetFileType(file.get()) == FILE_TYPE_DISK ? FileStatus::kOk : FileStatus::kWriteError;
}

FileStatus write_all(HANDLE file, uint64_t offset, std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    OVERLAPPED position{};
    position.Offset = static_cast<DWORD>(offset);
    position.OffsetHigh = static_cast<DWORD>(offset >> 32);
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kMostBytesAtOnce));
    DWORD count = 0;
    if (::WriteFile(file, bytes.data(), wanted, &count, &position) == 0) {
      return file_status_of(::GetLastError(), FileStatus::kWriteError);
    }
    bytes = bytes.subspan(count);
    offset += count;
  }
  return FileStatus::kOk;
}

void remove_if_there(const std::string& path) {
  std::wstring wide;
  if (wide_path_of(path, wide) == FileStatus::kOk) ::DeleteFileW(wide.c_str());
}

// Puts TEMPORARY, open as FILE, in the place of TARGET. FILE is closed whatever happens.
FileStatus replace(Handle file, const std::string& temporary, const std::string& target,
                   const std::string& backup_path) {
  std::wstring from;
  std::wstring to;
  FileStatus status = wide_path_of(temporary, from);
  if (status == FileStatus::kOk) status = wide_path_of(target, to);
  if (status == FileStatus::kOk) status = target_status(to);
  if (status != FileStatus::kOk) return status;
  const bool has_former = ::GetFileAttributesW(to.c_str()) != INVALID_FILE_ATTRIBUTES;
  if (has_former) take_over_permissions(to, from);
  if (::FlushFileBuffers(file.get()) == 0) return file_status_of(::GetLastError(), FileStatus::kWriteError);
  if (has_former && !backup_path.empty()) {
    if (status = keep_backup(to, backup_path); status != FileStatus::kOk) return status;
  }
  return rename_over(std::move(file), from, to);
}

}  // namespace

ReplacingFile::ReplacingFile() = default;

ReplacingFile::~ReplacingFile() {
  discard();
}

FileStatus ReplacingFile::create(const std::string& target) {
  discard();
  std::wstring path;
  FileStatus status = wide_path_of(target, path);
  if (status == FileStatus::kOk && file_name(target).empty()) status = FileStatus::kIsFolder;
  std::wstring resolved;
  if (status == FileStatus::kOk) status = resolve_links(path, resolved);
  if (status == FileStatus::kOk) status = target_status(resolved);
  if (status != FileStatus::kOk) return status;
  target_ = to_utf8(resolved);
  std::wstring name;
  Handle file;
  status = create_temporary(target_, name, file);
  temporary_ = to_utf8(name);
  if (status == FileStatus::kOk) handle_ = reinterpret_cast<intptr_t>(file.release());
  return status;
}

FileStatus ReplacingFile::write(std::span<const std::byte> bytes) {
  const uint64_t start = position_;
  position_ += bytes.size();
  const FileStatus status = write_at(start, bytes);
  if (status != FileStatus::kOk) position_ = start;
  return status;
}

FileStatus ReplacingFile::write_at(uint64_t offset, std::span<const std::byte> bytes) {
  if (handle_ == kNoHandle) return FileStatus::kWriteError;
  const bool is_inside = offset <= position_ && bytes.size() <= position_ - offset;
  const FileStatus status =
      is_inside ? write_all(system_handle(handle_), offset, bytes) : FileStatus::kWriteError;
  if (status != FileStatus::kOk) discard();
  return status;
}

FileStatus ReplacingFile::commit(const std::string& backup_path) {
  if (handle_ == kNoHandle) return FileStatus::kWriteError;
  Handle file(system_handle(std::exchange(handle_, kNoHandle)));
  const FileStatus status = replace(std::move(file), temporary_, target_, backup_path);
  if (status != FileStatus::kOk) {
    remove_if_there(temporary_);
    position_ = 0;
  }
  return status;
}

void ReplacingFile::discard() {
  position_ = 0;
  if (handle_ == kNoHandle) return;
  ::CloseHandle(system_handle(std::exchange(handle_, kNoHandle)));
  remove_if_there(temporary_);
}

}  // namespace rowvane::platform

#include "platform/windows/temporary_files.h"

#include <cstddef>
#include <cstring>
#include <optional>
#include <vector>

#include "platform/paths.h"
#include "platform/temporary_names.h"
#include "platform/windows/file_status.h"
#include "platform/windows/wide.h"

namespace rowvane::platform {
namespace {

constexpr int kMostTries = 1000;

// FILE_RENAME_INFO with the flags of FileRenameInfoEx, which older headers lack.
constexpr auto kFileRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
constexpr DWORD kReplaceIfExists = 0x1;
constexpr DWORD kPosixSemantics = 0x2;

bool is_running(uint32_t process) {
  const Handle handle(::OpenProcess(SYNCHRONIZE, FALSE, process));
  if (!handle.is_open()) return ::GetLastError() != ERROR_INVALID_PARAMETER;
  return ::WaitForSingleObject(handle.get(), 0) == WAIT_TIMEOUT;
}

// Replaces TARGET even while it is open, in one step. NTFS can; FAT and some network drives can't.
bool rename_at_once(HANDLE file, const std::wstring& target) {
  const size_t name_bytes = target.size() * sizeof(wchar_t);
  std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + name_bytes);
  auto* const info = reinterpret_cast<FILE_RENAME_INFO*>(buffer.data());
  const DWORD flags = kReplaceIfExists | kPosixSemantics;
  std::memcpy(info, &flags, sizeof flags);
  info->FileNameLength = static_cast<DWORD>(name_bytes);
  std::memcpy(info->FileName, target.data(), name_bytes);
  return ::SetFileInformationByHandle(file, kFileRenameInfoEx, info, static_cast<DWORD>(buffer.size())) != 0;
}

bool exists(const std::wstring& path) {
  return ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// Gives the former file, which was moved to ASIDE, its name TARGET back, or removes it when another has the
// name.
void settle(const std::wstring& aside, const std::wstring& target) {
  if (!exists(target)) ::MoveFileExW(aside.c_str(), target.c_str(), 0);
  if (exists(target)) ::DeleteFileW(aside.c_str());
}

// For targets that are open and file systems that can't replace those: the former file moves aside first.
bool swap_in(const std::wstring& name, const std::wstring& target) {
  std::wstring aside;
  if (wide_path_of(own_temporary_name(to_utf8(target)), aside) != FileStatus::kOk) return false;
  const BOOL replaced =
      ::ReplaceFileW(target.c_str(), name.c_str(), aside.c_str(),
                     REPLACEFILE_IGNORE_MERGE_ERRORS | REPLACEFILE_IGNORE_ACL_ERRORS, nullptr, nullptr);
  if (exists(aside)) settle(aside, target);
  return replaced != 0;
}

}  // namespace

std::string own_temporary_name(const std::string& target) {
  return temporary_name(target, ::GetCurrentProcessId());
}

FileStatus create_temporary(const std::string& target, std::wstring& name, Handle& file) {
  for (int tries = 0; tries < kMostTries; ++tries) {
    const FileStatus status = wide_path_of(own_temporary_name(target), name);
    if (status != FileStatus::kOk) return status;
    file = Handle(::CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ, nullptr,
                                CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file.is_open()) return FileStatus::kOk;
    if (::GetLastError() != ERROR_FILE_EXISTS) break;
  }
  return file_status_of(::GetLastError(), FileStatus::kWriteError);
}

FileStatus rename_over(Handle file, const std::wstring& name, const std::wstring& target) {
  if (rename_at_once(file.get(), target)) return FileStatus::kOk;
  file.close();
  // Virus scanners and other writers have files open for a moment.
  constexpr int kTries = 20;
  constexpr DWORD kPause = 25;  // milliseconds
  DWORD error = ERROR_SUCCESS;
  for (int i = 0; i < kTries; ++i) {
    if (i > 0) ::Sleep(kPause);
    if (::MoveFileExW(name.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) !=
        0) {
      return FileStatus::kOk;
    }
    error = ::GetLastError();
    if (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION) break;
    if (swap_in(name, target)) return FileStatus::kOk;
  }
  return file_status_of(error, FileStatus::kWriteError);
}

void remove_stale_replacements(const std::string& target) {
  const std::string folder = parent_folder(target);
  std::wstring pattern;
  if (target.empty() || wide_path_of(join_path(folder, "*"), pattern) != FileStatus::kOk) return;
  WIN32_FIND_DATAW entry;
  const HANDLE search = ::FindFirstFileW(pattern.c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::string name = to_utf8(entry.cFileName);
    const std::optional<uint32_t> owner = owner_of_temporary(name, target);
    const bool is_file =
        (entry.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) == 0;
    if (!owner || !is_file || is_running(*owner)) continue;
    std::wstring path;
    if (wide_path_of(join_path(folder, name), path) == FileStatus::kOk) ::DeleteFileW(path.c_str());
  } while (::FindNextFileW(search, &entry) != 0);
  ::FindClose(search);
}

}  // namespace rowvane::platform

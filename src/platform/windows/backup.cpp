#include "platform/windows/backup.h"

#include <aclapi.h>

#include "platform/windows/file_status.h"
#include "platform/windows/temporary_files.h"
#include "platform/windows/wide.h"

namespace rowvane::platform {
namespace {

// A second name for TARGET, or a copy of it where the file system knows no second names.
bool duplicate(const std::wstring& target, const std::wstring& name) {
  return ::CreateHardLinkW(name.c_str(), target.c_str(), nullptr) != 0 ||
         ::CopyFileW(target.c_str(), name.c_str(), TRUE) != 0;
}

}  // namespace

FileStatus keep_backup(const std::wstring& target, const std::string& backup_path) {
  std::wstring backup;
  std::wstring second_name;
  FileStatus status = wide_path_of(backup_path, backup);
  if (status == FileStatus::kOk) status = wide_path_of(own_temporary_name(backup_path), second_name);
  if (status != FileStatus::kOk) return status;
  const bool kept = duplicate(target, second_name) &&
                    ::MoveFileExW(second_name.c_str(), backup.c_str(),
                                  MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
  if (kept) return FileStatus::kOk;
  const DWORD error = ::GetLastError();
  ::DeleteFileW(second_name.c_str());
  return file_status_of(error, FileStatus::kWriteError);
}

void take_over_permissions(const std::wstring& from, const std::wstring& to) {
  constexpr DWORD kTakenOver = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                               FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  const DWORD attributes = ::GetFileAttributesW(from.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kTakenOver) != 0) {
    ::SetFileAttributesW(to.c_str(), attributes & kTakenOver);
  }
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  std::wstring name = from;
  if (::GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list,
                              nullptr, &descriptor) != ERROR_SUCCESS) {
    return;
  }
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  if (list != nullptr && ::GetSecurityDescriptorControl(descriptor, &control, &revision) != 0) {
    const bool is_protected = (control & SE_DACL_PROTECTED) != 0;
    name = to;
    ::SetNamedSecurityInfoW(
        name.data(), SE_FILE_OBJECT,
        DACL_SECURITY_INFORMATION |
            (is_protected ? PROTECTED_DACL_SECURITY_INFORMATION : UNPROTECTED_DACL_SECURITY_INFORMATION),
        nullptr, nullptr, list, nullptr);
  }
  ::LocalFree(descriptor);
}

}  // namespace rowvane::platform

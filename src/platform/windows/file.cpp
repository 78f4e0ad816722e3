#include "platform/file.h"

#include "platform/windows/file_status.h"
#include "platform/windows/handle.h"

namespace rowvane::platform {
namespace {

// False when PATH names nothing. Folders have an identity too.
bool identity_of(const std::string& path, BY_HANDLE_FILE_INFORMATION& identity) {
  std::wstring wide;
  if (wide_path_of(path, wide) != FileStatus::kOk) return false;
  const Handle file(
      ::CreateFileW(wide.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  return file.is_open() && ::GetFileInformationByHandle(file.get(), &identity) != 0;
}

}  // namespace

bool file_exists(const std::string& path) {
  std::wstring wide;
  if (wide_path_of(path, wide) != FileStatus::kOk) return false;
  const DWORD attributes = ::GetFileAttributesW(wide.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool is_same_file(const std::string& a, const std::string& b) {
  BY_HANDLE_FILE_INFORMATION first;
  BY_HANDLE_FILE_INFORMATION second;
  return identity_of(a, first) && identity_of(b, second) &&
         first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
         first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

}  // namespace rowvane::platform

#include "platform/wastebasket.h"

#include <array>

#include "platform/windows/file_status.h"
#include "platform/windows/shell_headers.h"

namespace rowvane::platform {
namespace {

// The shell deletes for good what lies on a drive without a Recycle Bin.
bool has_recycle_bin(const std::wstring& path) {
  std::array<wchar_t, MAX_PATH> root{};
  if (::GetVolumePathNameW(path.c_str(), root.data(), static_cast<DWORD>(root.size())) == 0) return false;
  return ::GetDriveTypeW(root.data()) == DRIVE_FIXED;
}

}  // namespace

FileStatus move_to_wastebasket(const std::string& path) {
  std::wstring wide;
  if (const FileStatus status = wide_path_of(path, wide); status != FileStatus::kOk) return status;
  if (::GetFileAttributesW(wide.c_str()) == INVALID_FILE_ATTRIBUTES) {
    return file_status_of(::GetLastError(), FileStatus::kReadError);
  }
  // The shell takes no longer paths.
  if (wide.size() >= MAX_PATH) return FileStatus::kPathTooLong;
  if (!has_recycle_bin(wide)) return FileStatus::kWriteError;
  wide += L'\0';  // a list of paths, which an empty one ends
  SHFILEOPSTRUCTW operation{};
  operation.wFunc = FO_DELETE;
  operation.pFrom = wide.c_str();
  operation.fFlags = FOF_ALLOWUNDO | FOF_NOCONFIRMATION | FOF_SILENT | FOF_NOERRORUI;
  const int error = ::SHFileOperationW(&operation);
  if (error != 0) return file_status_of(static_cast<uint32_t>(error), FileStatus::kWriteError);
  return operation.fAnyOperationsAborted != FALSE ? FileStatus::kWriteError : FileStatus::kOk;
}

}  // namespace rowvane::platform

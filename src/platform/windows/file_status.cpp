#include "platform/windows/file_status.h"

#include <algorithm>

#include <windows.h>

#include "platform/windows/wide.h"

namespace rowvane::platform {
namespace {

constexpr size_t kLongestName = 255;
constexpr DWORD kDiskQuotaExceeded = 1295;  // missing in some headers
// From here on a path needs the prefix; folders have 12 characters less than MAX_PATH.
constexpr size_t kLongPath = MAX_PATH - 12;
constexpr std::wstring_view kDevice = L"\\\\";
constexpr std::wstring_view kLongPrefix = L"\\\\?\\";
constexpr std::wstring_view kLongSharePrefix = L"\\\\?\\UNC\\";

bool has_too_long_name(const std::wstring& path) {
  size_t length = 0;
  return std::ranges::any_of(path, [&](wchar_t c) {
    length = c == L'\\' || c == L'/' ? 0 : length + 1;
    return length > kLongestName;
  });
}

std::wstring absolute_path(const std::wstring& path) {
  std::wstring absolute(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        ::GetFullPathNameW(path.c_str(), static_cast<DWORD>(absolute.size()), absolute.data(), nullptr);
    const bool fits = length < absolute.size();
    absolute.resize(length);
    if (fits) return absolute;
  }
}

}  // namespace

FileStatus file_status_of(uint32_t error, FileStatus otherwise) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_CANT_RESOLVE_FILENAME:
    case ERROR_DIRECTORY:
    case ERROR_NOT_READY:
      return FileStatus::kNotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
    case ERROR_PRIVILEGE_NOT_HELD:
      return FileStatus::kAccessDenied;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
      return FileStatus::kInUse;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case kDiskQuotaExceeded:
    case ERROR_FILE_TOO_LARGE:
      return FileStatus::kNoSpace;
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_BUFFER_OVERFLOW:
      return FileStatus::kPathTooLong;
    default:
      return otherwise;
  }
}

FileStatus wide_path_of(const std::string& path, std::wstring& wide) {
  if (path.empty() || path.find('\0') != std::string::npos) return FileStatus::kNotFound;
  wide = to_wide(path);
  if (has_too_long_name(wide)) return FileStatus::kPathTooLong;
  wide = absolute_path(wide);
  if (wide.empty()) return FileStatus::kNotFound;
  if (wide.size() < kLongPath || wide.starts_with(kLongPrefix)) return FileStatus::kOk;
  const bool is_share = wide.starts_with(kDevice);
  wide = is_share ? std::wstring(kLongSharePrefix).append(wide, kDevice.size()) : kLongPrefix.data() + wide;
  return FileStatus::kOk;
}

bool is_folder(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace rowvane::platform

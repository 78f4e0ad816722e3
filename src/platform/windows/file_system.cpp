#include "platform/file_system.h"

#include <algorithm>

#include <windows.h>

#include "platform/paths.h"
#include "platform/windows/file_status.h"
#include "platform/windows/wide.h"

namespace rowvane::platform {
namespace {

// Closes the search when it ends.
class FileSearch {
 public:
  FileSearch(const std::wstring& pattern, WIN32_FIND_DATAW& found)
      : handle_(::FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch, nullptr,
                                   0)) {}
  ~FileSearch() {
    if (is_open()) ::FindClose(handle_);
  }
  FileSearch(const FileSearch&) = delete;
  FileSearch& operator=(const FileSearch&) = delete;

  bool is_open() const { return handle_ != INVALID_HANDLE_VALUE; }
  bool next(WIN32_FIND_DATAW& found) { return ::FindNextFileW(handle_, &found) != 0; }

 private:
  HANDLE handle_;
};

}  // namespace

bool folder_exists(const std::string& path) {
  std::wstring wide;
  return wide_path_of(path, wide) == FileStatus::kOk && is_folder(wide);
}

FileStatus create_folders(const std::string& path) {
  std::wstring wide;
  if (const FileStatus status = wide_path_of(path, wide); status != FileStatus::kOk) return status;
  if (is_folder(wide)) return FileStatus::kOk;
  const std::string above = parent_folder(path);
  if (above != path && above != ".") {
    if (const FileStatus status = create_folders(above); status != FileStatus::kOk) return status;
  }
  if (::CreateDirectoryW(wide.c_str(), nullptr) != 0) return FileStatus::kOk;
  const DWORD error = ::GetLastError();
  // Another program may have made it meanwhile.
  return is_folder(wide) ? FileStatus::kOk : file_status_of(error, FileStatus::kWriteError);
}

FileStatus remove_file(const std::string& path) {
  std::wstring wide;
  if (const FileStatus status = wide_path_of(path, wide); status != FileStatus::kOk) return status;
  if (::DeleteFileW(wide.c_str()) != 0) return FileStatus::kOk;
  return file_status_of(::GetLastError(), FileStatus::kWriteError);
}

FileStatus remove_folder(const std::string& path) {
  std::wstring wide;
  if (const FileStatus status = wide_path_of(path, wide); status != FileStatus::kOk) return status;
  if (::RemoveDirectoryW(wide.c_str()) != 0) return FileStatus::kOk;
  const DWORD error = ::GetLastError();
  return error == ERROR_DIR_NOT_EMPTY ? FileStatus::kInUse : file_status_of(error, FileStatus::kWriteError);
}

FileStatus list_files(const std::string& folder, std::vector<std::string>& names) {
  names.clear();
  std::wstring wide;
  if (const FileStatus status = wide_path_of(join_path(folder, "x"), wide); status != FileStatus::kOk) {
    return status;
  }
  wide.back() = L'*';
  WIN32_FIND_DATAW found{};
  FileSearch search(wide, found);
  if (!search.is_open()) return file_status_of(::GetLastError(), FileStatus::kReadError);
  do {
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) names.push_back(to_utf8(found.cFileName));
  } while (search.next(found));
  const DWORD error = ::GetLastError();
  std::ranges::sort(names);
  return error == ERROR_NO_MORE_FILES ? FileStatus::kOk : file_status_of(error, FileStatus::kReadError);
}

}  // namespace rowvane::platform

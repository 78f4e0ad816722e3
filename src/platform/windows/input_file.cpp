#include <algorithm>
#include <utility>

#include "platform/file.h"
#include "platform/windows/file_status.h"
#include "platform/windows/handle.h"

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
  std::wstring wide;
  if (const FileStatus status = wide_path_of(path, wide); status != FileStatus::kOk) return status;
  // Others may write to the file and replace it meanwhile, as this program does when it saves what it has
  // open.
  Handle file(::CreateFileW(wide.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.is_open()) {
    const DWORD error = ::GetLastError();
    return is_folder(wide) ? FileStatus::kIsFolder : file_status_of(error, FileStatus::kReadError);
  }
  LARGE_INTEGER size;
  if (::GetFileType(file.get()) != FILE_TYPE_DISK || ::GetFileSizeEx(file.get(), &size) == 0) {
    return FileStatus::kReadError;
  }
  handle_ = reinterpret_cast<intptr_t>(file.release());
  size_ = static_cast<uint64_t>(size.QuadPart);
  return FileStatus::kOk;
}

void InputFile::close() {
  if (handle_ != kNoHandle) ::CloseHandle(system_handle(handle_));
  handle_ = kNoHandle;
  size_ = 0;
}

FileStatus InputFile::read_at(uint64_t offset, std::span<std::byte> buffer, size_t& read) const {
  read = 0;
  while (read < buffer.size()) {
    const uint64_t place = offset + read;
    OVERLAPPED position{};
    position.Offset = static_cast<DWORD>(place);
    position.OffsetHigh = static_cast<DWORD>(place >> 32);
    const auto wanted = static_cast<DWORD>(std::min(buffer.size() - read, kMostBytesAtOnce));
    DWORD count = 0;
    if (::ReadFile(system_handle(handle_), buffer.data() + read, wanted, &count, &position) == 0) {
      const DWORD error = ::GetLastError();
      if (error == ERROR_HANDLE_EOF) break;
      return file_status_of(error, FileStatus::kReadError);
    }
    if (count == 0) break;
    read += count;
  }
  return FileStatus::kOk;
}

}  // namespace rowvane::platform

#include <algorithm>
#include <span>

#include "platform/file.h"

namespace rowvane::platform {
namespace {

constexpr uint64_t kFirstRead = uint64_t{1} << 16;

}  // namespace

FileStatus read_whole_file(const std::string& path, std::string& content, uint64_t limit) {
  content.clear();
  InputFile file;
  if (const FileStatus status = file.open(path); status != FileStatus::kOk) return status;
  if (file.size() > limit) return FileStatus::kReadError;
  // One byte more than the file had shows whether it has grown. Files that the kernel makes up claim no size.
  size_t wanted = static_cast<size_t>(std::max(file.size() + 1, kFirstRead));
  size_t length = 0;
  for (;;) {
    content.resize(wanted);
    size_t read = 0;
    const auto rest = std::as_writable_bytes(std::span(content).subspan(length));
    const FileStatus status = file.read_at(length, rest, read);
    length += read;
    const bool is_too_large = length > limit;
    if (status != FileStatus::kOk || is_too_large) {
      content.clear();
      return status != FileStatus::kOk ? status : FileStatus::kReadError;
    }
    if (length < wanted) break;
    wanted *= 2;
  }
  content.resize(length);
  return FileStatus::kOk;
}

FileStatus write_whole_file(const std::string& path, std::string_view content) {
  ReplacingFile file;
  if (const FileStatus status = file.create(path); status != FileStatus::kOk) return status;
  if (const FileStatus status = file.write(std::as_bytes(std::span(content))); status != FileStatus::kOk) {
    return status;
  }
  return file.commit();
}

}  // namespace rowvane::platform

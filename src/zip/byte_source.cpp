#include "zip/byte_source.h"

#include <algorithm>

#include "core/messages/file_error.h"

namespace rowvane {

ErrorCode FileByteSource::open(const std::string& path) {
  return file_error(file_.open(path), ErrorCode::kFileOpen);
}

ErrorCode FileByteSource::read_at(uint64_t offset, std::span<char> buffer) const {
  size_t read = 0;
  const platform::FileStatus status = file_.read_at(offset, std::as_writable_bytes(buffer), read);
  if (status != platform::FileStatus::kOk) return file_error(status, ErrorCode::kFileRead);
  return read == buffer.size() ? ErrorCode::kOk : ErrorCode::kZipUnexpectedEnd;
}

ErrorCode MemoryByteSource::read_at(uint64_t offset, std::span<char> buffer) const {
  if (offset > bytes_.size() || buffer.size() > bytes_.size() - offset) return ErrorCode::kZipUnexpectedEnd;
  std::copy_n(bytes_.begin() + static_cast<ptrdiff_t>(offset), buffer.size(), buffer.begin());
  return ErrorCode::kOk;
}

}  // namespace rowvane

#include "exchange/text/text_source.h"

#include <algorithm>
#include <cstring>

namespace rowvane {

FileTextSource::FileTextSource(const platform::InputFile& file, uint64_t limit)
    : file_(file), size_(std::min(file.size(), limit)) {}

ErrorCode FileTextSource::rewind() {
  position_ = 0;
  return ErrorCode::kOk;
}

size_t FileTextSource::read(std::span<char> buffer) {
  const size_t wanted = static_cast<size_t>(std::min<uint64_t>(buffer.size(), size_ - position_));
  size_t count = 0;
  if (wanted > 0 && file_.read_at(position_, std::as_writable_bytes(buffer.first(wanted)), count) !=
                        platform::FileStatus::kOk) {
    error = ErrorCode::kFileRead;
    return 0;
  }
  position_ += count;
  return count;
}

ErrorCode MemoryTextSource::rewind() {
  position_ = 0;
  return ErrorCode::kOk;
}

size_t MemoryTextSource::read(std::span<char> buffer) {
  constexpr size_t kSliceBytes = 16'384;  // of a memory block at a time, so that a cancel is noticed early
  const size_t count = std::min({buffer.size(), text_.size() - position_, kSliceBytes});
  std::memcpy(buffer.data(), text_.data() + position_, count);
  position_ += count;
  return count;
}

}  // namespace rowvane

#include "zip/zip_member_stream.h"

#include <algorithm>

#include "zip/zip_reader.h"

namespace rowvane {
namespace {

constexpr size_t kInputBufferSize = size_t{128} << 10;

}  // namespace

ErrorCode ZipMemberStream::open(const ByteSource& source, const ZipMember& member, uint64_t data_offset) {
  source_ = &source;
  stored_ = member.is_stored();
  ended_ = false;
  error_ = ErrorCode::kOk;
  offset_ = data_offset;
  compressed_left_ = member.compressed_size;
  left_ = member.size;
  crc_ = 0;
  expected_crc_ = member.crc;
  input_ = {};
  if (stored_) return ErrorCode::kOk;
  buffer_.resize(static_cast<size_t>(std::min<uint64_t>(kInputBufferSize, member.compressed_size)));
  return inflater_.start();
}

ErrorCode ZipMemberStream::read(std::span<char> buffer, size_t& read) {
  read = 0;
  if (ended_) return error_;
  while (error_ == ErrorCode::kOk && left_ > 0 && read < buffer.size()) {
    size_t some = 0;
    error_ = read_some(buffer.subspan(read), some);
    read += some;
  }
  if (error_ == ErrorCode::kOk && left_ == 0) {
    error_ = verify_end();
    ended_ = true;
  }
  if (error_ != ErrorCode::kOk) ended_ = true;
  return error_;
}

ErrorCode ZipMemberStream::read_some(std::span<char> buffer, size_t& read) {
  buffer = buffer.first(static_cast<size_t>(std::min<uint64_t>(buffer.size(), left_)));
  const ErrorCode error = stored_ ? read_stored(buffer, read) : inflate(buffer, read);
  crc_ = crc32_of(std::string_view(buffer.data(), read), crc_);
  left_ -= read;
  return error;
}

ErrorCode ZipMemberStream::read_stored(std::span<char> buffer, size_t& read) {
  const ErrorCode error = source_->read_at(offset_, buffer);
  if (error != ErrorCode::kOk) return error;
  offset_ += buffer.size();
  compressed_left_ -= buffer.size();
  read = buffer.size();
  return ErrorCode::kOk;
}

ErrorCode ZipMemberStream::inflate(std::span<char> buffer, size_t& read) {
  if (const ErrorCode error = refill(); error != ErrorCode::kOk) return error;
  // The stream ends, or its bytes do, before the size is reached.
  if (inflater_.finished() || input_.empty()) return ErrorCode::kZipCorrupted;
  std::span<char> room = buffer;
  const ErrorCode error = inflater_.run(input_, room);
  read = buffer.size() - room.size();
  return error;
}

ErrorCode ZipMemberStream::refill() {
  if (!input_.empty() || compressed_left_ == 0) return ErrorCode::kOk;
  const size_t count = static_cast<size_t>(std::min<uint64_t>(buffer_.size(), compressed_left_));
  const ErrorCode error = source_->read_at(offset_, std::span(buffer_).first(count));
  if (error != ErrorCode::kOk) return error;
  offset_ += count;
  compressed_left_ -= count;
  input_ = std::string_view(buffer_).substr(0, count);
  return ErrorCode::kOk;
}

// All bytes are there: the deflate stream must end without yielding more, and with its last byte.
ErrorCode ZipMemberStream::verify_end() {
  while (!stored_ && !inflater_.finished()) {
    if (const ErrorCode error = refill(); error != ErrorCode::kOk) return error;
    if (input_.empty()) return ErrorCode::kZipCorrupted;
    char surplus = 0;
    std::span<char> room(&surplus, 1);
    if (const ErrorCode error = inflater_.run(input_, room); error != ErrorCode::kOk) return error;
    if (room.empty()) return ErrorCode::kZipCorrupted;
  }
  if (!input_.empty() || compressed_left_ != 0) return ErrorCode::kZipCorrupted;
  return crc_ == expected_crc_ ? ErrorCode::kOk : ErrorCode::kZipCorrupted;
}

}  // namespace rowvane

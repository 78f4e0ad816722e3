#include "exchange/text/text_file_sink.h"

#include <algorithm>
#include <vector>

#include "core/messages/file_error.h"

namespace rowvane {

using platform::FileStatus;

TextFileSink::~TextFileSink() {
  end_thread();
}

ErrorCode TextFileSink::open(const std::string& target) {
  const FileStatus status = file_.create(target);
  if (status != FileStatus::kOk) return file_error(status, ErrorCode::kFileCreate);
  if (!pipe_.create(kBufferBytes)) return ErrorCode::kFileBuffer;
  buffer_.reserve(kBufferBytes);
  thread_ = std::jthread([this] { write_file(); });
  return ErrorCode::kOk;
}

bool TextFileSink::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const size_t count = std::min(bytes.size(), kBufferBytes - buffer_.size());
    buffer_.append(bytes.substr(0, count));
    bytes.remove_prefix(count);
    if (buffer_.size() == kBufferBytes && !flush()) return false;
  }
  return true;
}

ErrorCode TextFileSink::close() {
  flush();
  end_thread();
  return file_error(status_, ErrorCode::kFileWrite);
}

ErrorCode TextFileSink::commit() {
  return file_error(file_.commit(), ErrorCode::kFileWrite);
}

void TextFileSink::write_file() {
  std::vector<std::byte> bytes(kBufferBytes);
  for (;;) {
    const size_t count = pipe_.read(bytes);
    if (count == 0) break;
    status_ = file_.write(std::span(bytes).first(count));
    if (status_ != FileStatus::kOk) break;
  }
  // Makes a write that waits for room come back.
  pipe_.close_read_end();
}

bool TextFileSink::flush() {
  const bool written = pipe_.write(std::as_bytes(std::span(buffer_))) == buffer_.size();
  buffer_.clear();
  return written;
}

void TextFileSink::end_thread() {
  pipe_.close_write_end();
  if (thread_.joinable()) thread_.join();
}

}  // namespace rowvane

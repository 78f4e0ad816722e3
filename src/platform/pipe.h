// An anonymous byte pipe between two threads of the program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace rowvane::platform {

// One end writes, the other reads; each end belongs to one thread at a time. Neither end raises signals: a
// write after the reader has closed its end is a short write.
class BytePipe {
 public:
  BytePipe() = default;
  ~BytePipe();
  BytePipe(const BytePipe&) = delete;
  BytePipe& operator=(const BytePipe&) = delete;

  // Makes the pipe with room for about CAPACITY bytes, less where the system allows less. False when the
  // system has no more handles.
  [[nodiscard]] bool create(size_t capacity);

  // Blocks until all bytes are taken. Answers the bytes written: fewer than given only when the reader is
  // gone.
  size_t write(std::span<const std::byte> bytes);
  // Blocks until at least one byte is there, for a BUFFER that is not empty. 0 means that the writer has
  // closed its end and all was read.
  size_t read(std::span<std::byte> buffer);

  void close_write_end();
  void close_read_end();

 private:
  intptr_t read_end_ = -1;
  intptr_t write_end_ = -1;
};

}  // namespace rowvane::platform

// A file on its way to the disk, written by a thread of its own.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <thread>

#include "core/messages/error_code.h"
#include "platform/file.h"
#include "platform/pipe.h"

namespace rowvane {

// Gathers bytes in a buffer of 65,535 and hands full buffers through a pipe to the thread that writes them
// beside the target. The target is replaced in `commit`; a sink destroyed before leaves it as it was.
class TextFileSink {
 public:
  TextFileSink() = default;
  ~TextFileSink();
  TextFileSink(const TextFileSink&) = delete;
  TextFileSink& operator=(const TextFileSink&) = delete;

  // kFileCreate, or what hinders the file; kFileBuffer when there is no pipe to be had.
  ErrorCode open(const std::string& target);
  // False once writing has failed; `close` then tells why.
  bool write(std::string_view bytes);
  // Writes the rest and waits for the thread. kFileWrite when the disk is full or can't be written.
  ErrorCode close();
  // After a `close` without error.
  ErrorCode commit();

 private:
  static constexpr size_t kBufferBytes = 65'535;

  void write_file();  // the thread's work
  bool flush();
  void end_thread();

  platform::ReplacingFile file_;
  platform::BytePipe pipe_;
  std::string buffer_;
  platform::FileStatus status_ = platform::FileStatus::kOk;  // the thread's, until it has ended
  std::jthread thread_;
};

}  // namespace rowvane

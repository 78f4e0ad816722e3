// Bytes that can be read at any place: a file on disk or a block of memory.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "core/messages/error_code.h"
#include "platform/file.h"

namespace rowvane {

// Reading is const and may happen on several threads at once.
class ByteSource {
 public:
  virtual ~ByteSource() = default;

  virtual uint64_t size() const = 0;

  // Fills BUFFER from OFFSET on. kZipUnexpectedEnd when the source ends before the buffer is full, kFileRead
  // when the system cannot read.
  virtual ErrorCode read_at(uint64_t offset, std::span<char> buffer) const = 0;
};

class FileByteSource final : public ByteSource {
 public:
  // kFileOpen, kFileInUse or kPathTooLong when PATH cannot be opened.
  ErrorCode open(const std::string& path);

  uint64_t size() const override { return file_.size(); }
  ErrorCode read_at(uint64_t offset, std::span<char> buffer) const override;

 private:
  platform::InputFile file_;
};

class MemoryByteSource final : public ByteSource {
 public:
  explicit MemoryByteSource(std::string bytes) : bytes_(std::move(bytes)) {}

  uint64_t size() const override { return bytes_.size(); }
  ErrorCode read_at(uint64_t offset, std::span<char> buffer) const override;

 private:
  std::string bytes_;
};

}  // namespace rowvane

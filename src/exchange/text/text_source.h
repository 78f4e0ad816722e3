// Where the bytes of a text come from.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "core/messages/error_code.h"
#include "platform/file.h"

namespace rowvane {

class TextSource {
 public:
  virtual ~TextSource() = default;
  // Bytes in all; 0 when that is not known.
  virtual uint64_t size() const = 0;
  // Starts again at the first byte.
  virtual ErrorCode rewind() = 0;
  // Fills BUFFER and answers the number of bytes; 0 at the end. A failure ends the text and is kept in
  // `error`.
  virtual size_t read(std::span<char> buffer) = 0;

  ErrorCode error = ErrorCode::kOk;
};

class FileTextSource final : public TextSource {
 public:
  // FILE must be open and outlive the source. LIMIT: bytes to read at most.
  explicit FileTextSource(const platform::InputFile& file, uint64_t limit = UINT64_MAX);
  uint64_t size() const override { return size_; }
  ErrorCode rewind() override;
  size_t read(std::span<char> buffer) override;

 private:
  const platform::InputFile& file_;
  uint64_t size_;
  uint64_t position_ = 0;
};

class MemoryTextSource final : public TextSource {
 public:
  explicit MemoryTextSource(std::string_view text) : text_(text) {}
  uint64_t size() const override { return text_.size(); }
  ErrorCode rewind() override;
  size_t read(std::span<char> buffer) override;

 private:
  std::string_view text_;
  size_t position_ = 0;
};

}  // namespace rowvane

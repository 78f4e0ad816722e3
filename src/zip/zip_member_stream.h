// Reads one member of an archive from its start to its end.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "core/messages/error_code.h"
#include "zip/byte_source.h"
#include "zip/zlib_codec.h"

namespace rowvane {

struct ZipMember;

// Made by ZipReader::stream, which it must not outlive. Belongs to one thread at a time.
class ZipMemberStream {
 public:
  ZipMemberStream() = default;

  // Reads the next bytes; `read` is less than asked only at the end, where it may be 0. The call that reaches
  // the end checks size and CRC. Bytes handed out before may be wrong when it answers kZipCorrupted.
  ErrorCode read(std::span<char> buffer, size_t& read);

 private:
  friend class ZipReader;
  ErrorCode open(const ByteSource& source, const ZipMember& member, uint64_t data_offset);

  ErrorCode read_some(std::span<char> buffer, size_t& read);
  ErrorCode read_stored(std::span<char> buffer, size_t& read);
  ErrorCode inflate(std::span<char> buffer, size_t& read);
  ErrorCode refill();
  ErrorCode verify_end();

  const ByteSource* source_ = nullptr;
  bool stored_ = false;
  bool ended_ = true;
  ErrorCode error_ = ErrorCode::kOk;
  uint64_t offset_ = 0;           // of the next compressed bytes in the source
  uint64_t compressed_left_ = 0;  // not yet read from the source
  uint64_t left_ = 0;             // not yet handed out
  uint32_t crc_ = 0;
  uint32_t expected_crc_ = 0;
  Inflater inflater_;
  std::string buffer_;
  std::string_view input_;  // rest of the buffer
};

}  // namespace rowvane

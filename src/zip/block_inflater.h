// Inflating blocks that are whole in memory, with libdeflate: three times as fast as a stream of zlib's.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "core/messages/error_code.h"

struct libdeflate_decompressor;

namespace rowvane {

class BlockInflater {
 public:
  BlockInflater();
  ~BlockInflater();

  // Inflates PACKED, a block as Deflater makes it, into all of OUT. LAST: it is the last of its stream.
  // PACKED is changed. kZipCorrupted unless the block makes exactly that many bytes and ends where PACKED
  // does; kZipMemory.
  ErrorCode inflate(std::string& packed, bool last, std::span<char> out);

 private:
  struct Close {
    void operator()(libdeflate_decompressor* decompressor) const;
  };
  std::unique_ptr<libdeflate_decompressor, Close> decompressor_;
};

}  // namespace rowvane

// Deflating and inflating: raw deflate streams, without zlib's own header. zlib does it, but for the fast
// levels (fast_deflater.h) and for whole blocks (block_inflater.h).
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "core/messages/error_code.h"
#include "zip/fast_deflater.h"

struct z_stream_s;

namespace rowvane {

// Most bytes that one byte of a deflate stream can stand for.
inline constexpr uint64_t kMaxDeflateRatio = 1032;

inline constexpr int kMinDeflateLevel = 0;
inline constexpr int kMaxDeflateLevel = 9;

// Deflates blocks that do not refer to each other, so that each can be inflated alone.
class Deflater {
 public:
  // LEVEL from kMinDeflateLevel to kMaxDeflateLevel.
  explicit Deflater(int level);
  ~Deflater();
  Deflater(Deflater&&) noexcept;

  // OUT becomes the deflated RAW. It ends at a byte; several blocks one after the other, with the last one
  // marked as such, are one deflate stream.
  ErrorCode deflate_block(std::string_view raw, bool last, std::string& out);

 private:
  struct Close {
    void operator()(z_stream_s* stream) const;
  };
  ErrorCode prepare();

  int level_;
  std::unique_ptr<z_stream_s, Close> stream_;
  std::unique_ptr<FastDeflater> fast_;  // does the work at its levels
};

class Inflater {
 public:
  Inflater();
  ~Inflater();
  Inflater(Inflater&&) noexcept;
  Inflater& operator=(Inflater&&) noexcept;

  // Begins a new stream.
  ErrorCode start();
  // Inflates from the front of INPUT into the front of OUTPUT; both shrink by what was used. Stops when one
  // of them is used up or the stream ends.
  ErrorCode run(std::string_view& input, std::span<char>& output);
  // True once the end of the deflate stream was read.
  bool finished() const { return finished_; }

 private:
  struct Close {
    void operator()(z_stream_s* stream) const;
  };

  std::unique_ptr<z_stream_s, Close> stream_;
  bool finished_ = false;
};

// CRC-32 of what CRC covers followed by BYTES; 0 is the CRC of nothing. libdeflate's, four times as fast as
// zlib's.
uint32_t crc32_of(std::string_view bytes, uint32_t crc = 0);
// CRC-32 of what FIRST covers followed by the SECOND_SIZE bytes that SECOND covers.
uint32_t crc32_combined(uint32_t first, uint32_t second, uint64_t second_size);

}  // namespace rowvane

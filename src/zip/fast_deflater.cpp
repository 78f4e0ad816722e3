#include "zip/fast_deflater.h"

#include <algorithm>
#include <cstdint>

#include <isa-l.h>

namespace rowvane {
namespace {

constexpr size_t kMaxIsalPiece = size_t{1} << 30;  // ISA-L counts with 32 bits

size_t work_bytes(int level) {
  return level == 1 ? ISAL_DEF_LVL1_DEFAULT : ISAL_DEF_LVL2_DEFAULT;
}

uint32_t room_of(size_t bytes) {
  return static_cast<uint32_t>(std::min(bytes, kMaxIsalPiece));
}

}  // namespace

FastDeflater::FastDeflater(int level)
    : level_(std::clamp(level, 1, kMaxLevel)),
      stream_(std::make_unique<isal_zstream>()),
      work_(work_bytes(level_)) {}

FastDeflater::~FastDeflater() = default;

void FastDeflater::begin() {
  isal_deflate_init(stream_.get());
  stream_->level = static_cast<uint32_t>(level_);
  stream_->level_buf = work_.data();
  stream_->level_buf_size = static_cast<uint32_t>(work_.size());
  written_ = 0;
}

// Deflates PIECE; END: the block ends with it, LAST: the stream too.
bool FastDeflater::write_piece(std::string_view piece, bool end, bool last) {
  isal_zstream& stream = *stream_;
  // ISA-L does not write there.
  stream.next_in = const_cast<uint8_t*>(reinterpret_cast<const uint8_t*>(piece.data()));
  stream.avail_in = static_cast<uint32_t>(piece.size());
  stream.end_of_stream = end && last;
  stream.flush = end && !last ? FULL_FLUSH : NO_FLUSH;
  do {
    if (written_ == packed_.size()) packed_.resize(packed_.size() + packed_.size() / 2 + 1024);
    const uint32_t room = room_of(packed_.size() - written_);
    stream.next_out = packed_.data() + written_;
    stream.avail_out = room;
    if (isal_deflate(&stream) != COMP_OK) return false;
    written_ += room - stream.avail_out;
  } while (stream.avail_in > 0 || stream.avail_out == 0);
  return true;
}

ErrorCode FastDeflater::deflate_block(std::string_view raw, bool last, std::string& out) {
  begin();
  packed_.resize(std::max(packed_.size(), raw.size() / 2 + 1024));
  do {
    const std::string_view piece = raw.substr(0, kMaxIsalPiece);
    raw.remove_prefix(piece.size());
    if (!write_piece(piece, raw.empty(), last)) return ErrorCode::kZlibUnknown;
  } while (!raw.empty());
  out.assign(reinterpret_cast<const char*>(packed_.data()), written_);
  return ErrorCode::kOk;
}

}  // namespace rowvane

#include "zip/zlib_codec.h"

#include <algorithm>
#include <cstddef>

#include <libdeflate.h>
#include <zlib.h>

namespace rowvane {
namespace {

constexpr int kRawWindowBits = -15;
constexpr int kMemoryLevel = 8;
// zlib counts what it reads and writes in one call with 32 bits.
constexpr size_t kMaxZlibPiece = size_t{1} << 30;

ErrorCode zlib_error(int result) {
  switch (result) {
    case Z_OK:
    case Z_STREAM_END:
    case Z_BUF_ERROR:
      return ErrorCode::kOk;  // no progress was possible: not an error in itself
    case Z_STREAM_ERROR:
      return ErrorCode::kZipState;
    case Z_NEED_DICT:
    case Z_DATA_ERROR:
      return ErrorCode::kZipCorrupted;
    case Z_MEM_ERROR:
      return ErrorCode::kZipMemory;
    case Z_VERSION_ERROR:
      return ErrorCode::kZlibVersion;
    default:
      return ErrorCode::kZlibUnknown;
  }
}

uInt piece_of(size_t size) {
  return static_cast<uInt>(std::min(size, kMaxZlibPiece));
}

Bytef* input_bytes(std::string_view bytes) {
  return const_cast<Bytef*>(reinterpret_cast<const Bytef*>(bytes.data()));  // zlib does not write there
}

// Room that zlib needs for RAW_SIZE bytes and the marker of a block's end.
size_t deflated_bound(z_stream* stream, size_t raw_size) {
  constexpr size_t kBlockEnd = 16;
  return deflateBound(stream, static_cast<uLong>(raw_size)) + kBlockEnd;
}

}  // namespace

Deflater::Deflater(int level) : level_(std::clamp(level, kMinDeflateLevel, kMaxDeflateLevel)) {
  const bool fast = level_ > kMinDeflateLevel && level_ <= FastDeflater::kMaxLevel;
  if (fast) fast_ = std::make_unique<FastDeflater>(level_);
}
Deflater::~Deflater() = default;
Deflater::Deflater(Deflater&&) noexcept = default;

void Deflater::Close::operator()(z_stream_s* stream) const {
  deflateEnd(stream);
  delete stream;
}

ErrorCode Deflater::prepare() {
  if (stream_) return zlib_error(deflateReset(stream_.get()));
  auto stream = std::make_unique<z_stream>();
  const int result =
      deflateInit2(stream.get(), level_, Z_DEFLATED, kRawWindowBits, kMemoryLevel, Z_DEFAULT_STRATEGY);
  if (result == Z_OK) stream_.reset(stream.release());
  return zlib_error(result);
}

ErrorCode Deflater::deflate_block(std::string_view raw, bool last, std::string& out) {
  if (fast_ != nullptr) return fast_->deflate_block(raw, last, out);
  if (const ErrorCode error = prepare(); error != ErrorCode::kOk) return error;
  z_stream& stream = *stream_;
  if (const size_t bound = deflated_bound(&stream, raw.size()); out.size() < bound) out.resize(bound);

  size_t written = 0;
  int result = Z_OK;
  do {
    if (written == out.size()) out.resize(out.size() + out.size() / 2);
    const uInt input = piece_of(raw.size());
    const uInt room = piece_of(out.size() - written);
    const bool all = input == raw.size();
    stream.next_in = input_bytes(raw);
    stream.avail_in = input;
    stream.next_out = reinterpret_cast<Bytef*>(out.data() + written);
    stream.avail_out = room;
    result = deflate(&stream, !all ? Z_NO_FLUSH : last ? Z_FINISH : Z_FULL_FLUSH);
    if (const ErrorCode error = zlib_error(result); error != ErrorCode::kOk) return error;
    raw.remove_prefix(input - stream.avail_in);
    written += room - stream.avail_out;
  } while (!raw.empty() || (last ? result != Z_STREAM_END : stream.avail_out == 0));
  out.resize(written);
  return ErrorCode::kOk;
}

Inflater::Inflater() = default;
Inflater::~Inflater() = default;
Inflater::Inflater(Inflater&&) noexcept = default;
Inflater& Inflater::operator=(Inflater&&) noexcept = default;

void Inflater::Close::operator()(z_stream_s* stream) const {
  inflateEnd(stream);
  delete stream;
}

ErrorCode Inflater::start() {
  finished_ = false;
  if (stream_) return zlib_error(inflateReset(stream_.get()));
  auto stream = std::make_unique<z_stream>();
  const int result = inflateInit2(stream.get(), kRawWindowBits);
  if (result == Z_OK) stream_.reset(stream.release());
  return zlib_error(result);
}

ErrorCode Inflater::run(std::string_view& input, std::span<char>& output) {
  if (!stream_) return ErrorCode::kZipState;
  z_stream& stream = *stream_;
  while (!finished_) {
    const uInt available = piece_of(input.size());
    const uInt room = piece_of(output.size());
    stream.next_in = input_bytes(input);
    stream.avail_in = available;
    stream.next_out = reinterpret_cast<Bytef*>(output.data());
    stream.avail_out = room;
    const int result = inflate(&stream, Z_NO_FLUSH);
    if (const ErrorCode error = zlib_error(result); error != ErrorCode::kOk) return error;
    input.remove_prefix(available - stream.avail_in);
    output = output.subspan(room - stream.avail_out);
    finished_ = result == Z_STREAM_END;
    if (result == Z_BUF_ERROR || input.empty() || output.empty()) break;
  }
  return ErrorCode::kOk;
}

uint32_t crc32_of(std::string_view bytes, uint32_t crc) {
  return libdeflate_crc32(crc, bytes.data(), bytes.size());
}

uint32_t crc32_combined(uint32_t first, uint32_t second, uint64_t second_size) {
  // zlib's type for the size has 32 bits on some systems; moving FIRST on in steps comes to the same.
  uLong crc = first;
  for (; second_size > kMaxZlibPiece; second_size -= kMaxZlibPiece)
    crc = crc32_combine(crc, 0, kMaxZlibPiece);
  return static_cast<uint32_t>(crc32_combine(crc, second, static_cast<z_off_t>(second_size)));
}

}  // namespace rowvane

#include "zip/zip_block_index.h"

#include <algorithm>

#include "zip/zip_format.h"
#include "zip/zlib_codec.h"

namespace rowvane {
namespace {

constexpr char kVersion = 1;
constexpr char kEndsAtRecordsFlag = 1;
constexpr char kEncryptedFlag = 2;
constexpr size_t kIdAndSize = 4;
constexpr size_t kLeadSize = 2;  // version and flags
constexpr size_t kBlockSize = 8;

std::vector<ZipBlock> join_blocks(const std::vector<ZipBlock>& blocks, size_t count) {
  std::vector<ZipBlock> joined;
  for (size_t i = 0; i < blocks.size(); ++i) {
    if (i % count == 0) joined.push_back({.offset = blocks[i].offset});
    joined.back().compressed_size += blocks[i].compressed_size;
    joined.back().size += blocks[i].size;
  }
  return joined;
}

bool fits_u32(const ZipBlock& block) {
  return block.compressed_size <= kZip32Max && block.size <= kZip32Max;
}

bool is_plausible(const ZipBlock& block, bool stored) {
  if (stored) return block.size == block.compressed_size;
  return block.compressed_size != 0 && block.size <= block.compressed_size * kMaxDeflateRatio;
}

}  // namespace

std::string encode_block_index(const ZipBlockIndex& index, size_t room) {
  constexpr size_t kMinRoom = kIdAndSize + kLeadSize + 2 * kBlockSize;
  if (index.blocks.size() < 2 || room < kMinRoom) return {};
  const size_t most = (std::min<size_t>(room, kZip16Max) - kIdAndSize - kLeadSize) / kBlockSize;
  const std::vector<ZipBlock> blocks = join_blocks(index.blocks, (index.blocks.size() + most - 1) / most);
  if (!std::ranges::all_of(blocks, fits_u32)) return {};

  std::string extra;
  append_u16(extra, kBlockIndexExtraId);
  append_u16(extra, static_cast<uint16_t>(kLeadSize + blocks.size() * kBlockSize));
  extra += kVersion;
  extra += static_cast<char>((index.blocks_end_at_records ? kEndsAtRecordsFlag : 0) |
                             (index.encrypted ? kEncryptedFlag : 0));
  for (const ZipBlock& block : blocks) {
    append_u32(extra, static_cast<uint32_t>(block.compressed_size));
    append_u32(extra, static_cast<uint32_t>(block.size));
  }
  return extra;
}

bool decode_block_index(std::string_view content, uint64_t compressed_size, uint64_t size, bool stored,
                        ZipBlockIndex& index) {
  if (content.size() <= kLeadSize || content[0] != kVersion) return false;
  if ((content.size() - kLeadSize) % kBlockSize != 0) return false;

  ZipBlockIndex result{.blocks_end_at_records = (content[1] & kEndsAtRecordsFlag) != 0,
                       .encrypted = (content[1] & kEncryptedFlag) != 0,
                       .blocks = {}};
  if (result.encrypted && !stored) return false;
  uint64_t compressed_sum = 0;
  uint64_t sum = 0;
  for (size_t position = kLeadSize; position < content.size(); position += kBlockSize) {
    const ZipBlock block{.offset = compressed_sum,
                         .compressed_size = u32_at(content, position),
                         .size = u32_at(content, position + 4)};
    if (!is_plausible(block, stored && !result.encrypted)) return false;
    compressed_sum += block.compressed_size;
    sum += block.size;
    result.blocks.push_back(block);
  }
  if (compressed_sum != compressed_size || (!result.encrypted && sum != size)) return false;
  index = std::move(result);
  return true;
}

}  // namespace rowvane

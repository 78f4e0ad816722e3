// The block index: a private extra field in the central directory that lets several processors inflate one
// member.
//
// A member of several blocks is deflated so that each block starts at a byte and refers to nothing before it.
// The index tells where. The extra field has the header id 0x5652 and holds, all numbers little-endian:
//
//   1 byte   version, 1
//   1 byte   flags; bit 0: each block ends where a record ends; bit 1: the blocks are encrypted
//   for each block, in the order of the file:
//     4 bytes  compressed size
//     4 bytes  size
//
// Programs that do not know the field inflate the member in one go. Stored members may have an index too.
//
// The blocks of an encrypted member are deflated first and then encrypted as one stream; the archive stores
// the result. Their sizes are those of the content, which the archive itself does not know.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace rowvane {

inline constexpr uint16_t kBlockIndexExtraId = 0x5652;

// Size of the blocks into which whole members and streams are cut.
inline constexpr size_t kZipBlockSize = size_t{1} << 20;

struct ZipBlock {
  uint64_t offset = 0;  // of the compressed block from the start of the member's data
  uint64_t compressed_size = 0;
  uint64_t size = 0;
};

struct ZipBlockIndex {
  bool blocks_end_at_records = false;
  bool encrypted = false;
  std::vector<ZipBlock> blocks;  // empty: the member has no index
};

// The whole extra field, at most ROOM bytes. When the index does not fit, neighbouring blocks are joined
// until it does. Empty for fewer than two blocks or when a block, joined or not, is 4 GB or larger.
std::string encode_block_index(const ZipBlockIndex& index, size_t room);

// Reads the CONTENT of the extra field of a member with the given sizes. False when it does not fit the
// member: the blocks must add up to it and none may be larger than deflate can make it. The sizes of
// encrypted blocks are only checked for the latter.
bool decode_block_index(std::string_view content, uint64_t compressed_size, uint64_t size, bool stored,
                        ZipBlockIndex& index);

}  // namespace rowvane

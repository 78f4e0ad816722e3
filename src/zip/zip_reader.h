// Reads zip archives, trusting nothing in them.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/messages/error_code.h"
#include "zip/byte_source.h"
#include "zip/zip_block_index.h"
#include "zip/zip_format.h"
#include "zip/zip_member_stream.h"

namespace rowvane {

struct ZipMember {
  std::string name;  // UTF-8, see decode_member_name
  uint16_t flags = 0;
  uint16_t method = 0;  // a ZipMethod, or the number of one that cannot be read
  uint32_t time = 0;    // see dos_time
  uint32_t crc = 0;
  uint64_t compressed_size = 0;
  uint64_t size = 0;
  uint64_t header_offset = 0;
  uint64_t end_limit = 0;  // where the next member or the directory starts: the data ends there or before
  size_t raw_name_size = 0;
  uint32_t raw_name_crc = 0;  // of the name's bytes in the file
  ZipBlockIndex index;        // empty for members written elsewhere

  bool is_folder() const { return name.ends_with('/'); }
  bool is_encrypted() const {
    return (flags & (kZipFlagEncrypted | kZipFlagStrongEncryption | kZipFlagMaskedHeader)) != 0;
  }
  bool is_stored() const { return method == static_cast<uint16_t>(ZipMethod::kStored); }
  bool is_deflated() const { return method == static_cast<uint16_t>(ZipMethod::kDeflated); }
};

// An open archive. Everything const may be called from several threads at once. Members and streams must not
// outlive the reader and belong to the last `open`.
//
// Opening looks at the directory only and refuses an archive as a whole when any part of it is not sound:
// sizes beyond the file, members that overlap, unsafe names (see is_safe_member_name) or the same name twice,
// more unpacked bytes than deflate can pack, several disks. Reading a member checks its local header against
// the directory and its CRC. Bytes before the archive are fine when the offsets count them.
//
// kZipCorrupted is the code for all of that; kZipUnexpectedEnd when the file ends too early, as after a
// broken transfer. Encrypted members are listed but reading them is kFileDecrypt; members of methods other
// than stored and deflated give kZlibUnknown.
class ZipReader {
 public:
  // After an error the reader is empty.
  ErrorCode open(const std::string& path);
  ErrorCode open(std::unique_ptr<ByteSource> source);
  void close();

  ZipVariant variant() const { return variant_; }
  // In the order of the directory.
  const std::vector<ZipMember>& members() const { return members_; }
  // Null when there is none.
  const ZipMember* find(std::string_view name) const;

  // The whole member. kZipMemory when it is larger than LIMIT bytes or memory does not suffice.
  ErrorCode read(const ZipMember& member, uint64_t limit, std::string& out) const;

  ErrorCode stream(const ZipMember& member, ZipMemberStream& out) const;

  // Block K of the member's index, and the CRC of its bytes; OUT has block_size bytes. A member without an
  // index has one block, itself. Compare the CRCs of all blocks with `verify_blocks`.
  ErrorCode read_block(const ZipMember& member, size_t k, std::span<char> out, uint32_t& crc) const;
  // The same into a text of its own; kZipMemory for a block of more than LIMIT bytes.
  ErrorCode read_block(const ZipMember& member, size_t k, std::string& out, uint32_t& crc,
                       uint64_t limit = kMaxBlockBytes) const;
  // Number of blocks that `read_block` knows: at least 1.
  static size_t block_count(const ZipMember& member);
  static uint64_t block_size(const ZipMember& member, size_t k);
  // kZipCorrupted unless the CRCs of all blocks together make up that of the member.
  static ErrorCode verify_blocks(const ZipMember& member, std::span<const uint32_t> block_crcs);

  // Where the member's compressed bytes start, after checking its local header.
  ErrorCode locate(const ZipMember& member, uint64_t& data_offset) const;
  const ByteSource& source() const { return *source_; }

  static constexpr uint64_t kMaxBlockBytes = uint64_t{1} << 32;

 private:
  std::unique_ptr<ByteSource> source_;
  ZipVariant variant_ = ZipVariant::kZip32;
  std::vector<ZipMember> members_;
  std::unordered_map<std::string_view, size_t> by_name_;
};

}  // namespace rowvane

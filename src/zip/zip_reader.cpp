#include "zip/zip_reader.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

#include "zip/block_inflater.h"
#include "zip/zip_directory.h"
#include "zip/zlib_codec.h"

namespace rowvane {
namespace {

ErrorCode validate_readable(const ZipMember& member) {
  if (member.is_encrypted()) return ErrorCode::kFileDecrypt;
  if ((member.flags & kZipFlagPatched) != 0) return ErrorCode::kZlibUnknown;
  return member.is_stored() || member.is_deflated() ? ErrorCode::kOk : ErrorCode::kZlibUnknown;
}

// Members written to a pipe have no sizes and CRC in their local header, or zeros in place of them.
bool is_consistent(const ZipEntry& local, const ZipMember& member) {
  constexpr uint16_t kDecisiveFlags = kZipFlagEncrypted | kZipFlagDescriptor | kZipFlagPatched;
  if (local.method != member.method || ((local.flags ^ member.flags) & kDecisiveFlags) != 0) return false;
  if (local.name.size() != member.raw_name_size || crc32_of(local.name) != member.raw_name_crc) return false;
  if ((local.flags & kZipFlagDescriptor) != 0) return true;
  return local.crc == member.crc && local.size == member.size &&
         local.compressed_size == member.compressed_size;
}

// False when memory does not suffice.
bool resize(std::string& text, uint64_t size) {
  try {
    text.resize(static_cast<size_t>(size));
    return true;
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  return false;
}

ZipBlock block_of(const ZipMember& member, size_t k) {
  if (!member.index.blocks.empty()) return member.index.blocks[k];
  return {.offset = 0, .compressed_size = member.compressed_size, .size = member.size};
}

}  // namespace

ErrorCode ZipReader::open(const std::string& path) {
  close();
  auto source = std::make_unique<FileByteSource>();
  if (const ErrorCode error = source->open(path); error != ErrorCode::kOk) return error;
  return open(std::move(source));
}

ErrorCode ZipReader::open(std::unique_ptr<ByteSource> source) {
  close();
  source_ = std::move(source);
  ErrorCode error = read_zip_directory(*source_, variant_, members_);
  for (size_t i = 0; i < members_.size() && error == ErrorCode::kOk; ++i) {
    const bool is_new = by_name_.emplace(members_[i].name, i).second;
    if (!is_new) error = ErrorCode::kZipCorrupted;
  }
  if (error != ErrorCode::kOk) close();
  return error;
}

void ZipReader::close() {
  by_name_.clear();
  members_.clear();
  source_.reset();
  variant_ = ZipVariant::kZip32;
}

const ZipMember* ZipReader::find(std::string_view name) const {
  const auto found = by_name_.find(name);
  return found == by_name_.end() ? nullptr : &members_[found->second];
}

ErrorCode ZipReader::locate(const ZipMember& member, uint64_t& data_offset) const {
  if (const ErrorCode error = validate_readable(member); error != ErrorCode::kOk) return error;
  std::string header(kLocalHeaderSize, '\0');
  if (const ErrorCode error = source_->read_at(member.header_offset, header); error != ErrorCode::kOk)
    return error;
  const auto length = local_header_length(header);
  if (!length || *length > member.end_limit - member.header_offset ||
      member.compressed_size > member.end_limit - member.header_offset - *length) {
    return ErrorCode::kZipCorrupted;
  }
  header.resize(*length);
  if (const ErrorCode error = source_->read_at(member.header_offset, header); error != ErrorCode::kOk)
    return error;
  ZipEntry local;
  if (const ErrorCode error = parse_local_header(header, local); error != ErrorCode::kOk) return error;
  if (!is_consistent(local, member)) return ErrorCode::kZipCorrupted;
  data_offset = member.header_offset + *length;
  return ErrorCode::kOk;
}

ErrorCode ZipReader::read(const ZipMember& member, uint64_t limit, std::string& out) const {
  out.clear();
  ZipMemberStream bytes;
  if (const ErrorCode error = stream(member, bytes); error != ErrorCode::kOk) return error;
  if (member.size > limit || !resize(out, member.size)) return ErrorCode::kZipMemory;
  size_t count = 0;
  const ErrorCode error = bytes.read(out, count);
  if (error != ErrorCode::kOk) out.clear();
  return error;
}

ErrorCode ZipReader::stream(const ZipMember& member, ZipMemberStream& out) const {
  uint64_t data_offset = 0;
  if (const ErrorCode error = locate(member, data_offset); error != ErrorCode::kOk) return error;
  return out.open(*source_, member, data_offset);
}

ErrorCode ZipReader::read_block(const ZipMember& member, size_t k, std::span<char> out, uint32_t& crc) const {
  if (k >= block_count(member) || out.size() != block_size(member, k)) return ErrorCode::kZipState;
  uint64_t data_offset = 0;
  if (const ErrorCode error = locate(member, data_offset); error != ErrorCode::kOk) return error;
  const ZipBlock block = block_of(member, k);
  ErrorCode error = ErrorCode::kOk;
  if (member.is_stored()) {
    error = source_->read_at(data_offset + block.offset, out);
  } else {
    std::string packed;
    if (!resize(packed, block.compressed_size)) return ErrorCode::kZipMemory;
    error = source_->read_at(data_offset + block.offset, packed);
    if (error == ErrorCode::kOk) error = BlockInflater().inflate(packed, k + 1 == block_count(member), out);
  }
  crc = crc32_of({out.data(), out.size()});
  return error;
}

ErrorCode ZipReader::read_block(const ZipMember& member, size_t k, std::string& out, uint32_t& crc,
                                uint64_t limit) const {
  out.clear();
  if (k >= block_count(member)) return ErrorCode::kZipState;
  if (block_size(member, k) > limit || !resize(out, block_size(member, k))) return ErrorCode::kZipMemory;
  const ErrorCode error = read_block(member, k, std::span(out), crc);
  if (error != ErrorCode::kOk) out.clear();
  return error;
}

size_t ZipReader::block_count(const ZipMember& member) {
  return std::max<size_t>(1, member.index.blocks.size());
}

uint64_t ZipReader::block_size(const ZipMember& member, size_t k) {
  return block_of(member, k).size;
}

ErrorCode ZipReader::verify_blocks(const ZipMember& member, std::span<const uint32_t> block_crcs) {
  if (block_crcs.size() != block_count(member)) return ErrorCode::kZipState;
  uint32_t crc = 0;
  for (size_t k = 0; k < block_crcs.size(); ++k)
    crc = crc32_combined(crc, block_crcs[k], block_of(member, k).size);
  return crc == member.crc ? ErrorCode::kOk : ErrorCode::kZipCorrupted;
}

}  // namespace rowvane

#include "file/member_blocks.h"

#include <algorithm>
#include <numeric>

#include "crypto/member_cipher.h"
#include "zip/block_inflater.h"

namespace rowvane {

void OrderedDigest::add(size_t block, std::string bytes) {
  std::unique_lock lock(mutex_);
  waiting_.emplace(block, std::move(bytes));
  if (busy_) return;
  busy_ = true;
  for (auto next = waiting_.find(next_); next != waiting_.end(); next = waiting_.find(next_)) {
    const std::string piece = std::move(next->second);
    waiting_.erase(next);
    lock.unlock();
    digest_.update(piece);
    lock.lock();
    ++next_;
  }
  busy_ = false;
}

MemberBlocks::MemberBlocks(const DatabaseArchive& archive, const ZipMember& member)
    : archive_(archive),
      member_(member),
      encrypted_(archive.encryption(member)),
      crcs_(ZipReader::block_count(member)),
      digest_(encrypted_ != nullptr ? encrypted_->record.digest_type : kDigestOfAll) {}

bool MemberBlocks::is_readable(const DatabaseArchive& archive, const ZipMember& member) {
  const EncryptedMember* encrypted = archive.encryption(member);
  if (member.index.blocks.empty()) return false;
  if (encrypted == nullptr) return !member.index.encrypted;
  const auto add_size = [](uint64_t sum, const ZipBlock& block) { return sum + block.size; };
  const auto& blocks = member.index.blocks;
  return member.index.encrypted && encrypted->deflated &&
         std::accumulate(blocks.begin(), blocks.end(), uint64_t{0}, add_size) == encrypted->record.size;
}

ErrorCode MemberBlocks::start() {
  if (encrypted_ == nullptr) return ErrorCode::kOk;
  const ErrorCode error = archive_.zip().locate(member_, data_offset_);
  return error == ErrorCode::kOk ? archive_.key_of(member_, key_) : error;
}

ErrorCode MemberBlocks::read(size_t block, std::span<char> out) {
  if (encrypted_ == nullptr) return archive_.zip().read_block(member_, block, out, crcs_[block]);
  std::string packed;
  if (const ErrorCode error = read_packed(block, packed); error != ErrorCode::kOk) return error;
  const ErrorCode error = BlockInflater().inflate(packed, block + 1 == count(), out);
  return error == ErrorCode::kZipCorrupted ? ErrorCode::kFileDecrypt : error;
}

// Decryption begins at a block of the cipher, with the encrypted one before it.
ErrorCode MemberBlocks::read_packed(size_t block, std::string& out) {
  const ZipBlock& place = member_.index.blocks[block];
  const size_t unit = block_bytes(encrypted_->record.algorithm);
  const uint64_t first = place.offset - place.offset % unit;
  const size_t before = first > 0 ? unit : 0;
  const auto skipped = static_cast<size_t>(place.offset - first);
  std::string bytes(before + skipped + static_cast<size_t>(place.compressed_size), '\0');
  ErrorCode error = archive_.zip().source().read_at(data_offset_ + first - before, bytes);
  if (error == ErrorCode::kOk) {
    const std::string vector = bytes.substr(0, before);
    error = decrypt_part(encrypted_->record, key_, first, vector, std::span(bytes).subspan(before));
  }
  if (error != ErrorCode::kOk) return error;
  out.assign(bytes, before + skipped);
  bytes.erase(0, before + skipped);
  digest_.add(block, std::move(bytes));
  return ErrorCode::kOk;
}

ErrorCode MemberBlocks::check() {
  if (encrypted_ == nullptr) return ZipReader::verify_blocks(member_, crcs_);
  return digest_.finish() == encrypted_->record.digest ? ErrorCode::kOk : ErrorCode::kFileDecrypt;
}

}  // namespace rowvane

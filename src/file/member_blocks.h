// The blocks of one member, read on several threads.
#pragma once

#include <map>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "crypto/digest.h"
#include "file/database_archive.h"

namespace rowvane {

// Digests blocks that arrive in any order, in the order of the file. Whoever brings the next block works off
// those that wait behind it, while others go on.
class OrderedDigest {
 public:
  explicit OrderedDigest(std::string_view type) : digest_(type) {}

  // From any thread, each block once.
  void add(size_t block, std::string bytes);
  // After all blocks.
  std::string finish() { return digest_.finish(); }

 private:
  std::mutex mutex_;
  std::map<size_t, std::string> waiting_;
  size_t next_ = 0;
  bool busy_ = false;
  ContentDigest digest_;
};

// A member with a block index, plain or encrypted. `read` and `read_packed` may be called from several
// threads; of the two only one is used, for each block once; then `check` tells whether all was as it was
// written.
class MemberBlocks {
 public:
  // Both must outlive the object.
  MemberBlocks(const DatabaseArchive& archive, const ZipMember& member);

  // True for a member that can be read so: with an index, and stored where it is encrypted.
  static bool is_readable(const DatabaseArchive& archive, const ZipMember& member);

  // Before reading. kCryptographicKey.
  ErrorCode start();
  size_t count() const { return ZipReader::block_count(member_); }
  uint64_t size(size_t block) const { return ZipReader::block_size(member_, block); }
  // The content of a block; OUT has its size.
  ErrorCode read(size_t block, std::span<char> out);
  // Of encrypted members: a block decrypted, but still deflated.
  ErrorCode read_packed(size_t block, std::string& out);
  // kZipCorrupted, kFileDecrypt.
  ErrorCode check();

 private:
  const DatabaseArchive& archive_;
  const ZipMember& member_;
  const EncryptedMember* encrypted_;
  Secret key_;
  uint64_t data_offset_ = 0;
  std::vector<uint32_t> crcs_;  // of a plain member's blocks
  OrderedDigest digest_;        // of an encrypted one
};

}  // namespace rowvane

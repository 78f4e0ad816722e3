// The archive of a database file, with what its manifest says: contents come out decrypted and inflated.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "crypto/secret.h"
#include "file/manifest.h"
#include "zip/zip_reader.h"

namespace rowvane {

// An encrypted member of an open archive.
struct EncryptedMember {
  EncryptionRecord record;
  bool deflated = false;  // what decrypting gives is deflated
};

// An open archive and the password of its encrypted members. After `unlock` everything const may be called
// from several threads at once. Errors of encrypted members: kFileDecrypt when one is damaged, in whatever
// way, and kCryptographicKey; all others are those of ZipReader.
class DatabaseArchive {
 public:
  ErrorCode open(const std::string& path) { return zip_.open(path); }
  const ZipReader& zip() const { return zip_; }
  ZipVariant variant() const { return zip_.variant(); }
  const std::vector<ZipMember>& members() const { return zip_.members(); }
  const ZipMember* find(std::string_view name) const { return zip_.find(name); }

  // Takes over which members are encrypted.
  void set_manifest(const std::vector<ManifestEntry>& entries);
  // Null for a member that is not.
  const EncryptedMember* encryption(const ZipMember& member) const;
  bool has_encrypted_members() const { return !encrypted_.empty(); }

  // Takes the password for all members, or none (null). It is the right one when the digest of CHECKED, the
  // member that is read first, is; kInvalidPassword otherwise, and without a password where the members don't
  // tell their keys.
  ErrorCode unlock(std::shared_ptr<const Secret> password, const ZipMember& checked);
  // The password as taken, without a check: of an archive that was just written.
  void set_password(std::shared_ptr<const Secret> password) { password_ = std::move(password); }
  // Works out the keys of MEMBERS on several threads, for reading them later.
  void prepare_keys(const std::vector<const ZipMember*>& members, int threads);

  // Bytes of the content, as far as a file can be believed before it is read.
  uint64_t size(const ZipMember& member) const;
  // The whole content. kZipMemory when it is larger than LIMIT bytes or memory does not suffice.
  ErrorCode read(const ZipMember& member, uint64_t limit, std::string& out) const;
  // What decrypting an encrypted member gives: its content, still deflated where the record says so.
  ErrorCode read_decrypted(const ZipMember& member, std::string& out) const;

  ErrorCode key_of(const ZipMember& member, Secret& key) const;

 private:
  ErrorCode read_encrypted(const ZipMember& member, const EncryptedMember& encrypted, const Secret& key,
                           std::string& out) const;

  ZipReader zip_;
  std::unordered_map<const ZipMember*, EncryptedMember> encrypted_;
  std::unordered_map<const ZipMember*, Secret> keys_;  // prepared
  std::shared_ptr<const Secret> password_;
};

// Inflates PACKED, a deflate stream of SIZE bytes, into OUT. kZipCorrupted, kZipMemory.
ErrorCode inflate_whole(std::string_view packed, uint64_t size, std::string& out);

}  // namespace rowvane

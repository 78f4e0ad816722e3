#include "file/database_archive.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "core/parallel_blocks.h"
#include "crypto/member_cipher.h"
#include "zip/zlib_codec.h"

namespace rowvane {
namespace {

// What a failure to read the bytes of an encrypted member is called.
ErrorCode decrypt_error(ErrorCode error) {
  const bool is_damage = error == ErrorCode::kZipCorrupted || error == ErrorCode::kZipUnexpectedEnd;
  return is_damage ? ErrorCode::kFileDecrypt : error;
}

}  // namespace

ErrorCode inflate_whole(std::string_view packed, uint64_t size, std::string& out) {
  out.clear();
  if (size / kMaxDeflateRatio > packed.size()) return ErrorCode::kZipCorrupted;
  try {
    out.resize(static_cast<size_t>(size));
    Inflater inflater;
    if (const ErrorCode error = inflater.start(); error != ErrorCode::kOk) return error;
    std::string_view input = packed;
    std::span<char> room = out;
    char surplus = 0;
    ErrorCode error = ErrorCode::kOk;
    while (error == ErrorCode::kOk && !inflater.finished() && !input.empty()) {
      const bool is_full = room.empty();
      std::span<char> more(&surplus, 1);
      error = inflater.run(input, is_full ? more : room);
      if (is_full && more.empty()) return ErrorCode::kZipCorrupted;
    }
    if (error != ErrorCode::kOk) return error;
    return inflater.finished() && input.empty() && room.empty() ? ErrorCode::kOk : ErrorCode::kZipCorrupted;
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  return ErrorCode::kZipMemory;
}

void DatabaseArchive::set_manifest(const std::vector<ManifestEntry>& entries) {
  encrypted_.clear();
  for (const ManifestEntry& entry : entries) {
    const ZipMember* member = entry.encryption ? find(entry.name) : nullptr;
    if (member != nullptr) encrypted_.emplace(member, EncryptedMember{*entry.encryption, entry.deflated});
  }
}

const EncryptedMember* DatabaseArchive::encryption(const ZipMember& member) const {
  const auto found = encrypted_.find(&member);
  return found != encrypted_.end() ? &found->second : nullptr;
}

ErrorCode DatabaseArchive::unlock(std::shared_ptr<const Secret> password, const ZipMember& checked) {
  password_ = std::move(password);
  if (password_ == nullptr) {
    const auto has_key = [](const auto& member) {
      Secret key;
      return member_key(member.second.record, nullptr, key) == ErrorCode::kOk;
    };
    return std::ranges::all_of(encrypted_, has_key) ? ErrorCode::kOk : ErrorCode::kInvalidPassword;
  }
  const EncryptedMember* encrypted = encryption(checked);
  if (encrypted == nullptr) return ErrorCode::kOk;
  std::string bytes;
  ErrorCode error = decrypt_error(zip_.read(checked, checked.size, bytes));
  Secret key;
  if (error == ErrorCode::kOk) error = member_key(encrypted->record, password_.get(), key);
  if (error != ErrorCode::kOk) return error;
  error = decrypt_member(encrypted->record, key, bytes);
  return error == ErrorCode::kFileDecrypt ? ErrorCode::kInvalidPassword : error;
}

void DatabaseArchive::prepare_keys(const std::vector<const ZipMember*>& members, int threads) {
  std::vector<const ZipMember*> encrypted;
  std::ranges::copy_if(members, std::back_inserter(encrypted), [this](const ZipMember* member) {
    return member != nullptr && encryption(*member) != nullptr;
  });
  std::vector<Secret> keys(encrypted.size());
  std::vector<char> made(encrypted.size(), 0);
  parallel_blocks(encrypted.size(), threads, [&](int, uint64_t first, uint64_t end) {
    for (uint64_t i = first; i < end; ++i) {
      made[i] = member_key(encryption(*encrypted[i])->record, password_.get(), keys[i]) == ErrorCode::kOk;
    }
  });
  for (size_t i = 0; i < encrypted.size(); ++i) {
    if (made[i] != 0) keys_.insert_or_assign(encrypted[i], std::move(keys[i]));
  }
}

ErrorCode DatabaseArchive::key_of(const ZipMember& member, Secret& key) const {
  const auto prepared = keys_.find(&member);
  if (prepared != keys_.end()) {
    key = Secret(prepared->second.view());
    return ErrorCode::kOk;
  }
  const EncryptedMember* encrypted = encryption(member);
  return encrypted == nullptr ? ErrorCode::kCryptographicKey
                              : member_key(encrypted->record, password_.get(), key);
}

uint64_t DatabaseArchive::size(const ZipMember& member) const {
  const EncryptedMember* encrypted = encryption(member);
  if (encrypted == nullptr) return member.size;
  const uint64_t most = encrypted->deflated ? member.size * kMaxDeflateRatio : member.size;
  return std::min(encrypted->record.size, most);
}

ErrorCode DatabaseArchive::read_decrypted(const ZipMember& member, std::string& out) const {
  Secret key;
  const ErrorCode error = key_of(member, key);
  return error == ErrorCode::kOk ? read_encrypted(member, *encryption(member), key, out) : error;
}

ErrorCode DatabaseArchive::read_encrypted(const ZipMember& member, const EncryptedMember& encrypted,
                                          const Secret& key, std::string& out) const {
  ErrorCode error = decrypt_error(zip_.read(member, member.size, out));
  if (error == ErrorCode::kOk) error = decrypt_member(encrypted.record, key, out);
  return error;
}

ErrorCode DatabaseArchive::read(const ZipMember& member, uint64_t limit, std::string& out) const {
  const EncryptedMember* encrypted = encryption(member);
  if (encrypted == nullptr) return zip_.read(member, limit, out);
  out.clear();
  if (encrypted->record.size > size(member)) return ErrorCode::kFileDecrypt;
  if (encrypted->record.size > limit) return ErrorCode::kZipMemory;
  std::string bytes;
  if (const ErrorCode error = read_decrypted(member, bytes); error != ErrorCode::kOk) return error;
  if (encrypted->deflated) return decrypt_error(inflate_whole(bytes, encrypted->record.size, out));
  if (bytes.size() != encrypted->record.size) return ErrorCode::kFileDecrypt;
  out = std::move(bytes);
  return ErrorCode::kOk;
}

}  // namespace rowvane

#include "crypto/member_cipher.h"

#include <algorithm>

#include "core/values/base64.h"
#include "crypto/random_source.h"

namespace rowvane {
namespace {

constexpr size_t kDecryptBytes = 32'768;  // decrypted and digested while they are in the processor's cache

}  // namespace

ErrorCode MemberEncryptor::start(const Protection& protection) {
  record_ = {};
  record_.algorithm = protection.algorithm;
  record_.digest_type = kDigestOfAll;
  record_.iterations = static_cast<int>(kKeyIterations);
  digest_ = ContentDigest();
  RandomSource random;
  ErrorCode error = random.fill(kSaltBytes, record_.salt);
  if (error == ErrorCode::kOk) error = random.fill(block_bytes(protection.algorithm), record_.iv);
  Secret key;
  if (error == ErrorCode::kOk) error = derive_key(*protection.password, record_.salt, key);
  if (error != ErrorCode::kOk) return error;
  if (protection.read_only_open) record_.key = base64_encode(key.view());
  return cipher_.start(protection.algorithm, CipherDirection::kEncrypt, key, record_.iv);
}

ErrorCode MemberEncryptor::run(std::span<char> bytes) {
  digest_.update({bytes.data(), bytes.size()});
  return cipher_.run(bytes);
}

EncryptionRecord MemberEncryptor::finish(uint64_t size) {
  record_.size = size;
  record_.digest = digest_.finish();
  return std::move(record_);
}

ErrorCode member_key(const EncryptionRecord& record, const Secret* password, Secret& key) {
  if (password != nullptr) return derive_key(*password, record.salt, key);
  auto published = base64_decode(record.key);
  if (!published || published->size() != kKeyBytes) return ErrorCode::kInvalidPassword;
  key = Secret::take(*published);
  return ErrorCode::kOk;
}

ErrorCode decrypt_part(const EncryptionRecord& record, const Secret& key, uint64_t offset,
                       std::string_view before, std::span<char> bytes) {
  CipherStream cipher;
  const ErrorCode error = cipher.start(record.algorithm, CipherDirection::kDecrypt, key,
                                       offset == 0 ? std::string_view(record.iv) : before);
  return error == ErrorCode::kOk ? cipher.run(bytes) : error;
}

ErrorCode decrypt_member(const EncryptionRecord& record, const Secret& key, std::span<char> bytes) {
  CipherStream cipher;
  ErrorCode error = cipher.start(record.algorithm, CipherDirection::kDecrypt, key, record.iv);
  ContentDigest digest(record.digest_type);
  while (error == ErrorCode::kOk && !bytes.empty()) {
    const std::span<char> block = bytes.first(std::min(kDecryptBytes, bytes.size()));
    error = cipher.run(block);
    digest.update({block.data(), block.size()});
    bytes = bytes.subspan(block.size());
  }
  if (error != ErrorCode::kOk) return error;
  return digest.finish() == record.digest ? ErrorCode::kOk : ErrorCode::kFileDecrypt;
}

}  // namespace rowvane

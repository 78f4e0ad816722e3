#include "crypto/field_cipher.h"

#include "core/values/base64.h"
#include "crypto/digest.h"
#include "crypto/key_derivation.h"

namespace rowvane {
namespace {

constexpr CipherAlgorithm kAlgorithm = CipherAlgorithm::kTwofishCfb;
constexpr char kHeaderVersion = 1;
constexpr size_t kVectorBytes = 16;
constexpr size_t kTagBytes = 8;
constexpr std::string_view kCheckText = "Field data check";

std::string tag_of(std::string_view salt, std::string_view sealed) {
  ContentDigest digest;
  digest.update(salt);
  digest.update(sealed);
  return digest.finish().substr(0, kTagBytes);
}

}  // namespace

std::string encode_field_header(const EncryptedFieldHeader& header) {
  std::string bytes{kHeaderVersion, static_cast<char>(header.plain_type)};
  return base64_encode(bytes + header.salt + header.iv + header.check);
}

std::optional<EncryptedFieldHeader> decode_field_header(std::string_view text) {
  constexpr size_t kLead = 2;
  const auto bytes = base64_decode(text);
  if (!bytes || bytes->size() != kLead + kSaltBytes + kVectorBytes + kCheckText.size()) return std::nullopt;
  const auto type = static_cast<uint8_t>((*bytes)[1]);
  if ((*bytes)[0] != kHeaderVersion || !is_field_type(type)) return std::nullopt;
  return EncryptedFieldHeader{static_cast<FieldType>(type), bytes->substr(kLead, kSaltBytes),
                              bytes->substr(kLead + kSaltBytes, kVectorBytes),
                              bytes->substr(kLead + kSaltBytes + kVectorBytes)};
}

ErrorCode make_field_header(const Secret& password, FieldType plain_type, EncryptedFieldHeader& header) {
  RandomSource random;
  header.plain_type = plain_type;
  header.check = kCheckText;
  ErrorCode error = random.fill(kSaltBytes, header.salt);
  if (error == ErrorCode::kOk) error = random.fill(kVectorBytes, header.iv);
  Secret key;
  if (error == ErrorCode::kOk) error = derive_key(password, header.salt, key);
  CipherStream cipher;
  if (error == ErrorCode::kOk) error = cipher.start(kAlgorithm, CipherDirection::kEncrypt, key, header.iv);
  return error == ErrorCode::kOk ? cipher.run(header.check) : error;
}

ErrorCode field_key(const Secret& password, const EncryptedFieldHeader& header, Secret& key) {
  ErrorCode error = derive_key(password, header.salt, key);
  CipherStream cipher;
  if (error == ErrorCode::kOk) error = cipher.start(kAlgorithm, CipherDirection::kDecrypt, key, header.iv);
  std::string check = header.check;
  if (error == ErrorCode::kOk) error = cipher.run(check);
  if (error != ErrorCode::kOk) return error;
  return check == kCheckText ? ErrorCode::kOk : ErrorCode::kInvalidPassword;
}

bool is_field_value(std::string_view value, std::string_view salt) {
  if (value.size() < kVectorBytes + kTagBytes) return false;
  const size_t sealed = value.size() - kTagBytes;
  return tag_of(salt, value.substr(0, sealed)) == value.substr(sealed);
}

ErrorCode FieldCipher::start(const Secret& key, std::string_view salt) {
  salt_ = salt;
  const std::string no_vector(kVectorBytes, '\0');  // each value brings its own
  const ErrorCode error = encryptor_.start(kAlgorithm, CipherDirection::kEncrypt, key, no_vector);
  if (error != ErrorCode::kOk) return error;
  return decryptor_.start(kAlgorithm, CipherDirection::kDecrypt, key, no_vector);
}

ErrorCode FieldCipher::encrypt(std::string_view plain, std::string& value) {
  ErrorCode error = random_.fill(kVectorBytes, value);
  if (error == ErrorCode::kOk) error = encryptor_.restart(value);
  value += plain;
  if (error == ErrorCode::kOk) error = encryptor_.run(std::span(value).subspan(kVectorBytes));
  value += tag_of(salt_, value);
  return error;
}

ErrorCode FieldCipher::decrypt(std::string_view value, std::string& plain) {
  if (!is_field_value(value, salt_)) return ErrorCode::kFileDecrypt;
  plain = value.substr(kVectorBytes, value.size() - kVectorBytes - kTagBytes);
  const ErrorCode error = decryptor_.restart(value.substr(0, kVectorBytes));
  return error == ErrorCode::kOk ? decryptor_.run(plain) : error;
}

}  // namespace rowvane

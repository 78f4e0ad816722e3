// The encrypted form of a field's values.
//
//   value   16 bytes vector; the encrypted plain bytes; 8 bytes tag, the first of the SHA-1 of salt, vector
//           and encrypted bytes
//   header  of the field, in base64: 1 byte version, 1; 1 byte type of the plain field; 16 bytes salt;
//           16 bytes vector; 16 bytes check, a known text encrypted
//
// The key comes from password and salt (key_derivation.h), the cipher is Twofish CFB. The tag tells changed
// values without the password; the check tells a wrong password before any value is touched.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/table/field.h"
#include "crypto/cipher.h"
#include "crypto/random_source.h"

namespace rowvane {

struct EncryptedFieldHeader {
  FieldType plain_type = FieldType::kText;
  std::string salt;
  std::string iv;
  std::string check;
};

std::string encode_field_header(const EncryptedFieldHeader& header);
std::optional<EncryptedFieldHeader> decode_field_header(std::string_view text);

// A header with fresh salt and vector for PASSWORD. kCryptographicKey.
ErrorCode make_field_header(const Secret& password, FieldType plain_type, EncryptedFieldHeader& header);
// The key that PASSWORD gives for HEADER. kInvalidPassword when it is another one's.
ErrorCode field_key(const Secret& password, const EncryptedFieldHeader& header, Secret& key);

// True when VALUE has the form and the tag of one that was encrypted under SALT.
bool is_field_value(std::string_view value, std::string_view salt);

// Encrypts and decrypts the values of one field. Belongs to one thread at a time.
class FieldCipher {
 public:
  // kCryptographicKey.
  ErrorCode start(const Secret& key, std::string_view salt);
  ErrorCode encrypt(std::string_view plain, std::string& value);
  // kFileDecrypt for a damaged value. PLAIN is to be wiped where that matters.
  ErrorCode decrypt(std::string_view value, std::string& plain);

 private:
  std::string salt_;
  CipherStream encryptor_;
  CipherStream decryptor_;
  RandomSource random_;
};

}  // namespace rowvane

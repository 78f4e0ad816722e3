// Encrypting chosen fields of a table in place, under a password of their own.
//
// An empty value stays empty, so that records can still be inserted. doc/file-format.md describes the form of
// the others.
// - Texts and numbers become texts: the type of the field is Text until it is decrypted. So nothing of a
//   number is lost, a formula error included, and a text may be as long as a text field allows.
// - Long texts and codes become long texts and codes.
// - Images and files: each object becomes a file "1.encrypted", "2.encrypted" ... that holds its name, its
//   shortcut and its bytes.
#pragma once

#include <vector>

#include "core/messages/outcome.h"
#include "core/progress.h"
#include "core/table/work_sheet.h"
#include "crypto/protection.h"
#include "crypto/secret.h"

namespace rowvane {

// What the user enters to encrypt or decrypt fields.
struct FieldEncryptionSettings {
  std::vector<size_t> fields;  // by index, at least one
  Secret password;
  Secret repeated;  // the password once more; not used when decrypting
  int threads = 1;
};

inline constexpr std::string_view kEncryptFieldsTitle = "Encrypt Field Data";
inline constexpr std::string_view kDecryptFieldsTitle = "Decrypt Field Data";

// Why fields can't be encrypted: the messages of check_new_password; kEncryptedField for one that
// is encrypted already; kInvalidCacheIndex for none, for one twice and for one that is not there.
Check check_encrypt_fields(const CWorkSheet& table, const FieldEncryptionSettings& settings);
// Why they can't be decrypted: kInvalidPassword when it is not that of all fields; kFieldTypeMismatch for one
// that is not encrypted; kFileDecrypt when what decrypting needs is damaged; kInvalidCacheIndex as above.
Check check_decrypt_fields(const CWorkSheet& table, const FieldEncryptionSettings& settings);

// The type of FIELD's values when they are not encrypted.
FieldType plain_type(const Field& field);

// Encrypts fields that have passed the check, as one undo step. A failed or cancelled run changes nothing.
// kCryptographicKey, kFileEncrypt, kOutOfMemory, and what reading a content answers.
Outcome encrypt_fields(CWorkSheet& table, const FieldEncryptionSettings& settings,
                       Progress& progress = Progress::none());
// Gives fields back their values and types. kFileDecrypt when an encrypted value is damaged.
Outcome decrypt_fields(CWorkSheet& table, const FieldEncryptionSettings& settings,
                       Progress& progress = Progress::none());

// kEncryptedDataChanged when a value of an encrypted field is not one that encrypt_fields made: it could not
// be decrypted any more. Contents that lie in the database file are not read.
ErrorCode verify_encrypted_fields(const CWorkSheet& table, int threads);

}  // namespace rowvane

#include "crypto/field_encryption.h"

#include <bit>
#include <limits>

#include <gtest/gtest.h>

#include "core/sample_tables.h"
#include "core/values/base64.h"
#include "crypto/field_cipher.h"

namespace rowvane {
namespace {

constexpr size_t kText = 0;
constexpr size_t kNumber = 1;
constexpr size_t kLong = 2;
constexpr size_t kFiles = 3;
constexpr size_t kCode = 4;
const std::vector<size_t> kAll = {kText, kNumber, kLong, kFiles, kCode};

class FieldEncryption : public testing::Test {
 protected:
  FieldEncryption() {
    EXPECT_EQ(table.insert_records(1, 40), ErrorCode::kOk);
    std::string longest;
    while (longest.size() < 4 * 8169) longest += "\xF0\x9F\x98\x80";  // 8169 characters
    const std::string texts[] = {"plain", "plain", "ä€", "123", longest};
    const double numbers[] = {1.5, -0.0, 1e-308, error_number(FormulaError::kRef), 0.1};
    for (uint32_t i = 0; i < 5; ++i) {
      const RecordNumber record = record_number(2 * i);
      EXPECT_EQ(table.set_value(record, kText, texts[i]), ErrorCode::kOk);
      EXPECT_EQ(table.set_value(record, kNumber, numbers[i]), ErrorCode::kOk);
    }
    EXPECT_EQ(table.set_value(2, kLong, Content::of("{\\rtf1 long}")), ErrorCode::kOk);
    EXPECT_EQ(table.set_value(40, kLong, Content::of(std::string(100'000, 'x'))), ErrorCode::kOk);
    EXPECT_EQ(table.set_value(3, kCode, Content::of("x = 1\n")), ErrorCode::kOk);
    const FileList files = {make_file("a.txt", std::string("bytes\0 of a file", 16)),
                            {"b.pdf", "/home/b.pdf", Content()},
                            make_file("empty", "")};
    EXPECT_EQ(table.set_value(4, kFiles, files), ErrorCode::kOk);
    database.undo_log().clear();
  }

  static FieldEncryptionSettings settings_for(const std::vector<size_t>& fields, const std::string& password,
                                              int threads = 2) {
    FieldEncryptionSettings settings;
    settings.fields = fields;
    settings.password = Secret(password);
    settings.repeated = Secret(password);
    settings.threads = threads;
    return settings;
  }

  ErrorCode encrypt(const std::vector<size_t>& fields, const std::string& password = "password") {
    const FieldEncryptionSettings settings = settings_for(fields, password);
    EXPECT_EQ(check_encrypt_fields(table, settings), Check());
    return encrypt_fields(table, settings).failure.error();
  }
  ErrorCode decrypt(const std::vector<size_t>& fields, const std::string& password = "password") {
    const FieldEncryptionSettings settings = settings_for(fields, password);
    EXPECT_EQ(check_decrypt_fields(table, settings), Check());
    return decrypt_fields(table, settings).failure.error();
  }

  std::string content(const CellValue& value) const {
    if (const auto* number = std::get_if<double>(&value))
      return std::to_string(std::bit_cast<uint64_t>(*number));
    if (const auto* text = std::get_if<std::string>(&value)) return "'" + *text + "'";
    std::string all;
    if (const auto* one = std::get_if<Content>(&value)) {
      EXPECT_EQ(one->read(all), ErrorCode::kOk);
    }
    if (const auto* files = std::get_if<FileList>(&value)) {
      for (const FileObject& file : *files)
        all += file.name + "|" + file.shortcut + "|" + content(file.content) + ";";
    }
    return all;
  }

  // Everything that the table holds.
  std::string whole() const {
    std::string all;
    for (const Field& field : table.data().fields)
      all += field.name + std::to_string(static_cast<int>(field.type)) + (field.encrypted ? "!" : ".");
    for (RecordNumber record = 1; record < table.end_record(); ++record) {
      for (size_t i = 0; i < table.field_count(); ++i) all += " " + content(table.value(record, i));
      all += "\n";
    }
    return all;
  }

  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
};

TEST_F(FieldEncryption, GivesBackEveryTypeOfValue) {
  const std::string before = whole();
  ASSERT_EQ(encrypt(kAll), ErrorCode::kOk);
  EXPECT_EQ(verify_encrypted_fields(table, 2), ErrorCode::kOk);
  const std::string encrypted = whole();
  for (const char* secret : {"plain", "long", "x = 1", "a.txt", "/home/b.pdf", "bytes"})
    EXPECT_EQ(encrypted.substr(encrypted.find(' ')).find(secret), std::string::npos) << secret;
  EXPECT_EQ(plain_type(table.field(kNumber)), FieldType::kNumber);
  EXPECT_EQ(table.field(kNumber).type, FieldType::kText);
  EXPECT_NE(table.value_text(1, kText), table.value_text(3, kText));  // equal texts are not seen to be equal
  EXPECT_EQ(table.value_text(2, kText), "");
  ASSERT_EQ(decrypt(kAll), ErrorCode::kOk);
  EXPECT_EQ(whole(), before);
  EXPECT_EQ(table.field(kNumber).encryption, "");
}

TEST_F(FieldEncryption, FieldsMayHaveDifferentPasswordsAndBeMovedAbout) {
  const std::string before = whole();
  ASSERT_EQ(encrypt({kNumber, kFiles}), ErrorCode::kOk);
  ASSERT_EQ(encrypt({kText}, "another"), ErrorCode::kOk);
  EXPECT_EQ(check_decrypt_fields(table, settings_for({kText, kNumber}, "password")),
            ErrorCode::kInvalidPassword);
  ASSERT_EQ(table.move_field(kNumber, 0), ErrorCode::kOk);
  ASSERT_EQ(table.move_field(0, kNumber), ErrorCode::kOk);
  EXPECT_EQ(decrypt({kText}, "another"), ErrorCode::kOk);
  EXPECT_EQ(decrypt({kFiles, kNumber}), ErrorCode::kOk);
  EXPECT_EQ(whole(), before);
}

TEST_F(FieldEncryption, IsOneStepOfUndo) {
  const std::string before = whole();
  ASSERT_EQ(encrypt(kAll), ErrorCode::kOk);
  const std::string encrypted = whole();
  ASSERT_TRUE(database.undo());
  EXPECT_EQ(whole(), before);
  EXPECT_FALSE(database.undo());
  ASSERT_TRUE(database.redo());
  EXPECT_EQ(whole(), encrypted);
  EXPECT_EQ(verify_encrypted_fields(table, 1), ErrorCode::kOk);
}

TEST_F(FieldEncryption, ChecksItsSettings) {
  const auto wrong = [this](const std::vector<size_t>& fields, const std::string& password) {
    return check_encrypt_fields(table, settings_for(fields, password));
  };
  EXPECT_EQ(wrong({}, "password"), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(wrong({5}, "password"), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(wrong({1, 1}, "password"), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(wrong({1}, "12345"), MessageId::kPasswordTooShort);
  FieldEncryptionSettings differing = settings_for({1}, "123456");
  differing.repeated = Secret("123457");
  EXPECT_EQ(check_encrypt_fields(table, differing), MessageId::kPasswordsDiffer);
  ASSERT_EQ(encrypt({1}), ErrorCode::kOk);
  EXPECT_EQ(wrong({0, 1}, "password"), ErrorCode::kEncryptedField);
  EXPECT_EQ(check_decrypt_fields(table, settings_for({0}, "password")), ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(check_decrypt_fields(table, settings_for({1}, "passwore")), ErrorCode::kInvalidPassword);
}

TEST_F(FieldEncryption, EncryptedValuesCanNotBeEdited) {
  ASSERT_EQ(encrypt({kText}), ErrorCode::kOk);
  EXPECT_EQ(table.set_value(1, kText, std::string("x")), ErrorCode::kEncryptedField);
  Field definition = table.field(kText);
  definition.encrypted = false;
  definition.default_value = "default";
  EXPECT_EQ(table.change_field(kText, definition), ErrorCode::kOk);
  EXPECT_TRUE(table.field(kText).encrypted);
  ASSERT_EQ(table.insert_records(1, 2), ErrorCode::kOk);
  EXPECT_EQ(table.value_text(1, kText), "");
  const uint32_t gone[] = {2};
  ASSERT_EQ(table.delete_records(gone), ErrorCode::kOk);
  EXPECT_EQ(verify_encrypted_fields(table, 2), ErrorCode::kOk);
  EXPECT_EQ(decrypt({kText}), ErrorCode::kOk);
}

TEST_F(FieldEncryption, NoticesChangedValues) {
  ASSERT_EQ(encrypt(kAll), ErrorCode::kOk);
  const auto error_after = [this](size_t field, uint32_t position, const CellValue& value) {
    Column changed = table.column(field);
    store_value(changed, position, value);
    EXPECT_EQ(table.replace_column(field, table.field(field), std::move(changed)), ErrorCode::kOk);
    const ErrorCode error = verify_encrypted_fields(table, 2);
    if (error != ErrorCode::kOk) {
      EXPECT_EQ(decrypt_fields(table, settings_for({field}, "password")).failure, ErrorCode::kFileDecrypt);
    }
    EXPECT_TRUE(database.undo());
    return error;
  };
  std::string value = table.value_text(1, kText);
  value[20] = value[20] == 'A' ? 'B' : 'A';
  EXPECT_EQ(error_after(kText, 0, value), ErrorCode::kEncryptedDataChanged);
  EXPECT_EQ(error_after(kText, 0, std::string("typed")), ErrorCode::kEncryptedDataChanged);
  EXPECT_EQ(error_after(kText, 7, table.value(1, kText)), ErrorCode::kOk);  // a value of this field
  EXPECT_EQ(error_after(kText, 7, table.value(1, kNumber)), ErrorCode::kEncryptedDataChanged);
  EXPECT_EQ(error_after(kLong, 0, Content::of("note")), ErrorCode::kEncryptedDataChanged);
  EXPECT_EQ(error_after(kFiles, 0, FileList{make_file("1.encrypted")}), ErrorCode::kEncryptedDataChanged);
  Field forged = table.field(kText);
  forged.encryption = "AAAA";
  EXPECT_EQ(table.replace_column(kText, forged, table.column(kText)), ErrorCode::kOk);
  EXPECT_EQ(verify_encrypted_fields(table, 2), ErrorCode::kEncryptedDataChanged);
  EXPECT_EQ(check_decrypt_fields(table, settings_for({kText}, "password")), ErrorCode::kFileDecrypt);
}

class BrokenSource final : public ContentSource {
 public:
  ErrorCode read(std::string&) const override { return ErrorCode::kZipCorrupted; }
};

class Cancelled final : public Progress {
 public:
  bool cancelled() const override { return true; }
};

TEST_F(FieldEncryption, ChangesNothingWhenItFailsOrIsCancelled) {
  const std::string before = whole();
  Cancelled progress;
  EXPECT_TRUE(encrypt_fields(table, settings_for(kAll, "password"), progress).cancelled);
  EXPECT_EQ(whole(), before);
  ASSERT_EQ(table.set_value(1, kLong, Content::stored(std::make_shared<BrokenSource>(), 5)), ErrorCode::kOk);
  EXPECT_EQ(encrypt(kAll), ErrorCode::kZipCorrupted);
  EXPECT_FALSE(table.field(kText).encrypted);
}

TEST(FieldHeaders, RefuseDamage) {
  EncryptedFieldHeader header;
  ASSERT_EQ(make_field_header(Secret("password"), FieldType::kCode, header), ErrorCode::kOk);
  const std::string text = encode_field_header(header);
  const auto read = decode_field_header(text);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->plain_type, FieldType::kCode);
  EXPECT_EQ(read->salt + read->iv + read->check, header.salt + header.iv + header.check);
  EXPECT_FALSE(decode_field_header(text.substr(4)));
  EXPECT_FALSE(decode_field_header(""));
  const auto with_byte = [&](size_t at, char value) {
    std::string bytes = *base64_decode(text);
    bytes[at] = value;
    return decode_field_header(base64_encode(bytes));
  };
  EXPECT_FALSE(with_byte(0, 2));
  EXPECT_FALSE(with_byte(1, 3));
  Secret key;
  EXPECT_EQ(field_key(Secret("password"), *with_byte(10, 'x'), key), ErrorCode::kInvalidPassword);
}

}  // namespace
}  // namespace rowvane

#include "crypto/protection.h"

#include <set>

#include <gtest/gtest.h>

#include "core/values/base64.h"
#include "crypto/encryptor_queue.h"
#include "crypto/member_cipher.h"

namespace rowvane {
namespace {

ProtectionSettings settings_of(const std::string& password, const std::string& repeated,
                               bool read_only_open = false) {
  ProtectionSettings settings;
  settings.password = Secret(password);
  settings.repeated = Secret(repeated);
  settings.read_only_open = read_only_open;
  return settings;
}

TEST(Protection, ChecksTheNewPassword) {
  const auto refusal = [](const std::string& password, const std::string& repeated) {
    return check_protection(settings_of(password, repeated)).refusal;
  };
  EXPECT_EQ(refusal("12345", "12345"), MessageId::kPasswordTooShort);
  EXPECT_EQ(refusal("", ""), MessageId::kPasswordTooShort);
  EXPECT_EQ(refusal("äöüßé", "äöüßé"), MessageId::kPasswordTooShort);  // ten bytes
  EXPECT_EQ(refusal("123456", "123456"), "");
  EXPECT_EQ(refusal("äöüßéø", "äöüßéø"), "");
  EXPECT_EQ(refusal("123456", "123457"), MessageId::kPasswordsDiffer);
  EXPECT_EQ(refusal("123456", "1234567"), MessageId::kPasswordsDiffer);
}

TEST(Protection, AsksBeforeAnyoneMayRead) {
  EXPECT_EQ(check_protection(settings_of("123456", "123456")).question, "");
  EXPECT_EQ(check_protection(settings_of("123456", "123456", true)).question,
            MessageId::kReadOnlyOpenQuestion);
  EXPECT_EQ(check_protection(settings_of("12345", "12345", true)).question, "");
}

TEST(Protection, WarnsOfOtherFormats) {
  EXPECT_EQ(check_other_format(true, false).question, MessageId::kUseNativeFormat);
  EXPECT_EQ(check_other_format(true, true).notice, MessageId::kRecordsNotProtected);
  EXPECT_EQ(check_other_format(false, true), Check());
}

class MemberCipher : public testing::TestWithParam<CipherAlgorithm> {
 protected:
  Protection protection(bool read_only_open = false) const {
    Protection made = make_protection(settings_of("password", "password", read_only_open));
    made.algorithm = GetParam();
    return made;
  }

  // TEXT encrypted, with its record.
  static std::string encrypt(const Protection& how, std::string text, EncryptionRecord& record) {
    MemberEncryptor encryptor;
    EXPECT_EQ(encryptor.start(how), ErrorCode::kOk);
    EXPECT_EQ(encryptor.run(std::span(text).first(text.size() / 3)), ErrorCode::kOk);
    EXPECT_EQ(encryptor.run(std::span(text).subspan(text.size() / 3)), ErrorCode::kOk);
    record = encryptor.finish(text.size());
    return text;
  }

  static ErrorCode decrypt(const EncryptionRecord& record, const Secret* password, std::string& text) {
    Secret key;
    const ErrorCode error = member_key(record, password, key);
    return error == ErrorCode::kOk ? decrypt_member(record, key, text) : error;
  }

  const std::string plain_ = [] {
    std::string text;
    for (int i = 0; text.size() < 100'000; ++i) text += std::to_string(i);
    return text;
  }();
};

TEST_P(MemberCipher, GivesBackWhatWasEncrypted) {
  for (const size_t size : {size_t{0}, size_t{1}, size_t{1023}, size_t{32'768}, plain_.size()}) {
    EncryptionRecord record;
    const std::string plain = plain_.substr(0, size);
    std::string text = encrypt(protection(), plain, record);
    EXPECT_EQ(record.size, size);
    EXPECT_EQ(record.iterations, 1024);
    EXPECT_EQ(record.key, "");
    EXPECT_TRUE(size < 100 || text.find(plain_.substr(0, 20)) == std::string::npos);
    const Secret password("password");
    record.iterations = 77;  // nobody reads it
    ASSERT_EQ(decrypt(record, &password, text), ErrorCode::kOk) << size;
    EXPECT_EQ(text, plain);
  }
}

TEST_P(MemberCipher, NoticesEveryKindOfDamage) {
  EncryptionRecord record;
  const std::string encrypted = encrypt(protection(), plain_, record);
  const auto error_with = [&](const auto& damage, const std::string& password = "password") {
    EncryptionRecord changed = record;
    std::string text = encrypted;
    damage(changed, text);
    const Secret secret(password);
    return decrypt(changed, &secret, text);
  };
  EXPECT_EQ(error_with([](auto&, auto&) {}), ErrorCode::kOk);
  EXPECT_EQ(error_with([](auto&, auto&) {}, "passwore"), ErrorCode::kFileDecrypt);
  EXPECT_EQ(error_with([](auto& changed, auto&) { changed.salt[3] ^= 1; }), ErrorCode::kFileDecrypt);
  EXPECT_EQ(error_with([](auto& changed, auto&) { changed.iv[0] ^= 1; }), ErrorCode::kFileDecrypt);
  EXPECT_EQ(error_with([](auto& changed, auto&) { changed.digest[19] ^= 1; }), ErrorCode::kFileDecrypt);
  EXPECT_EQ(error_with([](auto&, auto& text) { text.back() ^= 1; }), ErrorCode::kFileDecrypt);
  EXPECT_EQ(error_with([](auto&, auto& text) { text.pop_back(); }), ErrorCode::kFileDecrypt);
  // A digest of the start looks no further.
  const auto digest_start = [&](auto& changed, auto& text) {
    ContentDigest digest(kDigestOfStart);
    digest.update(plain_);
    changed.digest_type = kDigestOfStart;
    changed.digest = digest.finish();
    text.back() ^= 1;
  };
  EXPECT_EQ(error_with(digest_start), ErrorCode::kOk);
}

TEST_P(MemberCipher, PublishesTheKeyForReadersOnly) {
  EncryptionRecord record;
  std::string text = encrypt(protection(), plain_, record);
  EXPECT_EQ(decrypt(record, nullptr, text), ErrorCode::kInvalidPassword);
  text = encrypt(protection(true), plain_, record);
  EXPECT_LE(record.key.size(), 63U);
  EXPECT_EQ(decrypt(record, nullptr, text), ErrorCode::kOk);
  EXPECT_EQ(text, plain_);
  text = encrypt(protection(true), plain_, record);
  const Secret wrong("another");
  EXPECT_EQ(decrypt(record, &wrong, text), ErrorCode::kFileDecrypt);
}

TEST_P(MemberCipher, QueueGivesFreshSaltsAndVectors) {
  const Protection how = protection();
  EncryptorQueue queue(how, 5, 3);
  std::set<std::string> salts;
  std::set<std::string> vectors;
  for (int i = 0; i < 7; ++i) {  // more than were announced
    MemberEncryptor encryptor;
    ASSERT_EQ(queue.take(encryptor), ErrorCode::kOk);
    std::string text = plain_;
    ASSERT_EQ(encryptor.run(text), ErrorCode::kOk);
    const EncryptionRecord record = encryptor.finish(text.size());
    salts.insert(record.salt);
    vectors.insert(record.iv);
    const Secret password("password");
    EXPECT_EQ(decrypt(record, &password, text), ErrorCode::kOk);
  }
  EXPECT_EQ(salts.size(), 7U);
  EXPECT_EQ(vectors.size(), 7U);
}

INSTANTIATE_TEST_SUITE_P(Algorithms, MemberCipher,
                         testing::Values(CipherAlgorithm::kBlowfishCfb, CipherAlgorithm::kTwofishCfb));

}  // namespace
}  // namespace rowvane

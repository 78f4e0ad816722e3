// Keys, ciphers and digests against answers that other implementations gave.
#include "crypto/cipher.h"

#include <gtest/gtest.h>

#include "crypto/digest.h"
#include "crypto/hex.h"
#include "crypto/key_derivation.h"
#include "crypto/old_format_cipher.h"
#include "crypto/random_source.h"

namespace rowvane {
namespace {

std::string key_hex(const std::string& password, const std::string& salt) {
  Secret key;
  EXPECT_EQ(derive_key(Secret(password), salt, key), ErrorCode::kOk);
  return to_hex(key.view());
}

// hashlib.pbkdf2_hmac('sha1', hashlib.sha1(password).digest(), salt, 1024, 16) of Python.
TEST(KeyDerivation, KnownAnswers) {
  EXPECT_EQ(key_hex("secret", counting(16)), "e750035a567fba6737fc0c927cb043e4");
  EXPECT_EQ(key_hex("secret", counting(16, 1)), "8992a08e20c6215c093141553d51c562");
  EXPECT_EQ(key_hex("Schlüssel €", std::string(16, '\xFF')), "728740580b2c45e0a44eb64ea3fdd67e");
  EXPECT_EQ(key_hex("", std::string(16, '\0')), "777c159282cc1b668139d76c6d499df2");
  Secret key;
  EXPECT_EQ(derive_key(Secret("secret"), counting(15), key), ErrorCode::kCryptographicKey);
}

struct CipherCase {
  CipherAlgorithm algorithm;
  std::string key;
  std::string iv;
  std::string plain;
  std::string encrypted;
};

// Blowfish: the CFB64 vector of Eric Young's set. Twofish: with zeros for key, vector and text, each block is
// the encryption of the one before, as in the table of the cipher's authors for 128-bit keys.
const CipherCase kCases[] = {
    {CipherAlgorithm::kBlowfishCfb, from_hex("0123456789ABCDEFF0E1D2C3B4A59687"),
     from_hex("FEDCBA9876543210"), std::string("7654321 Now is the time for \0", 29),
     from_hex("E73214A2822139CAF26ECF6D2EB9E76E3DA3DE04D1517200519D57A6C3")},
    {CipherAlgorithm::kTwofishCfb, std::string(16, '\0'), std::string(16, '\0'), std::string(37, '\0'),
     from_hex("9F589F5CF6122C32B6BFEC2F2AE8C35AD491DB16E7B1C39E86CB086B789F541905EF8C61A8")},
};

CipherStream started(const CipherCase& one, CipherDirection direction) {
  CipherStream stream;
  EXPECT_EQ(stream.start(one.algorithm, direction, Secret(one.key), one.iv), ErrorCode::kOk);
  return stream;
}

TEST(Cipher, KnownAnswersInPiecesOfAnySize) {
  for (const CipherCase& one : kCases) {
    for (size_t piece = 1; piece <= one.plain.size(); ++piece) {
      std::string text = one.plain;
      CipherStream encryptor = started(one, CipherDirection::kEncrypt);
      for (size_t at = 0; at < text.size(); at += piece)
        ASSERT_EQ(encryptor.run(std::span(text).subspan(at, std::min(piece, text.size() - at))),
                  ErrorCode::kOk);
      EXPECT_EQ(to_hex(text), to_hex(one.encrypted))
          << cipher_name(one.algorithm) << " in pieces of " << piece;
      CipherStream decryptor = started(one, CipherDirection::kDecrypt);
      for (size_t at = 0; at < text.size(); at += piece)
        ASSERT_EQ(decryptor.run(std::span(text).subspan(at, std::min(piece, text.size() - at))),
                  ErrorCode::kOk);
      EXPECT_EQ(text, one.plain) << piece;
    }
  }
}

TEST(Cipher, DecryptionBeginsAtAnyBlock) {
  for (const CipherCase& one : kCases) {
    const size_t unit = block_bytes(one.algorithm);
    std::string rest = one.encrypted.substr(unit);
    CipherStream stream;
    ASSERT_EQ(stream.start(one.algorithm, CipherDirection::kDecrypt, Secret(one.key),
                           one.encrypted.substr(0, unit)),
              ErrorCode::kOk);
    ASSERT_EQ(stream.run(rest), ErrorCode::kOk);
    EXPECT_EQ(rest, one.plain.substr(unit));
  }
}

TEST(Cipher, RefusesKeysAndVectorsOfOtherSizes) {
  CipherStream stream;
  std::string byte = "x";
  EXPECT_EQ(stream.run(byte), ErrorCode::kCryptographicKey);
  for (const CipherCase& one : kCases) {
    EXPECT_EQ(stream.start(one.algorithm, CipherDirection::kEncrypt, Secret(one.key.substr(1)), one.iv),
              ErrorCode::kCryptographicKey);
    EXPECT_EQ(stream.start(one.algorithm, CipherDirection::kEncrypt, Secret(one.key), one.iv.substr(1)),
              ErrorCode::kCryptographicKey);
  }
}

std::string digest_hex(std::string_view type, const std::string& content, size_t piece) {
  ContentDigest digest(type);
  for (size_t at = 0; at < content.size(); at += piece)
    digest.update(std::string_view(content).substr(at, piece));
  return to_hex(digest.finish());
}

TEST(Digest, OfTheWholeAndOfTheFirst1024Bytes) {
  const std::string million(1'000'000, 'a');
  EXPECT_EQ(digest_hex(kDigestOfAll, "abc", 2), "a9993e364706816aba3e25717850c26c9cd0d89d");
  EXPECT_EQ(digest_hex(kDigestOfStart, "abc", 1), "a9993e364706816aba3e25717850c26c9cd0d89d");
  EXPECT_EQ(digest_hex("any other type", million, 997), "34aa973cd4c4daa4f61eeb2bdbad27316534016f");
  for (const size_t piece : {size_t{1}, size_t{1000}, million.size()}) {
    EXPECT_EQ(digest_hex(kDigestOfStart, million, piece),
              digest_hex(kDigestOfAll, million.substr(0, 1024), 1024));
  }
}

TEST(Random, GivesOtherBytesEachTime) {
  RandomSource one;
  RandomSource two;
  std::string a;
  std::string b;
  std::string c;
  ASSERT_EQ(one.fill(16, a), ErrorCode::kOk);
  ASSERT_EQ(one.fill(16, b), ErrorCode::kOk);
  ASSERT_EQ(two.fill(16, c), ErrorCode::kOk);
  EXPECT_NE(a, b);
  EXPECT_NE(a, c);
  EXPECT_NE(a, std::string(16, '\0'));
}

TEST(Secrets, MoveAndCompare) {
  std::string text = "a password that lies on the heap, not in the string itself";
  const std::string copy = text;
  const char* const place = text.data();
  const size_t room = text.size();
  Secret secret = Secret::take(text);
  EXPECT_TRUE(text.empty());
  EXPECT_EQ(std::string_view(place, room), std::string(room, '\0'));
  Secret moved = std::move(secret);
  EXPECT_EQ(moved.view(), copy);
  EXPECT_TRUE(moved == Secret(copy));
  EXPECT_FALSE(moved == Secret(copy.substr(1)));
  EXPECT_FALSE(moved == Secret(copy.substr(1) + "x"));
}

// The old format's answers were worked out with the description of RC4 and Python's md5.
TEST(OldFormatCipher, KnownAnswers) {
  const auto stream_hex = [](int bits, size_t piece) {
    OldFormatCipher cipher;
    EXPECT_EQ(cipher.start(Secret("secret"), bits), ErrorCode::kOk);
    std::string zeros(24, '\0');
    for (size_t at = 0; at < zeros.size(); at += piece)
      EXPECT_EQ(cipher.run(std::span(zeros).subspan(at, std::min(piece, zeros.size() - at))), ErrorCode::kOk);
    return to_hex(zeros);
  };
  for (const size_t piece : {1, 7, 24}) {
    EXPECT_EQ(stream_hex(128, piece), "961cf8dfbb7faf867d15bff9147f077d053443e096080621");
    EXPECT_EQ(stream_hex(40, piece), "ed5ae6088eec34dda3e88886798730d9ff7f0936ab60d01d");
    EXPECT_EQ(stream_hex(56, piece), stream_hex(40, piece));
  }
  OldFormatCipher unused;
  std::string byte = "x";
  EXPECT_EQ(unused.run(byte), ErrorCode::kFileDecrypt);
}

}  // namespace
}  // namespace rowvane

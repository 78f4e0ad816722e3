#include "file/manifest.h"

#include <gtest/gtest.h>

namespace rowvane {
namespace {

const std::string kHeader =
    "File\tDeflated\tSize\tDigestType\tDigestValue\tAlgorithm\tIV\tKey\tSalt\tIterations\r\n";
const std::string kDigest = "AAECAwQFBgcICQoLDA0ODxAREhM=";
const std::string kIv8 = "AAECAwQFBgc=";
const std::string k16 = "AAECAwQFBgcICQoLDA0ODw==";

std::string counting(size_t count) {
  std::string bytes;
  for (size_t i = 0; i < count; ++i) bytes += static_cast<char>(i);
  return bytes;
}

EncryptionRecord record_of(CipherAlgorithm algorithm) {
  return {.size = 18446744073709551615U,
          .digest_type = "SHA1",
          .digest = counting(20),
          .algorithm = algorithm,
          .iv = counting(block_bytes(algorithm)),
          .key = std::string(63, 'k'),
          .salt = counting(16),
          .iterations = 2147483647};
}

std::string encrypted_line(const std::string& size, const std::string& digest, const std::string& algorithm,
                           const std::string& iv, const std::string& key, const std::string& salt,
                           const std::string& iterations) {
  return "t\t1\t" + size + "\tSHA1\t" + digest + "\t" + algorithm + "\t" + iv + "\t" + key + "\t" + salt +
         "\t" + iterations;
}

ErrorCode read(const std::string& text) {
  std::vector<ManifestEntry> entries;
  return read_manifest(text, entries);
}

TEST(Manifest, WritesTheExactText) {
  EXPECT_EQ(write_manifest({}), kHeader);
  EXPECT_EQ(write_manifest({{"a.xml", true, {}}, {"b/c", false, {}}}), kHeader + "a.xml\t1\r\nb/c\t0");
  EXPECT_EQ(write_manifest({{"t", true, record_of(CipherAlgorithm::kBlowfishCfb)}}),
            kHeader + encrypted_line("18446744073709551615", kDigest, "Blowfish CFB", kIv8,
                                     std::string(63, 'k'), k16, "2147483647"));
}

TEST(Manifest, ReadsWhatItWrites) {
  const std::vector<ManifestEntry> entries{{"Tables/\xE4 1", true, record_of(CipherAlgorithm::kTwofishCfb)},
                                           {"plain", false, {}},
                                           {"b", true, record_of(CipherAlgorithm::kBlowfishCfb)}};
  std::vector<ManifestEntry> read_back;
  ASSERT_EQ(read_manifest(write_manifest(entries), read_back), ErrorCode::kOk);
  EXPECT_EQ(read_back, entries);
  ASSERT_EQ(read_manifest(write_manifest({}), read_back), ErrorCode::kOk);
  EXPECT_TRUE(read_back.empty());
}

TEST(Manifest, ToleratesWhatEditorsDo) {
  std::vector<ManifestEntry> expected{{"a", true, {}}, {"b", false, {}}};
  std::string unix_lines = kHeader + "a\t1\r\nb\t0\r\n";
  std::erase(unix_lines, '\r');
  for (const std::string& text :
       {kHeader + "a\t1\r\nb\t0\r\n", unix_lines, "\xEF\xBB\xBF" + kHeader + "a\t1\nb\t0"}) {
    std::vector<ManifestEntry> entries;
    ASSERT_EQ(read_manifest(text, entries), ErrorCode::kOk) << text;
    EXPECT_EQ(entries, expected);
  }
  EXPECT_EQ(read(kHeader.substr(0, kHeader.size() - 2)), ErrorCode::kOk);
}

TEST(Manifest, RefusesBrokenLines) {
  EXPECT_EQ(read(""), ErrorCode::kManifest);
  EXPECT_EQ(read("\r\n"), ErrorCode::kManifest);
  EXPECT_EQ(read("file" + kHeader.substr(4)), ErrorCode::kManifest);
  for (const char* line :
       {"a", "a\t", "a\t2", "a\t01", "a\t1\t", "a\t1\t5", "\t1", "a\t1\r\n\r\nb\t1", "a\t1\r\na\t0",
        "../a\t1", "/a\t1", "c:a\t1", "a\\b\t1", "a\t1\r\n\r\n", "a\rb\t1"}) {
    EXPECT_EQ(read(kHeader + line), ErrorCode::kManifest) << line;
  }
  EXPECT_EQ(read(kHeader + std::string("a\0b\t1", 5)), ErrorCode::kManifest);
}

TEST(Manifest, RefusesBrokenEncryptionData) {
  const auto read_line = [](const std::string& line) { return read(kHeader + line); };
  const std::string blowfish = "Blowfish CFB";
  ASSERT_EQ(read_line(encrypted_line("0", kDigest, blowfish, kIv8, "", k16, "0")), ErrorCode::kOk);

  for (const char* size : {"", "-1", "+1", " 1", "1 ", "0x1", "1.0", "18446744073709551616"}) {
    EXPECT_EQ(read_line(encrypted_line(size, kDigest, blowfish, kIv8, "", k16, "1")), ErrorCode::kManifest)
        << size;
  }
  for (const char* iterations : {"", "-1", "-0", "2147483648", "1e3"}) {
    EXPECT_EQ(read_line(encrypted_line("1", kDigest, blowfish, kIv8, "", k16, iterations)),
              ErrorCode::kManifest)
        << iterations;
  }
  EXPECT_EQ(read_line(encrypted_line("1", k16, blowfish, kIv8, "", k16, "1")), ErrorCode::kManifest);
  EXPECT_EQ(read_line(encrypted_line("1", kDigest + " ", blowfish, kIv8, "", k16, "1")),
            ErrorCode::kManifest);
  EXPECT_EQ(read_line(encrypted_line("1", kDigest, blowfish, k16, "", k16, "1")), ErrorCode::kManifest);
  EXPECT_EQ(read_line(encrypted_line("1", kDigest, "Twofish CFB", kIv8, "", k16, "1")), ErrorCode::kManifest);
  EXPECT_EQ(read_line(encrypted_line("1", kDigest, "AES CFB", kIv8, "", k16, "1")), ErrorCode::kManifest);
  EXPECT_EQ(read_line(encrypted_line("1", kDigest, blowfish, kIv8, std::string(64, 'k'), k16, "1")),
            ErrorCode::kManifest);
  EXPECT_EQ(read_line(encrypted_line("1", kDigest, blowfish, kIv8, "", kIv8, "1")), ErrorCode::kManifest);
}

TEST(Manifest, LeavesNoEntriesBehindAfterAnError) {
  std::vector<ManifestEntry> entries{{"old", true, {}}};
  EXPECT_EQ(read_manifest(kHeader + "a\t1\r\nb\t3", entries), ErrorCode::kManifest);
  EXPECT_TRUE(entries.empty());
}

}  // namespace
}  // namespace rowvane

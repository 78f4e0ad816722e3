// What is left of a password in the memory of the process: nothing, once the databases are closed.
//
// The whole writable memory is searched. The test itself knows the password masked only and never holds it in
// one piece; that the search finds it while a database is open shows that it works.
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

#include <array>
#include <fstream>
#include <sstream>

#include "crypto/field_encryption.h"
#include "database_test_support.h"

namespace rowvane {
namespace {

constexpr unsigned char kMask = 0x5A;
constexpr size_t kLength = 96;
constexpr size_t kSearched = 32;  // bytes at the end: freeing memory overwrites what stands first in it

class PasswordTrace : public testing::Test {
 protected:
  PasswordTrace() {
    std::random_device random;
    for (unsigned char& c : masked_) c = static_cast<unsigned char>(('a' + random() % 26) ^ kMask);
  }

  Secret secret() const {
    Secret made = Secret::of_size(kLength);
    for (size_t i = 0; i < kLength; ++i) made.bytes()[i] = static_cast<char>(masked_[i] ^ kMask);
    return made;
  }

  bool is_password_end(const char* bytes) const {
    for (size_t i = 0; i < kSearched; ++i) {
      if ((static_cast<unsigned char>(bytes[i]) ^ kMask) != masked_[kLength - kSearched + i]) return false;
    }
    return true;
  }

  // Places of the process's writable memory that hold the end of the password.
  size_t count() const {
    std::ifstream memory("/proc/self/mem", std::ios::binary);
    std::ifstream maps("/proc/self/maps");
    size_t found = 0;
    std::string piece;
    for (std::string line; std::getline(maps, line);) {
      std::istringstream words(line);
      uint64_t first = 0;
      uint64_t end = 0;
      char dash = 0;
      std::string access;
      words >> std::hex >> first >> dash >> end >> access;
      if (access.size() < 2 || access[0] != 'r' || access[1] != 'w') continue;
      piece.resize(end - first);
      memory.clear();
      memory.seekg(static_cast<std::streamoff>(first));
      memory.read(piece.data(), static_cast<std::streamsize>(piece.size()));
      const auto read = static_cast<size_t>(std::max<std::streamsize>(memory.gcount(), 0));
      for (size_t at = 0; at + kSearched <= read; ++at) found += is_password_end(piece.data() + at);
      wipe(piece);
    }
    return found;
  }

  std::array<unsigned char, kLength> masked_{};
  TestFolder folder_;
};

TEST_F(PasswordTrace, NothingIsLeftAfterClosing) {
  ASSERT_EQ(count(), 0U);
  const std::string path = folder_.path("shop.rvb");
  {
    OpenFile shop(make_shop());
    ProtectionSettings settings;
    settings.password = secret();
    settings.repeated = secret();
    EXPECT_GE(count(), 2U);
    ASSERT_TRUE(check_protection(settings).passes());
    ASSERT_EQ(shop.file->set_protection(make_protection(std::move(settings))), ErrorCode::kOk);
    FieldEncryptionSettings fields;
    fields.fields = {0, 2};
    fields.password = secret();
    fields.repeated = secret();
    CWorkSheet* orders = shop.database->find_table("orders");
    ASSERT_TRUE(check_encrypt_fields(*orders, fields).passes());
    ASSERT_EQ(encrypt_fields(*orders, fields).failure, ErrorCode::kOk);
    ASSERT_EQ(save_file(shop, path), ErrorCode::kOk);
    EXPECT_GE(count(), 1U);
  }
  EXPECT_EQ(count(), 0U);
  {
    OpenedDatabase opened =
        open_database(path, {}, nullptr, Progress::none(), std::make_shared<const Secret>(secret()));
    ASSERT_EQ(opened.failure, ErrorCode::kOk);
    ASSERT_EQ(opened.file->save(path, {}, {}).failure, ErrorCode::kOk);
    EXPECT_GE(count(), 1U);
  }
  EXPECT_EQ(count(), 0U);
}

}  // namespace
}  // namespace rowvane

#endif

// Protected database files: what is in them, who may open them, and what damage does.
#include <functional>
#include <set>

#include "crypto/field_encryption.h"
#include "database_test_support.h"

namespace rowvane {
namespace {

std::shared_ptr<const Secret> secret(const std::string& password) {
  return std::make_shared<const Secret>(password);
}

OpenedDatabase open_with(const std::string& path, const std::string& password, const Options& options = {}) {
  return open_database(path, options, nullptr, Progress::none(), secret(password));
}

std::vector<ManifestEntry> manifest_of(const std::string& path) {
  std::vector<ManifestEntry> entries;
  EXPECT_EQ(read_manifest(member_content(path, "META-INF/manifest.txt"), entries), ErrorCode::kOk);
  return entries;
}

// Everything in the archive as bytes: what somebody without the password can search.
std::string all_members(const std::string& path) {
  std::string all;
  for (const std::string& name : member_names(path)) all += member_content(path, name);
  return all;
}

class ProtectedFile : public testing::TestWithParam<CipherAlgorithm> {
 protected:
  Protection protection(bool read_only_open = false) const {
    return {secret("password"), GetParam(), read_only_open};
  }

  OpenFile saved_shop(bool read_only_open = false) {
    OpenFile shop(make_shop());
    EXPECT_EQ(shop.file->set_protection(protection(read_only_open)), ErrorCode::kOk);
    EXPECT_EQ(save_file(shop, path_), ErrorCode::kOk);
    return shop;
  }

  // Opening the file after one column of a member's line was changed by CHANGE.
  ErrorCode error_with(const std::string& member, const std::function<void(ManifestEntry&)>& change,
                       const std::string& password = "password") {
    const std::string whole = read_file(path_);
    std::vector<ManifestEntry> entries = manifest_of(path_);
    for (ManifestEntry& entry : entries) {
      if (entry.name == member) change(entry);
    }
    replace_manifest(write_manifest(entries));
    const ErrorCode error = open_with(path_, password).failure.error();
    write_file(path_, whole);
    return error;
  }

  // All other members stay as they are, byte by byte.
  void replace_manifest(const std::string& text) {
    ZipReader reader;
    ASSERT_EQ(reader.open(path_), ErrorCode::kOk);
    ZipWriter writer;
    ASSERT_EQ(writer.create(path_, {}), ErrorCode::kOk);
    for (const ZipMember& member : reader.members()) {
      const bool is_manifest = member.name == kManifestName;
      ASSERT_EQ(is_manifest ? writer.add(kManifestName, text, ZipMethod::kDeflated)
                            : writer.copy(reader, member, member.name),
                ErrorCode::kOk);
    }
    ASSERT_EQ(writer.finish(), ErrorCode::kOk);
  }

  TestFolder folder_;
  std::string path_ = folder_.path("shop.rvb");
};

TEST_P(ProtectedFile, OpensWithThePasswordOnly) {
  const std::string before = describe(*saved_shop().database);
  OpenedDatabase opened = open_with(path_, "password");
  ASSERT_EQ(opened.failure, ErrorCode::kOk);
  EXPECT_EQ(describe(*opened.database), before);
  EXPECT_EQ(opened.file->protection()->algorithm, GetParam());
  EXPECT_FALSE(opened.file->is_read_only());
  for (const char* wrong : {"passwore", "Password", "password ", "passwor"})
    EXPECT_EQ(open_with(path_, wrong).failure, ErrorCode::kInvalidPassword) << wrong;
  EXPECT_EQ(open_database(path_, Options()).failure, ErrorCode::kInvalidPassword);
}

TEST_P(ProtectedFile, NothingReadableIsLeftInTheArchive) {
  saved_shop();
  const std::string all = all_members(path_);
  for (const char* text : {"first", "plain note", "rtf1", "print(1)", "offer.pdf", "Köln", "checked"})
    EXPECT_EQ(all.find(text), std::string::npos) << text;
  std::set<std::string> salts;
  for (const ManifestEntry& entry : manifest_of(path_)) {
    const bool is_plain = entry.name == "this-version.txt" || entry.name == "min-version.txt";
    ASSERT_EQ(entry.encryption.has_value(), !is_plain) << entry.name;
    if (is_plain) continue;
    EXPECT_EQ(entry.encryption->algorithm, GetParam());
    EXPECT_EQ(entry.encryption->key, "");
    EXPECT_TRUE(salts.insert(entry.encryption->salt).second) << entry.name;
    EXPECT_EQ(entry.deflated, !entry.name.ends_with(".JPG")) << entry.name;
    ZipReader reader;
    ASSERT_EQ(reader.open(path_), ErrorCode::kOk);
    EXPECT_TRUE(reader.find(entry.name)->is_stored());
  }
}

TEST_P(ProtectedFile, EachSaveTakesFreshSaltsAndVectors) {
  saved_shop();
  const std::string content = describe(*open_with(path_, "password").database);
  std::set<std::string> seen;
  const auto all_are_new = [&] {
    size_t members = 0;
    size_t fresh = 0;
    for (const ManifestEntry& entry : manifest_of(path_)) {
      if (!entry.encryption) continue;
      members += 2;
      fresh += seen.insert(entry.encryption->salt).second;
      fresh += seen.insert(entry.encryption->iv).second;
    }
    return members > 10 && fresh == members;
  };
  EXPECT_TRUE(all_are_new());
  OpenFile again(open_with(path_, "password"));
  EXPECT_EQ(save_file(again, path_), ErrorCode::kOk);  // nothing has changed
  EXPECT_TRUE(all_are_new());
  EXPECT_EQ(save_file(again, path_), ErrorCode::kOk);  // from the file just written
  EXPECT_TRUE(all_are_new());
  EXPECT_EQ(describe(*again.database), content);
  EXPECT_EQ(describe(*open_with(path_, "password").database), content);
}

TEST_P(ProtectedFile, ProtectionIsSetChangedAndTakenAway) {
  OpenFile shop(make_shop());
  ASSERT_EQ(save_file(shop, path_), ErrorCode::kOk);
  const std::string content = describe(*shop.database);
  OpenFile open = open_file(path_);
  ASSERT_EQ(open.file->set_protection(protection()), ErrorCode::kOk);
  EXPECT_TRUE(open.database->is_modified());
  ASSERT_EQ(save_file(open, path_), ErrorCode::kOk);
  EXPECT_EQ(all_members(path_).find("plain note"), std::string::npos);

  const auto other = GetParam() == CipherAlgorithm::kTwofishCfb ? CipherAlgorithm::kBlowfishCfb
                                                                : CipherAlgorithm::kTwofishCfb;
  OpenFile changed(open_with(path_, "password"));
  ASSERT_EQ(changed.file->set_protection(Protection{secret("another"), other, false}), ErrorCode::kOk);
  ASSERT_EQ(save_file(changed, path_), ErrorCode::kOk);
  EXPECT_EQ(open_with(path_, "password").failure, ErrorCode::kInvalidPassword);
  OpenFile plain(open_with(path_, "another"));
  EXPECT_EQ(plain.file->protection()->algorithm, other);
  EXPECT_EQ(describe(*plain.database), content);
  ASSERT_EQ(plain.file->set_protection(std::nullopt), ErrorCode::kOk);
  ASSERT_EQ(save_file(plain, path_), ErrorCode::kOk);
  EXPECT_EQ(describe(*plain.database), content);
  OpenFile last = open_file(path_);
  EXPECT_EQ(last.file->protection(), nullptr);
  EXPECT_EQ(describe(*last.database), content);
  EXPECT_NE(all_members(path_).find("plain note"), std::string::npos);
}

TEST_P(ProtectedFile, ReadersWithoutThePasswordMayNotSave) {
  const std::string content = describe(*saved_shop(true).database);
  const std::string bytes = read_file(path_);
  OpenFile reader(open_database(path_, Options()));
  ASSERT_TRUE(reader.file->is_read_only());
  EXPECT_TRUE(reader.file->protection()->read_only_open);
  EXPECT_EQ(describe(*reader.database), content);
  EXPECT_EQ(save_file(reader, path_), ErrorCode::kInvalidPassword);
  SaveSettings copy;
  copy.as_copy = true;
  EXPECT_EQ(save_file(reader, folder_.path("copy.rvb"), copy), ErrorCode::kInvalidPassword);
  EXPECT_EQ(reader.file->set_protection(std::nullopt), ErrorCode::kInvalidPassword);
  EXPECT_EQ(read_file(path_), bytes);
  EXPECT_EQ(open_with(path_, "passwore").failure, ErrorCode::kInvalidPassword);
  OpenFile owner(open_with(path_, "password"));
  EXPECT_FALSE(owner.file->is_read_only());
  EXPECT_EQ(save_file(owner, path_), ErrorCode::kOk);
}

TEST_P(ProtectedFile, DamageIsNoticed) {
  saved_shop();
  for (const char* member : {"config.dat", "orders.txt"}) {
    const ErrorCode refusal =
        member == std::string("config.dat") ? ErrorCode::kInvalidPassword : ErrorCode::kFileDecrypt;
    EXPECT_EQ(error_with(member, [](auto& entry) { entry.encryption->salt[5] ^= 1; }), refusal);
    EXPECT_EQ(error_with(member, [](auto& entry) { entry.encryption->iv[0] ^= 1; }), refusal);
    EXPECT_EQ(error_with(member, [](auto& entry) { entry.encryption->digest[0] ^= 1; }), refusal);
    EXPECT_EQ(error_with(member, [](auto& entry) { entry.encryption->size += 1; }), ErrorCode::kFileDecrypt);
    EXPECT_EQ(error_with(member, [](auto& entry) { entry.encryption->size = UINT64_MAX; }),
              ErrorCode::kFileDecrypt);
    EXPECT_EQ(error_with(member, [](auto& entry) { entry.encryption->iterations = 1; }), ErrorCode::kOk);
    const std::string whole = read_file(path_);
    damage_member(path_, member);
    EXPECT_EQ(open_with(path_, "password").failure, ErrorCode::kFileDecrypt) << member;
    write_file(path_, whole);
  }
  EXPECT_EQ(error_with("config.dat", [](auto&) {}), ErrorCode::kOk);
}

TEST_P(ProtectedFile, CutMembersAndLinesAreRefused) {
  saved_shop();
  const std::string manifest = member_content(path_, std::string(kManifestName));
  const std::string whole = read_file(path_);
  const std::string table = member_content(path_, "orders.txt");
  ArchiveEdit(path_).set("orders.txt", table.substr(0, table.size() - 3)).write();
  EXPECT_EQ(open_with(path_, "password").failure, ErrorCode::kFileDecrypt);
  write_file(path_, whole);
  const size_t last_column = manifest.find("\t1024\r\n");
  ASSERT_NE(last_column, std::string::npos);
  replace_manifest(std::string(manifest).erase(last_column, 5));  // a line of nine columns
  EXPECT_EQ(open_with(path_, "password").failure, ErrorCode::kManifest);
}

TEST_P(ProtectedFile, ADamagedContentIsLeftOutAndTold) {
  saved_shop();
  const std::string name = "shop.rvb-bin/orders.r000000002f00003/text.txt";
  damage_member(path_, name);
  OpenFile open(open_with(path_, "password"));
  std::string text;
  const CellValue value = open.database->find_table("orders")->value(2, 2);
  EXPECT_EQ(std::get<Content>(value).read(text), ErrorCode::kFileDecrypt);
  const Outcome result = open.file->save(path_, {}, {});
  EXPECT_EQ(result.failure, ErrorCode::kOk);
  EXPECT_TRUE(has_notice(result.notices, ErrorCode::kBinaryFieldsCorrupted));
  EXPECT_EQ(open_with(path_, "password").failure, ErrorCode::kOk);
}

TEST_P(ProtectedFile, OtherArchiversMayPackItAnew) {
  const std::string content = describe(*saved_shop().database);
  ArchiveEdit(path_).write();  // all members deflated, without block indexes
  OpenFile open(open_with(path_, "password"));
  EXPECT_EQ(describe(*open.database), content);
  ASSERT_EQ(save_file(open, path_), ErrorCode::kOk);
  EXPECT_EQ(describe(*open_with(path_, "password").database), content);
}

// Large enough for several blocks, large contents and many small ones.
TEST_P(ProtectedFile, LargeTablesAndContentsOnSeveralThreads) {
  constexpr uint32_t kRecords = 150'000;
  OpenFile open(std::make_unique<Database>("large"));
  CWorkSheet* table = add_sample_table(*open.database, open.database->root(), "t");
  ASSERT_EQ(table->insert_records(1, kRecords), ErrorCode::kOk);
  NumberColumn numbers;
  TextColumn texts;
  std::mt19937 random(1);
  for (uint32_t i = 0; i < kRecords; ++i) {
    numbers.cells.push_back(static_cast<double>(random()));
    texts.cells.push_back(texts.code_for("text " + std::to_string(random())));
  }
  ASSERT_EQ(table->replace_column(0, table->field(0), std::move(texts)), ErrorCode::kOk);
  ASSERT_EQ(table->replace_column(1, table->field(1), std::move(numbers)), ErrorCode::kOk);
  for (uint32_t record = 1; record <= 200; ++record)
    ASSERT_EQ(table->set_value(RecordNumber(record), 2, Content::of("note " + std::to_string(record))),
              ErrorCode::kOk);
  ASSERT_EQ(table->set_value(1, 3, FileList{make_file("large.bin", sample_text(20 << 20))}), ErrorCode::kOk);
  const std::string content = describe(*table);
  ASSERT_EQ(open.file->set_protection(protection()), ErrorCode::kOk);
  Options options;
  for (const int threads : {1, 3, 2}) {  // made anew, then encrypted anew twice
    options.used_processor_cores = threads;
    ASSERT_EQ(save_file(open, path_, {}, options), ErrorCode::kOk);
    OpenedDatabase opened = open_with(path_, "password", options);
    ASSERT_EQ(opened.failure, ErrorCode::kOk);
    EXPECT_TRUE(describe(*opened.database->find_table("t")) == content) << threads;
  }
  ZipReader reader;
  ASSERT_EQ(reader.open(path_), ErrorCode::kOk);
  const ZipMember& member = *reader.find("t.txt");
  EXPECT_GT(member.index.blocks.size(), 3U);
  EXPECT_TRUE(member.index.encrypted);
  EXPECT_LT(member.size, manifest_of(path_)[3].encryption->size / 2);
  // One byte in one of the blocks, with the archive's own CRC put right.
  std::string bytes = member_content(path_, "t.txt");
  bytes[bytes.size() / 2] ^= 1;
  ZipWriter writer;
  ASSERT_EQ(writer.create(path_, {}), ErrorCode::kOk);
  for (const ZipMember& one : reader.members()) {
    ZipBlockIndex index = one.index;
    const auto whole = [&](uint64_t block, std::string& out) {
      out = bytes.substr(index.blocks[block].offset, index.blocks[block].compressed_size);
      return ErrorCode::kOk;
    };
    const auto as_it_is = [](std::span<char>) { return ErrorCode::kOk; };
    ASSERT_EQ(&one == &member ? writer.add_packed_blocks("t.txt", index, 0, whole, as_it_is)
                              : writer.copy(reader, one, one.name),
              ErrorCode::kOk);
  }
  ASSERT_EQ(writer.finish(), ErrorCode::kOk);
  EXPECT_EQ(open_with(path_, "password", options).failure, ErrorCode::kFileDecrypt);
}

TEST_P(ProtectedFile, BackupsAndUnusedMembersShowNothingNew) {
  saved_shop();
  const std::string former = read_file(path_);
  // A value of a field that is deleted stays in the file until it is compacted, and stays encrypted.
  OpenFile open(open_with(path_, "password"));
  Options options;
  options.backups = true;
  ASSERT_EQ(save_file(open, path_, {}, options), ErrorCode::kOk);
  EXPECT_EQ(read_file(path_ + ".bak"), former);
  {
    ZipReader reader;
    ASSERT_EQ(reader.open(path_), ErrorCode::kOk);
    ArchiveEdit edit(path_);
    edit.set("notes/foreign.bin", "foreign bytes").write();
  }
  OpenFile with_foreign(open_with(path_, "password"));
  ASSERT_TRUE(with_foreign.file->has_unused_members());
  ASSERT_EQ(save_file(with_foreign, path_), ErrorCode::kOk);
  EXPECT_EQ(all_members(path_).find("foreign bytes"), std::string::npos);
  ASSERT_EQ(with_foreign.file->set_protection(std::nullopt), ErrorCode::kOk);
  ASSERT_EQ(save_file(with_foreign, path_), ErrorCode::kOk);
  EXPECT_EQ(member_content(path_, "notes/foreign.bin"), "foreign bytes");
}

INSTANTIATE_TEST_SUITE_P(Algorithms, ProtectedFile,
                         testing::Values(CipherAlgorithm::kBlowfishCfb, CipherAlgorithm::kTwofishCfb));

TEST(EncryptedFields, AreSavedAndComeBack) {
  TestFolder folder;
  const std::string path = folder.path("shop.rvb");
  OpenFile shop(make_shop());
  CWorkSheet* orders = shop.database->find_table("orders");
  const std::string longest(8169, 'x');
  ASSERT_EQ(orders->set_value(1, 0, longest), ErrorCode::kOk);
  const std::string content = describe(*shop.database);
  FieldEncryptionSettings settings;
  settings.fields = {0, 1, 2, 3, 4};
  settings.password = Secret("password");
  settings.repeated = Secret("password");
  ASSERT_EQ(encrypt_fields(*orders, settings).failure, ErrorCode::kOk);
  const std::string encrypted = describe(*shop.database);
  ASSERT_EQ(save_file(shop, path), ErrorCode::kOk);
  EXPECT_EQ(all_members(path).find("plain note in \"\""), std::string::npos);
  OpenFile open = open_file(path);
  EXPECT_TRUE(open.notices.empty());
  EXPECT_EQ(describe(*open.database), encrypted);
  CWorkSheet* opened = open.database->find_table("orders");
  ASSERT_EQ(decrypt_fields(*opened, settings).failure, ErrorCode::kOk);
  EXPECT_EQ(describe(*open.database), content);

  OpenFile changed = open_file(path);
  CWorkSheet* table = changed.database->find_table("orders");
  Column column = table->column(0);
  store_value(column, 0, std::string("changed"));
  ASSERT_EQ(table->replace_column(0, table->field(0), std::move(column)), ErrorCode::kOk);
  const std::string bytes = read_file(path);
  EXPECT_EQ(save_file(changed, path), ErrorCode::kEncryptedDataChanged);
  EXPECT_EQ(read_file(path), bytes);
}

}  // namespace
}  // namespace rowvane

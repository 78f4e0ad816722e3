// The members of a database file: which there are, what they hold, and how the container is chosen.
#include <set>

#include "database_test_support.h"

namespace rowvane {
namespace {

std::string saved_shop(const TestFolder& folder, const SaveSettings& settings = {}) {
  OpenFile shop(make_shop());
  EXPECT_EQ(save_file(shop, folder.path("shop.rvb"), settings), ErrorCode::kOk);
  return folder.path("shop.rvb");
}

TEST(DatabaseMembers, OrderAndNames) {
  TestFolder folder;
  const std::string root = "shop.rvb-bin/orders.r00000000";
  const std::string inner = "shop.rvb-bin/archive/2024/orders.r00000000";
  const std::vector<std::string> expected = {"this-version.txt",
                                             "min-version.txt",
                                             "config.dat",
                                             "orders.txt",
                                             "Städte.txt",
                                             "archive/2024/orders.txt",
                                             root + "2f00003/text.txt",
                                             root + "3f00003/text.rtf",
                                             root + "3f00004/photo.JPG",
                                             root + "3f00004/list.csv",
                                             root + "1f00005/text.txt",
                                             inner + "2f00003/text.txt",
                                             inner + "3f00003/text.rtf",
                                             inner + "3f00004/photo.JPG",
                                             inner + "3f00004/list.csv",
                                             inner + "1f00005/text.txt",
                                             "META-INF/manifest.txt"};
  EXPECT_EQ(member_names(saved_shop(folder)), expected);
}

TEST(DatabaseMembers, FolderOfRecordTwelveFieldThree) {
  TestFolder folder;
  OpenFile shop(std::make_unique<Database>());
  CWorkSheet* orders = add_sample_table(*shop.database, shop.database->root(), "orders");
  ASSERT_EQ(orders->insert_records(1, 12), ErrorCode::kOk);
  ASSERT_EQ(orders->set_value(12, 2, Content::of("note")), ErrorCode::kOk);
  ASSERT_EQ(save_file(shop, folder.path("shop.rvb")), ErrorCode::kOk);
  EXPECT_EQ(member_content(folder.path("shop.rvb"), "shop.rvb-bin/orders.r000000012f00003/text.txt"), "note");
}

TEST(DatabaseMembers, VersionsAndTables) {
  TestFolder folder;
  const std::string path = saved_shop(folder);
  EXPECT_EQ(member_content(path, "this-version.txt"), "2025");
  EXPECT_EQ(member_content(path, "min-version.txt"), "2025");
  EXPECT_EQ(member_content(path, "Städte.txt"), "\xEF\xBB\xBFtext,number,long,files,code\r\n");
  EXPECT_EQ(member_content(path, "orders.txt"),
            "\xEF\xBB\xBFtext,number,long,files,code\r\nfirst ,,,,\r\n,12.5,,,\r\n"
            ",,,\"photo.JPG\nlist.csv\n|/home/shop/offer.pdf\",\r\n");
}

TEST(DatabaseMembers, Manifest) {
  TestFolder folder;
  OpenFile open(std::make_unique<Database>());
  CWorkSheet* table = add_sample_table(*open.database, open.database->root(), "Ärger");
  ASSERT_EQ(table->insert_records(1, 1), ErrorCode::kOk);
  ASSERT_EQ(table->set_value(1, 3, FileList{make_file("a.zip"), make_file("b.bmp")}), ErrorCode::kOk);
  ASSERT_EQ(save_file(open, folder.path("x.rvb")), ErrorCode::kOk);
  EXPECT_EQ(member_content(folder.path("x.rvb"), "META-INF/manifest.txt"),
            "File\tDeflated\tSize\tDigestType\tDigestValue\tAlgorithm\tIV\tKey\tSalt\tIterations\r\n"
            "this-version.txt\t1\r\nmin-version.txt\t1\r\nconfig.dat\t1\r\nÄrger.txt\t1\r\n"
            "x.rvb-bin/Ärger.r000000001f00004/a.zip\t0\r\nx.rvb-bin/Ärger.r000000001f00004/b.bmp\t1");
}

TEST(DatabaseMembers, StoredExtensionsComeFromTheOptions) {
  TestFolder folder;
  Options options;
  options.non_deflate_files = {"csv"};
  OpenFile shop(make_shop());
  ASSERT_EQ(save_file(shop, folder.path("s.rvb"), {}, options), ErrorCode::kOk);
  ZipReader reader;
  ASSERT_EQ(reader.open(folder.path("s.rvb")), ErrorCode::kOk);
  EXPECT_TRUE(reader.find("s.rvb-bin/orders.r000000003f00004/photo.JPG")->is_deflated());
  EXPECT_TRUE(reader.find("s.rvb-bin/orders.r000000003f00004/list.csv")->is_stored());
  EXPECT_TRUE(reader.find("orders.txt")->is_deflated());
}

TEST(DatabaseMembers, FileNamesThatAreNoMemberNamesAreRepaired) {
  TestFolder folder;
#ifdef _WIN32  // has no such names of files but these
  const std::vector<std::string> names = {"...rvb", " x.rvb"};
#else
  const std::vector<std::string> names = {"...rvb", "a\tb.rvb", " x.rvb", "c\\d.rvb"};
#endif
  for (const std::string& name : names) {
    OpenFile shop(make_shop());
    ASSERT_EQ(save_file(shop, folder.path(name)), ErrorCode::kOk) << name;
    EXPECT_EQ(describe(*open_file(folder.path(name)).database), describe(*shop.database)) << name;
  }
}

TEST(DatabaseMembers, RenamedFileKeepsItsContents) {
  TestFolder folder;
  const std::string path = saved_shop(folder);
  std::filesystem::rename(path, folder.path("renamed.zip"));
  OpenFile open = open_file(folder.path("renamed.zip"));
  const std::string shop = describe(*make_shop());
  EXPECT_EQ(describe(*open.database), shop);
  EXPECT_EQ(open.database->name(), "renamed");
  ASSERT_EQ(save_file(open, folder.path("renamed.zip")), ErrorCode::kOk);
  EXPECT_EQ(member_content(folder.path("renamed.zip"), "renamed.rvb-bin/orders.r000000003f00003/text.rtf"),
            "{\\rtf1 bold}");
  EXPECT_EQ(describe(*open_file(folder.path("renamed.zip")).database), shop);
}

TEST(DatabaseContainer, VariantIsKeptUnlessChosen) {
  TestFolder folder;
  const std::string path = saved_shop(folder);
  EXPECT_EQ(open_file(path).file->variant(), ZipVariant::kZip64);
  EXPECT_FALSE(has_notice(open_file(path).notices, MessageId::kConvertToZip64));
  SaveSettings zip32;
  zip32.variant = SaveVariant::kZip32;
  SaveSettings zip64;
  zip64.variant = SaveVariant::kZip64;
  const auto resave = [&path](const SaveSettings& settings) {
    OpenFile open = open_file(path);
    EXPECT_EQ(save_file(open, path, settings), ErrorCode::kOk);
    const ZipVariant told = open.file->variant();
    const OpenFile again = open_file(path);
    EXPECT_EQ(told, again.file->variant());
    EXPECT_EQ(has_notice(again.notices, MessageId::kConvertToZip64), told == ZipVariant::kZip32);
    return told;
  };
  EXPECT_EQ(resave({}), ZipVariant::kZip64);
  EXPECT_EQ(resave(zip32), ZipVariant::kZip32);
  EXPECT_EQ(resave({}), ZipVariant::kZip32);
  EXPECT_EQ(resave(zip64), ZipVariant::kZip64);
  EXPECT_TRUE(check_save_variant(SaveVariant::kZip32).question.text().ends_with("Continue?"));
  EXPECT_EQ(check_save_variant(SaveVariant::kAuto), Check());
}

TEST(DatabaseContainer, NearAndBeyondTheZip32Limit) {
  TestFolder folder;
  const std::string path = saved_shop(folder);
  const std::string before = read_file(path);
  OpenFile open = open_file(path);
  SaveSettings settings;
  settings.variant = SaveVariant::kZip32;
  const auto saved_with = [&](uint64_t limit) {
    settings.max_zip32_bytes = limit;
    return open.file->save(path, settings, Options());
  };
  const Outcome beyond = saved_with(before.size() / 2);
  EXPECT_EQ(beyond.failure, ErrorCode::kFileWrite);
  EXPECT_TRUE(has_notice(beyond.notices, MessageId::kFileNearLimit));
  EXPECT_TRUE(read_file(path) == before);
  EXPECT_EQ(folder.file_count(), 1U);
  const Outcome far = saved_with(before.size() * 2);
  EXPECT_EQ(far.failure, ErrorCode::kOk);
  EXPECT_TRUE(far.notices.empty());
  const Outcome near = saved_with(read_file(path).size() + 600);
  EXPECT_EQ(near.failure, ErrorCode::kOk);
  EXPECT_TRUE(has_notice(near.notices, MessageId::kFileNearLimit));
}

TEST(DatabaseContainer, TooManyMembersForZip32) {
  TestFolder folder;
  OpenFile open(std::make_unique<Database>());
  CWorkSheet* table = add_sample_table(*open.database, open.database->root(), "t");
  ContentColumn notes;
  const Content note = Content::of("x");
  for (uint32_t i = 0; i < kMaxZip32Members; ++i) notes.cells.push_back(1);
  notes.values.push_back(note);
  ASSERT_EQ(table->insert_records(1, kMaxZip32Members), ErrorCode::kOk);
  ASSERT_EQ(table->replace_column(2, table->field(2), std::move(notes)), ErrorCode::kOk);
  SaveSettings settings;
  settings.variant = SaveVariant::kZip32;
  EXPECT_EQ(save_file(open, folder.path("t.rvb"), settings), ErrorCode::kTooManyZipStreams);
  EXPECT_EQ(folder.file_count(), 0U);
  EXPECT_EQ(save_file(open, folder.path("t.rvb")), ErrorCode::kOk);
  EXPECT_TRUE(describe(*open_file(folder.path("t.rvb")).database) == describe(*open.database));
}

class HugeSource final : public ContentSource {
 public:
  ErrorCode read(std::string&) const override { return ErrorCode::kOutOfMemory; }
};

TEST(DatabaseContainer, ContentsOfMoreThanTwoGigabytesAreRefused) {
  TestFolder folder;
  OpenFile open(std::make_unique<Database>());
  CWorkSheet* table = add_sample_table(*open.database, open.database->root(), "t");
  ASSERT_EQ(table->insert_records(1, 2), ErrorCode::kOk);
  const auto source = std::make_shared<HugeSource>();
  ASSERT_EQ(table->set_value(1, 2, Content::stored(source, kMaxBinaryBytes)), ErrorCode::kOk);
  EXPECT_EQ(save_file(open, folder.path("t.rvb")), ErrorCode::kOutOfMemory);  // the size is just allowed
  ASSERT_EQ(table->set_value(2, 3, FileList{make_file("a", "x")}), ErrorCode::kOk);
  EXPECT_EQ(save_file(open, folder.path("t.rvb")), ErrorCode::kBinaryFieldsTooLarge);
  EXPECT_EQ(folder.file_count(), 0U);
}

TEST(DatabaseContainer, BackupsAreKeptWhenWanted) {
  TestFolder folder;
  const std::string path = saved_shop(folder);
  const std::string before = read_file(path);
  OpenFile open = open_file(path);
  ASSERT_EQ(open.database->tables()[0]->set_value(1, 0, std::string("changed")), ErrorCode::kOk);
  Options options;
  options.backups = true;
  ASSERT_EQ(save_file(open, path, {}, options), ErrorCode::kOk);
  EXPECT_TRUE(read_file(path + ".bak") == before);
  EXPECT_EQ(folder.file_count(), 2U);
}

TEST(DatabaseVersion, NewerFilesAreRefused) {
  TestFolder folder;
  const std::string path = saved_shop(folder);
  const auto opened_with = [&](const std::string& member, const std::string& content) {
    saved_shop(folder);
    ArchiveEdit(path).set(member, content).write();
    return open_database(path, Options()).failure.error();
  };
  EXPECT_EQ(opened_with("min-version.txt", "2026"), ErrorCode::kNewerVersion);
  EXPECT_EQ(opened_with("min-version.txt", "99999"), ErrorCode::kNewerVersion);
  EXPECT_EQ(opened_with("this-version.txt", "2099"), ErrorCode::kOk);
  EXPECT_EQ(opened_with("min-version.txt", "0001"), ErrorCode::kOk);
  EXPECT_EQ(opened_with("min-version.txt", "x"), ErrorCode::kInvalidBinaryFormat);
  EXPECT_EQ(opened_with("min-version.txt", ""), ErrorCode::kInvalidBinaryFormat);
  EXPECT_EQ(opened_with("config.dat", "\x06" + std::string(30, '\0')), ErrorCode::kNewerVersion);
  EXPECT_EQ(opened_with("config.dat", std::string(2, '\0')), ErrorCode::kInvalidBinaryFormat);
}

}  // namespace
}  // namespace rowvane

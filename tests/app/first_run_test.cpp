#include "app/start/first_run.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/profile/default_page.h"
#include "app/profile_test_support.h"
#include "app/start/help_archive.h"
#include "platform/temporary_folder.h"
#include "zip/zip_writer.h"

namespace rowvane {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class FirstRunTest : public testing::Test {
 protected:
  platform::TemporaryFolder folder_;

  std::string program() const { return folder_.path(""); }
  std::string path(const std::string& name) const { return folder_.path(name); }
};

TEST_F(FirstRunTest, TheStartupFileIsReadOnce) {
  EXPECT_EQ(take_startup_file(program()), std::nullopt);
  const std::pair<const char*, bool> cases[] = {{"01", true},   {"11\r\n", true}, {"10", false},
                                                {"1", false},   {"", false},      {"x1y", true},
                                                {"0 1", false}, {"1\n1", false}};
  for (const auto& [content, portable] : cases) {
    put(path("startup.txt"), content);
    EXPECT_EQ(take_startup_file(program()), portable) << content;
    EXPECT_FALSE(fs::exists(path("startup.txt"))) << content;
  }
}

TEST_F(FirstRunTest, TheSampleDatabaseIsOfferedInAnEmptyList) {
  platform::KnownFolders folders;
  folders.program_folder = path("program");
  folders.documents = path("documents");
  folders.common_documents = path("common");
  EXPECT_EQ(sample_database_path(true, folders), path("program/sample.zip"));
  EXPECT_EQ(sample_database_path(false, folders), path("documents/sample.zip"));
  folders.is_administrator = true;
  EXPECT_EQ(sample_database_path(false, folders), path("common/sample.zip"));
  folders.common_documents.clear();
  EXPECT_EQ(sample_database_path(false, folders), "");

  std::vector<RecentFile> files;
  offer_sample_database(path("sample.zip"), files);
  offer_sample_database("", files);
  EXPECT_THAT(files, IsEmpty());
  put(path("sample.zip"), "PK");
  offer_sample_database(path("sample.zip"), files);
  EXPECT_THAT(files, ElementsAre(RecentFile{path("sample.zip"), 0}));
  files = {{"other", 1}};
  offer_sample_database(path("sample.zip"), files);
  EXPECT_THAT(files, ElementsAre(RecentFile{"other", 1}));
}

class HelpArchiveTest : public FirstRunTest {
 protected:
  HelpArchiveTest() { fs::create_directory(path("help")); }

  std::string archive() const { return path("help/rowvane-help.zip"); }
  void make_archive() const {
    ZipWriter writer;
    ASSERT_EQ(writer.create(archive(), ZipWriterOptions()), ErrorCode::kOk);
    for (const char* name : {"index.htm", "images/a.png"}) {
      ASSERT_EQ(writer.add(name, std::string(1000, 'h') + name, ZipMethod::kDeflated), ErrorCode::kOk);
    }
    ASSERT_EQ(writer.finish(), ErrorCode::kOk);
  }
};

TEST_F(HelpArchiveTest, IsUnpackedAndDeleted) {
  make_archive();
  put(path("help/index.htm"), "old");
  EXPECT_EQ(unpack_help(program()), "");
  EXPECT_EQ(content_of(path("help/index.htm")), std::string(1000, 'h') + "index.htm");
  EXPECT_EQ(content_of(path("help/images/a.png")), std::string(1000, 'h') + "images/a.png");
  EXPECT_FALSE(fs::exists(archive()));
}

TEST_F(HelpArchiveTest, MayBeAbsentOrBroken) {
  EXPECT_EQ(unpack_help(program()), "");
  EXPECT_EQ(unpack_help(path("nowhere")), "");
  put(archive(), "no zip file");
  EXPECT_EQ(unpack_help(program()), "Can't open the compressed Help archive.");
  EXPECT_TRUE(fs::exists(archive()));

  make_archive();
  std::string bytes = content_of(archive());
  bytes[45] = static_cast<char>(bytes[45] ^ 0x55);  // in the data of the first member
  put(archive(), bytes);
  EXPECT_EQ(unpack_help(program()), "Can't load the compressed Help archive.");
  EXPECT_TRUE(fs::exists(archive()));

  make_archive();
  fs::create_directory(path("help/index.htm"));
  EXPECT_EQ(unpack_help(program()), "Can't load the compressed Help archive.");
}

TEST(DefaultPage, IsThatOfThePrinter) {
  EXPECT_EQ(page_of({2159, 2794, 1}), (DefaultPage{215.9, 279.4, false}));
  EXPECT_TRUE(page_of({2100, 2970, 2}).landscape);
}

}  // namespace
}  // namespace rowvane

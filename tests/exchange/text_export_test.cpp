#include "exchange/text/text_export.h"

#include <atomic>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/database/database.h"
#include "exchange/export_test_support.h"
#include "exchange/text/text_import.h"
#include "platform/file.h"
#include "platform/temporary_folder.h"
#include "zip/zip_test_support.h"

#ifndef _WIN32
#include <csignal>

#include <sys/resource.h>
#endif

namespace rowvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

std::string file_text(const std::string& path) {
  std::string content;
  EXPECT_EQ(platform::read_whole_file(path, content), platform::FileStatus::kOk) << path;
  return content;
}

void write_old(const std::string& path) {
  ASSERT_EQ(platform::write_whole_file(path, "old"), platform::FileStatus::kOk);
}

// Numbers from 1 and a text that needs quotes in every seventh record.
CWorkSheet counted_table(uint32_t records) {
  std::vector<CellValue> numbers;
  std::vector<CellValue> texts;
  for (uint32_t i = 1; i <= records; ++i) {
    numbers.emplace_back(static_cast<double>(i));
    texts.push_back(text(i % 7 == 0 ? "a,\xC3\xA9" : "b"));
  }
  return test_table({{"n", FieldType::kNumber, numbers}, {"t", FieldType::kText, texts}});
}

std::string counted_lines(uint32_t first, uint32_t last) {
  std::string lines;
  for (uint32_t i = first; i <= last; ++i)
    lines += std::to_string(i) + (i % 7 == 0 ? ",\"a,\xC3\xA9\"\r\n" : ",b\r\n");
  return lines;
}

class TextExportTest : public testing::Test {
 protected:
  std::string path(const std::string& name = "t.csv") const { return folder_.path(name); }
  platform::TemporaryFolder folder_;
};

TEST_F(TextExportTest, ManyBlocksKeepTheirOrder) {
  const CWorkSheet table = counted_table(100'000);
  for (const int threads : {1, 2, 5}) {
    const TextExportResult result = export_text(table, path(), {.threads = threads});
    EXPECT_EQ(result.status(), Status::kOk);
    EXPECT_THAT(result.files, ElementsAre(path()));
    EXPECT_TRUE(file_text(path()) == "n,t\r\n" + counted_lines(1, 100'000)) << threads;
  }
  EXPECT_EQ(folder_.file_count(), 1U);
}

TEST_F(TextExportTest, ChosenRecordsAndFields) {
  TextExport settings{.fields = {1, 0}, .positions = std::vector<uint32_t>{6, 0, 2}};
  settings.text.flags = TextFileSettings::kSeparated | TextFileSettings::kQuoting;
  EXPECT_EQ(export_text(counted_table(10), path(), settings).status(), Status::kOk);
  EXPECT_EQ(file_text(path()), "\"a,\xC3\xA9\",7\r\nb,1\r\nb,3\r\n");
  settings.positions->clear();
  EXPECT_EQ(export_text(counted_table(10), path(), settings).status(), Status::kOk);
  EXPECT_EQ(file_text(path()), "");
}

TEST_F(TextExportTest, EncodingsReadBack) {
  const CWorkSheet table =
      test_table({{"name", FieldType::kText, {text("\xE2\x82\xAC\xC3\xA9"), text("a,b")}},
                  {"n", FieldType::kNumber, {1.5, 2.0}}});
  TextExport settings;
  const auto saved = [&](uint8_t encoding) {
    settings.text.encoding = encoding;
    EXPECT_EQ(export_text(table, path(), settings).status(), Status::kOk);
    const auto read = import_text_file(path(), {.text = settings.text});
    EXPECT_EQ(read.table->value_text(1, 0), "\xE2\x82\xAC\xC3\xA9");
    EXPECT_EQ(read.table->value_text(2, 0), "a,b");
    EXPECT_EQ(read.table->field(0).name, "name");
    return file_text(path());
  };
  using namespace std::string_literals;
  EXPECT_EQ(saved(TextFileSettings::kUtf8), "name,n\r\n\xE2\x82\xAC\xC3\xA9,1.5\r\n\"a,b\",2\r\n");
  EXPECT_EQ(saved(TextFileSettings::kUtf16).substr(0, 24),
            "\xFF\xFEn\0a\0m\0e\0,\0n\0\r\0\n\0\xAC\x20\xE9\0,\0"s);
  EXPECT_EQ(saved(encoding_of_code_page(1252).value()), "name,n\r\n\x80\xE9,1.5\r\n\"a,b\",2\r\n");
}

TEST_F(TextExportTest, LossesAreTold) {
  TextExport settings;
  EXPECT_THAT(export_text(counted_table(8), path(), settings).notices, IsEmpty());
  settings.text.encoding = encoding_of_code_page(1251).value();
  EXPECT_TRUE(export_text(counted_table(8), path(), settings).replaced_characters);
  EXPECT_FALSE(export_text(counted_table(6), path(), settings).replaced_characters);
  settings.text.fixed_widths_on = 1;
  settings.text.fixed_widths[0] = 1;
  EXPECT_THAT(export_text(counted_table(10), path(), settings).notices,
              ElementsAre(UserText(MessageId::kCellsTruncated)));
}

TEST_F(TextExportTest, RowLimitContinuesInFurtherFiles) {
  EXPECT_EQ(export_text(counted_table(10), path("x.tar.gz"), {.row_limit = 4}).files,
            (std::vector{path("x.tar.gz"), path("x.tar(1).gz"), path("x.tar(2).gz")}));
  EXPECT_EQ(file_text(path("x.tar.gz")), "n,t\r\n" + counted_lines(1, 4));
  EXPECT_EQ(file_text(path("x.tar(1).gz")), "n,t\r\n" + counted_lines(5, 8));
  EXPECT_EQ(file_text(path("x.tar(2).gz")), "n,t\r\n" + counted_lines(9, 10));
  EXPECT_THAT(export_text(counted_table(8), path("name"), {.row_limit = 4}).files,
              ElementsAre(path("name"), path("name(1)")));
  std::filesystem::create_directory(path("a.b"));
  EXPECT_THAT(export_text(counted_table(8), path("a.b/x"), {.row_limit = 4}).files,
              ElementsAre(path("a.b/x"), path("a.b/x(1)")));
  EXPECT_THAT(export_text(counted_table(0), path(".x"), {.row_limit = 4}).files, ElementsAre(path(".x")));
  EXPECT_EQ(file_text(path(".x")), "n,t\r\n");
}

// The members of the archive at PATH.
std::map<std::string, std::string> members_of(const std::string& path) {
  ZipReader reader;
  EXPECT_EQ(reader.open(path), ErrorCode::kOk) << path;
  std::map<std::string, std::string> members;
  for (const ZipMember& member : reader.members()) members[member.name] = content_of(reader, member.name);
  return members;
}

class TextExportArchives : public TextExportTest {
 protected:
  TextExportArchives() {
    const FileList files = {
        {"photo.jpg", "", Content::of("jpg")}, {"b.txt", "/home/b.txt", {}}, {"c.txt", "", Content::of("c")}};
    table_ = std::make_unique<CWorkSheet>(
        "t", table_data(
                 {{"id", FieldType::kNumber, {1.0, 2.0, 3.0}},
                  {"long", FieldType::kLongText, {Content::of("x,y"), Content::of("{\\rtf1}"), CellValue()}},
                  {"files", FieldType::kFiles, {CellValue(), CellValue(), files}}}));
  }
  std::unique_ptr<CWorkSheet> table_;
  TextExport settings_;
};

TEST_F(TextExportArchives, HoldWhatTheCellsName) {
  settings_.save_files = settings_.save_long_texts = true;
  const TextExportResult result = export_text(*table_, path("my.list.csv"), settings_);
  EXPECT_THAT(result.files, ElementsAre(path("my.list.csv"), path("my.list.rvb-bin.zip")));
  EXPECT_EQ(file_text(path("my.list.csv")),
            "id,long,files\r\n"
            "1,my.list.rvb-bin/t.r000000001f00002/text.txt,\r\n"
            "2,my.list.rvb-bin/t.r000000002f00002/text.rtf,\r\n"
            "3,,my.list.rvb-bin/t.r000000003f00003/photo.jpg; /home/b.txt; "
            "my.list.rvb-bin/t.r000000003f00003/c.txt\r\n");
  EXPECT_THAT(members_of(path("my.list.rvb-bin.zip")),
              UnorderedElementsAre(Pair("my.list.rvb-bin/t.r000000001f00002/text.txt", "x,y"),
                                   Pair("my.list.rvb-bin/t.r000000002f00002/text.rtf", "{\\rtf1}"),
                                   Pair("my.list.rvb-bin/t.r000000003f00003/photo.jpg", "jpg"),
                                   Pair("my.list.rvb-bin/t.r000000003f00003/c.txt", "c")));
}

TEST_F(TextExportArchives, EachOptionStandsAlone) {
  settings_.save_files = true;
  settings_.positions = std::vector<uint32_t>{2, 0, 2};
  settings_.fields = {2, 1, 2};
  EXPECT_EQ(export_text(*table_, path(), settings_).status(), Status::kOk);
  const std::string files =
      "t.rvb-bin/t.r000000003f00003/photo.jpg; /home/b.txt; t.rvb-bin/t.r000000003f00003/c.txt";
  EXPECT_EQ(file_text(path()), "files,long,files\r\n" + files + ",," + files + "\r\n,\"x,y\",\r\n" + files +
                                   ",," + files + "\r\n");
  EXPECT_EQ(members_of(path("t.rvb-bin.zip")).size(), 2U);
}

class UnreadableFile final : public ContentSource {
 public:
  ErrorCode read(std::string&) const override { return ErrorCode::kFileRead; }
};

TEST_F(TextExportArchives, FailuresLeaveTheText) {
  settings_.save_files = true;
  write_old(path());
  ASSERT_EQ(
      table_->set_value(1, 2, FileList{{"lost", "", Content::stored(std::make_shared<UnreadableFile>(), 9)}}),
      ErrorCode::kOk);
  const TextExportResult unread = export_text(*table_, path(), settings_);
  EXPECT_EQ(unread.status(), Status::kFailed);
  EXPECT_EQ(unread.failure, ErrorCode::kFileRead);
  EXPECT_THAT(unread.files, IsEmpty());
  EXPECT_EQ(folder_.file_count(), 1U);

  settings_.positions = std::vector<uint32_t>{2};
  std::filesystem::create_directory(path("t.rvb-bin.zip"));
  const TextExportResult blocked = export_text(*table_, path(), settings_);
  EXPECT_EQ(blocked.status(), Status::kFailed);
  EXPECT_THAT(blocked.files, IsEmpty());
  EXPECT_EQ(file_text(path()), "old");
  EXPECT_EQ(folder_.file_count(), 2U);
  EXPECT_EQ(export_text(*table_, path("none/t.csv"), settings_).failure, ErrorCode::kFileCreate);
}

// Cancels once DONE records are reported.
class CancelAt final : public Progress {
 public:
  explicit CancelAt(uint64_t records) : records_(records) {}
  void report(uint64_t done, uint64_t total) override {
    EXPECT_LE(done, total);
    if (done >= records_) cancelled_ = true;
  }
  bool cancelled() const override { return cancelled_; }

 private:
  uint64_t records_;
  std::atomic<bool> cancelled_ = false;
};

TEST_F(TextExportTest, CancelReplacesNothing) {
  const CWorkSheet table = counted_table(100'000);
  write_old(path());
  // At once, in the middle, and when all is written.
  for (const uint64_t records : {1u, 60'000u, 100'000u}) {
    CancelAt progress(records);
    const TextExportResult result = export_text(table, path(), {.row_limit = 40'000, .threads = 3}, progress);
    EXPECT_EQ(result.status(), Status::kCancelled);
    EXPECT_EQ(result.failure, ErrorCode::kOk);
    EXPECT_THAT(result.files, IsEmpty());
    EXPECT_EQ(file_text(path()), "old");
    EXPECT_EQ(folder_.file_count(), 1U);
  }
}

TEST_F(TextExportTest, AFailedFileLeavesAllOthers) {
  write_old(path("t.csv"));
  std::filesystem::create_directory(path("t(2).csv"));
  const TextExportResult result = export_text(counted_table(100), path("t.csv"), {.row_limit = 40});
  EXPECT_EQ(result.status(), Status::kFailed);
  EXPECT_EQ(result.failure, ErrorCode::kFolderPath);
  EXPECT_EQ(file_text(path("t.csv")), "old");
  EXPECT_EQ(folder_.file_count(), 2U);
  EXPECT_EQ(export_text(counted_table(1), path("missing/t.csv"), {}).failure, ErrorCode::kFileCreate);
}

TEST_F(TextExportTest, AnUnreadableValueFailsTheExport) {
  class Broken final : public ContentSource {
    ErrorCode read(std::string&) const override { return ErrorCode::kZipCorrupted; }
  };
  std::vector<CellValue> cells(5000, Content::of("x"));
  cells[4000] = Content::stored(std::make_shared<Broken>(), 1000);
  write_old(path());
  const TextExportResult result =
      export_text(test_table({{"l", FieldType::kLongText, cells}}), path(), {.threads = 3});
  EXPECT_EQ(result.status(), Status::kFailed);
  EXPECT_EQ(result.failure, ErrorCode::kZipCorrupted);
  EXPECT_EQ(file_text(path()), "old");
}

#ifndef _WIN32
// A limit on the size of files stands in for a full disk.
TEST_F(TextExportTest, AFullDiskLosesNothing) {
  write_old(path());
  rlimit former{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
  const auto former_handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{.rlim_cur = 200'000, .rlim_max = former.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const TextExportResult result = export_text(counted_table(200'000), path(), {.threads = 2});
  setrlimit(RLIMIT_FSIZE, &former);
  std::signal(SIGXFSZ, former_handler);
  EXPECT_EQ(result.status(), Status::kFailed);
  EXPECT_EQ(result.failure, ErrorCode::kFileWrite);
  EXPECT_EQ(file_text(path()), "old");
  EXPECT_EQ(folder_.file_count(), 1U);
}
#endif

TEST_F(TextExportTest, WrongSettingsAreRefused) {
  const CWorkSheet table = counted_table(1000);
  const auto check = [&](const TextExport& settings) {
    const UserText wrong = check_text_export_settings(table, settings).refusal;
    EXPECT_EQ(export_text(table, path(), settings).status(), wrong.empty() ? Status::kOk : Status::kFailed);
    return wrong;
  };
  EXPECT_EQ(check({}), "");
  EXPECT_NE(check({.fields = {2}}), "");
  EXPECT_NE(check({.positions = std::vector<uint32_t>{1000}}), "");
  EXPECT_NE(check({.row_limit = 1}), "");
  TextExport settings;
  settings.text.separator = '"';
  EXPECT_NE(check(settings), "");
}

TEST(TextExportQuestion, AsksWhenFeaturesWouldBeLost) {
  const auto asks = [&](auto change) {
    TableData data = table_data({{"a", FieldType::kText, {text("x")}}, {"b", FieldType::kNumber, {1.0}}});
    change(data);
    const UserText answer = check_text_export(CWorkSheet("t", std::move(data))).question;
    EXPECT_TRUE(answer.empty() || answer == MessageId::kFeaturesLostAsText);
    return !answer.empty();
  };
  EXPECT_FALSE(asks([](auto&) {}));
  EXPECT_FALSE(asks([](auto& d) { d.fields[0].width = 300, d.fields[0].hidden = true; }));
  EXPECT_TRUE(asks([](auto& d) { d.fields[1].formula = "1+1"; }));
  EXPECT_TRUE(asks([](auto& d) { d.fields[1].format = "0.00"; }));
  EXPECT_TRUE(asks([](auto& d) { d.fields[0].drop_down_list = "colors"; }));
  EXPECT_TRUE(asks([](auto& d) { d.fields[0].link = true; }));
  EXPECT_FALSE(asks([](auto& d) { d.flags = {kSkippedFlag}; }));
  EXPECT_TRUE(asks([](auto& d) { d.flags = {RecordFlags{1 << kFlagTypeShift}}; }));
  EXPECT_TRUE(asks([](auto& d) {
    d.fields[1].type = FieldType::kLongText;
    d.columns[1] = make_column(FieldType::kLongText);
    resize_column(d.columns[1], 1);
  }));
}

TEST(TextExportQuestion, LooksAtTheWholeDatabase) {
  Database database;
  auto table = std::make_unique<CWorkSheet>("t", table_data({{"a", FieldType::kText, {text("x")}}}));
  const CWorkSheet& only = *table;
  ASSERT_EQ(database.add_table(database.root(), table), ErrorCode::kOk);
  EXPECT_EQ(check_text_export(only).question, "");
  DatabaseSettings settings;
  settings.drop_down_lists = {{"colors", {"red"}}};
  ASSERT_EQ(database.change_settings(settings), ErrorCode::kOk);
  EXPECT_NE(check_text_export(only).question, "");
  ASSERT_EQ(database.change_settings({}), ErrorCode::kOk);
  auto second = std::make_unique<CWorkSheet>("u", table_data({{"a", FieldType::kText, {text("x")}}}));
  ASSERT_EQ(database.add_table(database.root(), second), ErrorCode::kOk);
  EXPECT_NE(check_text_export(only).question, "");
}

}  // namespace
}  // namespace rowvane

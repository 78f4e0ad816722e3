#include "platform/file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/temporary_folder.h"

namespace rowvane::platform {
namespace {

namespace fs = std::filesystem;

std::span<const std::byte> bytes_of(std::string_view text) {
  return std::as_bytes(std::span(text));
}

void put(const std::string& path, std::string_view content) {
  std::ofstream(path_of(path), std::ios::binary) << content;
}

std::string content_of(const std::string& path) {
  std::string content;
  EXPECT_EQ(read_whole_file(path, content), FileStatus::kOk) << path;
  return content;
}

class FileTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return folder_.path(name); }
  size_t files_in_folder() const { return folder_.file_count(); }

  TemporaryFolder folder_;
};

TEST_F(FileTest, ReadsAtAnyOffsetAndStopsAtTheEnd) {
  put(path("données.bin"), "0123456789");
  InputFile file;
  ASSERT_EQ(file.open(path("données.bin")), FileStatus::kOk);
  EXPECT_EQ(file.size(), 10u);
  std::string buffer(4, ' ');
  size_t read = 0;
  const auto read_at = [&](uint64_t offset) {
    const FileStatus status = file.read_at(offset, std::as_writable_bytes(std::span(buffer)), read);
    return status == FileStatus::kOk ? buffer.substr(0, read) : "failed";
  };
  EXPECT_EQ(read_at(7), "789");
  EXPECT_EQ(read_at(2), "2345");
  EXPECT_EQ(read_at(10), "");
  EXPECT_EQ(read_at(uint64_t{1} << 40), "");

  InputFile moved = std::move(file);
  EXPECT_FALSE(file.is_open());
  EXPECT_TRUE(moved.is_open());
  EXPECT_EQ(read_at(0), "failed");
}

TEST_F(FileTest, SaysWhyAFileCannotBeOpened) {
  InputFile file;
  EXPECT_EQ(file.open(path("missing")), FileStatus::kNotFound);
  EXPECT_EQ(file.open(""), FileStatus::kNotFound);
  EXPECT_EQ(file.open(path("")), FileStatus::kIsFolder);
  EXPECT_EQ(file.open(path(std::string(5000, 'x'))), FileStatus::kPathTooLong);
  put(path("short"), "");
  EXPECT_EQ(file.open(path("short") + std::string("\0tail", 5)), FileStatus::kNotFound);
  EXPECT_FALSE(file.is_open());
}

TEST_F(FileTest, ReplacesOnlyOnCommit) {
  put(path("a.txt"), "old");
  ReplacingFile file;
  ASSERT_EQ(file.create(path("a.txt")), FileStatus::kOk);
  ASSERT_EQ(file.write(bytes_of("new text")), FileStatus::kOk);
  ASSERT_EQ(file.write_at(0, bytes_of("N")), FileStatus::kOk);
  EXPECT_EQ(file.position(), 8u);
  EXPECT_EQ(content_of(path("a.txt")), "old");
  ASSERT_EQ(file.commit(), FileStatus::kOk);
  EXPECT_EQ(content_of(path("a.txt")), "New text");
  EXPECT_EQ(file.write(bytes_of("more")), FileStatus::kWriteError);
  EXPECT_EQ(file.commit(), FileStatus::kWriteError);
  EXPECT_EQ(files_in_folder(), 1u);
}

TEST_F(FileTest, LeavesNothingBehindWithoutCommit) {
  {
    ReplacingFile file;
    ASSERT_EQ(file.create(path("a.txt")), FileStatus::kOk);
    ASSERT_EQ(file.write(bytes_of("new")), FileStatus::kOk);
    EXPECT_EQ(files_in_folder(), 1u);
  }
  EXPECT_EQ(files_in_folder(), 0u);
}

TEST_F(FileTest, RefusesToOverwriteBehindTheEnd) {
  put(path("a.txt"), "old");
  ReplacingFile file;
  ASSERT_EQ(file.create(path("a.txt")), FileStatus::kOk);
  ASSERT_EQ(file.write(bytes_of("abc")), FileStatus::kOk);
  EXPECT_EQ(file.write_at(2, bytes_of("xy")), FileStatus::kWriteError);
  EXPECT_EQ(file.write_at(UINT64_MAX, bytes_of("x")), FileStatus::kWriteError);
  EXPECT_EQ(file.commit(), FileStatus::kWriteError) << "half a file must not replace a whole one";
  EXPECT_EQ(content_of(path("a.txt")), "old");
  EXPECT_EQ(files_in_folder(), 1u);
}

TEST_F(FileTest, KeepsTheFormerFileAsBackup) {
  put(path("a.txt"), "first");
  for (const char* const content : {"second", "third"}) {
    ReplacingFile file;
    ASSERT_EQ(file.create(path("a.txt")), FileStatus::kOk);
    ASSERT_EQ(file.write(bytes_of(content)), FileStatus::kOk);
    ASSERT_EQ(file.commit(path("a.bak")), FileStatus::kOk);
  }
  EXPECT_EQ(content_of(path("a.txt")), "third");
  EXPECT_EQ(content_of(path("a.bak")), "second");
  EXPECT_EQ(files_in_folder(), 2u);
}

TEST_F(FileTest, KeepsTheTargetWhenTheBackupFails) {
  put(path("a.txt"), "old");
  fs::create_directory(path("folder"));
  for (const std::string& backup : {path("folder"), path("missing/a.bak")}) {
    ReplacingFile file;
    ASSERT_EQ(file.create(path("a.txt")), FileStatus::kOk);
    ASSERT_EQ(file.write(bytes_of("new")), FileStatus::kOk);
    EXPECT_NE(file.commit(backup), FileStatus::kOk);
    EXPECT_EQ(content_of(path("a.txt")), "old");
    EXPECT_EQ(files_in_folder(), 2u);
  }
}

TEST_F(FileTest, KeepsAnOldBackupThatIsTheTargetItself) {
  put(path("a.txt"), "old");
  fs::create_hard_link(path("a.txt"), path("a.bak"));
  ReplacingFile file;
  ASSERT_EQ(file.create(path("a.txt")), FileStatus::kOk);
  ASSERT_EQ(file.write(bytes_of("new")), FileStatus::kOk);
  ASSERT_EQ(file.commit(path("a.bak")), FileStatus::kOk);
  EXPECT_EQ(content_of(path("a.bak")), "old");
  EXPECT_EQ(files_in_folder(), 2u);
}

TEST_F(FileTest, KeepsPermissions) {
  put(path("a.txt"), "old");
  const fs::perms before = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_write;
  fs::permissions(path("a.txt"), before);
  const fs::perms kept = fs::status(path("a.txt")).permissions();
  ASSERT_EQ(write_whole_file(path("a.txt"), "new"), FileStatus::kOk);
  EXPECT_EQ(fs::status(path("a.txt")).permissions(), kept);
}

TEST_F(FileTest, RefusesTargetsThatMayNotBeReplaced) {
  put(path("read-only"), "old");
  fs::permissions(path("read-only"), fs::perms::owner_read);
  EXPECT_EQ(write_whole_file(path("read-only"), "new"), FileStatus::kAccessDenied);
  EXPECT_EQ(content_of(path("read-only")), "old");
  fs::create_directory(path("folder"));
  EXPECT_EQ(write_whole_file(path("folder"), "new"), FileStatus::kIsFolder);
  EXPECT_EQ(write_whole_file(path("missing/a"), "new"), FileStatus::kNotFound);
  EXPECT_EQ(write_whole_file(path("missing/"), "new"), FileStatus::kIsFolder);
  EXPECT_EQ(write_whole_file(path("read-only/a"), "new"), FileStatus::kNotFound);
  EXPECT_EQ(write_whole_file("", "new"), FileStatus::kNotFound);
  EXPECT_EQ(files_in_folder(), 2u);
}

#ifndef _WIN32
TEST_F(FileTest, RefusesReadOnlyFoldersAndDevices) {
  fs::create_directory(path("folder"));
  put(path("folder/a"), "old");
  fs::permissions(path("folder"), fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_EQ(write_whole_file(path("folder/a"), "new"), FileStatus::kAccessDenied);
  EXPECT_EQ(write_whole_file(path("folder/b"), "new"), FileStatus::kAccessDenied);
  fs::permissions(path("folder"), fs::perms::owner_all);
  EXPECT_EQ(content_of(path("folder/a")), "old");
  EXPECT_EQ(write_whole_file("/dev/null", "new"), FileStatus::kWriteError);
  InputFile device;
  EXPECT_EQ(device.open("/dev/zero"), FileStatus::kReadError);
}
#endif

TEST_F(FileTest, ReplacesTheFileBehindALink) {
  fs::create_directory(path("folder"));
  put(path("folder/real"), "old");
  std::error_code error;
  fs::create_symlink("folder/real", path("inner"), error);
  if (error) GTEST_SKIP() << "this user may not make links";
  fs::create_symlink(path("inner"), path("outer"));
  fs::create_symlink("circle", path("circle"));
  fs::create_symlink("folder/made", path("dangling"));
  EXPECT_EQ(write_whole_file(path("outer"), "new"), FileStatus::kOk);
  EXPECT_EQ(write_whole_file(path("dangling"), "made"), FileStatus::kOk);
  EXPECT_EQ(write_whole_file(path("circle"), "new"), FileStatus::kNotFound);
  EXPECT_TRUE(fs::is_symlink(path("outer")));
  EXPECT_TRUE(fs::is_symlink(path("dangling")));
  EXPECT_EQ(content_of(path("folder/real")), "new");
  EXPECT_EQ(content_of(path("folder/made")), "made");
}

TEST_F(FileTest, WritesBesideVeryLongNames) {
  const std::string name = std::string(199, 'x') + "éèêëàâäôöûü";
  ASSERT_EQ(write_whole_file(path(name), "text"), FileStatus::kOk);
  EXPECT_EQ(content_of(path(name)), "text");
  EXPECT_EQ(files_in_folder(), 1u);
}

TEST_F(FileTest, RemovesOnlyTemporariesOfDeadProcesses) {
  put(path("a.txt"), "text");
  // No system hands out process ids this high.
  put(path("a.txt.rvtmp-2147483646-1"), "stale");
  const std::vector<std::string> kept = {"a.txt.rvtmp-" + std::to_string(own_process_id()) + "-1",
                                         "a.txt.rvtmp-2147483646", "a.txt.rvtmp-2147483646-1x",
                                         "a.txt.rvtmp--5-1", "b.txt.rvtmp-2147483646-1"};
  for (const std::string& name : kept) put(path(name), "");
  ReplacingFile living;
  ASSERT_EQ(living.create(path("a.txt")), FileStatus::kOk);
  remove_stale_replacements(path("a.txt"));
  EXPECT_FALSE(file_exists(path("a.txt.rvtmp-2147483646-1")));
  for (const std::string& name : kept) EXPECT_TRUE(file_exists(path(name))) << name;
  EXPECT_EQ(living.commit(), FileStatus::kOk);
  remove_stale_replacements(path("missing/a.txt"));
}

TEST_F(FileTest, ThreadsMayReplaceOneFileAtOnce) {
  const auto replace_often = [&](char letter) {
    for (int i = 0; i < 50; ++i) {
      EXPECT_EQ(write_whole_file(path("a.txt"), std::string(1000, letter)), FileStatus::kOk);
    }
  };
  std::thread other(replace_often, 'a');
  replace_often('b');
  other.join();
  const std::string content = content_of(path("a.txt"));
  EXPECT_TRUE(content == std::string(1000, 'a') || content == std::string(1000, 'b'));
  EXPECT_EQ(files_in_folder(), 1u);
}

TEST_F(FileTest, ReadsWholeFilesUpToTheLimit) {
  const std::string large(300000, 'x');
  put(path("a"), large);
  std::string content = "before";
  EXPECT_EQ(read_whole_file(path("a"), content, large.size()), FileStatus::kOk);
  EXPECT_EQ(content, large);
  EXPECT_EQ(read_whole_file(path("a"), content, large.size() - 1), FileStatus::kReadError);
  EXPECT_EQ(content, "");
}

TEST_F(FileTest, KnowsWhetherPathsNameTheSameFile) {
  put(path("a"), "");
  put(path("b"), "");
  fs::create_hard_link(path("a"), path("c"));
  EXPECT_TRUE(is_same_file(path("a"), path("./a")));
  EXPECT_TRUE(is_same_file(path("a"), path("c")));
  EXPECT_FALSE(is_same_file(path("a"), path("b")));
  EXPECT_FALSE(is_same_file(path("missing"), path("missing")));
  EXPECT_TRUE(file_exists(path("a")));
  EXPECT_FALSE(file_exists(path("")));
}

// Needs a folder on a disk of less than 32 MB, named by the environment.
TEST_F(FileTest, FullDiskKeepsTheTarget) {
  const char* const small_disk = std::getenv("ROWVANE_SMALL_DISK");
  if (small_disk == nullptr) GTEST_SKIP() << "ROWVANE_SMALL_DISK names no folder";
  const TemporaryFolder folder(small_disk);
  const std::string target = folder.path("target");
  ASSERT_EQ(write_whole_file(target, "old"), FileStatus::kOk);
  EXPECT_EQ(write_whole_file(target, std::string(size_t{64} << 20, 'x')), FileStatus::kNoSpace);
  EXPECT_EQ(content_of(target), "old");
  EXPECT_EQ(folder.file_count(), 1u);

  // A backup on another disk is a copy; one that does not fit must not cost the target either.
  const std::string large(size_t{32} << 20, 'y');
  ASSERT_EQ(write_whole_file(path("large"), large), FileStatus::kOk);
  ReplacingFile file;
  ASSERT_EQ(file.create(path("large")), FileStatus::kOk);
  EXPECT_EQ(file.commit(folder.path("large.bak")), FileStatus::kNoSpace);
  EXPECT_EQ(content_of(path("large")), large);
  EXPECT_EQ(folder.file_count(), 1u);
  ASSERT_EQ(file.create(path("large")), FileStatus::kOk);
  EXPECT_EQ(file.commit(folder.path("target")), FileStatus::kNoSpace);
  EXPECT_EQ(content_of(target), "old");
}

}  // namespace
}  // namespace rowvane::platform

#include "platform/file_system.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/temporary_folder.h"

namespace rowvane::platform {
namespace {

TEST(FileSystem, MakesListsAndRemoves) {
  const TemporaryFolder folder;
  const std::string deep = folder.path("a/b/c");
  EXPECT_FALSE(folder_exists(deep));
  EXPECT_EQ(create_folders(deep), FileStatus::kOk);
  EXPECT_EQ(create_folders(deep), FileStatus::kOk);
  EXPECT_TRUE(folder_exists(deep));
  std::ofstream(folder.path("a/file2")) << "x";
  std::ofstream(folder.path("a/file1")) << "x";
  EXPECT_FALSE(folder_exists(folder.path("a/file1")));
  EXPECT_NE(create_folders(folder.path("a/file1/d")), FileStatus::kOk);

  std::vector<std::string> names;
  EXPECT_EQ(list_files(folder.path("a"), names), FileStatus::kOk);
  EXPECT_THAT(names, testing::ElementsAre("file1", "file2"));
  EXPECT_EQ(list_files(folder.path("none"), names), FileStatus::kNotFound);
  EXPECT_THAT(names, testing::IsEmpty());

  EXPECT_EQ(remove_file(folder.path("a/file1")), FileStatus::kOk);
  EXPECT_EQ(remove_file(folder.path("a/file1")), FileStatus::kNotFound);
  EXPECT_NE(remove_file(folder.path("a/b")), FileStatus::kOk);
  EXPECT_EQ(remove_folder(folder.path("a")), FileStatus::kInUse);
  EXPECT_EQ(remove_folder(deep), FileStatus::kOk);
  EXPECT_EQ(remove_folder(deep), FileStatus::kNotFound);
  EXPECT_TRUE(std::filesystem::exists(folder.path("a/file2")));
}

}  // namespace
}  // namespace rowvane::platform

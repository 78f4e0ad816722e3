#include "platform/wastebasket.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/temporary_folder.h"

namespace rowvane::platform {
namespace {

namespace fs = std::filesystem;

#ifndef _WIN32

TEST(Wastebasket, TakesFilesWithWhereTheyCameFrom) {
  const TemporaryFolder folder;
  const ScopedEnvironment data("XDG_DATA_HOME", folder.path("data").c_str());
  const std::string file = folder.path("a b\xC3\xA4%.txt");
  for (const char* content : {"first", "second"}) {
    std::ofstream(file) << content;
    ASSERT_EQ(move_to_wastebasket(file), FileStatus::kOk);
    EXPECT_FALSE(fs::exists(file));
  }
  const std::string trash = folder.path("data/Trash");
  EXPECT_EQ(content_of_file(trash + "/files/a b\xC3\xA4%.txt"), "first");
  EXPECT_EQ(content_of_file(trash + "/files/a b\xC3\xA4%.txt.2"), "second");
  const std::string url = folder.path("a%20b%C3%A4%25.txt");
  EXPECT_THAT(content_of_file(trash + "/info/a b\xC3\xA4%.txt.trashinfo"),
              testing::MatchesRegex("\\[Trash Info\\]\nPath=" + url +
                                    "\nDeletionDate=[0-9]+-[0-9]+-[0-9]+T[0-9]+:[0-9]+:[0-9]+\n"));
  EXPECT_EQ(fs::status(trash).permissions() & fs::perms::all, fs::perms::owner_all);
}

TEST(Wastebasket, TakesTheLinkAndNotWhatItLeadsTo) {
  const TemporaryFolder folder;
  const ScopedEnvironment data("XDG_DATA_HOME", folder.path("data").c_str());
  std::ofstream(folder.path("target")) << "kept";
  fs::create_symlink(folder.path("target"), folder.path("link"));
  EXPECT_EQ(move_to_wastebasket(folder.path("link")), FileStatus::kOk);
  EXPECT_FALSE(fs::is_symlink(folder.path("link")));
  EXPECT_EQ(content_of_file(folder.path("target")), "kept");
}

TEST(Wastebasket, LeavesTheFileWhenItHasNoPlace) {
  const TemporaryFolder folder;
  const ScopedEnvironment data("XDG_DATA_HOME", folder.path("data").c_str());
  EXPECT_EQ(move_to_wastebasket(folder.path("none")), FileStatus::kNotFound);
  fs::create_directory(folder.path("data"));
  std::ofstream(folder.path("data/Trash")) << "in the way";
  std::ofstream(folder.path("a")) << "kept";
  EXPECT_NE(move_to_wastebasket(folder.path("a")), FileStatus::kOk);
  EXPECT_EQ(content_of_file(folder.path("a")), "kept");
}

#else

TEST(Wastebasket, TakesFiles) {
  const TemporaryFolder folder;
  const std::string file = folder.path("a b.txt");
  std::ofstream(file) << "x";
  EXPECT_EQ(move_to_wastebasket(file), FileStatus::kOk);
  EXPECT_FALSE(fs::exists(file));
  EXPECT_EQ(move_to_wastebasket(file), FileStatus::kNotFound);
}

#endif

}  // namespace
}  // namespace rowvane::platform

#include "platform/folders.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/file.h"
#include "platform/paths.h"
#include "platform/temporary_folder.h"

namespace rowvane::platform {
namespace {

TEST(Folders, KnowTheRunningProgram) {
  const KnownFolders folders = known_folders();
  EXPECT_TRUE(file_exists(folders.program_file));
  EXPECT_EQ(file_stem(folders.program_file), "platform_tests");
  EXPECT_EQ(folders.program_folder, parent_folder(folders.program_file));
  EXPECT_FALSE(folders.installation_folders.empty());
  EXPECT_FALSE(folders.local_app_data.empty());
}

#ifndef _WIN32

TEST(Folders, FollowTheEnvironment) {
  const TemporaryFolder home;
  const ScopedEnvironment home_variable("HOME", home.path("").c_str());
  const std::string base = home.path("");
  {
    const ScopedEnvironment config("XDG_CONFIG_HOME", nullptr);
    const ScopedEnvironment data("XDG_DATA_HOME", "relative/is/ignored");
    const KnownFolders folders = known_folders();
    EXPECT_EQ(folders.local_app_data, base + ".config");
    EXPECT_EQ(folders.documents, base + "Documents");
    EXPECT_THAT(folders.shortcuts, testing::ElementsAre(base + ".local/share/applications/rowvane.desktop",
                                                        base + "Desktop/rowvane.desktop"));
    EXPECT_TRUE(folders.are_shortcuts_complete);
  }
  const ScopedEnvironment config("XDG_CONFIG_HOME", home.path("cfg").c_str());
  std::filesystem::create_directory(home.path("cfg"));
  std::ofstream(home.path("cfg/user-dirs.dirs")) << "# comment\nXDG_DESKTOP_DIR=\"/srv/my \\\"desk\\\"\"\n"
                                                    "XDG_DOCUMENTS_DIRS=\"$HOME/no\"\n"
                                                    " XDG_DOCUMENTS_DIR=\"$HOME/Papers\"\n";
  const KnownFolders folders = known_folders();
  EXPECT_EQ(folders.local_app_data, home.path("cfg"));
  EXPECT_EQ(folders.documents, base + "Papers");
  EXPECT_EQ(folders.shortcuts.back(), "/srv/my \"desk\"/rowvane.desktop");
}

#endif

}  // namespace
}  // namespace rowvane::platform

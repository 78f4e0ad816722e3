#include "app/start/uninstall.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/profile_test_support.h"
#include "app/user_test_support.h"
#include "core/messages/messages.h"
#include "platform/temporary_folder.h"

namespace rowvane {
namespace {

namespace fs = std::filesystem;
using platform::FileStatus;
using platform::RegistrationStatus;
using testing::ElementsAre;
using testing::IsEmpty;

// Works on the files of a test, and writes down what it does; can fail at all of it.
class RecordedSystem final : public UninstallSystem {
 public:
  bool may_write_machine_settings() override { return administrator; }
  RegistrationStatus unregister_file_type(const std::string&) override {
    done.push_back("unregister");
    return fails ? RegistrationStatus::kNoPermission : RegistrationStatus::kOk;
  }
  FileStatus remove_file(const std::string& path) override {
    if (!fails && fs::exists(path)) done.push_back("remove " + fs::path(path).filename().string());
    return fails ? FileStatus::kAccessDenied : UninstallSystem::remove_file(path);
  }
  FileStatus remove_folder(const std::string& path) override {
    return fails ? FileStatus::kAccessDenied : UninstallSystem::remove_folder(path);
  }
  FileStatus move_to_wastebasket(const std::string& path) override {
    done.push_back("bin " + fs::path(path).filename().string());
    return fails ? FileStatus::kAccessDenied : UninstallSystem::remove_file(path);
  }
  bool remove_uninstall_entry() override {
    done.push_back("entry");
    return !fails;
  }
  void show_folder(const std::string& path) override { done.push_back("show " + path); }

  bool administrator = true;
  bool fails = false;
  std::vector<std::string> done;
};

class UninstallTest : public testing::Test {
 protected:
  UninstallTest() {
    for (const char* folder : {"program/help/images", "data/Rowvane", "menu", "desktop"}) {
      fs::create_directories(folder_.path(folder));
    }
    for (const char* name :
         {"program/rowvane.exe", "program/rowvane.bin", "program/sample.zip", "program/settings.xml",
          "program/libhunspell.dll", "program/help/index.htm", "program/help/images/a.png", "program/a.ZIP",
          "program/b.txt", "program/c.xml", "program/d.csv", "program/e.htm", "program/f.dbf",
          "program/g.rvb", "program/h.html", "data/Rowvane/settings.xml", "menu/Rowvane.lnk",
          "menu/Other.lnk", "desktop/Rowvane.lnk"}) {
      put(folder_.path(name), name);
    }
    folders_.program_folder = folder_.path("program");
    folders_.program_file = folder_.path("program/rowvane.exe");
    folders_.local_app_data = folder_.path("data");
    folders_.shortcuts = {folder_.path("menu/Rowvane.lnk"), folder_.path("desktop/Rowvane.lnk")};
  }

  bool run() { return uninstall(folders_, questions_, messages_, system_); }
  std::set<std::string> remaining() const {
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder_.path(""))) {
      if (!entry.is_directory())
        names.insert(entry.path().lexically_relative(folder_.path("")).generic_string());
    }
    return names;
  }

  platform::TemporaryFolder folder_;
  platform::KnownFolders folders_;
  RecordedQuestions questions_;
  RecordedMessages messages_;
  RecordedSystem system_;
};

TEST_F(UninstallTest, TakesAwayWhatIsRowvanesAndBinsWhatIsTheUsers) {
  EXPECT_TRUE(run());
  EXPECT_THAT(questions_.asked, ElementsAre(message(MessageId::kUninstall)));
  EXPECT_THAT(system_.done, ElementsAre("unregister", "remove rowvane.bin", "remove sample.zip",
                                        "remove settings.xml", "remove libhunspell.dll", "remove index.htm",
                                        "bin a.ZIP", "bin b.txt", "bin c.xml", "bin d.csv", "bin e.htm",
                                        "bin f.dbf", "bin g.rvb", "remove Rowvane.lnk", "remove Rowvane.lnk",
                                        "remove settings.xml", "entry", "show " + folders_.program_folder));
  EXPECT_THAT(messages_.shown, ElementsAre("i: " + message(MessageId::kUninstalled)));
  EXPECT_THAT(remaining(), ElementsAre("menu/Other.lnk", "program/h.html", "program/help/images/a.png",
                                       "program/rowvane.exe"));
  EXPECT_FALSE(fs::exists(folder_.path("data/Rowvane")));
  EXPECT_TRUE(fs::exists(folder_.path("data")));
}

TEST_F(UninstallTest, DoesNothingAfterNo) {
  const auto before = remaining();
  questions_.answer = false;
  system_.administrator = false;
  EXPECT_FALSE(run());
  EXPECT_THAT(questions_.asked, ElementsAre(message(MessageId::kUninstallForUser)));
  EXPECT_THAT(system_.done, IsEmpty());
  EXPECT_THAT(messages_.shown, IsEmpty());
  EXPECT_EQ(remaining(), before);
}

TEST_F(UninstallTest, GoesOnAfterEveryFailure) {
  system_.fails = true;
  folders_.are_shortcuts_complete = false;
  EXPECT_TRUE(run());
  EXPECT_THAT(messages_.shown,
              ElementsAre("!: " + message(MessageId::kNoRegistryPermission),
                          "!: Can't remove some user's files from the installation folder.",
                          "!: Can't obtain some folder locations", "!: Can't remove the uninstall key.",
                          "i: " + message(MessageId::kUninstalled)));
  EXPECT_EQ(std::ranges::count_if(system_.done, [](const auto& step) { return step.starts_with("bin "); }),
            9);
  messages_.shown.clear();
  system_.administrator = false;
  EXPECT_TRUE(run());
  EXPECT_EQ(messages_.shown[1],
            "!: Can't remove some user's files from the installation folder.\nPlease run this program as "
            "administrator.");
}

TEST_F(UninstallTest, MissingFilesAreNoFailure) {
  EXPECT_TRUE(run());
  messages_.shown.clear();
  EXPECT_TRUE(run());
  EXPECT_THAT(messages_.shown, ElementsAre("i: " + message(MessageId::kUninstalled)));
}

TEST_F(UninstallTest, TouchesNoFileInAFolderOfTheSystem) {
  folders_.is_program_folder_shared = true;
  EXPECT_TRUE(run());
  EXPECT_THAT(system_.done, ElementsAre("unregister", "remove Rowvane.lnk", "remove Rowvane.lnk",
                                        "remove settings.xml", "entry", "show " + folders_.program_folder));
  EXPECT_TRUE(remaining().contains("program/b.txt"));
  EXPECT_TRUE(remaining().contains("program/settings.xml"));
}

}  // namespace
}  // namespace rowvane

#include "platform/file_type.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/temporary_folder.h"

namespace rowvane::platform {
namespace {

FileType test_type(const std::string& program) {
  return {"rvbtest",        "Rowvane <Test> File", "application/x-rowvane-test",
          "Open with Test", "RowvaneTest",         program};
}

#ifndef _WIN32

// The value of KEY in a desktop entry.
std::string entry_value(const std::string& entry, const std::string& key) {
  std::istringstream lines(entry);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(key + "=")) return line.substr(key.size() + 1);
  }
  return {};
}

TEST(FileTypes, AreADesktopEntryAndAMimeType) {
  const TemporaryFolder folder;
  const ScopedEnvironment data("XDG_DATA_HOME", folder.path("data").c_str());
  const FileType type = test_type("/opt/my \"$`\\100%/rowvane");
  const std::string entry_path = folder.path("data/applications/rowvanetest.desktop");
  const std::string package_path = folder.path("data/mime/packages/rowvanetest.xml");
  EXPECT_EQ(unregister_file_type(type), RegistrationStatus::kOk);
  ASSERT_EQ(register_file_type(type), RegistrationStatus::kOk);
  ASSERT_EQ(register_file_type(type), RegistrationStatus::kOk);

  const std::string entry = content_of_file(entry_path);
  EXPECT_TRUE(entry.starts_with("[Desktop Entry]\n"));
  EXPECT_EQ(entry_value(entry, "Type"), "Application");
  EXPECT_EQ(entry_value(entry, "Name"), "RowvaneTest");
  EXPECT_EQ(entry_value(entry, "MimeType"), "application/x-rowvane-test;");
  // Quoted for the command line first, then escaped as any value of the file.
  EXPECT_EQ(entry_value(entry, "Exec"), R"("/opt/my \\"\\$\\`\\\\100%%/rowvane" %F)");
  const std::string package = content_of_file(package_path);
  for (const char* part : {"<mime-type type=\"application/x-rowvane-test\">", "<glob pattern=\"*.rvbtest\"/>",
                           "<comment>Rowvane &lt;Test> File</comment>"}) {
    EXPECT_THAT(package, testing::HasSubstr(part));
  }
  EXPECT_EQ(unregister_file_type(type), RegistrationStatus::kOk);
  EXPECT_FALSE(std::filesystem::exists(entry_path));
  EXPECT_FALSE(std::filesystem::exists(package_path));
}

TEST(FileTypes, TellWhatFailed) {
  const TemporaryFolder folder;
  std::ofstream(folder.path("data")) << "no folder";
  const ScopedEnvironment data("XDG_DATA_HOME", folder.path("data").c_str());
  EXPECT_EQ(register_file_type(test_type("/opt/rowvane")), RegistrationStatus::kFailed);
  EXPECT_EQ(register_file_type(test_type("")), RegistrationStatus::kFailed);
}

#else

TEST(FileTypes, AreRegisteredAndUnregistered) {
  const FileType type = test_type("C:\\Program Files\\Rowvane\\rowvane.exe");
  EXPECT_EQ(register_file_type(type), RegistrationStatus::kOk);
  EXPECT_EQ(unregister_file_type(type), RegistrationStatus::kOk);
  EXPECT_EQ(unregister_file_type(type), RegistrationStatus::kOk);
}

#endif

}  // namespace
}  // namespace rowvane::platform

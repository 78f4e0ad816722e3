#include "platform/paths.h"

#include <gtest/gtest.h>

namespace rowvane::platform {
namespace {

TEST(Paths, HaveParts) {
  struct Case {
    const char* path;
    const char* folder;
    const char* name;
    const char* stem;
    const char* extension;
  };
  const Case cases[] = {
      {"a/b/données.tar.GZ", "a/b", "données.tar.GZ", "données.tar", "gz"},
      {"b.txt", ".", "b.txt", "b", "txt"},
      {"/b", "/", "b", "b", ""},
      {"//b", "/", "b", "b", ""},
      {"a.b/", "a.b", "", "", ""},
      {"a.b//c", "a.b", "c", "c", ""},
      {"a/.profile", "a", ".profile", ".profile", ""},
      {"a/..", "a", "..", "..", ""},
      {"a.", ".", "a.", "a", ""},
      {"", ".", "", "", ""},
  };
  for (const Case& expected : cases) {
    EXPECT_EQ(parent_folder(expected.path), expected.folder) << expected.path;
    EXPECT_EQ(file_name(expected.path), expected.name) << expected.path;
    EXPECT_EQ(file_stem(expected.path), expected.stem) << expected.path;
    EXPECT_EQ(extension(expected.path), expected.extension) << expected.path;
  }
}

TEST(Paths, JoinWithOneSeparator) {
  EXPECT_EQ(file_name(join_path("a", "b")), "b");
  EXPECT_EQ(parent_folder(join_path("a", "b")), "a");
  EXPECT_EQ(join_path("a/", "b"), "a/b");
  EXPECT_EQ(join_path("", "b"), "b");
}

#ifdef _WIN32
TEST(Paths, KnowDrives) {
  EXPECT_EQ(parent_folder("C:\\a\\b.txt"), "C:\\a");
  EXPECT_EQ(parent_folder("C:\\b.txt"), "C:\\");
  EXPECT_EQ(parent_folder("C:b.txt"), "C:");
  EXPECT_EQ(file_name("C:b.txt"), "b.txt");
}
#endif

}  // namespace
}  // namespace rowvane::platform

#include "exchange/text/file_list_text.h"

#include <gtest/gtest.h>

namespace rowvane {
namespace {

std::string listed(const FileList& files) {
  std::string text;
  append_file_list(files, text);
  return text;
}

TEST(FileListText, FormsOfLines) {
  EXPECT_EQ(listed({}), "");
  EXPECT_EQ(listed({{"a.txt", {}, Content()}, {"b", {}, Content()}}), "a.txt\nb");
  EXPECT_EQ(listed({{"a.txt", "/x/a.txt", Content()}}), "|/x/a.txt");
  EXPECT_EQ(listed({{"a.txt", "C:\\x\\a.txt", Content()}}), "|C:\\x\\a.txt");
  EXPECT_EQ(listed({{"a.txt", "a.txt", Content()}}), "|a.txt");
  EXPECT_EQ(listed({{"other", "/x/a.txt", Content()}}), "|other|/x/a.txt");
  EXPECT_EQ(listed({{"a.txt", "/x|y/a.txt", Content()}}), "|a.txt|/x|y/a.txt");
}

TEST(FileListText, LinesReadBack) {
  for (const FileObject& file :
       {FileObject{"a.txt", {}, Content()}, FileObject{"a.txt", "/x/a.txt", Content()},
        FileObject{"a", "C:\\a", Content()}, FileObject{"b", "/x/|a", Content()},
        FileObject{"", "/x/", Content()}}) {
    const FileObject read = parse_file_line(listed({file}));
    EXPECT_EQ(read.name, file.name);
    EXPECT_EQ(read.shortcut, file.shortcut);
  }
}

}  // namespace
}  // namespace rowvane

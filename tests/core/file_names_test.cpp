// Names of inserted files, and the depth of folders: what database files can hold.
#include <gtest/gtest.h>

#include "core/database/names.h"
#include "sample_tables.h"

namespace rowvane {
namespace {

TEST(FileNames, RefusedOnesAreRepaired) {
  for (const std::string& name :
       {std::string("a/b"), std::string("a\\b"), std::string("a|b"), std::string("a\nb"),
        std::string("a\0b", 3), std::string("\x7F"), std::string("\xFF"), std::string(), std::string("."),
        std::string(".."), std::string(kMaxFileNameBytes + 1, 'x'), std::string(600, '\xC4')}) {
    EXPECT_FALSE(is_valid_file_name(name)) << name;
    EXPECT_TRUE(is_valid_file_name(repair_file_name(name))) << name;
  }
  for (const std::string& name : {std::string("a b.txt"), std::string("..."), std::string(" ä:*?"),
                                  std::string(kMaxFileNameBytes, 'x')}) {
    EXPECT_TRUE(is_valid_file_name(name)) << name;
    EXPECT_EQ(repair_file_name(name), name);
  }
}

TEST(FileNames, CellsRefuseWhatCannotBeListed) {
  Database database;
  CWorkSheet* table = add_sample_table(database, database.root(), "t");
  ASSERT_EQ(table->insert_records(1, 1), ErrorCode::kOk);
  constexpr size_t kFiles = 3;
  const auto result = [table](const FileObject& file) { return table->set_value(1, kFiles, FileList{file}); };
  EXPECT_EQ(result(make_file("a|b")), ErrorCode::kNoFileName);
  EXPECT_EQ(result(make_file("a\tb")), ErrorCode::kNoFileName);
  EXPECT_EQ(result({"a", "/x\n/a", Content()}), ErrorCode::kNoFileName);
  EXPECT_EQ(result({"a", "/x|/a", Content()}), ErrorCode::kOk);
}

TEST(FolderDepth, IsLimitedForNewAndMovedFolders) {
  Database database;
  Folder* folder = &database.root();
  for (size_t i = 0; i < kMaxFolderDepth; ++i) {
    ASSERT_EQ(database.add_folder(*folder, "f", &folder), ErrorCode::kOk) << i;
  }
  EXPECT_EQ(database.add_folder(*folder, "f"), ErrorCode::kPathTooLong);
  Folder* two = nullptr;
  ASSERT_EQ(database.make_folders("two/levels", &two), ErrorCode::kOk);
  two = two->parent();
  Folder* last_but_one = folder->parent();
  EXPECT_EQ(database.move_folder(*two, *last_but_one), ErrorCode::kPathTooLong);
  EXPECT_EQ(database.move_folder(*two, *last_but_one->parent()), ErrorCode::kOk);
}

TEST(Revisions, NeverRepeatAmongTables) {
  const auto first = make_table("a");
  const auto second = make_table("a");
  EXPECT_NE(first->revision(), second->revision());
}

}  // namespace
}  // namespace rowvane

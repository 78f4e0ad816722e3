// Targets that cannot be written: the old file stays whole and nothing is left beside it.
#ifndef _WIN32

#include <sys/mount.h>

#include "database_test_support.h"

namespace rowvane {
namespace {

namespace fs = std::filesystem;

TEST(DatabaseDisk, ReadOnlyTargetsAndFolders) {
  TestFolder folder;
  fs::create_directory(folder.path("in"));
  const std::string path = folder.path("in/shop.rvb");
  OpenFile shop(make_shop());
  ASSERT_EQ(save_file(shop, path), ErrorCode::kOk);
  const std::string before = read_file(path);
  ASSERT_EQ(shop.database->tables()[0]->set_value(1, 0, std::string("changed")), ErrorCode::kOk);
  fs::permissions(path, fs::perms::owner_read);
  EXPECT_EQ(save_file(shop, path), ErrorCode::kFileCreate);
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
  fs::permissions(folder.path("in"), fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_EQ(save_file(shop, path), ErrorCode::kFileCreate);
  fs::permissions(folder.path("in"), fs::perms::owner_all);
  EXPECT_TRUE(shop.database->is_modified());
  EXPECT_TRUE(read_file(path) == before);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path("in")), {}), 1);
  EXPECT_EQ(save_file(shop, folder.path("no folder/x.rvb")), ErrorCode::kFileCreate);
  EXPECT_EQ(save_file(shop, folder.path("in")), ErrorCode::kFolderPath);
  EXPECT_EQ(save_file(shop, path), ErrorCode::kOk);
}

TEST(DatabaseDisk, FullDisk) {
  TestFolder folder;
  const std::string disk = folder.path("disk");
  fs::create_directory(disk);
  if (::mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=256k") != 0) GTEST_SKIP() << "no disk can be mounted";
  const std::string path = disk + "/shop.rvb";
  OpenFile shop(make_shop());
  EXPECT_EQ(save_file(shop, path), ErrorCode::kOk);
  const std::string before = read_file(path);
  std::string noise(400'000, '\0');
  std::mt19937 random(3);
  for (char& c : noise) c = static_cast<char>(random());
  CWorkSheet& table = *shop.database->tables()[0];
  EXPECT_EQ(table.set_value(1, 3, FileList{make_file("noise", noise)}), ErrorCode::kOk);
  EXPECT_EQ(save_file(shop, path), ErrorCode::kFileWrite);
  EXPECT_TRUE(shop.database->is_modified());
  EXPECT_TRUE(read_file(path) == before);
  EXPECT_EQ(std::distance(fs::directory_iterator(disk), {}), 1);
  EXPECT_EQ(table.set_value(1, 3, CellValue()), ErrorCode::kOk);
  EXPECT_EQ(save_file(shop, path), ErrorCode::kOk);
  EXPECT_EQ(describe(*open_file(path).database), describe(*shop.database));
  shop = OpenFile(std::make_unique<Database>());
  EXPECT_EQ(::umount2(disk.c_str(), MNT_DETACH), 0);
}

}  // namespace
}  // namespace rowvane

#endif

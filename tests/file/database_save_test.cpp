// Saving an opened database: what is copied, what is kept, and what is left out.
#include <thread>

#include "database_test_support.h"

namespace rowvane {
namespace {

const std::string kNote = "shop.rvb-bin/orders.r000000002f00003/text.txt";
const std::string kPhoto = "shop.rvb-bin/orders.r000000003f00004/photo.JPG";

class DatabaseSave : public testing::Test {
 protected:
  DatabaseSave() {
    OpenFile shop(make_shop());
    EXPECT_EQ(save_file(shop, path_), ErrorCode::kOk);
  }

  static CWorkSheet& orders(OpenFile& open) { return *open.database->find_table("orders"); }

  // The archive with one packed byte of the member NAME's local header wrong.
  void damage_header(const std::string& name) {
    std::string bytes = read_file(path_);
    const size_t at = bytes.find(name);
    bytes[at - 30 + 8] = 99;  // the method
    write_file(path_, bytes);
  }

  TestFolder folder_;
  std::string path_ = folder_.path("shop.rvb");
};

// Packed at level 1, then saved at level 9: what is packed again becomes other bytes.
TEST_F(DatabaseSave, UnchangedMembersAreCopiedAsTheyAre) {
  OpenFile open = open_file(path_);
  ASSERT_EQ(orders(open).set_value(1, 0, std::string("changed")), ErrorCode::kOk);
  ZipReader before;
  ASSERT_EQ(before.open(path_), ErrorCode::kOk);
  const std::string same = packed_bytes(path_, "archive/2024/orders.txt");
  const std::string photo = packed_bytes(path_, kPhoto);
  std::this_thread::sleep_for(std::chrono::milliseconds(2100));  // times in archives count two seconds
  SaveSettings settings;
  settings.level = 9;
  ASSERT_EQ(save_file(open, path_, settings), ErrorCode::kOk);
  EXPECT_TRUE(packed_bytes(path_, "archive/2024/orders.txt") == same);
  EXPECT_TRUE(packed_bytes(path_, kPhoto) == photo);
  ZipReader after;
  ASSERT_EQ(after.open(path_), ErrorCode::kOk);
  for (const ZipMember& member : after.members()) {
    const bool copied = member.name.find("rvb-bin") != std::string::npos || member.name == "Städte.txt" ||
                        member.name == "archive/2024/orders.txt";
    EXPECT_EQ(member.time == before.find(member.name)->time, copied) << member.name;
  }
}

TEST_F(DatabaseSave, SavingTwiceCopiesWhatTheFirstSavePacked) {
  OpenFile shop(make_shop());
  SaveSettings fast;
  ASSERT_EQ(save_file(shop, path_, fast), ErrorCode::kOk);
  const std::string table = packed_bytes(path_, "orders.txt");
  SaveSettings store;
  store.level = 0;
  ASSERT_EQ(save_file(shop, path_, store), ErrorCode::kOk);
  EXPECT_TRUE(packed_bytes(path_, "orders.txt") == table);
  EXPECT_EQ(describe(*open_file(path_).database), describe(*shop.database));
}

// A table that is freed and another at the same place must not be taken for each other.
TEST_F(DatabaseSave, NewTablesAreNeverTakenForDeletedOnes) {
  Options options;
  options.undo_level = 0;
  OpenFile open = open_file(path_, options);
  for (int i = 0; i < 50; ++i) {
    Database& database = *open.database;
    ASSERT_EQ(database.delete_table(*database.find_table("Städte")), ErrorCode::kOk);
    CWorkSheet* table = add_sample_table(database, database.root(), "Städte");
    ASSERT_EQ(table->insert_records(1, static_cast<uint32_t>(i)), ErrorCode::kOk);
    ASSERT_EQ(save_file(open, path_), ErrorCode::kOk);
    ASSERT_EQ(open_file(path_).database->find_table("Städte")->record_count(), static_cast<uint32_t>(i));
  }
}

TEST_F(DatabaseSave, RenamedAndMovedTablesTakeTheirContentsAlong) {
  OpenFile open = open_file(path_);
  ASSERT_EQ(open.database->rename_table(orders(open), "bills"), ErrorCode::kOk);
  ASSERT_EQ(open.database->rename_folder(*open.database->find_folder("archive"), "old"), ErrorCode::kOk);
  ASSERT_EQ(save_file(open, path_), ErrorCode::kOk);
  const std::vector<std::string> names = member_names(path_);
  EXPECT_EQ(std::count(names.begin(), names.end(), "orders.txt"), 0);
  EXPECT_EQ(member_content(path_, "shop.rvb-bin/orders.r000000003f00003/text.rtf"), "{\\rtf1 bold}");
  EXPECT_EQ(member_content(path_, "shop.rvb-bin/bills.r000000003f00003/text.rtf"), "{\\rtf1 bold}");
  EXPECT_EQ(describe(*open_file(path_).database), describe(*open.database));
}

TEST_F(DatabaseSave, CopyLeavesTheDatabaseWithItsFile) {
  OpenFile open = open_file(path_);
  ASSERT_EQ(orders(open).set_value(1, 0, std::string("changed")), ErrorCode::kOk);
  const std::string before = read_file(path_);
  SaveSettings settings;
  settings.as_copy = true;
  ASSERT_EQ(save_file(open, folder_.path("copy.rvb"), settings), ErrorCode::kOk);
  EXPECT_TRUE(read_file(path_) == before);
  EXPECT_EQ(open.database->file_path(), path_);
  EXPECT_EQ(open.database->name(), "shop");
  EXPECT_TRUE(open.database->is_modified());
  EXPECT_EQ(describe(*open_file(folder_.path("copy.rvb")).database), describe(*open.database));
  std::filesystem::remove(folder_.path("copy.rvb"));
  ASSERT_EQ(save_file(open, path_), ErrorCode::kOk);
  EXPECT_EQ(describe(*open_file(path_).database), describe(*open.database));
}

TEST_F(DatabaseSave, SomeTablesOnly) {
  OpenFile open = open_file(path_);
  SaveSettings settings;
  settings.as_copy = true;
  settings.tables = {open.database->find_table("archive/2024/orders")};
  const std::string copy = folder_.path("part.rvb");
  ASSERT_EQ(save_file(open, copy, settings), ErrorCode::kOk);
  const OpenFile part = open_file(copy);
  ASSERT_EQ(part.database->tables().size(), 1U);
  EXPECT_EQ(describe(*part.database->tables()[0]), describe(*settings.tables[0]));
  EXPECT_NE(part.database->find_folder("nothing in here"), nullptr);

  // Saved in place, the others are still there and can be saved afterwards.
  const std::string all = describe(*open.database);
  settings.as_copy = false;
  ASSERT_EQ(orders(open).set_value(1, 1, 3.0), ErrorCode::kOk);
  ASSERT_EQ(orders(open).set_value(1, 1, CellValue()), ErrorCode::kOk);
  ASSERT_EQ(save_file(open, path_, settings), ErrorCode::kOk);
  EXPECT_TRUE(open.database->is_modified());
  EXPECT_EQ(open_file(path_).database->tables().size(), 1U);
  ASSERT_EQ(save_file(open, path_), ErrorCode::kOk);
  EXPECT_EQ(describe(*open_file(path_).database), all);
}

TEST_F(DatabaseSave, ContentsAreReadWhenTheyAreWanted) {
  damage_member(path_, kPhoto);
  OpenFile open = open_file(path_);
  EXPECT_TRUE(open.notices.empty());
  const auto files = std::get<FileList>(orders(open).value(3, 3));
  std::string bytes;
  EXPECT_EQ(files[0].content.read(bytes), ErrorCode::kZipCorrupted);
  EXPECT_EQ(files[1].content.read(bytes), ErrorCode::kOk);
  EXPECT_EQ(bytes, sample_text(3000));
  // Saving copies the damaged bytes: what can be rescued from them still can.
  const std::string damaged = packed_bytes(path_, kPhoto);
  ASSERT_EQ(orders(open).set_value(1, 0, std::string("changed")), ErrorCode::kOk);
  const std::string before = describe(*open.database);
  const Outcome result = open.file->save(path_, {}, Options());
  EXPECT_EQ(result.failure, ErrorCode::kOk);
  EXPECT_TRUE(packed_bytes(path_, kPhoto) == damaged);
  EXPECT_EQ(describe(*open_file(path_).database), before);
}

TEST_F(DatabaseSave, ContentsThatCannotBeFoundAreLeftOutWithANotice) {
  damage_header(kNote);
  OpenFile open = open_file(path_);
  std::string bytes;
  EXPECT_EQ(std::get<Content>(orders(open).value(2, 2)).read(bytes), ErrorCode::kZipCorrupted);
  const Outcome result = open.file->save(path_, {}, Options());
  EXPECT_EQ(result.failure, ErrorCode::kOk);
  EXPECT_EQ(result.notices, std::vector<UserText>{ErrorCode::kBinaryFieldsCorrupted});
  OpenFile again = open_file(path_);
  EXPECT_TRUE(is_empty(orders(again).value(2, 2)));
  ASSERT_EQ(orders(open).set_value(2, 2, CellValue()), ErrorCode::kOk);
  EXPECT_EQ(describe(*again.database), describe(*open.database));
}

TEST_F(DatabaseSave, ListedFilesThatAreMissingGiveANotice) {
  ArchiveEdit(path_).remove(kPhoto).write();
  OpenFile open = open_file(path_);
  EXPECT_EQ(open.notices, std::vector<UserText>{ErrorCode::kBinaryFieldsCorrupted});
  EXPECT_EQ(std::get<FileList>(orders(open).value(3, 3)).size(), 2U);
}

TEST_F(DatabaseSave, MembersOfOthersStayUntilCompacting) {
  ArchiveEdit(path_).set("notes/readme.md", "mine").set("Thumbs.db", "\x01").write();
  OpenFile open = open_file(path_);
  EXPECT_EQ(open.file->unused_members(), (std::vector<std::string>{"notes/readme.md", "Thumbs.db"}));
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(save_file(open, path_), ErrorCode::kOk);
    EXPECT_EQ(member_content(path_, "notes/readme.md"), "mine");
  }
  EXPECT_NE(member_content(path_, "META-INF/manifest.txt").find("\r\nThumbs.db\t1"), std::string::npos);
  const CompactResult compacted = compact_database(*open.database, *open.file, Options());
  EXPECT_EQ(compacted.failure, ErrorCode::kOk);
  EXPECT_EQ(compacted.message, MessageId::kCompacted);
  const OpenFile after = open_file(path_);
  EXPECT_FALSE(after.file->has_unused_members());
  EXPECT_EQ(describe(*after.database), describe(*make_shop()));
  EXPECT_EQ(compact_database(*open.database, *open.file, Options()).message,
            MessageId::kNoCompactingRequired);
}

TEST_F(DatabaseSave, NothingToCompactWithoutFieldsOfContents) {
  Database database;
  auto table = std::make_unique<CWorkSheet>("t", std::vector{make_field("a")});
  ASSERT_EQ(database.add_table(database.root(), table), ErrorCode::kOk);
  DatabaseFile file(database);
  EXPECT_EQ(compact_database(database, file, Options()).message, MessageId::kNothingToCompact);
}

// An unused member named like a table that is made later.
TEST_F(DatabaseSave, UnusedNamesGiveWayToTables) {
  ArchiveEdit(path_).set("bills.txt", "old,text\r\n").write();
  OpenFile open = open_file(path_);
  CWorkSheet* bills = add_sample_table(*open.database, open.database->root(), "bills");
  ASSERT_EQ(save_file(open, path_), ErrorCode::kOk);
  EXPECT_EQ(describe(*open_file(path_).database), describe(*open.database));
  ASSERT_EQ(open.database->rename_table(*bills, "invoices"), ErrorCode::kOk);
  ASSERT_EQ(save_file(open, path_), ErrorCode::kOk);
  EXPECT_FALSE(open_file(path_).file->has_unused_members());
}

// A member in the folder of a record that is not there yet must not become its value later.
TEST_F(DatabaseSave, UnusedMembersNeverBecomeValues) {
  ArchiveEdit(path_)
      .set("shop.rvb-bin/orders.r000000004f00003/text.txt", "ghost")
      .set("shop.rvb-bin/orders.r000000001f00001/text.txt", "ghost")
      .write();
  OpenFile open = open_file(path_);
  EXPECT_EQ(open.file->unused_members().size(), 2U);
  ASSERT_EQ(orders(open).insert_records(4, 1), ErrorCode::kOk);
  ASSERT_EQ(save_file(open, path_), ErrorCode::kOk);
  OpenFile again = open_file(path_);
  EXPECT_EQ(describe(*again.database), describe(*open.database));
  EXPECT_EQ(again.file->unused_members().size(), 1U);
}

TEST_F(DatabaseSave, MembersThatNoWriterCanCopyDoNotKeepFromSaving) {
  ArchiveEdit(path_).set("odd", "x").write();
  std::string bytes = read_file(path_);
  for (size_t at = bytes.find("odd"); at != std::string::npos; at = bytes.find("odd", at))
    bytes.replace(at, 3, "o\td");
  write_file(path_, bytes);
  OpenFile open = open_file(path_);
  ASSERT_EQ(open.file->unused_members().size(), 1U);
  const Outcome result = open.file->save(path_, {}, Options());
  EXPECT_EQ(result.failure, ErrorCode::kOk);
  EXPECT_EQ(result.notices, std::vector<UserText>{ErrorCode::kBinaryFieldsCorrupted});
  EXPECT_EQ(describe(*open_file(path_).database), describe(*make_shop()));
}

TEST_F(DatabaseSave, NewTablesAreAddedOnRequest) {
  const std::string text = "name,amount\r\nAnna,3\r\nBert,4.5\r\n";
  ArchiveEdit(path_)
      .set("customers.txt", text)
      .set("new folder/more.txt", text)
      .set("orders/clash.txt", text)  // a table has the folder's name
      .set("ORDERS.txt", text)
      .set("new folder/META-INF/../x.txt", "refused by the archive reader")
      .remove("new folder/META-INF/../x.txt")
      .write();
  Answer no(false);
  OpenFile without = open_file(path_, Options(), &no);
  EXPECT_EQ(no.questions, std::vector<std::string>{message(MessageId::kNewTablesFound)});
  EXPECT_EQ(describe(*without.database), describe(*make_shop()));
  EXPECT_EQ(without.file->unused_members().size(), 4U);
  ASSERT_EQ(save_file(without, path_), ErrorCode::kOk);

  Answer yes(true);
  OpenFile open = open_file(path_, Options(), &yes);
  EXPECT_TRUE(open.database->is_modified());
  EXPECT_EQ(open.notices, std::vector<UserText>{ErrorCode::kNameNotUnique});
  CWorkSheet* customers = open.database->find_table("customers");
  ASSERT_NE(customers, nullptr);
  EXPECT_EQ(customers->value_text(2, 1), "4.5");
  EXPECT_NE(open.database->find_table("new folder/more"), nullptr);
  EXPECT_NE(open.database->find_table("ORDERS (2)"), nullptr);
  EXPECT_EQ(open.file->unused_members(), std::vector<std::string>{"orders/clash.txt"});
  ASSERT_EQ(save_file(open, path_), ErrorCode::kOk);
  EXPECT_EQ(describe(*open_file(path_).database), describe(*open.database));
}

class CancelAfter final : public Progress {
 public:
  explicit CancelAfter(int reports) : left_(reports) {}
  void begin(std::string_view caption) override { captions.emplace_back(caption); }
  void report(uint64_t, uint64_t) override { --left_; }
  bool cancelled() const override { return left_ <= 0; }
  std::vector<std::string> captions;

 private:
  std::atomic<int> left_;
};

TEST_F(DatabaseSave, CancellingKeepsTheOldFile) {
  const std::string before = read_file(path_);
  OpenFile open = open_file(path_);
  for (int reports = 0; reports < 15; ++reports) {
    CancelAfter progress(reports);
    const Outcome result = open.file->save(path_, {}, Options(), progress);
    EXPECT_TRUE(result.cancelled);
    EXPECT_NE(result.failure, ErrorCode::kOk);
    EXPECT_EQ(progress.captions, std::vector<std::string>{"Saving Database"});
    ASSERT_TRUE(read_file(path_) == before);
  }
  EXPECT_EQ(folder_.file_count(), 1U);
  CancelAfter progress(0);
  const OpenedDatabase opened = open_database(path_, Options(), nullptr, progress);
  EXPECT_TRUE(opened.cancelled);
  EXPECT_EQ(opened.database, nullptr);
  EXPECT_EQ(progress.captions, std::vector<std::string>{"Opening Database"});
}

}  // namespace
}  // namespace rowvane

#include "core/table/table_copy.h"

#include <gtest/gtest.h>

#include "sample_tables.h"

namespace rowvane {
namespace {

class TableCopy : public testing::Test {
 protected:
  TableCopy() {
    EXPECT_EQ(database.make_folders("a/b", &b), ErrorCode::kOk);
    a = b->parent();
    orders = add_sample_table(database, *a, "orders");
    EXPECT_EQ(orders->insert_records(1, 2), ErrorCode::kOk);
    EXPECT_EQ(orders->set_value(2, 0, std::string("Anna")), ErrorCode::kOk);
    EXPECT_EQ(orders->set_value(2, 2, Content::of("long")), ErrorCode::kOk);
    DatabaseSettings settings;
    settings.record_flag_types = {{"red", 0xFF0000}};
    EXPECT_EQ(database.change_settings(settings), ErrorCode::kOk);
    EXPECT_EQ(orders->set_flag_type(std::vector<uint32_t>{1}, 1), ErrorCode::kOk);
    EXPECT_EQ(orders->add_search_key({"key", {{0, "a:Anna"}}}), ErrorCode::kOk);
    Field number = orders->field(1);
    number.formula = "=1+len(text)";
    number.width = 77;
    EXPECT_EQ(orders->change_field(1, number), ErrorCode::kOk);
  }

  std::vector<std::string> paths() const {
    std::vector<std::string> all;
    for (const CWorkSheet* table : database.tables()) all.push_back(table->path());
    return all;
  }

  Database database;
  Folder* a = nullptr;
  Folder* b = nullptr;
  CWorkSheet* orders = nullptr;
};

TEST_F(TableCopy, HoldsAllOfTheTableAndLivesByItself) {
  CWorkSheet* copy = nullptr;
  ASSERT_EQ(copy_table(database, *orders, *a, &copy), ErrorCode::kOk);
  EXPECT_EQ(copy->path(), "a/orders (2)");
  EXPECT_EQ(copy->data().fields, orders->data().fields);
  EXPECT_EQ(copy->search_keys(), orders->search_keys());
  EXPECT_EQ(copy->flag_type(2), 1);
  EXPECT_EQ(copy->value_text(2, 2), "long");
  EXPECT_NE(copy->field_id(0), orders->field_id(0));
  EXPECT_NE(copy->revision(), orders->revision());

  ASSERT_EQ(copy->set_value(2, 0, std::string("Bert")), ErrorCode::kOk);
  ASSERT_EQ(orders->set_value(1, 0, std::string("Carl")), ErrorCode::kOk);
  copy->clean_pools();
  EXPECT_EQ(orders->value_text(2, 0), "Anna");
  EXPECT_EQ(copy->value_text(1, 0), "");
  EXPECT_EQ(copy->value_text(2, 0), "Bert");
}

TEST_F(TableCopy, IsOneUndoStep) {
  ASSERT_EQ(copy_table(database, *orders, database.root()), ErrorCode::kOk);
  EXPECT_EQ(paths(), (std::vector<std::string>{"orders", "a/orders"}));
  ASSERT_TRUE(database.undo());
  EXPECT_EQ(paths(), std::vector<std::string>{"a/orders"});
  ASSERT_EQ(copy_folder(database, *a, database.root()), ErrorCode::kOk);
  EXPECT_EQ(paths(), (std::vector<std::string>{"a/orders", "a (2)/orders"}));
  ASSERT_NE(database.find_folder("a (2)/b"), nullptr);
  NoticeCounter counter(database);
  ASSERT_TRUE(database.undo());
  EXPECT_EQ(counter.notices, 1);
  EXPECT_EQ(database.find_folder("a (2)"), nullptr);
  ASSERT_TRUE(database.redo());
  EXPECT_NE(database.find_table("a (2)/orders"), nullptr);
}

TEST_F(TableCopy, OfAFolderMayLieWithinIt) {
  ASSERT_EQ(copy_folder(database, *a, *b), ErrorCode::kOk);
  EXPECT_EQ(paths(), (std::vector<std::string>{"a/orders", "a/b/a/orders"}));
  EXPECT_NE(database.find_folder("a/b/a/b"), nullptr);
  EXPECT_EQ(database.find_folder("a/b/a/b/a"), nullptr);
}

TEST_F(TableCopy, ThatWouldLieTooDeepLeavesNothing) {
  std::string path;
  for (size_t i = 0; i + 1 < kMaxFolderDepth; ++i) path += i == 0 ? "d" : "/d";
  Folder* deep = nullptr;
  ASSERT_EQ(database.make_folders(path, &deep), ErrorCode::kOk);
  EXPECT_EQ(copy_folder(database, *a, *deep), ErrorCode::kPathTooLong);
  EXPECT_TRUE(deep->folders().empty());
  EXPECT_EQ(copy_folder(database, database.root(), *a), ErrorCode::kInvalidPath);
}

}  // namespace
}  // namespace rowvane

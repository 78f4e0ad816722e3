#include "core/database/database.h"

#include <gtest/gtest.h>

#include "core/database/names.h"
#include "core/messages/messages.h"
#include "sample_tables.h"

namespace rowvane {
namespace {

class DatabaseTree : public testing::Test {
 protected:
  DatabaseTree() {
    EXPECT_EQ(database.make_folders("a/b", &b), ErrorCode::kOk);
    a = b->parent();
    orders = add_sample_table(database, *a, "orders");
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

TEST_F(DatabaseTree, FindsByPathInAnyCase) {
  EXPECT_EQ(orders->path(), "a/orders");
  EXPECT_EQ(b->path(), "a/b");
  EXPECT_EQ(database.find_table("A/Orders"), orders);
  EXPECT_EQ(database.find_folder("a/B"), b);
  EXPECT_EQ(database.find_folder(""), &database.root());
  for (const char* path : {"", "orders", "a", "a/", "a/b/orders", "a//orders", "a/orders/", "/a/orders"}) {
    EXPECT_EQ(database.find_table(path), nullptr) << path;
  }
  EXPECT_EQ(database.find_folder("a//b"), nullptr);
  EXPECT_EQ(database.find_folder("a/orders"), nullptr);
}

TEST_F(DatabaseTree, NamesAreUniqueWithinAFolder) {
  EXPECT_NE(add_sample_table(database, *b, "orders"), nullptr);
  EXPECT_NE(add_sample_table(database, database.root(), "Orders"), nullptr);
  auto second = make_table("ORDERS");
  EXPECT_EQ(database.add_table(*a, second), ErrorCode::kNameNotUnique);
  EXPECT_EQ(static_cast<int>(ErrorCode::kNameNotUnique), 129);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->database(), nullptr);
  EXPECT_EQ(database.add_folder(*a, "Orders"), ErrorCode::kNameNotUnique);
  EXPECT_EQ(database.rename_folder(*b, "orders"), ErrorCode::kNameNotUnique);
  EXPECT_EQ(database.rename_table(*orders, "B"), ErrorCode::kNameNotUnique);
  EXPECT_EQ(database.move_table(*orders, *b), ErrorCode::kNameNotUnique);
  EXPECT_EQ(database.rename_table(*orders, "ORDERS"), ErrorCode::kOk);
  EXPECT_EQ(orders->path(), "a/ORDERS");
}

TEST_F(DatabaseTree, ReservesMemberNamesAtTheTopOnly) {
  EXPECT_EQ(add_sample_table(database, database.root(), "This-Version"), nullptr);
  EXPECT_EQ(database.add_folder(database.root(), "meta-inf"), ErrorCode::kNameNotUnique);
  EXPECT_EQ(database.add_folder(*a, "META-INF"), ErrorCode::kOk);
  EXPECT_EQ(database.move_folder(*database.find_folder("a/META-INF"), database.root()),
            ErrorCode::kNameNotUnique);
}

TEST_F(DatabaseTree, MakesAllFoldersOfAPathOrNone) {
  NoticeCounter notices(database);
  Folder* folder = nullptr;
  EXPECT_EQ(database.make_folders("x/y:/z", &folder), ErrorCode::kInvalidPath);
  EXPECT_EQ(database.make_folders("a/orders/z", &folder), ErrorCode::kNameNotUnique);
  EXPECT_EQ(database.find_folder("x"), nullptr);
  EXPECT_EQ(notices.notices, 0);
  EXPECT_EQ(database.make_folders("x/y/z", &folder), ErrorCode::kOk);
  EXPECT_EQ(folder->path(), "x/y/z");
  EXPECT_EQ(notices.notices, 1);
  database.undo();
  EXPECT_EQ(database.find_folder("x"), nullptr);
}

TEST_F(DatabaseTree, KeepsItsLastTable) {
  EXPECT_EQ(database.delete_table(*orders), ErrorCode::kLastTable);
  EXPECT_EQ(database.delete_folder(*a), ErrorCode::kLastTable);
  EXPECT_EQ(static_cast<int>(ErrorCode::kLastTable), 22);
  EXPECT_EQ(database.delete_folder(*b), ErrorCode::kOk);
  CWorkSheet* clients = add_sample_table(database, database.root(), "clients");
  EXPECT_EQ(database.delete_folder(*a), ErrorCode::kOk);
  EXPECT_EQ(database.delete_table(*clients), ErrorCode::kLastTable);
  EXPECT_EQ(paths(), std::vector<std::string>{"clients"});
}

TEST(EmptyDatabase, GivesUpItsFolders) {
  Database database;
  Folder* folder = nullptr;
  ASSERT_EQ(database.make_folders("a/b", &folder), ErrorCode::kOk);
  EXPECT_EQ(database.delete_folder(*folder->parent()), ErrorCode::kOk);
  EXPECT_TRUE(database.root().folders().empty());
}

TEST_F(DatabaseTree, MovesFoldersAndTables) {
  EXPECT_EQ(database.move_folder(*a, *b), ErrorCode::kInvalidPath);
  EXPECT_EQ(database.move_folder(*a, *a), ErrorCode::kInvalidPath);
  EXPECT_EQ(database.move_folder(database.root(), *a), ErrorCode::kInvalidPath);
  EXPECT_EQ(database.delete_folder(database.root()), ErrorCode::kInvalidPath);
  EXPECT_EQ(database.move_table(*orders, *b), ErrorCode::kOk);
  EXPECT_EQ(orders->path(), "a/b/orders");
  EXPECT_EQ(database.move_folder(*b, database.root()), ErrorCode::kOk);
  EXPECT_EQ(orders->path(), "b/orders");
  EXPECT_EQ(database.find_table("b/orders"), orders);
  database.undo();
  database.undo();
  EXPECT_EQ(database.find_table("a/orders"), orders);
}

TEST_F(DatabaseTree, OffersFreeNames) {
  EXPECT_EQ(database.free_name(*a, "clients"), "clients");
  EXPECT_EQ(database.free_name(*a, "Orders"), "Orders (2)");
  ASSERT_NE(add_sample_table(database, *a, "orders (2)"), nullptr);
  EXPECT_EQ(database.free_name(*a, "orders"), "orders (3)");
  const std::string longest = std::string(198, 'x') + "é";
  ASSERT_NE(add_sample_table(database, *a, longest), nullptr);
  const std::string free = database.free_name(*a, longest);
  EXPECT_NE(add_sample_table(database, *a, free), nullptr) << free;
}

TEST_F(DatabaseTree, LimitsRecordFlagTypes) {
  DatabaseSettings settings;
  for (int i = 1; i <= 10; ++i) settings.record_flag_types.push_back({"flag " + std::to_string(i), 0});
  EXPECT_EQ(check_record_flag_types(10), "");
  EXPECT_EQ(database.change_settings(settings), ErrorCode::kOk);
  settings.record_flag_types.push_back({"flag 11", 0});
  EXPECT_EQ(check_record_flag_types(11).refusal.text(), "You can define up to 10 record flag types.");
  EXPECT_NE(database.change_settings(settings), ErrorCode::kOk);
  EXPECT_EQ(database.settings().record_flag_types.size(), 10u);
}

TEST_F(DatabaseTree, ChecksNamesInSettings) {
  DatabaseSettings settings;
  settings.drop_down_lists = {{"colours", {"red"}}, {"Colours", {}}};
  EXPECT_EQ(database.change_settings(settings), ErrorCode::kNameNotUnique);
  settings.drop_down_lists = {{"", {}}};
  EXPECT_EQ(database.change_settings(settings), ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(database.settings(), DatabaseSettings());
}

TEST(Names, FieldNamesStartWithALetter) {
  for (const char* good : {"a", "Ärger", "名前", "a b.c/d:*", "x1"})
    EXPECT_TRUE(is_valid_field_name(good)) << good;
  for (const char* bad : {"", "1a", "_a", " a", "a\tb", "a\x7F", "\xE9", "€"}) {
    EXPECT_FALSE(is_valid_field_name(bad)) << bad;
  }
  EXPECT_TRUE(is_valid_field_name(std::string(8155, 'a')));
  EXPECT_FALSE(is_valid_field_name(std::string(8156, 'a')));
}

TEST(Names, HeadingsBecomeFieldNames) {
  EXPECT_EQ(repair_field_name("", 3), "field3");
  EXPECT_EQ(repair_field_name("2019", 1), "field_2019");
  EXPECT_EQ(repair_field_name("Price\n(net)", 1), "Price (net)");
  EXPECT_EQ(repair_field_name("caf\xE9", 1), "café");
  EXPECT_EQ(repair_field_name(std::string(8149, '7'), 4), "field_" + std::string(8149, '7'));
  EXPECT_EQ(repair_field_name(std::string(8150, '7'), 4), "field4");
  EXPECT_EQ(repair_field_name(std::string(9000, 'a'), 4), std::string(8155, 'a'));
}

TEST(Names, RepeatedHeadingsAreNumbered) {
  std::vector<std::string> names = {
      "a", "a_2", "A", "a", "b", std::string(8155, 'x'), std::string(8155, 'x')};
  make_names_unique(names);
  EXPECT_EQ(std::vector(names.begin(), names.begin() + 5),
            (std::vector<std::string>{"a", "a_2", "A_3", "a_4", "b"}));
  EXPECT_NE(names[5], names[6]);
  EXPECT_TRUE(is_valid_field_name(names[6]));
}

TEST(Names, TableNamesCanBeFileNames) {
  for (const char* good : {"orders", "2019", "名前", "a.b", "-"})
    EXPECT_TRUE(is_valid_table_name(good)) << good;
  for (const char* bad : {"", " a", "a ", ".a", "a.", "a/b", "a\\b", "a:b", "a*b", "a?b", "a\"b", "<a", "a>",
                          "a|b", "a\nb", "\xE9"}) {
    EXPECT_FALSE(is_valid_table_name(bad)) << bad;
    EXPECT_TRUE(is_valid_table_name(repair_table_name(bad))) << bad;
  }
  EXPECT_TRUE(is_valid_table_name(std::string(200, 'a')));
  EXPECT_FALSE(is_valid_table_name(std::string(201, 'a')));
  for (const std::string& hard :
       {std::string(300, 'a'), std::string(199, 'a') + "é", std::string("..."), std::string("META-INF"),
        std::string(192, 'a') + ".rvb-bin", std::string(191, 'a') + ".rvb-bin"}) {
    EXPECT_TRUE(is_valid_table_name(repair_table_name(hard))) << repair_table_name(hard);
    EXPECT_FALSE(is_reserved_name(repair_table_name(hard)));
  }
  EXPECT_EQ(repair_table_name("Sales 4/2019"), "Sales 4_2019");
}

}  // namespace
}  // namespace rowvane

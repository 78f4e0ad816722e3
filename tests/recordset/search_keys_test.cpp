#include "recordset/search/search_keys.h"

#include <gtest/gtest.h>

#include "core/database/database.h"
#include "core/sample_tables.h"
#include "recordset/search/recent_texts.h"

namespace rowvane {
namespace {

class SearchKeyCommands : public testing::Test {
 protected:
  void add(const std::string& name, std::vector<SearchExpression> expressions = {{0, "c:a"}}) {
    ASSERT_EQ(add_search_key(table, {name, std::move(expressions)}, current), ErrorCode::kOk);
  }

  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
  CurrentSearchKey current;
};

TEST_F(SearchKeyCommands, NamesAreChecked) {
  add("red");
  EXPECT_EQ(check_search_key_name(table, "Red"),
            "A key with that name already exists. Please enter a unique key name.");
  EXPECT_EQ(check_search_key_name(table, "Red", 0), "");
  EXPECT_EQ(check_search_key_name(table, " "), texts::kSearchKeyNeedsName);
  EXPECT_EQ(check_search_key_name(table, "blue"), "");
}

TEST_F(SearchKeyCommands, TheCurrentKeyIsRenamedAndDeleted) {
  add("red");
  add("blue");
  EXPECT_EQ(current.name, "blue");
  ASSERT_EQ(rename_search_key(table, "Blue", current), ErrorCode::kOk);
  EXPECT_EQ(current.find(table), 1U);
  ASSERT_EQ(delete_search_key(table, current), ErrorCode::kOk);
  EXPECT_EQ(current.name, "");
  EXPECT_EQ(delete_search_key(table, current), ErrorCode::kInvalidCacheIndex);
  ASSERT_EQ(table.search_keys().size(), 1U);
  EXPECT_EQ(database.undo_log().undo_caption(), "Delete Search Key");
  ASSERT_TRUE(database.undo());
  EXPECT_EQ(table.search_keys()[1].name, "Blue");
}

TEST_F(SearchKeyCommands, AnUpdateIsStartedAndFinished) {
  add("red");
  ASSERT_EQ(start_or_finish_update(table, {}, current), ErrorCode::kOk);
  EXPECT_TRUE(current.updating);
  EXPECT_EQ(table.search_keys()[0].expressions.size(), 1U) << "nothing is stored before the end";
  const std::vector<SearchExpression> edited = {{0, "c:b"}, {1, "f:3"}};
  ASSERT_EQ(start_or_finish_update(table, edited, current), ErrorCode::kOk);
  EXPECT_FALSE(current.updating);
  EXPECT_EQ(table.search_keys()[0].expressions, edited);
  EXPECT_EQ(choose_search_key(table, 0, current), edited);

  ASSERT_EQ(start_or_finish_update(table, {}, current), ErrorCode::kOk);
  ASSERT_EQ(table.delete_search_key(0), ErrorCode::kOk);
  EXPECT_EQ(start_or_finish_update(table, edited, current), ErrorCode::kInvalidCacheIndex);
  EXPECT_FALSE(current.updating);
}

TEST_F(SearchKeyCommands, KeysWithoutAnythingToSearchForAreIncorrect) {
  add("red");
  EXPECT_EQ(check_search_key(table, 0), "");
  EXPECT_EQ(check_search_key(table, 1), "Incorrect search key selection.");
  EXPECT_EQ(check_search_key(table, std::nullopt), "Incorrect search key selection.");
  ASSERT_EQ(table.delete_field(0), ErrorCode::kOk);
  EXPECT_EQ(check_search_key(table, 0), "Incorrect search key selection.");
}

TEST_F(SearchKeyCommands, ListsAreSortedWhenTheOptionSaysSo) {
  for (const char* name : {"b", "C", "a", "ä"}) add(name);
  EXPECT_EQ(listed_search_keys(table, false), (std::vector<size_t>{0, 1, 2, 3}));
  EXPECT_EQ(listed_search_keys(table, true), (std::vector<size_t>{2, 3, 0, 1}));
}

TEST(RecentTexts, NewestFirstEachOnceAndSixteenAtMost) {
  std::vector<std::string> texts;
  EXPECT_EQ(recent_text_menu(texts, ""), (std::vector<RecentTextItem>{{"(empty)", false, false}}));
  for (int i = 1; i <= 20; ++i) add_recent_text(texts, std::to_string(i));
  ASSERT_EQ(texts.size(), 16U);
  EXPECT_EQ(texts.front(), "20");
  EXPECT_EQ(texts.back(), "5");
  add_recent_text(texts, texts.back());
  EXPECT_EQ(texts.front(), "5");
  EXPECT_EQ(texts.back(), "6");
  for (const std::string& unfit : {std::string(), std::string("\xFF"), std::string(8166, 'x')}) {
    add_recent_text(texts, unfit);
    EXPECT_EQ(texts.front(), "5");
  }
  const auto menu = recent_text_menu(texts, "20");
  ASSERT_EQ(menu.size(), 16U);
  EXPECT_EQ(menu[0], (RecentTextItem{"5", false, true}));
  EXPECT_EQ(menu[1], (RecentTextItem{"20", true, true}));
}

TEST(RecentTexts, EachFieldHasItsOwn) {
  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
  RecentFieldTexts recent;
  recent.add(table, 0, "a");
  recent.add(table, 1, "1");
  recent.add(table, 0, "b");
  EXPECT_TRUE(recent.texts(table, 2).empty());
  ASSERT_EQ(table.move_field(0, 3), ErrorCode::kOk);
  const auto texts = recent.texts(table, 3);
  EXPECT_EQ(std::vector<std::string>(texts.begin(), texts.end()), (std::vector<std::string>{"b", "a"}));
}

}  // namespace
}  // namespace rowvane

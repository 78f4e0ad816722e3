#include "core/table/search_key.h"

#include <gtest/gtest.h>

#include "sample_tables.h"

namespace rowvane {
namespace {

class SearchKeys : public testing::Test {
 protected:
  // What the first key asks, each field by its name.
  std::string expressions() const {
    std::string text;
    for (const SearchExpression& one : table.search_keys().at(0).expressions) {
      text += table.field(one.field).name + "=" + one.criterion + " ";
    }
    return text;
  }

  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
};

TEST_F(SearchKeys, FollowTheirFields) {
  ASSERT_EQ(table.add_search_key({"k", {{0, "c:a"}, {1, "f:1"}, {3, "k:x"}}}), ErrorCode::kOk);
  ASSERT_EQ(table.insert_field(1, make_field("new")), ErrorCode::kOk);
  EXPECT_EQ(expressions(), "text=c:a number=f:1 files=k:x ");
  ASSERT_EQ(table.move_field(0, 4), ErrorCode::kOk);
  EXPECT_EQ(expressions(), "number=f:1 files=k:x text=c:a ");
  ASSERT_EQ(table.move_field(4, 1), ErrorCode::kOk);
  EXPECT_EQ(expressions(), "text=c:a number=f:1 files=k:x ");
  ASSERT_EQ(table.rename_field(2, "amount"), ErrorCode::kOk);
  EXPECT_EQ(expressions(), "text=c:a amount=f:1 files=k:x ");
  ASSERT_EQ(table.delete_field(2), ErrorCode::kOk);
  EXPECT_EQ(expressions(), "text=c:a files=k:x ");
  for (int i = 0; i < 6; ++i) ASSERT_TRUE(database.undo());
  EXPECT_TRUE(table.search_keys().empty());
  for (int i = 0; i < 6; ++i) ASSERT_TRUE(database.redo());
  EXPECT_EQ(expressions(), "text=c:a files=k:x ");
  ASSERT_TRUE(database.undo());
  EXPECT_EQ(expressions(), "text=c:a amount=f:1 files=k:x ");
}

TEST_F(SearchKeys, RefuseWhatNoKeyCanHave) {
  ASSERT_EQ(table.add_search_key({"Key", {{0, "c:a"}}}), ErrorCode::kOk);
  const std::string longest(kMaxBufferBytes, 'x');
  EXPECT_EQ(table.add_search_key({"kEY", {}}), ErrorCode::kNameNotUnique);
  EXPECT_EQ(table.add_search_key({"", {}}), ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(table.add_search_key({longest + "x", {}}), ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(table.add_search_key({"k", {{5, "c:a"}}}), ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(table.add_search_key({"k", {{0, "x:a"}}}), ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(table.change_search_key(0, {{0, "c:" + longest + "x"}}), ErrorCode::kFieldTypeMismatch);
  EXPECT_EQ(table.change_search_key(1, {}), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table.rename_search_key(0, "KEY"), ErrorCode::kOk);
  EXPECT_EQ(table.add_search_key({longest, {{0, "c:" + longest}}}), ErrorCode::kOk);
  EXPECT_EQ(table.rename_search_key(1, "key"), ErrorCode::kNameNotUnique);
  EXPECT_EQ(table.delete_search_key(2), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table.search_keys().size(), 2U);
}

TEST_F(SearchKeys, AreCopiedWithTheTable) {
  ASSERT_EQ(table.add_search_key({"k", {{0, "c:a"}}}), ErrorCode::kOk);
  const CWorkSheet copy("copy", table.data());
  EXPECT_EQ(copy.search_keys(), table.search_keys());
}

}  // namespace
}  // namespace rowvane

#include "recordset/search/current_criteria.h"

#include <gtest/gtest.h>

#include "core/sample_tables.h"

namespace rowvane {
namespace {

constexpr auto kOk = ErrorCode::kOk;

class CurrentCriteriaTest : public testing::Test {
 protected:
  CurrentCriteriaTest() : table_(add_sample_table(database_, database_.root(), "t")), current_(database_) {
    current_.set(*table_, 0, *parse_criterion("c:a"));
    current_.set(*table_, 1, *parse_criterion("f:5"));
  }

  // "field name=stored criterion" for each.
  std::string criteria() const {
    std::string all;
    for (const auto& [field, criterion] : current_.criteria(*table_))
      all += table_->field(field).name + "=" + stored_criterion(criterion) + " ";
    return all;
  }

  Database database_;
  CWorkSheet* table_;
  CurrentCriteria current_;
};

TEST_F(CurrentCriteriaTest, StayWithTheirFields) {
  EXPECT_EQ(criteria(), "text=c:a number=f:5 ");
  ASSERT_EQ(table_->rename_field(0, "Name"), kOk);
  ASSERT_EQ(table_->move_field(0, 3), kOk);
  EXPECT_EQ(criteria(), "number=f:5 Name=c:a ");
  ASSERT_EQ(table_->insert_field(0, make_field("text")), kOk);
  EXPECT_EQ(criteria(), "number=f:5 Name=c:a ");
  ASSERT_EQ(table_->delete_field(2), kOk);
  EXPECT_EQ(criteria(), "number=f:5 Name=c:a ");
  Field wide = table_->field(1);
  wide.width = 7;
  ASSERT_EQ(table_->change_field(1, wide), kOk);
  EXPECT_EQ(criteria(), "number=f:5 Name=c:a ");
  while (database_.undo_log().can_undo() && table_->field(0).name != "text") database_.undo();
  ASSERT_EQ(database_.undo(), true);
  EXPECT_EQ(current_.criteria(*table_).size(), 2u);
}

TEST_F(CurrentCriteriaTest, GoWithTheirFieldsAndTables) {
  CWorkSheet* other = add_sample_table(database_, database_.root(), "other");
  current_.set(*other, 0, *parse_criterion("d:x"));
  ASSERT_EQ(table_->delete_field(0), kOk);
  EXPECT_EQ(criteria(), "number=f:5 ");
  ASSERT_TRUE(database_.undo());
  EXPECT_EQ(criteria(), "number=f:5 ");
  EXPECT_FALSE(current_.criterion(*table_, 0));
  ASSERT_EQ(database_.delete_table(*other), kOk);
  ASSERT_TRUE(database_.undo());
  EXPECT_TRUE(current_.criteria(*other).empty());
}

TEST_F(CurrentCriteriaTest, AreReplacedAndCleared) {
  current_.set(*table_, 0, *parse_criterion("k: "));
  EXPECT_EQ(current_.criterion(*table_, 0), is_empty_criterion());
  current_.clear(*table_, 1);
  EXPECT_EQ(criteria(), "text=k:  ");
  current_.clear(*table_);
  EXPECT_EQ(criteria(), "");
  EXPECT_FALSE(current_.criterion(*table_, 0));
}

}  // namespace
}  // namespace rowvane

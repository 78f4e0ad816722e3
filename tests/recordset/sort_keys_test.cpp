#include "recordset/sort/sort_keys.h"

#include <gtest/gtest.h>

#include "text/sort_options.h"

namespace rowvane {
namespace {

TEST(SortRows, GiveRanksInTheirOrderWithoutGaps) {
  SortRows rows;
  SortCodes all_ten;
  for (size_t i = 0; i < kSortRows; ++i) {
    rows[i].field = i;
    all_ten.push_back(static_cast<uint32_t>(10'001 + i));
  }
  EXPECT_EQ(sort_codes_of_rows(rows, 10), all_ten);
  SortRows gap;
  gap[0] = {2, true};
  gap[2] = {0, false};
  EXPECT_EQ(sort_codes_of_rows(gap, 3), (SortCodes{10'002, 0, 20'001}));
  EXPECT_EQ(sort_codes_of_rows(SortRows(), 3), SortCodes(3, 0));
}

TEST(SortRows, OfOneFieldTheLaterOneCounts) {
  SortRows rows;
  rows[0] = {1, false};
  rows[1] = {0, false};
  rows[2] = {1, true};
  const SortCodes codes = sort_codes_of_rows(rows, 2);
  EXPECT_EQ(codes, (SortCodes{10'002, 20'003}));
  EXPECT_EQ(keys_of_sort_codes(codes), (SortKeys{{0, false}, {1, true}}));
  const SortRows reopened = opening_sort_rows(codes, 0);
  EXPECT_FALSE(reopened[0].field);
  EXPECT_EQ(reopened[1], (SortRow{0, false}));
  EXPECT_EQ(reopened[2], (SortRow{1, true}));
}

TEST(SortRows, ShowTheKeysOrTheCurrentField) {
  const SortRows rows = opening_sort_rows(SortCodes{0, 20'002, 10'001, 10'011}, 3);
  EXPECT_EQ(rows[0], (SortRow{2, false}));
  EXPECT_EQ(rows[1], (SortRow{1, true}));
  EXPECT_FALSE(rows[2].field);
  EXPECT_EQ(opening_sort_rows(SortCodes(4, 0), 3)[0], (SortRow{3, false}));
  EXPECT_EQ(opening_sort_rows(SortCodes(), 3), SortRows());
  EXPECT_EQ(sort_row_label(9), "10. sort key");
}

TEST(SortCodes, ThatMeanNothingAreNoKeys) {
  EXPECT_EQ(keys_of_sort_codes(SortCodes{10'000, 20'000, 30'001, 1, 9'999, 4'294'967'295, 10'007, 20'007}),
            (SortKeys{{6, false}, {7, true}}));
}

TEST(SortToolbar, ReplacesTheKeyOrAddsOne) {
  SortCodes codes(12, 0);
  ASSERT_EQ(sort_by_field(codes, 2, false, false), ErrorCode::kOk);
  ASSERT_EQ(sort_by_field(codes, 1, true, true), ErrorCode::kOk);
  EXPECT_EQ(keys_of_sort_codes(codes), (SortKeys{{2, false}, {1, true}}));
  ASSERT_EQ(sort_by_field(codes, 2, true, true), ErrorCode::kOk);
  EXPECT_EQ(keys_of_sort_codes(codes), (SortKeys{{2, true}, {1, true}}));
  for (size_t field = 3; field < 11; ++field)
    ASSERT_EQ(sort_by_field(codes, field, false, true), ErrorCode::kOk);
  const SortCodes ten = codes;
  EXPECT_EQ(sort_by_field(codes, 11, false, true), ErrorCode::kTooManySortKeys);
  EXPECT_EQ(sort_by_field(codes, 12, false, true), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(codes, ten);
  ASSERT_EQ(sort_by_field(codes, 5, true, false), ErrorCode::kOk);
  EXPECT_EQ(keys_of_sort_codes(codes), (SortKeys{{5, true}}));
  sort_by_nothing(codes);
  EXPECT_EQ(codes, SortCodes(12, 0));
}

TEST(SortOptions, KeepTheBoxesApart) {
  SortOptions options;
  set_case_sensitive(options, true);
  set_ignore_punctuation(options, true);
  EXPECT_EQ(options, (SortOptions{.ignore_punctuation = true}));
  set_case_sensitive(options, true);
  EXPECT_EQ(options, (SortOptions{.case_sensitive = true}));
  set_ignore_punctuation(options, true);
  choose_collation(options, SortCollation::kNeutral);
  EXPECT_EQ(options, (SortOptions{.collation = SortCollation::kNeutral}));
  EXPECT_FALSE(is_ignore_punctuation_enabled(options));
  set_ignore_punctuation(options, true);
  EXPECT_FALSE(options.ignore_punctuation);
  EXPECT_EQ(valid_sort_options({SortCollation::kNeutral, true, true}),
            (SortOptions{.collation = SortCollation::kNeutral, .case_sensitive = true}));
}

}  // namespace
}  // namespace rowvane

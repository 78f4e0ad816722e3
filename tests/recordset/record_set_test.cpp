#include "recordset/record_set.h"

#include <gtest/gtest.h>

#include "core/table/work_sheet.h"

namespace rowvane {
namespace {

TEST(RecordSet, HoldsAllRecordsInTheOrderOfEntry) {
  Field field;
  field.name = "a";
  CWorkSheet table("t", {field});
  EXPECT_TRUE(all_records(table).empty());
  ASSERT_EQ(table.insert_records(1, 3), ErrorCode::kOk);
  EXPECT_EQ(all_records(table), (RecordSet{0, 1, 2}));
}

}  // namespace
}  // namespace rowvane

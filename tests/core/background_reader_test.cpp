// Who reads a database beside its owner is stopped before anything in it differs.
#include <functional>

#include <gtest/gtest.h>

#include "core/table/table_copy.h"
#include "sample_tables.h"

namespace rowvane {
namespace {

// What a reader sees of a database, as far as the changes below touch it.
struct Seen {
  std::string name;
  std::string path;
  size_t tables = 0;
  size_t folders = 0;
  std::string table_path;
  std::string folder_path;
  uint64_t revision = 0;
  RecordFlags flags = 0;
  std::string text;
  DatabaseSettings settings;
  const TextPool* pool = nullptr;
  bool operator==(const Seen&) const = default;
};

class BackgroundReaderTest : public testing::Test, protected BackgroundReader {
 protected:
  BackgroundReaderTest() {
    table = add_sample_table(database, database.root(), "table");
    other = add_sample_table(database, database.root(), "other");
    EXPECT_EQ(table->insert_records(1, 3), ErrorCode::kOk);
    EXPECT_EQ(table->set_value(1, 0, std::string("before")), ErrorCode::kOk);
    EXPECT_EQ(database.change_settings({{}, {{"flag", 0}}}), ErrorCode::kOk);
    EXPECT_EQ(database.add_folder(database.root(), "folder", &folder), ErrorCode::kOk);
    database.add_reader(this);
  }
  ~BackgroundReaderTest() override { database.remove_reader(this); }

  Seen look() const {
    const auto* texts = std::get_if<TextColumn>(&table->column(0));
    return {database.name(),
            database.file_path(),
            database.tables().size(),
            database.root().folders().size(),
            table->path(),
            folder->path(),
            table->revision(),
            table->flags(1),
            table->value_text(1, 0),
            database.settings(),
            texts != nullptr ? texts->pool.get() : nullptr};
  }

  void expect_stop(const std::function<void()>& change) {
    const Seen before = look();
    stops = 0;
    change();
    EXPECT_NE(look(), before) << "the change is one that the test can see";
    EXPECT_GE(stops, 1);
    EXPECT_EQ(seen_at_stop, before);
  }
  void expect_stops_there_and_back(const char* what, const std::function<ErrorCode()>& change) {
    SCOPED_TRACE(what);
    expect_stop([&] { EXPECT_EQ(change(), ErrorCode::kOk); });
    expect_stop([&] { EXPECT_TRUE(database.undo()); });
    expect_stop([&] { EXPECT_TRUE(database.redo()); });
    expect_stop([&] { EXPECT_TRUE(database.undo()); });
  }

  Database database;
  CWorkSheet* table = nullptr;
  CWorkSheet* other = nullptr;
  Folder* folder = nullptr;
  int stops = 0;

 private:
  void stop() override {
    if (stops++ == 0) seen_at_stop = look();
  }

  Seen seen_at_stop;
};

Column text_cells(size_t count) {
  TextColumn texts;
  for (size_t i = 0; i < count; ++i) texts.cells.push_back(texts.code_for(std::to_string(i)));
  return texts;
}

TEST_F(BackgroundReaderTest, ChangesOfATableStopIt) {
  std::vector<RefusedValue> refused;
  const std::vector<std::pair<const char*, std::function<ErrorCode()>>> changes = {
      {"value", [&] { return table->set_value(1, 0, std::string("after")); }},
      {"values",
       [&] {
         return table->set_values(0, {0, 2}, text_cells(2), refused);
       }},
      {"results of records",
       [&] {
         return table->store_results(0, {0, 2}, text_cells(2));
       }},
      {"results", [&] { return table->store_results(0, text_cells(3)); }},
      {"records inserted", [&] { return table->insert_records(1, 1000); }},
      {"records deleted", [&] { return table->delete_records(std::vector<uint32_t>{0}); }},
      {"flags", [&] { return table->set_flag_type(std::vector<uint32_t>{0}, 1); }},
      {"field inserted", [&] { return table->insert_field(0, make_field("new")); }},
      {"field renamed", [&] { return table->rename_field(0, "new"); }},
      {"field deleted", [&] { return table->delete_field(1); }},
      {"field moved", [&] { return table->move_field(1, 2); }},
      {"column replaced", [&] { return table->replace_column(0, table->field(0), text_cells(3)); }},
      {"search key",
       [&] {
         return table->add_search_key({"key", {{0, "d:1"}}});
       }},
      {"arrangement",
       [&] {
         return table->change_arrangement({3, 1, 1}), ErrorCode::kOk;
       }},
  };
  for (const auto& [what, change] : changes) expect_stops_there_and_back(what, change);
}

TEST_F(BackgroundReaderTest, ChangesOfTheTreeAndTheSettingsStopIt) {
  const std::vector<std::pair<const char*, std::function<ErrorCode()>>> changes = {
      {"table added",
       [&] {
         auto added = make_table("added");
         return database.add_table(database.root(), added);
       }},
      {"table copied", [&] { return copy_table(database, *table, *folder, nullptr); }},
      {"table deleted", [&] { return database.delete_table(*other); }},
      {"table renamed", [&] { return database.rename_table(*table, "new"); }},
      {"table moved", [&] { return database.move_table(*table, *folder); }},
      {"folder added", [&] { return database.add_folder(database.root(), "added"); }},
      {"folder deleted", [&] { return database.delete_folder(*folder); }},
      {"folder renamed", [&] { return database.rename_folder(*folder, "new"); }},
      {"settings",
       [&] {
         return database.change_settings({{{"list", {"item"}}}, {}});
       }},
  };
  for (const auto& [what, change] : changes) expect_stops_there_and_back(what, change);
}

TEST_F(BackgroundReaderTest, WhatCannotBeUndoneStopsItToo) {
  expect_stop([&] { table->rewrite_formulas(0, "=1", ""); });
  expect_stop([&] { table->store_outcomes(std::vector<RecordFlags>(3, 0x0002)); });
  expect_stop([&] { database.set_name("new"); });
  expect_stop([&] { database.set_file_path("new.rvb"); });
  ASSERT_EQ(table->replace_column(0, make_field("text"), text_cells(3)), ErrorCode::kOk);
  for (uint32_t i = 0; i < 20; ++i) ASSERT_EQ(table->set_value(2, 0, std::to_string(i)), ErrorCode::kOk);
  expect_stop([&] { database.clean_pools(); });
  ChangeGroup group(database, "group");
  ASSERT_EQ(table->set_value(1, 0, std::string("after")), ErrorCode::kOk);
  expect_stop([&] { group.roll_back(); });
}

TEST_F(BackgroundReaderTest, ReadingAndRefusedChangesLetItRun) {
  EXPECT_EQ(table->set_value(9, 0, std::string("after")), ErrorCode::kInvalidCacheIndex);
  EXPECT_EQ(table->validate_value(1, 0, std::string("after")), ErrorCode::kOk);
  EXPECT_EQ(database.rename_table(*table, "other"), ErrorCode::kNameNotUnique);
  EXPECT_FALSE(database.redo());
  const CWorkSheet copy("copy", table->data());
  EXPECT_EQ(copy.value_text(1, 0), "before");
  EXPECT_EQ(stops, 0);
  database.remove_reader(this);
  EXPECT_EQ(table->set_value(1, 0, std::string("after")), ErrorCode::kOk);
  EXPECT_EQ(stops, 0);
}

}  // namespace
}  // namespace rowvane

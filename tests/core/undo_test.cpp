// Undo and redo, above all of random changes against snapshots of the whole database.
#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "sample_tables.h"

namespace rowvane {
namespace {

void describe_table(const CWorkSheet& table, std::string& out) {
  out += "table " + table.path() + "\n";
  for (const Field& field : table.data().fields) {
    out += field_list_text(field) + " " + field.format + std::to_string(field.width) + "\n";
  }
  for (const SearchKey& key : table.search_keys()) {
    out += "key " + key.name;
    for (const SearchExpression& one : key.expressions)
      out += " " + std::to_string(one.field) + one.criterion;
    out += "\n";
  }
  for (RecordNumber record = 1; record < table.end_record(); ++record) {
    for (size_t field = 0; field < table.field_count(); ++field) out += table.value_text(record, field) + "|";
    out += std::to_string(table.flag_type(record)) + "\n";
  }
}

void describe_folder(const Folder& folder, std::string& out) {
  out += "folder " + folder.path() + "\n";
  for (const auto& table : folder.tables()) describe_table(*table, out);
  for (const auto& inner : folder.folders()) describe_folder(*inner, out);
}

// All that can be seen of DATABASE.
std::string describe(const Database& database) {
  std::string out;
  describe_folder(database.root(), out);
  for (const RecordFlagType& type : database.settings().record_flag_types) out += "flag " + type.name + "\n";
  return out;
}

// Makes random changes; many of them are refused.
class Changer {
 public:
  Changer(Database& database, unsigned seed) : database_(database), random_(seed) {}

  uint32_t below(size_t limit) { return limit == 0 ? 0 : static_cast<uint32_t>(random_() % limit); }

  ErrorCode change() {
    switch (below(6)) {
      case 0:
        return change_tree();
      case 5:
        return change_search_keys();
      case 1:
        return change_fields();
      case 2:
        return change_records();
      default:
        return set_value();
    }
  }

 private:
  CWorkSheet& any_table() {
    const auto tables = database_.tables();
    return *tables[below(tables.size())];
  }

  Folder& any_folder() {
    static const char* const paths[] = {"", "n0", "n1", "n2", "n0/n1", "n1/n2"};
    Folder* folder = database_.find_folder(paths[below(6)]);
    return folder != nullptr ? *folder : database_.root();
  }

  std::string any_name() { return "n" + std::to_string(below(6)); }

  FieldType any_type() { return static_cast<FieldType>(1u << below(5)); }

  std::vector<uint32_t> any_positions(const CWorkSheet& table) {
    std::vector<uint32_t> positions;
    for (uint32_t i = 0; i < table.record_count(); ++i) {
      if (below(3) == 0) positions.push_back(i);
    }
    return positions;
  }

  ErrorCode change_tree() {
    switch (below(8)) {
      case 0:
        return add_sample_table(database_, any_folder(), any_name()) != nullptr ? ErrorCode::kOk
                                                                                : ErrorCode::kNameNotUnique;
      case 1:
        return database_.delete_table(any_table());
      case 2:
        return database_.rename_table(any_table(), any_name());
      case 3:
        return database_.move_table(any_table(), any_folder());
      case 4:
        return database_.add_folder(any_folder(), any_name());
      case 5:
        return below(3) == 0 ? database_.delete_folder(any_folder())
                             : database_.rename_folder(any_folder(), any_name());
      case 6:
        return database_.move_folder(any_folder(), any_folder());
      default:
        return change_settings();
    }
  }

  ErrorCode change_settings() {
    DatabaseSettings settings;
    for (uint32_t i = below(12); i > 0; --i)
      settings.record_flag_types.push_back({any_name() + std::to_string(i), 0});
    return database_.change_settings(settings);
  }

  ErrorCode change_fields() {
    CWorkSheet& table = any_table();
    const size_t field = below(table.field_count());
    switch (below(6)) {
      case 0:
        return table.insert_field(below(table.field_count() + 1), make_field(any_name(), any_type()));
      case 1:
        return table.delete_field(field);
      case 2:
        return table.move_field(field, below(table.field_count()));
      case 3:
        return table.rename_field(field, any_name());
      case 4: {
        Field definition = table.field(field);
        definition.width = static_cast<uint16_t>(below(3));
        return table.change_field(field, definition);
      }
      default:
        return change_type(table, field);
    }
  }

  ErrorCode change_type(CWorkSheet& table, size_t index) {
    Field definition = table.field(index);
    definition.type = any_type();
    Column column = make_column(definition.type);
    resize_column(column, table.record_count());
    if (table.record_count() > 0) store_value(column, 0, any_value(definition.type));
    return table.replace_column(index, definition, std::move(column));
  }

  ErrorCode change_records() {
    CWorkSheet& table = any_table();
    switch (below(4)) {
      case 0:
        return table.delete_records(any_positions(table));
      case 1:
        table.clean_pools();
        return ErrorCode::kOk;
      case 2:
        return table.set_flag_type(any_positions(table), static_cast<int>(below(4)));
      default:
        return table.insert_records(record_number(below(table.record_count() + 1)), below(6));
    }
  }

  std::vector<SearchExpression> any_expressions(const CWorkSheet& table) {
    std::vector<SearchExpression> expressions;
    for (uint16_t field = 0; field < table.field_count(); ++field) {
      if (below(2) == 0) expressions.push_back({field, "d:" + std::to_string(below(50))});
    }
    return expressions;
  }

  ErrorCode change_search_keys() {
    CWorkSheet& table = any_table();
    const size_t key = below(table.search_keys().size() + 1);
    switch (below(5)) {
      case 0:
        return table.rename_search_key(key, any_name());
      case 1:
        return table.delete_search_key(key);
      case 2: {
        const auto expressions = any_expressions(table);
        const bool same =
            key < table.search_keys().size() && table.search_keys()[key].expressions == expressions;
        return same ? ErrorCode::kConversionRule : table.change_search_key(key, expressions);
      }
      default:
        return table.add_search_key({any_name(), any_expressions(table)});
    }
  }

  ErrorCode set_value() {
    CWorkSheet& table = any_table();
    const size_t field = below(table.field_count());
    const CellValue value = below(6) > 0 ? any_value(table.field(field).type) : CellValue();
    return table.set_value(record_number(below(table.record_count())), field, value);
  }

  CellValue any_value(FieldType type) {
    const uint32_t number = below(50);
    const std::string text = std::to_string(number);
    if (type == FieldType::kText) return text;
    if (type == FieldType::kNumber) return static_cast<double>(number);
    return type == FieldType::kFiles ? CellValue(FileList{make_file(text)}) : CellValue(Content::of(text));
  }

  Database& database_;
  std::mt19937 random_;
};

Options many_steps() {
  Options options;
  options.undo_level = 10'000;
  return options;
}

class RandomChanges : public testing::TestWithParam<unsigned> {
 protected:
  RandomChanges() {
    add_sample_table(database, database.root(), "n5");
    database.undo_log().clear();
    states = {describe(database)};
  }

  // Makes a change, or a group of them, and keeps the new state when it was a step.
  void make_step() {
    const int notices_before = notices.notices;
    const std::string before = describe(database);
    bool rolled_back = false;
    if (changer.below(4) == 0) {
      ChangeGroup group(database, "group");
      make_group(group, rolled_back);
    } else if (changer.change() != ErrorCode::kOk) {
      ASSERT_EQ(notices.notices, notices_before);
      rolled_back = true;
    }
    const std::string after = describe(database);
    const int steps = notices.notices - notices_before;
    ASSERT_LE(steps, 1);
    if (rolled_back || steps == 0) {
      ASSERT_EQ(after, before);
    }
    if (steps == 1) states.push_back(after);
  }

  void make_group(ChangeGroup& group, bool& rolled_back) {
    for (uint32_t i = changer.below(5); i > 0; --i) (void)changer.change();
    const std::string before = describe(database);
    {
      ChangeGroup inner(database, "inner");
      (void)changer.change();
      (void)changer.change();
      if (changer.below(2) == 0) {
        inner.roll_back();
        ASSERT_EQ(describe(database), before);
      }
    }
    rolled_back = changer.below(3) == 0;
    if (rolled_back) group.roll_back();
  }

  Database database{"random", many_steps()};
  NoticeCounter notices{database};
  Changer changer{database, GetParam()};
  std::vector<std::string> states;
};
INSTANTIATE_TEST_SUITE_P(Seeds, RandomChanges, testing::Range(1u, 13u));

TEST_P(RandomChanges, AreUndoneAndRedone) {
  for (int i = 0; i < 250; ++i) ASSERT_NO_FATAL_FAILURE(make_step());
  ASSERT_GT(states.size(), 80u);
  for (size_t i = states.size() - 1; i > 0; --i) {
    ASSERT_TRUE(database.undo());
    ASSERT_EQ(describe(database), states[i - 1]) << "undoing step " << i;
  }
  ASSERT_FALSE(database.undo());
  for (size_t i = 1; i < states.size(); ++i) {
    ASSERT_TRUE(database.redo());
    ASSERT_EQ(describe(database), states[i]) << "redoing step " << i;
  }
  ASSERT_FALSE(database.redo());
}

TEST_P(RandomChanges, MayBranchAnywhere) {
  size_t at = 0;
  for (int round = 0; round < 400; ++round) {
    const bool back = changer.below(3) > 0;
    for (uint32_t i = changer.below(8); i > 0; --i) {
      const bool moved = back ? database.undo() : database.redo();
      ASSERT_EQ(moved, back ? at > 0 : at + 1 < states.size());
      if (moved) at += back ? size_t(-1) : size_t{1};
      ASSERT_EQ(describe(database), states[at]);
    }
    for (uint32_t i = changer.below(6); i > 0; --i) {
      const auto all = states;
      states.resize(at + 1);
      ASSERT_NO_FATAL_FAILURE(make_step());
      if (states.size() == at + 1) {
        states = all;  // nothing was done, so redo is still possible
      } else {
        at = states.size() - 1;
      }
    }
  }
}

class Undo : public testing::Test {
 protected:
  Undo() {
    EXPECT_EQ(table.insert_records(1, 2), ErrorCode::kOk);
    database.undo_log().clear();
    notices.notices = 0;
  }

  void set_number(double number) { ASSERT_EQ(table.set_value(1, 1, number), ErrorCode::kOk); }
  std::string number() const { return table.value_text(1, 1); }

  Database database;
  CWorkSheet& table = *add_sample_table(database, database.root(), "t");
  NoticeCounter notices{database};
};

TEST_F(Undo, KeepsAsManyStepsAsItMay) {
  database.undo_log().set_limit(3);
  for (int i = 1; i <= 5; ++i) set_number(i);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(database.undo());
  EXPECT_FALSE(database.undo());
  EXPECT_EQ(number(), "2");
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(database.redo());
  database.undo_log().set_limit(1);
  EXPECT_TRUE(database.undo());
  EXPECT_FALSE(database.undo());
  database.undo_log().set_limit(0);
  set_number(9);
  EXPECT_FALSE(database.undo());
  EXPECT_FALSE(database.redo());
  EXPECT_EQ(number(), "9");
}

TEST_F(Undo, DropsWhatItNoLongerReaches) {
  database.undo_log().set_limit(2);
  Folder* folder = nullptr;
  ASSERT_EQ(database.add_folder(database.root(), "f", &folder), ErrorCode::kOk);
  CWorkSheet* inner = add_sample_table(database, *folder, "inner");
  ASSERT_EQ(inner->insert_records(1, 3), ErrorCode::kOk);
  ASSERT_EQ(database.delete_folder(*folder), ErrorCode::kOk);
  for (int i = 1; i <= 3; ++i) set_number(i);
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(database.undo());
  EXPECT_FALSE(database.undo());
  EXPECT_EQ(database.find_folder("f"), nullptr);
}

TEST_F(Undo, GroupsAreOneStepAndOneNotice) {
  set_number(5);
  set_number(6);
  EXPECT_TRUE(database.undo());
  notices.notices = 0;
  {
    ChangeGroup group(database, "Fill");
    EXPECT_FALSE(database.undo());
    EXPECT_FALSE(database.redo());
    set_number(1);
    {
      ChangeGroup inner(database, "inner");
      set_number(2);
    }
    EXPECT_EQ(notices.notices, 0);
  }
  EXPECT_EQ(notices.notices, 1);
  EXPECT_EQ(notices.last_table, &table);
  EXPECT_EQ(database.undo_log().undo_caption(), "Fill");
  EXPECT_TRUE(database.undo());
  EXPECT_EQ(database.undo_log().redo_caption(), "Fill");
  EXPECT_EQ(number(), "5");
  EXPECT_EQ(notices.notices, 2);
}

TEST_F(Undo, TellsWhichTableChanged) {
  set_number(1);
  EXPECT_EQ(notices.last_table, &table);
  ASSERT_EQ(database.rename_table(table, "other"), ErrorCode::kOk);
  EXPECT_EQ(notices.last_table, nullptr);
  CWorkSheet& second = *add_sample_table(database, database.root(), "second");
  {
    ChangeGroup group(database, "both");
    set_number(2);
    ASSERT_EQ(second.insert_records(1, 1), ErrorCode::kOk);
    ASSERT_EQ(second.insert_records(1, 1), ErrorCode::kOk);
  }
  EXPECT_EQ(notices.last_table, nullptr);
  set_number(3);
  EXPECT_EQ(notices.last_table, &table);
}

TEST_F(Undo, RollingBackLeavesNoTrace) {
  set_number(1);
  database.mark_saved();
  EXPECT_TRUE(database.undo());
  EXPECT_TRUE(database.is_modified());
  database.mark_saved();
  notices.notices = 0;
  {
    ChangeGroup group(database, "vain");
    set_number(7);
    group.roll_back();
  }
  EXPECT_FALSE(database.is_modified());
  EXPECT_EQ(notices.notices, 0);
  EXPECT_EQ(number(), "");
  EXPECT_TRUE(database.redo());
  EXPECT_EQ(number(), "1");
}

TEST_F(Undo, RevisionsNeverComeBack) {
  const uint64_t first = table.revision();
  set_number(1);
  const uint64_t second = table.revision();
  EXPECT_GT(second, first);
  database.undo();
  EXPECT_GT(table.revision(), second);
}

}  // namespace
}  // namespace rowvane

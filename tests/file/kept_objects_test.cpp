// Objects that a later version keeps with tables and databases go through this one unharmed.
#include <functional>
#include <optional>

#include "core/table/table_copy.h"
#include "database_test_support.h"
#include "file/config_dat.h"

namespace rowvane {
namespace {

std::string later_bytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

LaterObjects later(uint16_t kind, uint16_t version, std::string bytes = later_bytes()) {
  return {kind, version, std::make_shared<const std::string>(std::move(bytes))};
}

std::string describe(const std::vector<LaterObjects>& all) {
  std::string text;
  for (const LaterObjects& one : all)
    text += std::to_string(one.kind) + "." + std::to_string(one.version) + " " + *one.bytes + "\n";
  return text;
}

DatabaseConfig stored_config(const std::string& path) {
  DatabaseConfig config;
  EXPECT_EQ(read_config(member_content(path, "config.dat"), config), ErrorCode::kOk);
  return config;
}

// What the file at PATH keeps with the table NAME.
std::string kept_with(const std::string& path, const std::string& name) {
  for (const StoredTable& table : stored_config(path).tables) {
    if (table.name == name) return describe(table.later_objects);
  }
  return "no table " + name;
}

class KeptObjects : public testing::Test {
 protected:
  KeptObjects() {
    OpenFile made(std::make_unique<Database>());
    EXPECT_EQ(made.database->change_settings({{}, {{"flag", 1}}}), ErrorCode::kOk);
    for (const char* name : {"orders", "others"}) {
      CWorkSheet* table = add_sample_table(*made.database, made.database->root(), name);
      EXPECT_EQ(table->insert_records(1, 2), ErrorCode::kOk);
      table->change_arrangement({2, 1, 0});
    }
    EXPECT_EQ(save_file(made, path_), ErrorCode::kOk);
    store_later({later(1, 2, "keys"), later(7, 1), later(65535, 65535, "")},
                {later(2, 9, "lists"), later(3, 1)});
    open_.emplace(open_file(path_));
  }

  // A later version's save: these objects with the table "orders" and with the database.
  void store_later(const std::vector<LaterObjects>& with_table,
                   const std::vector<LaterObjects>& with_database) {
    DatabaseConfig config = stored_config(path_);
    config.tables[0].later_objects = with_table;
    config.later_objects = with_database;
    with_table_ = describe(with_table);
    with_database_ = describe(with_database);
    ArchiveEdit(path_).set("config.dat", write_config(config)).write();
  }

  CWorkSheet& orders() { return *open_->database->find_table("orders"); }

  // Saves; true when that told of objects of ORDERS, and of them alone, that the file has not.
  bool save_tells() {
    const Outcome saved = open_->file->save(path_, {}, Options());
    EXPECT_TRUE(saved.is_done());
    const UserText expected = fill_inserts(texts::kLaterObjectsLeftOut, {std::string_view("orders")});
    EXPECT_EQ(saved.notices.size(), has_notice(saved.notices, expected) ? 1U : 0U);
    return has_notice(saved.notices, expected);
  }

  TestFolder folder_;
  std::string path_ = folder_.path("kept.rvb");
  std::string with_table_;
  std::string with_database_;
  std::optional<OpenFile> open_;
};

TEST_F(KeptObjects, ComeThroughByteForByte) {
  const std::string before = member_content(path_, "config.dat");
  EXPECT_EQ(orders().arrangement(), (GridArrangement{2, 1, 0}));
  EXPECT_FALSE(save_tells());
  EXPECT_EQ(member_content(path_, "config.dat"), before);

  // Whatever is changed beside the fields' places and types.
  Field field = orders().field(1);
  field.formula = "1 + 1";
  field.width = 50;
  field.position = 4;
  ASSERT_EQ(orders().change_field(1, field), ErrorCode::kOk);
  ASSERT_EQ(orders().rename_field(0, "renamed"), ErrorCode::kOk);
  ASSERT_EQ(orders().set_value(1, 0, std::string("value")), ErrorCode::kOk);
  ASSERT_EQ(orders().delete_records(std::vector<uint32_t>{1}), ErrorCode::kOk);
  ASSERT_EQ(open_->database->delete_table(*open_->database->find_table("others")), ErrorCode::kOk);
  ASSERT_EQ(open_->database->rename_table(orders(), "sales"), ErrorCode::kOk);
  EXPECT_FALSE(save_tells());
  EXPECT_EQ(kept_with(path_, "sales"), with_table_);
  EXPECT_EQ(describe(stored_config(path_).later_objects), with_database_);
}

TEST_F(KeptObjects, AreLeftOutWhileTheFieldsAreOthers) {
  const auto retype = [this] {
    Field field = orders().field(1);
    field.type = FieldType::kText;
    Column column = make_column(field.type);
    resize_column(column, orders().record_count());
    return orders().replace_column(1, field, std::move(column));
  };
  const std::vector<std::pair<std::string, std::function<ErrorCode()>>> changes = {
      {"delete", [this] { return orders().delete_field(4); }},
      {"insert", [this] { return orders().insert_field(5, make_field("new")); }},
      {"move", [this] { return orders().move_field(0, 1); }},
      {"retype", retype},
      {"exchange",
       [this] {
         const ErrorCode error = orders().delete_field(4);
         return error == ErrorCode::kOk ? orders().insert_field(4, make_field("code", FieldType::kCode))
                                        : error;
       }},
  };
  for (const auto& [name, change] : changes) {
    ASSERT_EQ(change(), ErrorCode::kOk) << name;
    EXPECT_TRUE(save_tells()) << name;
    EXPECT_EQ(kept_with(path_, "orders"), "") << name;
    EXPECT_EQ(describe(stored_config(path_).later_objects), with_database_) << name;
    EXPECT_EQ(stored_config(path_).tables[0].objects.arrangement, (GridArrangement{2, 1, 0})) << name;
    EXPECT_FALSE(save_tells()) << name << " is told again";

    int steps = 0;
    while (open_->database->undo()) ++steps;
    EXPECT_FALSE(save_tells()) << name;
    EXPECT_EQ(kept_with(path_, "orders"), with_table_) << name;
    while (open_->database->redo()) {
    }
    EXPECT_TRUE(save_tells()) << name;
    EXPECT_EQ(kept_with(path_, "orders"), "") << name;
    while (open_->database->undo()) --steps;
    EXPECT_EQ(steps, 0) << name;
    EXPECT_FALSE(save_tells()) << name;
  }
}

TEST_F(KeptObjects, ColumnsAddedByHandMakeOtherFields) {
  std::string text = member_content(path_, "orders.txt");
  text.insert(text.find("\r\n"), ",added");
  ArchiveEdit(path_).set("orders.txt", text).write();
  open_.emplace(open_file(path_));
  ASSERT_EQ(orders().field_count(), 6U);
  EXPECT_TRUE(save_tells());
  EXPECT_EQ(kept_with(path_, "orders"), "");
}

TEST_F(KeptObjects, CopiesHaveThemToo) {
  Database& database = *open_->database;
  CWorkSheet* copy = nullptr;
  ASSERT_EQ(copy_table(database, orders(), database.root(), &copy), ErrorCode::kOk);
  ASSERT_EQ(orders().delete_field(0), ErrorCode::kOk);
  CWorkSheet* late = nullptr;
  ASSERT_EQ(copy_table(database, orders(), database.root(), &late), ErrorCode::kOk);
  EXPECT_TRUE(save_tells());
  EXPECT_EQ(kept_with(path_, "orders"), "");
  EXPECT_EQ(kept_with(path_, copy->name()), with_table_);
  EXPECT_EQ(kept_with(path_, late->name()), "");

  // A table taken into another database.
  OpenFile other(std::make_unique<Database>());
  auto taken = std::make_unique<CWorkSheet>("taken", copy->data());
  ASSERT_EQ(other.database->add_table(other.database->root(), taken), ErrorCode::kOk);
  const std::string path = folder_.path("other.rvb");
  ASSERT_EQ(save_file(other, path), ErrorCode::kOk);
  EXPECT_EQ(kept_with(path, "taken"), with_table_);
  EXPECT_EQ(describe(stored_config(path).later_objects), "");
}

// What this version makes of a kind takes the place of what it can't read.
TEST_F(KeptObjects, OwnObjectsReplaceThoseOfALaterVersionOfTheirKind) {
  EXPECT_TRUE(orders().search_keys().empty());
  ASSERT_EQ(orders().add_search_key({"own", {}}), ErrorCode::kOk);
  EXPECT_TRUE(save_tells());
  EXPECT_EQ(kept_with(path_, "orders"), with_table_.substr(with_table_.find("7.1")));
  EXPECT_EQ(stored_config(path_).tables[0].objects.search_keys.size(), 1U);
  ASSERT_TRUE(open_->database->undo());
  EXPECT_FALSE(save_tells());
  EXPECT_EQ(kept_with(path_, "orders"), with_table_);

  DatabaseSettings settings = open_->database->settings();
  settings.drop_down_lists = {{"own", {"item"}}};
  ASSERT_EQ(open_->database->change_settings(settings), ErrorCode::kOk);
  const Outcome saved = open_->file->save(path_, {}, Options());
  const UserText notice = fill_inserts(texts::kLaterObjectsLeftOut, {std::string_view("kept")});
  EXPECT_TRUE(has_notice(saved.notices, notice));
  EXPECT_EQ(describe(stored_config(path_).later_objects), "3.1 " + later_bytes() + "\n");
}

}  // namespace
}  // namespace rowvane

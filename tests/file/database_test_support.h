// What the tests of database files share.
#pragma once

#include <bit>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "core/sample_tables.h"
#include "file/database_file.h"
#include "zip/zip_test_support.h"

namespace rowvane {

// Everything that two databases must have in common to be equal, as text.
inline void describe_value(const CellValue& value, std::string& out) {
  if (const auto* number = std::get_if<double>(&value)) {
    out += "#" + std::to_string(std::bit_cast<uint64_t>(*number));
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    out += "'" + *text + "'";
  } else if (const auto* content = std::get_if<Content>(&value)) {
    std::string bytes;
    const ErrorCode error = content->read(bytes);
    out += error == ErrorCode::kOk ? "<" + bytes + ">" : "error " + std::to_string(static_cast<int>(error));
  } else if (const auto* files = std::get_if<FileList>(&value)) {
    for (const FileObject& file : *files) {
      out += "[" + file.name + "|" + file.shortcut + "|";
      describe_value(file.content, out);
      out += "]";
    }
  }
}

inline std::string describe(const Field& field) {
  std::string text = "field " + field.name + " type " + std::to_string(static_cast<int>(field.type));
  for (const std::string* part :
       {&field.formula, &field.validation, &field.default_value, &field.drop_down_list, &field.format}) {
    text += " '" + *part + "'";
  }
  for (const int number :
       {int{field.link}, int{field.encrypted}, int{field.hidden}, int{field.width}, int{field.position}}) {
    text += " " + std::to_string(number);
  }
  return text + "\n";
}

inline std::string describe(const CWorkSheet& table) {
  std::string text = "table " + table.path() + "\n";
  for (const Field& field : table.data().fields) text += describe(field);
  for (const SearchKey& key : table.search_keys()) {
    text += "search key " + key.name;
    for (const SearchExpression& one : key.expressions)
      text += " " + std::to_string(one.field) + ":" + one.criterion;
    text += "\n";
  }
  const GridArrangement& arrangement = table.arrangement();
  for (const auto number : {static_cast<uint32_t>(arrangement.lines), uint32_t{arrangement.frozen_fields},
                            arrangement.frozen_records})
    text += std::to_string(number) + " ";
  for (RecordNumber record = 1; record < table.end_record(); ++record) {
    text += std::to_string(table.flags(record)) + ":";
    for (size_t i = 0; i < table.field_count(); ++i) {
      text += " ";
      describe_value(table.value(record, i), text);
    }
    text += "\n";
  }
  return text;
}

inline void describe(const Folder& folder, std::string& out) {
  for (const auto& inner : folder.folders()) {
    out += "folder " + inner->path() + "\n";
    describe(*inner, out);
  }
}

inline std::string describe(const Database& database) {
  std::string text;
  for (const RecordFlagType& type : database.settings().record_flag_types) {
    text += "flag type " + type.name + " " + std::to_string(type.color) + "\n";
  }
  for (const DropDownList& list : database.settings().drop_down_lists) {
    text += "list " + list.name + ":";
    for (const std::string& item : list.items) text += " '" + item + "'";
    text += "\n";
  }
  describe(database.root(), text);
  for (const CWorkSheet* table : database.tables()) text += describe(*table);
  return text;
}

// A database with the link to its file.
struct OpenFile {
  explicit OpenFile(std::unique_ptr<Database> made)
      : database(std::move(made)), file(std::make_unique<DatabaseFile>(*database)) {}
  explicit OpenFile(OpenedDatabase opened)
      : database(std::move(opened.database)), file(std::move(opened.file)), notices(opened.notices) {}

  std::unique_ptr<Database> database;
  std::unique_ptr<DatabaseFile> file;
  std::vector<UserText> notices;
};

inline OpenFile open_file(const std::string& path, const Options& options = Options(),
                          Questions* questions = nullptr) {
  OpenedDatabase opened = open_database(path, options, questions);
  EXPECT_EQ(opened.failure, ErrorCode::kOk) << path;
  if (opened.failure != ErrorCode::kOk) return OpenFile(std::make_unique<Database>());
  return OpenFile(std::move(opened));
}

inline ErrorCode save_file(OpenFile& open, const std::string& path, const SaveSettings& settings = {},
                           const Options& options = {}) {
  return open.file->save(path, settings, options).failure.error();
}

class Answer final : public Questions {
 public:
  explicit Answer(bool yes) : yes_(yes) {}
  bool ask(const std::string& question) override {
    questions.push_back(question);
    return yes_;
  }
  std::vector<std::string> questions;

 private:
  bool yes_;
};

inline bool has_notice(const std::vector<UserText>& notices, const UserText& notice) {
  return std::find(notices.begin(), notices.end(), notice) != notices.end();
}

inline std::vector<std::string> member_names(const std::string& path) {
  ZipReader reader;
  EXPECT_EQ(reader.open(path), ErrorCode::kOk) << path;
  std::vector<std::string> names;
  for (const ZipMember& member : reader.members()) names.push_back(member.name);
  return names;
}

inline std::string member_content(const std::string& path, const std::string& name) {
  ZipReader reader;
  EXPECT_EQ(reader.open(path), ErrorCode::kOk) << path;
  return content_of(reader, name);
}

// The bytes of a member as they lie in the archive.
inline std::string packed_bytes(const std::string& path, const std::string& name) {
  ZipReader reader;
  EXPECT_EQ(reader.open(path), ErrorCode::kOk) << path;
  const ZipMember* member = reader.find(name);
  uint64_t offset = 0;
  if (member == nullptr || reader.locate(*member, offset) != ErrorCode::kOk) return "no member " + name;
  std::string bytes(member->compressed_size, '\0');
  EXPECT_EQ(reader.source().read_at(offset, bytes), ErrorCode::kOk);
  return bytes;
}

// A change of an archive: members are changed, added or removed by other programs.
class ArchiveEdit {
 public:
  explicit ArchiveEdit(const std::string& path) : path_(path) {
    ZipReader reader;
    EXPECT_EQ(reader.open(path), ErrorCode::kOk);
    for (const ZipMember& member : reader.members())
      members_.emplace_back(member.name, content_of(reader, member.name));
  }

  ArchiveEdit& set(const std::string& name, const std::string& content) {
    for (auto& member : members_) {
      if (member.first == name) {
        member.second = content;
        return *this;
      }
    }
    members_.emplace_back(name, content);
    return *this;
  }
  ArchiveEdit& remove(const std::string& name) {
    std::erase_if(members_, [&name](const auto& member) { return member.first == name; });
    return *this;
  }
  void write(ZipVariant variant = ZipVariant::kZip64) const {
    std::vector<RawMember> raw;
    for (const auto& [name, content] : members_) raw.push_back(deflated_member(name, content));
    write_file(path_, assemble(raw, variant));
  }

 private:
  std::string path_;
  std::vector<std::pair<std::string, std::string>> members_;
};

// Changes one byte in the middle of a member's packed data.
inline void damage_member(const std::string& path, const std::string& name) {
  uint64_t offset = 0;
  uint64_t size = 0;
  {
    ZipReader reader;
    ASSERT_EQ(reader.open(path), ErrorCode::kOk);
    const ZipMember* member = reader.find(name);
    ASSERT_NE(member, nullptr) << name;
    ASSERT_EQ(reader.locate(*member, offset), ErrorCode::kOk);
    size = member->compressed_size;
  }
  std::string bytes = read_file(path);
  bytes[offset + size / 2] = static_cast<char>(bytes[offset + size / 2] ^ 0x55);
  write_file(path, bytes);
}

// The database "shop" of a small trade: every type of field, folders, settings and flags.
inline std::unique_ptr<Database> make_shop() {
  auto database = std::make_unique<Database>("shop");
  DatabaseSettings settings;
  settings.drop_down_lists = {{"cities", {"Paris", "", "Köln; \"am Rhein\""}}, {"empty", {}}};
  settings.record_flag_types = {{"checked", 0x00FF00}, {"überfällig", 0xFF8040}};
  EXPECT_EQ(database->change_settings(settings), ErrorCode::kOk);
  Folder* year = nullptr;
  EXPECT_EQ(database->make_folders("archive/2024", &year), ErrorCode::kOk);
  Folder* unused = nullptr;
  EXPECT_EQ(database->make_folders("nothing in here", &unused), ErrorCode::kOk);
  for (Folder* folder : {&database->root(), year}) {
    CWorkSheet* orders = add_sample_table(*database, *folder, "orders");
    EXPECT_EQ(orders->insert_records(1, 3), ErrorCode::kOk);
    EXPECT_EQ(orders->set_value(1, 0, "first " + folder->path()), ErrorCode::kOk);
    EXPECT_EQ(orders->set_value(2, 1, 12.5), ErrorCode::kOk);
    EXPECT_EQ(orders->set_value(2, 2, Content::of("plain note in \"" + folder->path() + "\"")),
              ErrorCode::kOk);
    EXPECT_EQ(orders->set_value(3, 2, Content::of("{\\rtf1 bold}")), ErrorCode::kOk);
    EXPECT_EQ(orders->set_value(1, 4, Content::of("print(1)\n")), ErrorCode::kOk);
    const FileList files = {make_file("photo.JPG", sample_text(3000)),
                            make_file("list.csv", sample_text(3000)),
                            {"offer.pdf", "/home/shop/offer.pdf", Content()}};
    EXPECT_EQ(orders->set_value(3, 3, files), ErrorCode::kOk);
    const uint32_t flagged[] = {1};
    EXPECT_EQ(orders->set_flag_type(flagged, 2), ErrorCode::kOk);
  }
  CWorkSheet* cities = add_sample_table(*database, database->root(), "Städte");
  EXPECT_EQ(cities->add_search_key({"große Städte", {{0, "j:Köln Paris"}, {1, "f:1000000"}, {4, "k: "}}}),
            ErrorCode::kOk);
  EXPECT_EQ(cities->add_search_key({"alle", {}}), ErrorCode::kOk);
  cities->change_arrangement({3, 1, 2});
  Field field = cities->field(1);
  field.formula = "a + \"b\"\n";
  field.validation = "x > 1";
  field.default_value = "7.5";
  field.format = "0.00 €";
  field.width = 65535;
  field.position = 4;
  field.hidden = true;
  EXPECT_EQ(cities->change_field(1, field), ErrorCode::kOk);
  field = cities->field(0);
  field.link = true;
  field.drop_down_list = "cities";
  EXPECT_EQ(cities->change_field(0, field), ErrorCode::kOk);
  return database;
}

}  // namespace rowvane

// Small tables for the tests of the data model.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/database/database.h"

namespace rowvane {

inline Field make_field(std::string name, FieldType type = FieldType::kText) {
  Field field;
  field.name = std::move(name);
  field.type = type;
  return field;
}

// A table with a field of each type, named after it.
inline std::unique_ptr<CWorkSheet> make_table(std::string name) {
  return std::make_unique<CWorkSheet>(
      std::move(name),
      std::vector{make_field("text"), make_field("number", FieldType::kNumber),
                  make_field("long", FieldType::kLongText), make_field("files", FieldType::kFiles),
                  make_field("code", FieldType::kCode)});
}

// Adds a table made by make_table; null when the database refuses it.
inline CWorkSheet* add_sample_table(Database& database, Folder& folder, std::string name) {
  auto table = make_table(std::move(name));
  CWorkSheet* added = table.get();
  return database.add_table(folder, table) == ErrorCode::kOk ? added : nullptr;
}

inline FileObject make_file(std::string name, std::string content = "content") {
  return {std::move(name), {}, Content::of(std::move(content))};
}

class NoticeCounter final : public DatabaseObserver {
 public:
  explicit NoticeCounter(Database& database) : database_(database) { database_.add_observer(this); }
  ~NoticeCounter() override { database_.remove_observer(this); }
  void database_changed(const CWorkSheet* table) override {
    ++notices;
    last_table = table;
  }

  int notices = 0;
  const CWorkSheet* last_table = nullptr;

 private:
  Database& database_;
};

}  // namespace rowvane

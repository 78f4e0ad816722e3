#include "ui/document/database_document.h"

#include "ui/text.h"

namespace rowvane {
namespace {

constexpr size_t kFirstFields = 5;
constexpr uint32_t kFirstRecords = 20;

}  // namespace

std::unique_ptr<CWorkSheet> new_table(std::string name, size_t fields, uint32_t records) {
  std::vector<Field> definitions(fields);
  for (size_t i = 0; i < fields; ++i) {
    definitions[i].name = "Field" + std::to_string(i + 1);
    definitions[i].position = static_cast<uint16_t>(i);
  }
  auto table = std::make_unique<CWorkSheet>(std::move(name), std::move(definitions));
  static_cast<void>(table->insert_records(1, records));
  return table;
}

DatabaseDocument::DatabaseDocument(const Options& options)
    : DatabaseDocument(std::make_unique<OpenDatabase>(options)) {
  auto table = new_table("table1", kFirstFields, kFirstRecords);
  static_cast<void>(database().add_table(database().root(), table));
  database().undo_log().clear();
  database().mark_saved();
}

DatabaseDocument::DatabaseDocument(std::unique_ptr<OpenDatabase> open) : open_(std::move(open)) {
  database().add_observer(this);
}

DatabaseDocument::~DatabaseDocument() {
  database().remove_observer(this);
}

void DatabaseDocument::database_changed(const CWorkSheet* table) {
  if (holds_notices_) {
    changed_meanwhile_ = true;
  } else {
    emit changed(table);
  }
}

void DatabaseDocument::hold_notices() {
  holds_notices_ = true;
  changed_meanwhile_ = false;
}

void DatabaseDocument::release_notices() {
  holds_notices_ = false;
  if (changed_meanwhile_) emit changed(nullptr);
}

QString DatabaseDocument::title() const {
  return to_qt(open_->title());
}

void DatabaseDocument::undo() {
  database().undo();
}

void DatabaseDocument::redo() {
  database().redo();
}

}  // namespace rowvane

#include "ui/document/database_document.h"

#include <QFileInfo>

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
    : options_(options), database_(std::make_unique<Database>("New Database", options)) {
  auto table = new_table("table1", kFirstFields, kFirstRecords);
  static_cast<void>(database_->add_table(database_->root(), table));
  database_->undo_log() = UndoLog(options.undo_level);
  database_->mark_saved();
  file_ = std::make_unique<DatabaseFile>(*database_);
  attach();
}

DatabaseDocument::DatabaseDocument(OpenedDatabase opened, const Options& options)
    : options_(options), database_(std::move(opened.database)), file_(std::move(opened.file)) {
  attach();
}

void DatabaseDocument::attach() {
  region_ = platform::user_regional_settings();
  formulas_ = std::make_unique<FormulaHooks>(*database_, FormulaSettings(), options_, DisplayRegion(region_));
  database_->set_hooks(formulas_.get());
  database_->add_observer(this);
  criteria_ = std::make_unique<CurrentCriteria>(*database_);
}

DatabaseDocument::~DatabaseDocument() {
  database_->remove_observer(this);
  database_->set_hooks(nullptr);
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

void DatabaseDocument::take_options(const Options& options) {
  options_ = options;
  database_->undo_log().set_limit(options.undo_level);
  formulas_->set_options(options);
}

QString DatabaseDocument::title() const {
  const std::string& path = database_->file_path();
  return path.empty() ? to_qt(database_->name()) : QFileInfo(to_qt(path)).fileName();
}

void DatabaseDocument::restore_origin(const QString& original, FileFormat format) {
  database_->set_file(to_utf8(original), original.isEmpty() ? FileFormat::kNone : format);
  database_->set_name(original.isEmpty() ? "New Database" : to_utf8(QFileInfo(original).completeBaseName()));
  database_->mark_modified();
}

void DatabaseDocument::undo() {
  database_->undo();
}

void DatabaseDocument::redo() {
  database_->redo();
}

}  // namespace rowvane

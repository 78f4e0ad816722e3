// A database that is open in a window: what the window adds to an open database.
#pragma once

#include <QObject>
#include <memory>
#include <string>

#include "app/database/open_database.h"
#include "recordset/search/recent_texts.h"

namespace rowvane {

class DatabaseDocument final : public QObject, private DatabaseObserver {
  Q_OBJECT

 public:
  // A new database, titled "New Database", with one empty table.
  explicit DatabaseDocument(const Options& options);
  explicit DatabaseDocument(std::unique_ptr<OpenDatabase> open);
  ~DatabaseDocument() override;

  OpenDatabase& open() { return *open_; }
  const OpenDatabase& open() const { return *open_; }
  Database& database() { return open_->database(); }
  const Database& database() const { return open_->database(); }
  DatabaseFile& file() { return open_->file(); }
  const DatabaseFile& file() const { return open_->file(); }
  const Options& options() const { return open_->options(); }
  // The user has changed them.
  void take_options(const Options& options) { open_->take_options(options); }
  const platform::RegionalSettings& region() const { return open_->region(); }
  CurrentCriteria& criteria() { return open_->criteria(); }
  SearchOptions& search_options() { return search_options_; }
  RecentFieldTexts& recent_texts() { return recent_texts_; }
  const FormulaSettings& formula_settings() const { return open_->formula_settings(); }

  // What the tab and the title bar say, without the mark of changes.
  QString title() const;
  bool is_modified() const { return open_->is_modified(); }
  // Between the two, changes may be made on another thread; they are told, as one, at the end.
  void hold_notices();
  void release_notices();
  // Nothing changed, but what views say of its file may have.
  void tell_saved() { emit saved(); }

 signals:
  // Values, fields or records of TABLE changed; null: anything may have.
  void changed(const rowvane::CWorkSheet* table);
  void saved();

 public slots:
  void undo();
  void redo();

 private:
  void database_changed(const CWorkSheet* table) override;

  bool holds_notices_ = false;
  bool changed_meanwhile_ = false;
  std::unique_ptr<OpenDatabase> open_;
  SearchOptions search_options_;
  RecentFieldTexts recent_texts_;
};

// The first table of a new database: FIELDS text fields, RECORDS empty records.
std::unique_ptr<CWorkSheet> new_table(std::string name, size_t fields, uint32_t records);

}  // namespace rowvane

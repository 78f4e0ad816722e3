// A database that is open in a window, with its file.
#pragma once

#include <QObject>
#include <memory>
#include <string>
#include <vector>

#include "file/database_file.h"
#include "file/document.h"
#include "formula/fields/formula_hooks.h"
#include "platform/regional_settings.h"
#include "recordset/search/current_criteria.h"
#include "recordset/search/recent_texts.h"

namespace rowvane {

class DatabaseDocument final : public QObject, private DatabaseObserver {
  Q_OBJECT

 public:
  // A new database, titled "New Database", with one empty table.
  explicit DatabaseDocument(const Options& options);
  // The database that was opened, without errors.
  DatabaseDocument(OpenedDatabase opened, const Options& options);
  ~DatabaseDocument() override;

  Database& database() { return *database_; }
  const Database& database() const { return *database_; }
  DatabaseFile& file() { return *file_; }
  const DatabaseFile& file() const { return *file_; }
  const Options& options() const { return options_; }
  // The user has changed them. The largest number of records stays until the database is opened again.
  void take_options(const Options& options);
  // How its text file is read and written, where it has one.
  const TextFileSettings& text_settings() const { return text_settings_; }
  void set_text_settings(const TextFileSettings& settings) { text_settings_ = settings; }
  SaveVariant save_variant() const { return save_variant_; }
  void set_save_variant(SaveVariant variant) { save_variant_ = variant; }
  // How the user writes and reads numbers and dates.
  const platform::RegionalSettings& region() const { return region_; }

  // The filters of its tables.
  CurrentCriteria& criteria() { return *criteria_; }
  SearchOptions& search_options() { return search_options_; }
  RecentFieldTexts& recent_texts() { return recent_texts_; }
  const FormulaSettings& formula_settings() const { return formulas_->settings(); }

  // What the tab and the title bar say, without the mark of changes.
  QString title() const;
  bool is_modified() const { return database_->is_modified(); }
  // Between the two, changes may be made on another thread; they are told, as one, at the end.
  void hold_notices();
  void release_notices();
  // Nothing changed, but what views say of its file may have.
  void tell_saved() { emit saved(); }
  // For a database opened from a recovery copy: it belongs to ORIGINAL again, a file of FORMAT (an empty path
  // for a new database), and has unsaved changes.
  void restore_origin(const QString& original, FileFormat format);

 signals:
  // Values, fields or records of TABLE changed; null: anything may have.
  void changed(const rowvane::CWorkSheet* table);
  void saved();

 public slots:
  void undo();
  void redo();

 private:
  void database_changed(const CWorkSheet* table) override;
  void attach();

  Options options_;
  platform::RegionalSettings region_;
  bool holds_notices_ = false;
  bool changed_meanwhile_ = false;
  TextFileSettings text_settings_;
  SaveVariant save_variant_ = SaveVariant::kAuto;
  std::unique_ptr<Database> database_;
  std::unique_ptr<DatabaseFile> file_;
  std::unique_ptr<FormulaHooks> formulas_;
  std::unique_ptr<CurrentCriteria> criteria_;  // of the database, which goes later
  SearchOptions search_options_;
  RecentFieldTexts recent_texts_;
};

// The first table of a new database: FIELDS text fields, RECORDS empty records.
std::unique_ptr<CWorkSheet> new_table(std::string name, size_t fields, uint32_t records);

}  // namespace rowvane

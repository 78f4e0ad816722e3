// A database that is open: with the file it came from, and all that works on it while it is.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/formats/recognized_file.h"
#include "core/messages/questions.h"
#include "file/database_file.h"
#include "formula/fields/formula_hooks.h"
#include "platform/regional_settings.h"
#include "recordset/search/current_criteria.h"

namespace rowvane {

class OpenDatabase;

// With the notices of its database.
struct DatabaseOpening : Outcome {
  std::unique_ptr<OpenDatabase> database;  // null unless it was done
};

// The window and the terminal program are both built on this. Belongs to one thread at a time.
class OpenDatabase {
 public:
  // A new database without tables and without a file.
  explicit OpenDatabase(const Options& options, std::string name = "New Database");
  ~OpenDatabase();
  OpenDatabase(const OpenDatabase&) = delete;
  OpenDatabase& operator=(const OpenDatabase&) = delete;

  // Opens a database file, or a file of another format as an unsaved database with its tables. Numbers and
  // dates are the user's. QUESTIONS and PASSWORD are as open_database takes them. Errors as open_database and
  // import_text_file.
  static DatabaseOpening open(const RecognizedFile& file, const Options& options,
                              Questions* questions = nullptr, Progress& progress = Progress::none(),
                              std::shared_ptr<const Secret> password = nullptr);
  // A new database without tables that its first save makes the file PATH of.
  static std::unique_ptr<OpenDatabase> create(const std::string& path, const Options& options);

  Database& database() { return *database_; }
  const Database& database() const { return *database_; }
  DatabaseFile& file() { return *file_; }
  const DatabaseFile& file() const { return *file_; }
  const Options& options() const { return options_; }
  // The largest number of records stays until the database is opened again.
  void take_options(const Options& options);
  // How the user writes and reads numbers and dates.
  const platform::RegionalSettings& region() const { return region_; }
  const FormulaSettings& formula_settings() const { return formulas_->settings(); }
  // The filters of its tables.
  CurrentCriteria& criteria() { return *criteria_; }

  // The name of its file, or that of the database where it has none.
  std::string title() const;
  const std::string& path() const { return database_->file_path(); }
  // Its file is a database file.
  bool has_database_file() const { return format_ == &database_format(); }
  // Of its file; null: it has none.
  const FileFormat* format() const { return format_; }
  bool is_modified() const { return database_->is_modified(); }
  // Opened without its password: see DatabaseFile.
  bool is_read_only() const { return file_->is_read_only(); }
  // What was lost or left out while the file was read, and what else its user should know of that.
  const std::vector<UserText>& notices() const { return notices_; }
  // How its text file is read and written, where it has one.
  const TextFileSettings& text_settings() const { return text_settings_; }

  // Its file is of the older container: whether saving is to convert it (message 198) is for the user to say.
  bool has_older_container() const { return has_database_file() && file_->variant() == ZipVariant::kZip32; }
  // What the next save that doesn't say writes.
  void set_save_variant(SaveVariant variant) { save_variant_ = variant; }

  // Saves as a database file, as DatabaseFile::save; it then belongs to PATH, unless SETTINGS ask for a copy.
  Outcome save(const std::string& path, SaveSettings settings = {}, Progress& progress = Progress::none());
  CompactResult compact(Progress& progress = Progress::none());

  // Whether it has a file that `save_back` can write.
  bool can_save_back() const { return format_ != nullptr && format_->save != nullptr; }
  // Refuses with message 149 what only a database file can hold; asks before features are lost.
  Check check_save_back() const;
  Outcome save_back(Progress& progress = Progress::none());

  // For a database opened from a recovery copy: it belongs to ORIGINAL again, a file of FORMAT (an empty path
  // for a new database), and has unsaved changes.
  void restore_origin(const std::string& original, const FileFormat* format);

 private:
  OpenDatabase(OpenedDatabase opened, const Options& options, const FileFormat* format,
               const TextFileSettings& text);

  Options options_;
  platform::RegionalSettings region_;
  std::unique_ptr<Database> database_;
  std::unique_ptr<DatabaseFile> file_;
  std::unique_ptr<FormulaHooks> formulas_;
  std::unique_ptr<CurrentCriteria> criteria_;
  const FileFormat* format_;
  std::vector<UserText> notices_;
  TextFileSettings text_settings_;
  SaveVariant save_variant_ = SaveVariant::kAuto;
};

}  // namespace rowvane

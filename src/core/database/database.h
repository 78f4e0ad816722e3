// The database: tables in nested folders, and the settings that they share.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/database/background_reader.h"
#include "core/database/undo_log.h"
#include "core/messages/check.h"
#include "core/options.h"
#include "core/table/work_sheet.h"

namespace rowvane {

class FieldHooks;

// A named list of values offered while a field is edited.
struct DropDownList {
  std::string name;
  std::vector<std::string> items;
  bool operator==(const DropDownList&) const = default;
};

// A kind of mark that records can carry.
struct RecordFlagType {
  std::string name;
  uint32_t color = 0;  // 0xRRGGBB
  bool operator==(const RecordFlagType&) const = default;
};

// What the tables of a database share.
struct DatabaseSettings {
  std::vector<DropDownList> drop_down_lists;
  std::vector<RecordFlagType> record_flag_types;  // at most kMaxRecordFlagTypes; type n is entry n - 1
  bool operator==(const DatabaseSettings&) const = default;
};

// A folder of tables and folders. Names within a folder are unique, whatever they name.
class Folder {
 public:
  const std::string& name() const { return name_; }
  Folder* parent() const { return parent_; }  // null for the top folder
  std::string path() const;                   // "" for the top folder
  const std::vector<std::unique_ptr<Folder>>& folders() const { return folders_; }
  const std::vector<std::unique_ptr<CWorkSheet>>& tables() const { return tables_; }

 private:
  friend class Database;
  std::string name_;
  Folder* parent_ = nullptr;
  std::vector<std::unique_ptr<Folder>> folders_;
  std::vector<std::unique_ptr<CWorkSheet>> tables_;
};

// Learns of every change. Called on the thread that made the change, after it, once for each undo step.
class DatabaseObserver {
 public:
  virtual ~DatabaseObserver() = default;
  // TABLE is null when the tree of tables or the settings changed, when the step changed several tables, and
  // when a step was undone or redone.
  virtual void database_changed(const CWorkSheet* table) = 0;
};

// Errors: kInvalidPath for a path that names nothing; kNameNotUnique for a name that is taken or reserved;
// kInvalidPath also for a name that no table can have. A change that fails changes nothing.
class Database {
 public:
  explicit Database(std::string name = "New Database", const Options& options = Options());
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  const std::string& name() const { return name_; }
  void set_name(std::string name);
  // The file that it came from or was saved to; empty: none.
  const std::string& file_path() const { return file_path_; }
  void set_file_path(std::string path);
  // The largest number of records of a table; fixed when the database is opened.
  uint32_t max_records() const { return max_records_; }

  Folder& root() { return root_; }
  const Folder& root() const { return root_; }
  // All tables: those of a folder, then those of the folders in it.
  std::vector<CWorkSheet*> tables() const;
  // Null when PATH names none. Letter case does not matter.
  CWorkSheet* find_table(std::string_view path) const;
  Folder* find_folder(std::string_view path) const;
  static std::string join_path(std::string_view folder, std::string_view name);

  // Takes TABLE into FOLDER as its last table; on failure TABLE is given back through the argument.
  ErrorCode add_table(Folder& folder, std::unique_ptr<CWorkSheet>& table);
  // kLastTable.
  ErrorCode delete_table(CWorkSheet& table);
  ErrorCode rename_table(CWorkSheet& table, std::string name);
  ErrorCode move_table(CWorkSheet& table, Folder& target);
  // kPathTooLong for a folder within more than kMaxFolderDepth - 1 others, here and when one is moved.
  ErrorCode add_folder(Folder& parent, std::string name, Folder** added = nullptr);
  // With all that is in it. kLastTable when no table would be left, kInvalidPath for the top folder.
  ErrorCode delete_folder(Folder& folder);
  ErrorCode rename_folder(Folder& folder, std::string name);
  // kInvalidPath for a move into itself.
  ErrorCode move_folder(Folder& folder, Folder& target);
  // Makes the folders of PATH that are missing, as one undo step.
  ErrorCode make_folders(std::string_view path, Folder** folder);
  // NAME, or NAME with a number where it is taken in FOLDER.
  std::string free_name(const Folder& folder, std::string_view name) const;

  const DatabaseSettings& settings() const { return settings_; }
  // kTooManyDropDownLists, kNameNotUnique; kFieldTypeMismatch for a list or type without a name. The limit of
  // record flag types is checked by check_record_flag_types, whose message has no error code; kOutOfResources
  // here.
  ErrorCode change_settings(DatabaseSettings settings);

  // What a later version keeps with the database, whatever becomes of its tables. Not a change: files have
  // it.
  const std::vector<LaterObjects>& later_objects() const { return later_objects_; }
  void set_later_objects(std::vector<LaterObjects> objects) { later_objects_ = std::move(objects); }

  const FieldHooks* hooks() const { return hooks_; }
  void set_hooks(const FieldHooks* hooks) { hooks_ = hooks; }  // not owned

  void add_observer(DatabaseObserver* observer) { observers_.push_back(observer); }  // not owned
  void remove_observer(DatabaseObserver* observer) { std::erase(observers_, observer); }

  void add_reader(BackgroundReader* reader) { readers_.push_back(reader); }  // not owned
  void remove_reader(BackgroundReader* reader) { std::erase(readers_, reader); }
  // Stops the background readers. Every change of a table, the tree of tables or the settings, undoing and
  // redoing included, calls this before anything differs. Others call it before changes that they make on
  // another thread, and before they change what belongs to the database, such as its file.
  void before_change();
  // Drops the texts and values of all tables that no record uses. Nothing that can be seen differs.
  void clean_pools();

  UndoLog& undo_log() { return undo_log_; }
  // False when there is nothing to undo or redo, and while a group is open.
  bool undo();
  bool redo();

  // True when something differs from the saved file.
  bool is_modified() const { return modified_; }
  void mark_saved() { modified_ = false; }
  // For what is saved with the database but is not in it, such as its password.
  void mark_modified() { modified_ = true; }

  // Keeps a change that was just made, with the table it changed (null: the tree or the settings).
  void record(std::unique_ptr<Change> change, const CWorkSheet* table);

 private:
  friend class ChangeGroup;
  friend class CWorkSheet;

  void notify();
  ErrorCode validate_new_name(const Folder& folder, std::string_view name, const void* own) const;
  bool holds_other_tables(const Folder& folder) const;
  void apply(std::unique_ptr<Change> change);
  // Applies CHANGE, which takes tables away.
  void remove(std::unique_ptr<Change> change);
  // Makes CHANGE, after which tables, folders or fields have other names or places.
  void rename(const std::function<void()>& change);

  std::string name_;
  std::string file_path_;
  uint32_t max_records_;
  Folder root_;
  DatabaseSettings settings_;
  std::vector<LaterObjects> later_objects_;
  const FieldHooks* hooks_ = nullptr;
  std::vector<DatabaseObserver*> observers_;
  std::vector<BackgroundReader*> readers_;
  UndoLog undo_log_;
  UndoStep open_step_;
  int open_groups_ = 0;
  const CWorkSheet* changed_table_ = nullptr;  // of the open step
  bool changed_several_ = false;
  bool modified_ = false;
};

// Makes all changes until its end one undo step and one notice. Groups may be nested; the outermost counts.
class ChangeGroup {
 public:
  ChangeGroup(Database& database, std::string caption);
  ~ChangeGroup();
  ChangeGroup(const ChangeGroup&) = delete;
  ChangeGroup& operator=(const ChangeGroup&) = delete;

  // Undoes what this group, with those inside it, changed so far; nothing of it stays in the log.
  void roll_back();

 private:
  Database& database_;
  bool was_modified_;
  size_t first_change_;
};

// Message 187 when a database can't have COUNT record flag types.
Check check_record_flag_types(size_t count);

}  // namespace rowvane

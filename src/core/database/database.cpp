#include "core/database/database.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "core/database/names.h"
#include "core/database/tree_changes.h"
#include "core/database/unique_names.h"
#include "core/messages/messages.h"
#include "core/table/field_hooks.h"
#include "platform/characters.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

// Splits PATH at its first "/" into the first name and the rest.
std::string_view take_name(std::string_view& path) {
  const size_t slash = path.find('/');
  const std::string_view name = path.substr(0, slash);
  path = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
  return name;
}

template <typename Owned>
Owned* find_named(const std::vector<std::unique_ptr<Owned>>& all, std::string_view name) {
  for (const auto& one : all) {
    if (one->name() == name) return one.get();
  }
  for (const auto& one : all) {
    if (same_name(one->name(), name)) return one.get();
  }
  return nullptr;
}

void collect_tables(const Folder& folder, std::vector<CWorkSheet*>& tables) {
  for (const auto& table : folder.tables()) tables.push_back(table.get());
  for (const auto& inner : folder.folders()) collect_tables(*inner, tables);
}

bool is_within(const Folder* folder, const Folder& outer) {
  for (; folder != nullptr; folder = folder->parent()) {
    if (folder == &outer) return true;
  }
  return false;
}

size_t depth_of(const Folder& folder) {
  return folder.parent() == nullptr ? 0 : depth_of(*folder.parent()) + 1;
}

// Number of folders one within the other, FOLDER included.
size_t height_of(const Folder& folder) {
  size_t inside = 0;
  for (const auto& inner : folder.folders()) inside = std::max(inside, height_of(*inner));
  return inside + 1;
}

template <typename Named>
bool all_named(const std::vector<Named>& all) {
  return std::none_of(all.begin(), all.end(), [](const Named& one) { return one.name.empty(); });
}

}  // namespace

std::string Folder::path() const {
  return parent_ == nullptr ? std::string() : Database::join_path(parent_->path(), name_);
}

Database::Database(std::string name, const Options& options)
    : name_(std::move(name)), max_records_(options.max_records), undo_log_(options.undo_level) {}

Database::~Database() = default;

void Database::set_name(std::string name) {
  before_change();
  name_ = std::move(name);
}

void Database::set_file_path(std::string path) {
  before_change();
  file_path_ = std::move(path);
}

std::string Database::join_path(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty()) path += '/';
  return path += name;
}

std::vector<CWorkSheet*> Database::tables() const {
  std::vector<CWorkSheet*> tables;
  collect_tables(root_, tables);
  return tables;
}

Folder* Database::find_folder(std::string_view path) const {
  if (path.ends_with('/')) return nullptr;
  const Folder* folder = &root_;
  while (folder != nullptr && !path.empty()) folder = find_named(folder->folders(), take_name(path));
  return const_cast<Folder*>(folder);
}

CWorkSheet* Database::find_table(std::string_view path) const {
  const size_t slash = path.rfind('/');
  if (slash == 0) return nullptr;
  const bool nested = slash != std::string_view::npos;
  const Folder* folder = nested ? find_folder(path.substr(0, slash)) : &root_;
  if (folder == nullptr) return nullptr;
  return find_named(folder->tables(), nested ? path.substr(slash + 1) : path);
}

ErrorCode Database::validate_new_name(const Folder& folder, std::string_view name, const void* own) const {
  if (!is_valid_table_name(name)) return ErrorCode::kInvalidPath;
  if (folder.parent() == nullptr && is_reserved_name(name)) return ErrorCode::kNameNotUnique;
  const auto taken = [name, own](const auto& one) {
    return one.get() != own && same_name(one->name(), name);
  };
  const bool found = std::any_of(folder.tables().begin(), folder.tables().end(), taken) ||
                     std::any_of(folder.folders().begin(), folder.folders().end(), taken);
  return found ? ErrorCode::kNameNotUnique : ErrorCode::kOk;
}

bool Database::holds_other_tables(const Folder& folder) const {
  std::vector<CWorkSheet*> inside;
  collect_tables(folder, inside);
  return tables().size() > inside.size() || inside.empty();
}

void Database::before_change() {
  for (BackgroundReader* reader : readers_) reader->stop();
}

void Database::clean_pools() {
  for (CWorkSheet* table : tables()) table->clean_pools();
}

void Database::apply(std::unique_ptr<Change> change) {
  before_change();
  change->toggle();
  record(std::move(change), nullptr);
}

void Database::remove(std::unique_ptr<Change> change) {
  const ChangeGroup group(*this, {});
  apply(std::move(change));
  if (hooks_ != nullptr) hooks_->names_deleted();
}

void Database::rename(const std::function<void()>& change) {
  if (hooks_ == nullptr) return change();
  const ChangeGroup group(*this, {});
  const std::function<void()> after = hooks_->before_renaming();
  change();
  after();
}

ErrorCode Database::add_table(Folder& folder, std::unique_ptr<CWorkSheet>& table) {
  if (const auto error = validate_new_name(folder, table->name(), nullptr); error != ErrorCode::kOk)
    return error;
  table->database_ = this;
  table->folder_ = &folder;
  apply(
      std::make_unique<PresenceChange<CWorkSheet>>(folder.tables_, folder.tables_.size(), std::move(table)));
  return ErrorCode::kOk;
}

ErrorCode Database::delete_table(CWorkSheet& table) {
  if (tables().size() == 1) return ErrorCode::kLastTable;
  remove(std::make_unique<PresenceChange<CWorkSheet>>(table.folder_->tables_, table));
  return ErrorCode::kOk;
}

ErrorCode Database::rename_table(CWorkSheet& table, std::string name) {
  if (const auto error = validate_new_name(*table.folder_, name, &table); error != ErrorCode::kOk)
    return error;
  rename([&] { apply(std::make_unique<SwapChange<std::string>>(table.name_, std::move(name))); });
  return ErrorCode::kOk;
}

ErrorCode Database::move_table(CWorkSheet& table, Folder& target) {
  if (table.folder_ == &target) return ErrorCode::kOk;
  if (const auto error = validate_new_name(target, table.name(), nullptr); error != ErrorCode::kOk)
    return error;
  rename([&] {
    apply(std::make_unique<MoveChange<CWorkSheet, Folder>>(table, table.folder_, target, &Folder::tables_));
  });
  return ErrorCode::kOk;
}

ErrorCode Database::add_folder(Folder& parent, std::string name, Folder** added) {
  if (const auto error = validate_new_name(parent, name, nullptr); error != ErrorCode::kOk) return error;
  if (depth_of(parent) >= kMaxFolderDepth) return ErrorCode::kPathTooLong;
  auto folder = std::make_unique<Folder>();
  folder->name_ = std::move(name);
  folder->parent_ = &parent;
  if (added != nullptr) *added = folder.get();
  apply(std::make_unique<PresenceChange<Folder>>(parent.folders_, parent.folders_.size(), std::move(folder)));
  return ErrorCode::kOk;
}

ErrorCode Database::delete_folder(Folder& folder) {
  if (folder.parent_ == nullptr) return ErrorCode::kInvalidPath;
  if (!holds_other_tables(folder)) return ErrorCode::kLastTable;
  remove(std::make_unique<PresenceChange<Folder>>(folder.parent_->folders_, folder));
  return ErrorCode::kOk;
}

ErrorCode Database::rename_folder(Folder& folder, std::string name) {
  if (folder.parent_ == nullptr) return ErrorCode::kInvalidPath;
  if (const auto error = validate_new_name(*folder.parent_, name, &folder); error != ErrorCode::kOk)
    return error;
  rename([&] { apply(std::make_unique<SwapChange<std::string>>(folder.name_, std::move(name))); });
  return ErrorCode::kOk;
}

ErrorCode Database::move_folder(Folder& folder, Folder& target) {
  if (folder.parent_ == nullptr || is_within(&target, folder)) return ErrorCode::kInvalidPath;
  if (folder.parent_ == &target) return ErrorCode::kOk;
  if (depth_of(target) + height_of(folder) > kMaxFolderDepth) return ErrorCode::kPathTooLong;
  if (const auto error = validate_new_name(target, folder.name(), nullptr); error != ErrorCode::kOk)
    return error;
  rename([&] {
    apply(std::make_unique<MoveChange<Folder, Folder>>(folder, folder.parent_, target, &Folder::folders_));
  });
  return ErrorCode::kOk;
}

ErrorCode Database::make_folders(std::string_view path, Folder** folder) {
  ChangeGroup group(*this, "");
  Folder* current = &root_;
  while (!path.empty()) {
    const std::string_view name = take_name(path);
    Folder* next = find_named(current->folders(), name);
    if (next == nullptr) {
      if (const auto error = add_folder(*current, std::string(name), &next); error != ErrorCode::kOk) {
        group.roll_back();
        return error;
      }
    }
    current = next;
  }
  *folder = current;
  return ErrorCode::kOk;
}

std::string Database::free_name(const Folder& folder, std::string_view name) const {
  std::string candidate(name);
  for (int number = 2; validate_new_name(folder, candidate, nullptr) == ErrorCode::kNameNotUnique; ++number) {
    const std::string suffix = " (" + std::to_string(number) + ")";
    candidate = std::string(truncate_bytes(name, kMaxTableNameBytes - suffix.size())) + suffix;
  }
  return candidate;
}

ErrorCode Database::change_settings(DatabaseSettings settings) {
  if (settings.drop_down_lists.size() > kMaxDropDownLists) return ErrorCode::kTooManyDropDownLists;
  if (settings.record_flag_types.size() > kMaxRecordFlagTypes) return ErrorCode::kOutOfResources;
  if (!all_named(settings.drop_down_lists) || !all_named(settings.record_flag_types)) {
    return ErrorCode::kFieldTypeMismatch;
  }
  if (!has_unique_names(settings.drop_down_lists) || !has_unique_names(settings.record_flag_types)) {
    return ErrorCode::kNameNotUnique;
  }
  apply(std::make_unique<SwapChange<DatabaseSettings>>(settings_, std::move(settings)));
  return ErrorCode::kOk;
}

Check check_record_flag_types(size_t count) {
  return count > kMaxRecordFlagTypes ? Check(MessageId::kTooManyRecordFlagTypes) : Check();
}

void Database::record(std::unique_ptr<Change> change, const CWorkSheet* table) {
  modified_ = true;
  changed_several_ = changed_several_ || (!open_step_.changes.empty() && table != changed_table_);
  changed_table_ = table;
  open_step_.changes.push_back(std::move(change));
  if (open_groups_ == 0) {
    undo_log_.add(std::exchange(open_step_, UndoStep()));
    notify();
  }
}

void Database::notify() {
  const CWorkSheet* table = changed_several_ ? nullptr : changed_table_;
  changed_several_ = false;
  changed_table_ = nullptr;
  const std::vector<DatabaseObserver*> observers = observers_;
  for (DatabaseObserver* observer : observers) {
    const bool still_there = std::find(observers_.begin(), observers_.end(), observer) != observers_.end();
    if (still_there) observer->database_changed(table);
  }
}

bool Database::undo() {
  if (open_groups_ > 0 || !undo_log_.can_undo()) return false;
  before_change();
  undo_log_.undo();
  modified_ = true;
  notify();
  return true;
}

bool Database::redo() {
  if (open_groups_ > 0 || !undo_log_.can_redo()) return false;
  before_change();
  undo_log_.redo();
  modified_ = true;
  notify();
  return true;
}

ChangeGroup::ChangeGroup(Database& database, std::string caption)
    : database_(database),
      was_modified_(database.modified_),
      first_change_(database.open_step_.changes.size()) {
  if (database_.open_groups_++ == 0) database_.open_step_.caption = std::move(caption);
}

ChangeGroup::~ChangeGroup() {
  if (--database_.open_groups_ > 0) return;
  UndoStep step = std::exchange(database_.open_step_, UndoStep());
  if (step.changes.empty()) return;
  database_.undo_log_.add(std::move(step));
  database_.notify();
}

void ChangeGroup::roll_back() {
  auto& changes = database_.open_step_.changes;
  if (changes.size() > first_change_) database_.before_change();
  while (changes.size() > first_change_) {
    changes.back()->toggle();
    changes.pop_back();
  }
  if (changes.empty()) database_.changed_several_ = false;
  database_.modified_ = was_modified_;
}

}  // namespace rowvane

#include "file/database_opener.h"

#include <algorithm>
#include <charconv>
#include <new>

#include "core/database/names.h"
#include "core/log.h"
#include "core/parallel_blocks.h"
#include "exchange/text/file_list_text.h"
#include "exchange/text/text_import.h"
#include "exchange/text/text_pipeline.h"
#include "file/archive_content.h"
#include "file/member_blocks.h"
#include "file/member_text_source.h"
#include "file/stored_table.h"
#include "platform/paths.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

constexpr uint64_t kMaxVersionBytes = 64;
constexpr uint64_t kMaxManifestBytes = uint64_t{1} << 30;

constexpr uint64_t kMaxBlockBytes = uint64_t{1} << 26;  // what this program writes is far smaller

bool has_record_blocks(const DatabaseArchive& archive, const ZipMember& member) {
  const auto& blocks = member.index.blocks;
  return member.index.blocks_end_at_records && MemberBlocks::is_readable(archive, member) &&
         std::all_of(blocks.begin(), blocks.end(),
                     [](const ZipBlock& block) { return block.size <= kMaxBlockBytes; });
}

bool starts_as_archive(const std::string& path) {
  constexpr std::string_view kMark = "PK";
  FileByteSource source;
  std::string start(kMark.size(), '\0');
  return source.open(path) == ErrorCode::kOk && source.read_at(0, start) == ErrorCode::kOk && start == kMark;
}

std::string_view last_part(std::string_view member_name) {
  return member_name.substr(member_name.rfind('/') + 1);
}

// The lines of TEXT, as many as one value may have objects.
std::vector<std::string_view> split_object_names(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty() && lines.size() < kMaxContainerObjects) {
    const size_t end = text.find('\n');
    lines.push_back(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  }
  return lines;
}

}  // namespace

DatabaseOpener::DatabaseOpener(const std::string& path, const Options& options, Questions* questions,
                               Progress& progress, std::shared_ptr<const Secret> password)
    : path_(path),
      options_(options),
      questions_(questions),
      progress_(progress),
      password_(std::move(password)) {}

OpenedDatabase DatabaseOpener::run() {
  LogScope log(LogCategory::kOpening, path_);
  progress_.begin("Opening Database");
  try {
    result_.failure = read_all();
  } catch (const std::bad_alloc&) {
    result_.failure = ErrorCode::kOutOfMemory;
  }
  result_.cancelled = result_.cancelled || (!result_.failure.empty() && progress_.cancelled());
  if (!result_.failure.empty()) {
    result_.file.reset();
    result_.database.reset();
    result_.notices.clear();
  }
  if (result_.database != nullptr) log.note(result_.database->tables().size(), "tables");
  return std::move(result_);
}

ErrorCode DatabaseOpener::read_all() {
  ErrorCode error = open_archive();
  if (error == ErrorCode::kOk) error = verify_version();
  if (error == ErrorCode::kOk) error = verify_manifest();
  if (error == ErrorCode::kOk) error = verify_password();
  if (error == ErrorCode::kOk) error = read_configuration();
  if (error == ErrorCode::kOk) error = build_folders();
  if (error == ErrorCode::kOk) error = read_tables();
  if (error == ErrorCode::kOk) error = attach_binaries();
  if (error == ErrorCode::kOk) error = add_new_tables();
  if (error != ErrorCode::kOk) return error;
  collect_unused();
  if (archive_->variant() == ZipVariant::kZip32) add_notice(MessageId::kConvertToZip64);
  result_.database->undo_log().clear();
  if (tables_.size() == config_.tables.size()) result_.database->mark_saved();
  return ErrorCode::kOk;
}

ErrorCode DatabaseOpener::open_archive() {
  platform::remove_stale_replacements(path_);
  archive_ = std::make_shared<DatabaseArchive>();
  const ErrorCode error = archive_->open(path_);
  const bool is_broken = error == ErrorCode::kZipCorrupted || error == ErrorCode::kZipUnexpectedEnd;
  return is_broken && !starts_as_archive(path_) ? ErrorCode::kInvalidBinaryFormat : error;
}

void DatabaseOpener::add_notice(UserText notice) {
  if (notice == UserText(MessageId::kTextNotNumeric)) notice = ErrorCode::kNotNumeric;
  result_.note(std::move(notice));
}

const ZipMember* DatabaseOpener::use(std::string_view name) {
  const ZipMember* member = archive_->find(name);
  if (member != nullptr) used_.insert(member->name);
  return member;
}

ErrorCode DatabaseOpener::verify_manifest() {
  const ZipMember* member = use(kManifestName);
  if (member == nullptr) return ErrorCode::kManifest;
  std::string text;
  if (const ErrorCode error = archive_->zip().read(*member, kMaxManifestBytes, text); error != ErrorCode::kOk)
    return error;
  std::vector<ManifestEntry> entries;
  if (const ErrorCode error = read_manifest(text, entries); error != ErrorCode::kOk) return error;
  const bool lists_config = std::any_of(entries.begin(), entries.end(),
                                        [](const ManifestEntry& entry) { return entry.name == kConfigName; });
  if (!lists_config) return ErrorCode::kManifest;
  for (const ManifestEntry& entry : entries) {
    if (archive_->find(entry.name) == nullptr) missing_.push_back(entry.name);
  }
  archive_->set_manifest(entries);
  return ErrorCode::kOk;
}

// Nothing else is read before the password has proved to be the right one.
ErrorCode DatabaseOpener::verify_password() {
  if (!archive_->has_encrypted_members()) return ErrorCode::kOk;
  progress_.begin("Opening Encrypted Database");
  const ZipMember* config = use(kConfigName);
  return config == nullptr ? ErrorCode::kManifest : archive_->unlock(password_, *config);
}

ErrorCode DatabaseOpener::verify_version() {
  use(kThisVersionName);
  const ZipMember* member = use(kMinVersionName);
  if (member == nullptr) return ErrorCode::kOk;
  std::string text;
  if (const ErrorCode error = archive_->zip().read(*member, kMaxVersionBytes, text); error != ErrorCode::kOk)
    return error;
  int version = 0;
  if (std::from_chars(text.data(), text.data() + text.size(), version).ec != std::errc()) {
    return ErrorCode::kInvalidBinaryFormat;
  }
  return version > kFormatVersion ? ErrorCode::kNewerVersion : ErrorCode::kOk;
}

ErrorCode DatabaseOpener::read_configuration() {
  const ZipMember* member = use(kConfigName);
  if (member == nullptr) return ErrorCode::kManifest;
  std::string bytes;
  if (const ErrorCode error = archive_->read(*member, kMaxConfigBytes, bytes); error != ErrorCode::kOk)
    return error;
  return read_config(bytes, config_);
}

ErrorCode DatabaseOpener::build_folders() {
  result_.database = std::make_unique<Database>(platform::file_stem(path_), options_);
  result_.file = std::make_unique<DatabaseFile>(*result_.database);
  Database& database = *result_.database;
  database.set_file_path(path_);
  take_protection();
  if (database.change_settings(config_.settings) != ErrorCode::kOk) return ErrorCode::kInvalidBinaryFormat;
  database.set_later_objects(config_.later_objects);
  folders_.push_back(&database.root());
  for (const StoredFolder& stored : config_.folders) {
    Folder* folder = nullptr;
    if (database.add_folder(*folders_[stored.parent], stored.name, &folder) != ErrorCode::kOk) {
      return ErrorCode::kInvalidBinaryFormat;
    }
    folders_.push_back(folder);
  }
  return ErrorCode::kOk;
}

// The configuration tells the protection; the manifest does for files of other programs.
void DatabaseOpener::take_protection() {
  const ZipMember* member = archive_->find(kConfigName);
  const EncryptedMember* encrypted = archive_->encryption(*member);
  DatabaseFile& file = *result_.file;
  file.read_only_ = archive_->has_encrypted_members() && password_ == nullptr;
  if (encrypted == nullptr) return;
  const StoredProtection stored = config_.protection.value_or(
      StoredProtection{encrypted->record.algorithm, !encrypted->record.key.empty()});
  file.protection_ = Protection{password_, stored.algorithm, stored.read_only_open};
}

ErrorCode DatabaseOpener::read_tables() {
  std::vector<const ZipMember*> members;
  for (const StoredTable& stored : config_.tables) members.push_back(archive_->find(member_name(stored)));
  archive_->prepare_keys(members, thread_count(options_.used_processor_cores));
  for (const StoredTable& stored : config_.tables) {
    if (const ErrorCode error = read_table(stored); error != ErrorCode::kOk) return error;
  }
  return ErrorCode::kOk;
}

std::string DatabaseOpener::member_name(const StoredTable& stored) const {
  return Database::join_path(folders_[stored.folder]->path(), stored.name) + ".txt";
}

ErrorCode DatabaseOpener::add_table(std::string name, TableData data, Folder& folder, CWorkSheet** added) {
  auto table = std::make_unique<CWorkSheet>(std::move(name), std::move(data));
  *added = table.get();
  return result_.database->add_table(folder, table);
}

ErrorCode DatabaseOpener::read_table(const StoredTable& stored) {
  Folder& folder = *folders_[stored.folder];
  const ZipMember* member = use(member_name(stored));
  if (member == nullptr) return ErrorCode::kInvalidBinaryFormat;
  TableData loaded;
  ErrorCode error = load_records(*member, stored_table_plan(stored, options_), loaded);
  if (error != ErrorCode::kOk) return error;
  std::vector<std::pair<size_t, ContentColumn>> file_lists;
  CWorkSheet* table = nullptr;
  error = add_table(stored.name, assemble_table(stored, std::move(loaded), file_lists), folder, &table);
  if (error != ErrorCode::kOk) return ErrorCode::kInvalidBinaryFormat;
  tables_.push_back(table);
  for (auto& [field, list] : file_lists) listed_files_.emplace(std::pair(table, field), std::move(list));
  return ErrorCode::kOk;
}

ErrorCode DatabaseOpener::load_records(const ZipMember& member, const TextLoadPlan& plan, TableData& data) {
  const bool in_blocks = has_record_blocks(*archive_, member);
  const ErrorCode error = in_blocks ? load_blocks(member, plan, data) : ErrorCode::kOk;
  // Columns that were added by hand may have to be read twice, which only the stream can.
  const bool complete = in_blocks && (error != ErrorCode::kOk || !data.columns.empty());
  return complete ? error : load_stream(member, plan, data);
}

ErrorCode DatabaseOpener::load_blocks(const ZipMember& member, const TextLoadPlan& plan, TableData& data) {
  MemberBlocks blocks(*archive_, member);
  if (const ErrorCode error = blocks.start(); error != ErrorCode::kOk) return error;
  std::atomic<uint64_t> done = 0;
  const uint64_t total = archive_->size(member);
  TextLoader loader(plan, total);
  const auto read_block = [&](uint64_t index, LoadJob& job) {
    const auto size = static_cast<size_t>(blocks.size(index));
    char* const text = job.block.reserve(size);
    if (const auto error = blocks.read(index, std::span(text, size)); error != ErrorCode::kOk) return error;
    const bool marked = index == 0 && std::string_view(text, size).starts_with(kByteOrderMark);
    const size_t skipped = marked ? kByteOrderMark.size() : 0;
    if (skipped > 0) std::copy(text + skipped, text + size, text);
    job.block.set_size(size - skipped);
    progress_.report(done += size, total);
    return progress_.cancelled() ? ErrorCode::kZipState : ErrorCode::kOk;
  };
  ErrorCode error = load_text_blocks(loader, plan, blocks.count(), read_block);
  if (error == ErrorCode::kOk) error = blocks.check();
  if (error != ErrorCode::kOk || !loader.columns_to_reload().empty()) return error;
  for (const UserText& notice : loader.notices()) add_notice(notice);
  data = loader.finish();
  return ErrorCode::kOk;
}

ErrorCode DatabaseOpener::load_stream(const ZipMember& member, const TextLoadPlan& plan, TableData& data) {
  MemberTextSource source(*archive_, member);
  TextStreamResult loaded = load_text(source, plan, progress_);
  if (loaded.cancelled) return ErrorCode::kZipState;
  if (!loaded.failure.empty()) return loaded.failure.error();
  for (const UserText& notice : loaded.notices) add_notice(notice);
  data = std::move(loaded.data);
  return ErrorCode::kOk;
}

ErrorCode DatabaseOpener::attach_binaries() {
  std::map<std::string, CWorkSheet*, std::less<>> by_name;
  const std::vector<std::string> names = binary_table_names(tables_);
  for (size_t i = 0; i < tables_.size(); ++i) by_name.emplace(names[i], tables_[i]);
  std::map<CWorkSheet*, BinaryMembers> found;
  for (const ZipMember& member : archive_->members()) {
    const auto parsed = parse_binary_member(config_.database_name, member.name);
    const auto table = parsed ? by_name.find(parsed->table_name) : by_name.end();
    if (table == by_name.end()) continue;
    CWorkSheet& owner = *table->second;
    if (parsed->record >= owner.end_record() || parsed->field > owner.field_count()) continue;
    found[&owner][{parsed->field - 1, parsed->record.position()}].push_back(&member);
  }
  const bool value_is_missing =
      std::any_of(missing_.begin(), missing_.end(), [this](const std::string& name) {
        return parse_binary_member(config_.database_name, name).has_value();
      });
  if (value_is_missing) add_notice(ErrorCode::kBinaryFieldsCorrupted);
  for (CWorkSheet* table : tables_) {
    if (const ErrorCode error = attach_table_binaries(*table, found[table]); error != ErrorCode::kOk)
      return error;
  }
  return ErrorCode::kOk;
}

ErrorCode DatabaseOpener::attach_table_binaries(CWorkSheet& table, const BinaryMembers& members) {
  for (size_t i = 0; i < table.field_count(); ++i) {
    const FieldType type = table.field(i).type;
    if (!is_outside_record(type)) continue;
    Column column =
        type == FieldType::kFiles ? files(table, i, members) : long_texts(table.record_count(), i, members);
    const ErrorCode error = table.replace_column(i, table.field(i), std::move(column));
    if (error != ErrorCode::kOk) return error;
  }
  result_.file->saved_[&table] = {table.revision(), table_member_name(table)};
  return ErrorCode::kOk;
}

Column DatabaseOpener::long_texts(uint32_t records, size_t field, const BinaryMembers& members) {
  ContentColumn column;
  column.cells.resize(records, 0);
  for (auto found = members.lower_bound({field, 0}); found != members.end() && found->first.first == field;
       ++found) {
    const ZipMember& member = *found->second.front();
    used_.insert(member.name);
    if (archive_->size(member) > 0)
      column.cells[found->first.second] = column.add(content_of_member(archive_, member));
  }
  return column;
}

Column DatabaseOpener::files(const CWorkSheet& table, size_t field, const BinaryMembers& members) {
  FilesColumn column;
  column.cells.resize(table.record_count(), 0);
  const auto listed = listed_files_.find({&table, field});
  for (uint32_t record = 0; record < table.record_count(); ++record) {
    const Content* list = listed != listed_files_.end() ? listed->second.value(record) : nullptr;
    const auto found = members.find({field, record});
    if (list == nullptr && found == members.end()) continue;
    static const std::vector<const ZipMember*> kNone;
    FileList value = file_list(std::string(list != nullptr ? list->in_memory() : std::string_view()),
                               found != members.end() ? found->second : kNone);
    if (!value.empty()) column.cells[record] = column.add(std::move(value));
  }
  return column;
}

// The objects in the order in which the table text lists them, then those that only the archive holds.
FileList DatabaseOpener::file_list(const std::string& listed, const std::vector<const ZipMember*>& members) {
  FileList value;
  std::vector<const ZipMember*> left = members;
  for (const std::string_view line : split_object_names(listed)) {
    FileObject file = parse_file_line(line);
    if (file.is_shortcut()) {
      add_object(std::move(file), value);
      continue;
    }
    const auto named = [line](const ZipMember* member) { return last_part(member->name) == line; };
    const auto found = std::find_if(left.begin(), left.end(), named);
    if (found == left.end()) {
      add_notice(ErrorCode::kBinaryFieldsCorrupted);
      continue;
    }
    add_member(**found, value);
    left.erase(found);
  }
  for (const ZipMember* member : left) add_member(*member, value);
  return value;
}

void DatabaseOpener::add_member(const ZipMember& member, FileList& value) {
  used_.insert(member.name);
  add_object({std::string(last_part(member.name)), {}, content_of_member(archive_, member)}, value);
}

// An object whose name no value may have, or has already, gets one that it may have.
void DatabaseOpener::add_object(FileObject object, FileList& value) {
  if (value.size() == kMaxContainerObjects) return add_notice(ErrorCode::kTooManyContainerObjects);
  if (!is_valid_shortcut(object.shortcut)) return add_notice(ErrorCode::kBinaryFieldsCorrupted);
  if (!is_valid_file_name(object.name)) object.name = repair_file_name(object.name);
  const std::string name = object.name;
  const auto taken = [&object](const FileObject& other) { return same_name(object.name, other.name); };
  for (int number = 2; std::any_of(value.begin(), value.end(), taken); ++number) {
    object.name = "(" + std::to_string(number) + ") " + name;
  }
  value.push_back(std::move(object));
}

ErrorCode DatabaseOpener::add_new_tables() {
  std::vector<std::pair<const ZipMember*, std::string>> found;
  for (const ZipMember& member : archive_->members()) {
    const auto path = table_path_of(member.name);
    if (path && !used_.contains(member.name)) found.emplace_back(&member, *path);
  }
  if (found.empty() || questions_ == nullptr || !questions_->ask(message(MessageId::kNewTablesFound))) {
    return ErrorCode::kOk;
  }
  for (const auto& [member, path] : found) {
    const ErrorCode error = read_new_table(*member, path);
    if (progress_.cancelled() || error == ErrorCode::kOutOfMemory) return error;
    if (error != ErrorCode::kOk) add_notice(error);
  }
  return ErrorCode::kOk;
}

ErrorCode DatabaseOpener::read_new_table(const ZipMember& member, const std::string& path) {
  TextLoadPlan plan = text_load_plan(TextFileSettings(), platform::RegionalSettings::generic());
  plan.max_records = options_.max_records;
  TableData data;
  if (const ErrorCode error = load_stream(member, plan, data); error != ErrorCode::kOk) return error;
  const std::string name = platform::file_name(path);
  const std::string folder_path =
      name.size() < path.size() ? path.substr(0, path.size() - name.size() - 1) : "";
  Folder* folder = nullptr;
  ErrorCode error = result_.database->make_folders(folder_path, &folder);
  if (error != ErrorCode::kOk) return error;
  CWorkSheet* table = nullptr;
  error = add_table(result_.database->free_name(*folder, name), std::move(data), *folder, &table);
  if (error != ErrorCode::kOk) return error;
  used_.insert(member.name);
  tables_.push_back(table);
  return ErrorCode::kOk;
}

void DatabaseOpener::collect_unused() {
  for (const ZipMember& member : archive_->members()) {
    if (!member.is_folder() && !used_.contains(member.name)) result_.file->unused_.push_back(member.name);
  }
  result_.file->archive_ = archive_;
  result_.file->variant_ = archive_->variant();
}

OpenedDatabase open_database(const std::string& path, const Options& options, Questions* questions,
                             Progress& progress, std::shared_ptr<const Secret> password) {
  return DatabaseOpener(path, options, questions, progress, std::move(password)).run();
}

}  // namespace rowvane

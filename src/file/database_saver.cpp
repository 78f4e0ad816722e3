#include "file/database_saver.h"

#include <algorithm>
#include <new>
#include <thread>
#include <unordered_map>

#include "core/database/binary_names.h"
#include "core/database/names.h"
#include "core/log.h"
#include "core/parallel_blocks.h"
#include "crypto/field_encryption.h"
#include "exchange/text/text_formatter.h"
#include "file/archive_content.h"
#include "file/config_dat.h"
#include "file/member_blocks.h"
#include "file/member_names.h"
#include "file/objects/kept_objects.h"
#include "platform/paths.h"
#include "platform/pipe.h"
#include "platform/utf8.h"
#include "zip/save_time.h"

namespace rowvane {
namespace {

constexpr size_t kPipeBytes = 65'535;
constexpr size_t kTableBlockBytes = size_t{1} << 19;  // with its cells it stays in a processor's own cache

// Where a ZIP32 file begins to count as near its limit.
uint64_t near_limit(uint64_t max_bytes) {
  return max_bytes - max_bytes / 16;
}

// The name of the folder of long texts and files: that of the file, as far as members may be called so.
std::string stored_database_name(const std::string& path) {
  const std::string name = platform::file_stem(path);
  return is_valid_table_name(name) ? name : repair_table_name(name);
}

// Records that fill about one block, by the length of the first ones.
uint32_t records_per_block(const TextFormatter& formatter, uint32_t record_count) {
  constexpr uint32_t kSample = 1000;
  std::string sample;
  const uint32_t sampled = std::min(kSample, record_count);
  if (sampled == 0 || formatter.append_range(0, sampled, sample) != ErrorCode::kOk) return kSample;
  const size_t bytes = std::max<size_t>(sample.size() / sampled, 1);
  return static_cast<uint32_t>(std::clamp<size_t>(kTableBlockBytes / bytes, 1, kTableBlockBytes));
}

uint64_t content_bytes(const Column& column) {
  uint64_t bytes = 0;
  if (const auto* contents = std::get_if<ContentColumn>(&column)) {
    for (const uint32_t cell : contents->cells) bytes += cell == 0 ? 0 : contents->values[cell - 1].size();
  } else if (const auto* files = std::get_if<FilesColumn>(&column)) {
    for (const uint32_t cell : files->cells) {
      if (cell == 0) continue;
      for (const FileObject& file : files->values[cell - 1]) bytes += file.content.size();
    }
  }
  return bytes;
}

uint64_t binary_bytes(const std::vector<CWorkSheet*>& tables) {
  uint64_t bytes = 0;
  for (const CWorkSheet* table : tables) {
    for (const Column& column : table->data().columns) bytes += content_bytes(column);
  }
  return bytes;
}

// What encrypts a member on its way into the archive; nothing where it stays plain.
ZipWriter::Encrypt encrypt_with(std::optional<MemberEncryptor>& encryptor) {
  if (!encryptor) return {};
  return [&encryptor](std::span<char> bytes) { return encryptor->run(bytes); };
}

std::optional<EncryptionRecord> record_of(std::optional<MemberEncryptor>& encryptor, uint64_t size) {
  if (!encryptor) return std::nullopt;
  return encryptor->finish(size);
}

}  // namespace

DatabaseSaver::DatabaseSaver(DatabaseFile& file, const SaveSettings& settings, const Options& options,
                             Progress& progress)
    : file_(file),
      database_(file.database_),
      settings_(settings),
      options_(options),
      progress_(progress),
      tables_(file.database_.tables()),
      protection_(file.protection()),
      threads_(thread_count(options.used_processor_cores)),
      variant_(settings.variant == SaveVariant::kAuto    ? file.variant_
               : settings.variant == SaveVariant::kZip32 ? ZipVariant::kZip32
                                                         : ZipVariant::kZip64) {
  if (settings.tables.empty()) return;
  std::erase_if(tables_, [&settings](const CWorkSheet* table) {
    return std::find(settings.tables.begin(), settings.tables.end(), table) == settings.tables.end();
  });
}

uint64_t DatabaseSaver::estimated_bytes() const {
  constexpr uint64_t kCellBytes = 7;
  uint64_t bytes = binary_bytes(tables_);
  for (const CWorkSheet* table : tables_) bytes += kCellBytes * table->record_count() * table->field_count();
  return bytes;
}

Outcome DatabaseSaver::run(const std::string& path) {
  if (file_.is_read_only()) return ErrorCode::kInvalidPassword;
  Outcome outcome;
  progress_.begin("Saving Database");
  try {
    ErrorCode error = write_all(path);
    const bool near =
        variant_ == ZipVariant::kZip32 && writer_.bytes_written() > near_limit(settings_.max_zip32_bytes);
    if (error == ErrorCode::kOk) {
      error = writer_.finish(options_.backups && platform::file_exists(path) ? path + ".bak" : std::string());
    }
    outcome.failure = error;
    outcome.cancelled = writer_.cancelled();
    if (near || writer_.size_limit_reached()) outcome.note(MessageId::kFileNearLimit);
    if (left_out_) outcome.note(ErrorCode::kBinaryFieldsCorrupted);
    if (error == ErrorCode::kOk) tell_left_out_objects(outcome);
    if (error == ErrorCode::kOk && !settings_.as_copy) adopt(path);
  } catch (const std::bad_alloc&) {
    outcome.failure = ErrorCode::kOutOfMemory;
  }
  return outcome;
}

ErrorCode DatabaseSaver::write_all(const std::string& path) {
  if (binary_bytes(tables_) > kMaxBinaryBytes) return ErrorCode::kBinaryFieldsTooLarge;
  if (const ErrorCode error = verify_encrypted_values(); error != ErrorCode::kOk) return error;
  platform::remove_stale_replacements(path);
  ZipWriterOptions writer_options;
  writer_options.variant = variant_;
  writer_options.level = settings_.level;
  writer_options.threads = threads_;
  writer_options.save_time = save_time_now();
  writer_options.max_zip32_bytes = settings_.max_zip32_bytes;
  ErrorCode error = writer_.create(path, writer_options);
  if (error != ErrorCode::kOk) return error;
  writer_.set_progress(progress_, estimated_bytes());
  if (protection_ != nullptr) encryptors_.emplace(*protection_, tables_.size() + 1, threads_);

  const std::string database_name = stored_database_name(path);
  const std::string version = std::to_string(kFormatVersion);
  error = add_text(kThisVersionName, version);
  if (error == ErrorCode::kOk) error = add_text(kMinVersionName, version);
  if (error == ErrorCode::kOk) error = write_config_member(database_name);
  for (size_t i = 0; i < tables_.size() && error == ErrorCode::kOk; ++i) error = write_table(*tables_[i]);
  if (error == ErrorCode::kOk) error = write_binaries(database_name);
  if (error == ErrorCode::kOk && !settings_.drop_unused) error = write_unused(database_name);
  if (error == ErrorCode::kOk) error = write_manifest_member();
  return error;
}

// What later versions keep with the database and its tables, but this file does not. The next save does not
// tell the same again.
void DatabaseSaver::tell_left_out_objects(Outcome& outcome) {
  std::vector<std::string> names;
  if (kept_later_objects(database_).size() < database_.later_objects().size())
    names.push_back(database_.name());
  for (const CWorkSheet* table : tables_) {
    if (kept_later_objects(*table).size() < table->data().later_objects.kinds.size())
      names.push_back(table->path());
  }
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  if (!list.empty() && list != file_.told_left_out_)
    outcome.note(fill_inserts(texts::kLaterObjectsLeftOut, {std::string_view(list)}));
  if (!settings_.as_copy) file_.told_left_out_ = std::move(list);
}

void DatabaseSaver::note_member(const std::string& name, bool deflated,
                                std::optional<EncryptionRecord> encryption) {
  manifest_.push_back({name, deflated, std::move(encryption)});
}

// Values of encrypted fields that were changed by anything but decrypting would be lost.
ErrorCode DatabaseSaver::verify_encrypted_values() const {
  for (const CWorkSheet* table : tables_) {
    if (is_unchanged(*table)) continue;
    if (const auto error = verify_encrypted_fields(*table, threads_); error != ErrorCode::kOk) return error;
  }
  return ErrorCode::kOk;
}

// An encryptor for the next member, where the file is protected.
ErrorCode DatabaseSaver::start_encryptor(std::optional<MemberEncryptor>& encryptor) {
  return encryptors_ ? encryptors_->take(encryptor.emplace()) : ErrorCode::kOk;
}

ErrorCode DatabaseSaver::add_text(std::string_view name, std::string_view text) {
  note_member(std::string(name), true);
  return writer_.add(name, text, ZipMethod::kDeflated);
}

// A second thread puts the configuration into a pipe while this one packs what comes out.
ErrorCode DatabaseSaver::write_config_member(const std::string& database_name) {
  platform::BytePipe pipe;
  if (!pipe.create(kPipeBytes)) return ErrorCode::kOutOfResources;
  std::optional<MemberEncryptor> encryptor;
  ErrorCode error = start_encryptor(encryptor);
  if (error == ErrorCode::kOk)
    error = writer_.begin(kConfigName, ZipMethod::kDeflated, encrypt_with(encryptor));
  if (error != ErrorCode::kOk) return error;
  ErrorCode config_error = ErrorCode::kOk;
  std::jthread serialiser([&] {
    try {
      DatabaseConfig content = config_of(database_, tables_, database_name);
      if (protection_ != nullptr) content.protection = {protection_->algorithm, protection_->read_only_open};
      const std::string config = write_config(content);
      if (config.size() > kMaxConfigBytes) config_error = ErrorCode::kOutOfResources;
      if (config_error == ErrorCode::kOk) pipe.write(std::as_bytes(std::span(config)));
    } catch (const std::bad_alloc&) {
      config_error = ErrorCode::kOutOfMemory;
    }
    pipe.close_write_end();
  });
  std::string chunk(kPipeBytes, '\0');
  while (const size_t count = pipe.read(std::as_writable_bytes(std::span(chunk)))) {
    if (error == ErrorCode::kOk) error = writer_.write(std::string_view(chunk).substr(0, count));
  }
  serialiser.join();
  if (error == ErrorCode::kOk) error = config_error;
  if (error == ErrorCode::kOk) error = writer_.end();
  note_member(std::string(kConfigName), true, record_of(encryptor, writer_.content_size()));
  return error;
}

bool DatabaseSaver::is_unchanged(const CWorkSheet& table) const {
  const auto saved = file_.saved_.find(&table);
  return saved != file_.saved_.end() && saved->second.revision == table.revision();
}

// The member of the opened file that holds TABLE as it is and is encrypted or plain as it is to be; null when
// there is none.
const ZipMember* DatabaseSaver::member_to_copy(const CWorkSheet& table) const {
  if (!is_unchanged(table)) return nullptr;
  const ZipMember* member = file_.archive_->find(file_.saved_.at(&table).member);
  if (member == nullptr) return nullptr;
  const bool is_encrypted = file_.archive_->encryption(*member) != nullptr;
  return is_encrypted == (protection_ != nullptr) ? member : nullptr;
}

ErrorCode DatabaseSaver::copy_table(const ZipMember& member, const std::string& name) {
  return protection_ == nullptr ? copy_member(file_.archive_->zip(), member, name)
                                : recode_table(member, name);
}

// Encrypts a table anew with a fresh salt and vector, without inflating it.
ErrorCode DatabaseSaver::recode_table(const ZipMember& member, const std::string& name) {
  const DatabaseArchive& archive = *file_.archive_;
  const EncryptedMember& former = *archive.encryption(member);
  std::optional<MemberEncryptor> encryptor;
  ErrorCode error = start_encryptor(encryptor);
  if (error != ErrorCode::kOk) return error;
  const uint64_t size = former.record.size;
  if (MemberBlocks::is_readable(archive, member)) {
    MemberBlocks blocks(archive, member);
    const auto read = [&blocks](uint64_t block, std::string& out) { return blocks.read_packed(block, out); };
    error = blocks.start();
    if (error == ErrorCode::kOk)
      error = writer_.add_packed_blocks(name, member.index, size, read, encrypt_with(encryptor));
    if (error == ErrorCode::kOk) error = blocks.check();
  } else {
    const auto read = [&](uint64_t, std::string& out) { return archive.read_decrypted(member, out); };
    error = writer_.add_packed_blocks(name, {}, size, read, encrypt_with(encryptor));
  }
  note_member(name, former.deflated, record_of(encryptor, size));
  return error;
}

// Blocks of records are formatted and packed on all processors; each block ends with a record, so that
// opening can read them side by side.
ErrorCode DatabaseSaver::write_table(const CWorkSheet& table) {
  const std::string name = table_member_name(table);
  if (const ZipMember* member = member_to_copy(table)) {
    const ErrorCode error = copy_table(*member, name);
    // The file was damaged since it was opened: the next save writes the table from memory.
    if (is_damage(error)) file_.saved_.erase(&table);
    return error;
  }
  std::optional<MemberEncryptor> encryptor;
  ErrorCode error = start_encryptor(encryptor);
  if (error != ErrorCode::kOk) return error;
  std::vector<size_t> fields(table.field_count());
  for (size_t i = 0; i < fields.size(); ++i) fields[i] = i;
  TextDialect dialect;
  dialect.native = true;
  const TextFormatter formatter(table, fields, TextFileSettings(), dialect);
  const uint32_t records = table.record_count();
  const uint32_t step = records_per_block(formatter, records);
  const uint64_t blocks = std::max<uint64_t>(1, (uint64_t{records} + step - 1) / step);
  error = writer_.add_blocks(
      name, ZipMethod::kDeflated, blocks,
      [&](uint64_t block, std::string& out) {
        if (block == 0) {
          out += kByteOrderMark;
          formatter.append_names(out);
        }
        const auto first = static_cast<uint32_t>(block * step);
        return formatter.append_range(first, std::min(records - first, step) + first, out);
      },
      true, encrypt_with(encryptor));
  note_member(name, true, record_of(encryptor, writer_.content_size()));
  return error;
}

ZipMethod DatabaseSaver::method_for(std::string_view file_name) const {
  const std::string extension = platform::extension(file_name);
  const auto& stored = options_.non_deflate_files;
  return std::find(stored.begin(), stored.end(), extension) != stored.end() ? ZipMethod::kStored
                                                                            : ZipMethod::kDeflated;
}

ErrorCode DatabaseSaver::write_contents(const std::vector<PendingContent>& contents) {
  if (protection_ != nullptr) return write_encrypted_contents(contents);
  for (const PendingContent& pending : contents) {
    if (const ErrorCode error = write_content(pending); error != ErrorCode::kOk) return error;
  }
  return ErrorCode::kOk;
}

ErrorCode DatabaseSaver::write_content(const PendingContent& pending) {
  std::string name;
  ErrorCode error = name_content(pending, name);
  if (error != ErrorCode::kOk) return error;
  const Content& content = pending.content;
  const auto* stored = dynamic_cast<const ArchiveContent*>(content.source().get());
  if (stored != nullptr && !stored->place().is_encrypted()) {
    const ArchiveContent::Place place = stored->place();
    error = copy_member(place.archive->zip(), *place.member, name);
    if (error == ErrorCode::kOk) written_contents_.emplace_back(content.source(), name);
    return leave_out_if_damaged(error);
  }
  std::string bytes;
  if (content.source() != nullptr) error = content.read(bytes);
  if (error != ErrorCode::kOk) return stored != nullptr ? leave_out_if_damaged(error) : error;
  const ZipMethod method = method_for(name);
  error = writer_.add(name, content.source() != nullptr ? bytes : content.in_memory(), method);
  if (error != ErrorCode::kOk) return error;
  if (stored != nullptr) written_contents_.emplace_back(content.source(), name);
  note_member(name, method == ZipMethod::kDeflated);
  return ErrorCode::kOk;
}

ErrorCode DatabaseSaver::write_encrypted_contents(const std::vector<PendingContent>& contents) {
  ErrorCode failure = ErrorCode::kOk;
  const ContentPacking packing{settings_.level, [this](std::string_view name) { return method_for(name); }};
  const auto write = [&](size_t i, EncryptedContent& made, std::string_view bytes) {
    const auto* stored = dynamic_cast<const ArchiveContent*>(contents[i].content.source().get());
    failure = stored != nullptr ? leave_out_if_damaged(made.error) : made.error;
    if (made.error != ErrorCode::kOk) return failure == ErrorCode::kOk;
    failure = writer_.add(made.name, bytes, ZipMethod::kStored);
    if (failure != ErrorCode::kOk) return false;
    if (stored != nullptr) written_contents_.emplace_back(contents[i].content.source(), made.name);
    note_member(made.name, made.deflated, std::move(made.record));
    return true;
  };
  const ErrorCode error = encrypt_contents(contents, *protection_, packing, threads_, write);
  return error == ErrorCode::kOk ? failure : error;
}

ErrorCode DatabaseSaver::copy_member(const ZipReader& archive, const ZipMember& member,
                                     const std::string& name) {
  const ErrorCode error = writer_.copy(archive, member, name);
  if (error == ErrorCode::kOk) note_member(name, member.is_deflated());
  return error;
}

// One damaged member must not keep the user from saving everything else.
ErrorCode DatabaseSaver::leave_out_if_damaged(ErrorCode error) {
  if (!is_damage(error)) return error;
  left_out_ = true;
  return ErrorCode::kOk;
}

ErrorCode DatabaseSaver::write_field_binaries(const CWorkSheet& table, size_t field,
                                              std::string_view database_name, std::string_view table_name) {
  const auto folder = [&](size_t i) {
    return binary_folder_name(database_name, table_name, record_number(static_cast<uint32_t>(i)), field + 1);
  };
  const Column& column = table.column(field);
  std::vector<PendingContent> pending;
  if (const auto* contents = std::get_if<ContentColumn>(&column)) {
    for (size_t i = 0; i < contents->cells.size(); ++i) {
      if (const Content* content = contents->value(i)) pending.push_back({folder(i), *content, true});
    }
  } else if (const auto* files = std::get_if<FilesColumn>(&column)) {
    for (size_t i = 0; i < files->cells.size(); ++i) {
      const FileList* list = files->value(i);
      for (size_t k = 0; list != nullptr && k < list->size(); ++k) {
        const FileObject& file = (*list)[k];
        if (!file.is_shortcut()) pending.push_back({folder(i) + file.name, file.content, false});
      }
    }
  }
  return write_contents(pending);
}

ErrorCode DatabaseSaver::write_binaries(const std::string& database_name) {
  const std::vector<std::string> names = binary_table_names(tables_);
  ErrorCode error = ErrorCode::kOk;
  for (size_t t = 0; t < tables_.size(); ++t) {
    for (size_t f = 0; f < tables_[t]->field_count() && error == ErrorCode::kOk; ++f) {
      error = write_field_binaries(*tables_[t], f, database_name, names[t]);
    }
  }
  return error;
}

// Members of the opened file that the database does not know are somebody's: they stay, unless their name is
// needed or the database would know them from now on, as the value of a cell that is empty.
ErrorCode DatabaseSaver::write_unused(const std::string& database_name) {
  std::unordered_map<std::string, const CWorkSheet*> owners;
  const std::vector<std::string> names = binary_table_names(tables_);
  for (size_t t = 0; t < tables_.size(); ++t) owners.emplace(names[t], tables_[t]);
  const auto names_value = [&](const std::string& name) {
    const auto place = parse_binary_member(database_name, name);
    const auto owner = place ? owners.find(std::string(place->table_name)) : owners.end();
    return owner != owners.end() && place->record < owner->second->end_record() &&
           place->field <= owner->second->field_count() &&
           is_outside_record(owner->second->field(place->field - 1).type);
  };
  for (const std::string& name : file_.unused_) {
    const ZipMember* member = file_.archive_->find(name);
    if (member == nullptr || names_value(name)) continue;
    const size_t listed = manifest_.size();
    const ErrorCode error = write_unused_member(*member);
    if (error == ErrorCode::kNameNotUnique) continue;
    if (error == ErrorCode::kOk && manifest_.size() > listed) written_unused_.push_back(name);
    if (error == ErrorCode::kInvalidPath) left_out_ = true;
    if (error == ErrorCode::kInvalidPath) continue;
    if (leave_out_if_damaged(error) != ErrorCode::kOk) return error;
  }
  return ErrorCode::kOk;
}

// A member that nothing refers to is protected like all others: it may be a value that was deleted.
ErrorCode DatabaseSaver::write_unused_member(const ZipMember& member) {
  if (protection_ == nullptr && file_.archive_->encryption(member) == nullptr)
    return copy_member(file_.archive_->zip(), member, member.name);
  return write_contents({{member.name, content_of_member(file_.archive_, member), false}});
}

ErrorCode DatabaseSaver::write_manifest_member() {
  return writer_.add(kManifestName, write_manifest(manifest_), ZipMethod::kDeflated);
}

// From now on the new file is the one that unchanged parts are copied from.
void DatabaseSaver::adopt(const std::string& path) {
  auto archive = std::make_shared<DatabaseArchive>();
  if (archive->open(path) != ErrorCode::kOk) return;
  archive->set_manifest(manifest_);
  if (protection_ != nullptr) archive->set_password(protection_->password);
  for (const auto& [source, name] : written_contents_) {
    if (const ZipMember* member = archive->find(name)) {
      dynamic_cast<const ArchiveContent&>(*source).bind(archive, *member);
    }
  }
  file_.saved_.clear();
  for (const CWorkSheet* table : tables_)
    file_.saved_[table] = {table->revision(), table_member_name(*table)};
  file_.unused_ = std::move(written_unused_);
  file_.archive_ = std::move(archive);
  file_.variant_ = variant_;
  database_.set_name(platform::file_stem(path));
  database_.set_file_path(path);
  if (settings_.tables.empty()) database_.mark_saved();
}

Check check_save_variant(SaveVariant variant) {
  return variant == SaveVariant::kZip32 ? Check::asking(texts::kZip32Limits) : Check();
}

Outcome DatabaseFile::save(const std::string& path, const SaveSettings& settings, const Options& options,
                           Progress& progress) {
  const LogScope log(LogCategory::kSaving, path);
  return DatabaseSaver(*this, settings, options, progress).run(path);
}

ErrorCode DatabaseFile::set_protection(std::optional<Protection> protection) {
  if (read_only_) return ErrorCode::kInvalidPassword;
  database_.before_change();
  protection_ = std::move(protection);
  database_.mark_modified();
  return ErrorCode::kOk;
}

CompactResult compact_database(Database& database, DatabaseFile& file, const Options& options,
                               Progress& progress) {
  CompactResult result;
  bool has_binary_fields = false;
  for (const CWorkSheet* table : database.tables()) {
    for (const Field& field : table->data().fields) {
      has_binary_fields =
          has_binary_fields || field.type == FieldType::kLongText || field.type == FieldType::kFiles;
    }
  }
  if (!has_binary_fields) {
    result.message = MessageId::kNothingToCompact;
  } else if (!file.has_unused_members()) {
    result.message = MessageId::kNoCompactingRequired;
  } else {
    SaveSettings settings;
    settings.drop_unused = true;
    result.outcome() = file.save(database.file_path(), settings, options, progress);
  }
  return result;
}

}  // namespace rowvane

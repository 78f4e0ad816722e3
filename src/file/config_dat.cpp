#include "file/config_dat.h"

#include <unordered_map>

#include "core/database/names.h"
#include "file/config_items.h"
#include "file/objects/arrangement_block.h"
#include "file/objects/drop_down_lists_block.h"
#include "file/objects/kept_objects.h"
#include "file/objects/record_flag_types_block.h"
#include "file/objects/search_keys_block.h"

namespace rowvane {
namespace {

constexpr uint8_t kLinkBit = 0x01;
constexpr uint8_t kEncryptedBit = 0x02;
constexpr uint8_t kHiddenBit = 0x04;
constexpr uint16_t kLayoutWithoutProtection = 1;
constexpr uint16_t kLayoutWithoutSearchKeys = 2;
constexpr uint16_t kLayoutWithoutArrangement = 3;
constexpr uint16_t kLayoutWithoutBlocks = 4;  // the kinds of objects there were stood in a row

// The protection in one byte: 0 for none, otherwise the cipher's number and a bit.
constexpr uint8_t kFirstCipher = 1;
constexpr uint8_t kReadOnlyOpenBit = 0x80;
constexpr uint8_t kCiphers = 2;

// Smallest sizes of stored items: guards against counts that no file can hold.
constexpr size_t kFieldBytes = 30;
constexpr size_t kFlagRunBytes = 6;
constexpr size_t kFolderBytes = 8;
constexpr size_t kTableBytes = 20;

void put_field(const Field& field, ItemWriter& out) {
  out.put_text(field.name);
  out.put_u8(static_cast<uint8_t>(field.type));
  out.put_u8(static_cast<uint8_t>((field.link ? kLinkBit : 0) | (field.encrypted ? kEncryptedBit : 0) |
                                  (field.hidden ? kHiddenBit : 0)));
  for (const std::string* text :
       {&field.formula, &field.validation, &field.default_value, &field.drop_down_list, &field.format}) {
    out.put_text(*text);
  }
  out.put_u16(field.width);
  out.put_u16(field.position);
  if (field.encrypted) out.put_text(field.encryption);
}

void put_protection(const std::optional<StoredProtection>& protection, ItemWriter& out) {
  if (!protection) return out.put_u8(0);
  const auto number = static_cast<uint8_t>(kFirstCipher + static_cast<uint8_t>(protection->algorithm));
  out.put_u8(static_cast<uint8_t>(number | (protection->read_only_open ? kReadOnlyOpenBit : 0)));
}

std::optional<StoredProtection> get_protection(ItemReader& in, bool& valid) {
  const uint8_t byte = in.get_u8();
  if (byte == 0) return std::nullopt;
  const auto number = static_cast<uint8_t>((byte & ~kReadOnlyOpenBit) - kFirstCipher);
  valid = valid && number < kCiphers;
  return StoredProtection{static_cast<CipherAlgorithm>(number), (byte & kReadOnlyOpenBit) != 0};
}

Field get_field(ItemReader& in, bool& valid) {
  Field field;
  field.name = in.get_text();
  const uint8_t type = in.get_u8();
  valid = valid && is_field_type(type) && is_valid_field_name(field.name);
  field.type = static_cast<FieldType>(type);
  const uint8_t bits = in.get_u8();
  valid = valid && (bits & ~(kLinkBit | kEncryptedBit | kHiddenBit)) == 0;
  field.link = (bits & kLinkBit) != 0;
  field.encrypted = (bits & kEncryptedBit) != 0;
  field.hidden = (bits & kHiddenBit) != 0;
  for (std::string* text :
       {&field.formula, &field.validation, &field.default_value, &field.drop_down_list, &field.format}) {
    *text = get_utf8(in);
  }
  field.width = in.get_u16();
  field.position = in.get_u16();
  if (field.encrypted) field.encryption = get_utf8(in);
  return field;
}

std::vector<FlagRun> flag_runs(const TableData& data) {
  std::vector<FlagRun> runs;
  for (const RecordFlags flags : data.flags) {
    if (runs.empty() || runs.back().flags != flags) runs.push_back({0, flags});
    ++runs.back().records;
  }
  return runs;
}

void put_table(const StoredTable& table, ItemWriter& out) {
  out.put_text(table.name);
  out.put_u32(table.folder);
  out.put_u32(table.record_count);
  out.put_u32(static_cast<uint32_t>(table.fields.size()));
  for (const Field& field : table.fields) put_field(field, out);
  out.put_u32(static_cast<uint32_t>(table.flag_runs.size()));
  for (const FlagRun& run : table.flag_runs) {
    out.put_u32(run.records);
    out.put_u16(run.flags);
  }
  write_objects(table.objects, table.later_objects, out);
}

// FLAGS without the number of a type that is no more.
RecordFlags known_flags(RecordFlags flags, size_t flag_types) {
  constexpr RecordFlags kTypeless = (1u << kFlagTypeShift) - 1;
  return static_cast<size_t>(flags >> kFlagTypeShift) <= flag_types ? flags : flags & kTypeless;
}

// What stands before the tables and says how they are to be read.
struct TableContext {
  uint16_t layout;
  size_t folders;
  size_t flag_types;
};

bool get_table_objects(ItemReader& in, uint16_t layout, StoredTable& table) {
  const size_t fields = table.fields.size();
  if (layout > kLayoutWithoutBlocks) return read_objects(in, fields, table.objects, table.later_objects);
  return (layout <= kLayoutWithoutSearchKeys || read_search_keys(in, fields, table.objects)) &&
         (layout <= kLayoutWithoutArrangement || read_arrangement(in, fields, table.objects));
}

StoredTable get_table(ItemReader& in, const TableContext& context, bool& valid) {
  StoredTable table;
  table.name = in.get_text();
  table.folder = in.get_u32();
  table.record_count = in.get_u32();
  const uint32_t fields = in.get_count(kFieldBytes);
  valid = valid && fields > 0 && record_bytes(fields) <= kMaxRecordBytes;
  for (uint32_t i = 0; i < fields && valid && !in.failed(); ++i) table.fields.push_back(get_field(in, valid));
  const uint32_t runs = in.get_count(kFlagRunBytes);
  uint64_t flagged = 0;
  for (uint32_t i = 0; i < runs && !in.failed(); ++i) {
    const uint32_t records = in.get_u32();
    table.flag_runs.push_back({records, known_flags(in.get_u16(), context.flag_types)});
    flagged += records;
  }
  valid = valid && is_valid_table_name(table.name) && table.folder <= context.folders &&
          (runs == 0 || flagged == table.record_count) && has_unique_names(table.fields);
  valid = valid && get_table_objects(in, context.layout, table);
  return table;
}

// What stands between the database's name and its folders.
bool get_database_objects(ItemReader& in, uint16_t layout, DatabaseConfig& config) {
  bool valid = true;
  if (layout > kLayoutWithoutBlocks) {
    config.protection = get_protection(in, valid);
    return valid && read_objects(in, config.settings, config.later_objects);
  }
  valid = read_record_flag_types(in, config.settings) && read_drop_down_lists(in, config.settings);
  if (layout > kLayoutWithoutProtection) config.protection = get_protection(in, valid);
  return valid;
}

// Folders in the order in which a parent stands before what is in it.
void collect_folders(const Folder& folder, std::vector<const Folder*>& all) {
  for (const auto& inner : folder.folders()) {
    all.push_back(inner.get());
    collect_folders(*inner, all);
  }
}

}  // namespace

DatabaseConfig config_of(const Database& database, const std::vector<CWorkSheet*>& tables,
                         const std::string& database_name) {
  DatabaseConfig config;
  config.database_name = database_name;
  config.settings = database.settings();
  config.later_objects = kept_later_objects(database);
  std::vector<const Folder*> folders;
  collect_folders(database.root(), folders);
  std::unordered_map<const Folder*, uint32_t> numbers = {{&database.root(), 0}};
  for (const Folder* folder : folders) {
    config.folders.push_back({folder->name(), numbers.at(folder->parent())});
    numbers.emplace(folder, static_cast<uint32_t>(config.folders.size()));
  }
  for (const CWorkSheet* table : tables) {
    config.tables.push_back({table->name(), numbers.at(table->folder()), table->record_count(),
                             table->data().fields, flag_runs(table->data()), table->data().objects,
                             kept_later_objects(*table)});
  }
  return config;
}

std::string write_config(const DatabaseConfig& config) {
  ItemWriter out;
  out.put_u16(kConfigLayout);
  out.put_text(config.database_name);
  put_protection(config.protection, out);
  write_objects(config.settings, config.later_objects, out);
  out.put_u32(static_cast<uint32_t>(config.folders.size()));
  for (const StoredFolder& folder : config.folders) {
    out.put_u32(folder.parent);
    out.put_text(folder.name);
  }
  out.put_u32(static_cast<uint32_t>(config.tables.size()));
  for (const StoredTable& table : config.tables) put_table(table, out);
  return out.bytes();
}

ErrorCode read_config(std::string_view bytes, DatabaseConfig& config) {
  ItemReader in(bytes);
  config = {};
  const uint16_t layout = in.get_u16();
  if (layout > kConfigLayout) return ErrorCode::kNewerVersion;
  config.database_name = in.get_text();
  bool valid = layout >= kLayoutWithoutProtection && get_database_objects(in, layout, config);
  const uint32_t folders = in.get_count(kFolderBytes);
  for (uint32_t i = 0; i < folders && valid && !in.failed(); ++i) {
    const uint32_t parent = in.get_u32();
    config.folders.push_back({in.get_text(), parent});
    valid = parent <= i && is_valid_table_name(config.folders.back().name);
  }
  const uint32_t tables = in.get_count(kTableBytes);
  const TableContext context{layout, folders, config.settings.record_flag_types.size()};
  for (uint32_t i = 0; i < tables && valid && !in.failed(); ++i) {
    config.tables.push_back(get_table(in, context, valid));
  }
  return valid && !in.failed() && in.at_end() ? ErrorCode::kOk : ErrorCode::kInvalidBinaryFormat;
}

}  // namespace rowvane

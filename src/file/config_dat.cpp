#include "file/config_dat.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "core/database/names.h"
#include "core/utf8.h"
#include "platform/characters.h"
#include "zip/byte_stream.h"

namespace rowvane {
namespace {

constexpr uint8_t kLinkBit = 0x01;
constexpr uint8_t kEncryptedBit = 0x02;
constexpr uint8_t kHiddenBit = 0x04;
constexpr uint16_t kLayoutWithoutProtection = 1;
constexpr uint16_t kLayoutWithoutSearchKeys = 2;
constexpr uint16_t kLayoutWithoutArrangement = 3;

// The protection in one byte: 0 for none, otherwise the cipher's number and a bit.
constexpr uint8_t kFirstCipher = 1;
constexpr uint8_t kReadOnlyOpenBit = 0x80;
constexpr uint8_t kCiphers = 2;

// Smallest sizes of stored items: guards against counts that no file can hold.
constexpr size_t kTextBytes = 4;
constexpr size_t kFieldBytes = 30;
constexpr size_t kFlagRunBytes = 6;
constexpr size_t kSearchKeyBytes = 8;
constexpr size_t kSearchExpressionBytes = 6;
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

std::string get_utf8(ItemReader& in) {
  std::string text = in.get_text();
  return is_valid_utf8(text) ? text : repair_utf8(text);
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

void put_search_keys(const std::vector<SearchKey>& keys, ItemWriter& out) {
  out.put_u32(static_cast<uint32_t>(keys.size()));
  for (const SearchKey& key : keys) {
    out.put_text(key.name);
    out.put_u32(static_cast<uint32_t>(key.expressions.size()));
    for (const SearchExpression& expression : key.expressions) {
      out.put_u16(expression.field);
      out.put_text(expression.criterion);
    }
  }
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
  put_search_keys(table.search_keys, out);
  out.put_u16(static_cast<uint16_t>(table.arrangement.lines));
  out.put_u16(table.arrangement.frozen_fields);
  out.put_u32(table.arrangement.frozen_records);
}

template <typename Named>
bool has_unique_names(const std::vector<Named>& all) {
  std::unordered_set<std::string> names;
  return std::all_of(all.begin(), all.end(), [&names](const Named& one) {
    return names.insert(platform::fold_case(one.name)).second;
  });
}

std::vector<SearchKey> get_search_keys(ItemReader& in, size_t fields, bool& valid) {
  std::vector<SearchKey> keys;
  const uint32_t count = in.get_count(kSearchKeyBytes);
  for (uint32_t i = 0; i < count && valid && !in.failed(); ++i) {
    SearchKey& key = keys.emplace_back(SearchKey{in.get_text(), {}});
    const uint32_t expressions = in.get_count(kSearchExpressionBytes);
    for (uint32_t k = 0; k < expressions && !in.failed(); ++k) {
      const uint16_t field = in.get_u16();
      key.expressions.push_back({field, in.get_text()});
    }
    valid = is_valid_search_key_name(key.name) && are_valid_expressions(key.expressions, fields);
  }
  valid = valid && has_unique_names(keys);
  return keys;
}

GridArrangement get_arrangement(ItemReader& in, bool& valid) {
  GridArrangement arrangement;
  arrangement.lines = in.get_u16();
  arrangement.frozen_fields = in.get_u16();
  arrangement.frozen_records = in.get_u32();
  valid = valid && arrangement.lines >= 1 && arrangement.lines <= kMaxRecordLines;
  return arrangement;
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
  if (context.layout > kLayoutWithoutSearchKeys) table.search_keys = get_search_keys(in, fields, valid);
  if (context.layout > kLayoutWithoutArrangement) table.arrangement = get_arrangement(in, valid);
  return table;
}

void put_settings(const DatabaseSettings& settings, ItemWriter& out) {
  out.put_u32(static_cast<uint32_t>(settings.record_flag_types.size()));
  for (const RecordFlagType& type : settings.record_flag_types) {
    out.put_text(type.name);
    out.put_u32(type.color);
  }
  out.put_u32(static_cast<uint32_t>(settings.drop_down_lists.size()));
  for (const DropDownList& list : settings.drop_down_lists) {
    out.put_text(list.name);
    out.put_u32(static_cast<uint32_t>(list.items.size()));
    for (const std::string& item : list.items) out.put_text(item);
  }
}

DatabaseSettings get_settings(ItemReader& in) {
  DatabaseSettings settings;
  const uint32_t types = in.get_count(2 * kTextBytes);
  for (uint32_t i = 0; i < types && !in.failed(); ++i) {
    std::string name = get_utf8(in);
    settings.record_flag_types.push_back({std::move(name), in.get_u32()});
  }
  const uint32_t lists = in.get_count(2 * kTextBytes);
  for (uint32_t i = 0; i < lists && !in.failed(); ++i) {
    DropDownList list{get_utf8(in), {}};
    const uint32_t items = in.get_count(kTextBytes);
    for (uint32_t k = 0; k < items && !in.failed(); ++k) list.items.push_back(get_utf8(in));
    settings.drop_down_lists.push_back(std::move(list));
  }
  return settings;
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
  std::vector<const Folder*> folders;
  collect_folders(database.root(), folders);
  std::unordered_map<const Folder*, uint32_t> numbers = {{&database.root(), 0}};
  for (const Folder* folder : folders) {
    config.folders.push_back({folder->name(), numbers.at(folder->parent())});
    numbers.emplace(folder, static_cast<uint32_t>(config.folders.size()));
  }
  for (const CWorkSheet* table : tables) {
    config.tables.push_back({table->name(), numbers.at(table->folder()), table->record_count(),
                             table->data().fields, flag_runs(table->data()), table->search_keys(),
                             table->arrangement()});
  }
  return config;
}

std::string write_config(const DatabaseConfig& config) {
  ItemWriter out;
  out.put_u16(kConfigLayout);
  out.put_text(config.database_name);
  put_settings(config.settings, out);
  put_protection(config.protection, out);
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
  bool valid = layout >= kLayoutWithoutProtection;
  config.database_name = in.get_text();
  config.settings = get_settings(in);
  if (layout > kLayoutWithoutProtection) config.protection = get_protection(in, valid);
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

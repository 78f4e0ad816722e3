#include "core/table/work_sheet.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <numeric>

#include "core/database/database.h"
#include "core/database/names.h"
#include "core/table/field_hooks.h"
#include "core/table/table_changes.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

std::vector<Column> make_columns(const std::vector<Field>& fields) {
  std::vector<Column> columns;
  for (const Field& field : fields) columns.push_back(make_column(field.type));
  return columns;
}

uint64_t next_revision() {
  static std::atomic<uint64_t> last = 0;
  return ++last;
}

std::vector<FieldId> new_field_ids(size_t count) {
  static std::atomic<FieldId> last = 0;
  std::vector<FieldId> ids(count);
  for (FieldId& id : ids) id = ++last;
  return ids;
}

// A column of COUNT cells that all hold FIELD's default value. Those of an encrypted field are empty: nobody
// can encrypt the value without the password.
Column default_cells(const Field& field, uint32_t count) {
  Column column = make_column(field.type);
  resize_column(column, count);
  const CellValue value = field.encrypted ? CellValue() : default_value_of(field);
  for (uint32_t i = 0; !is_empty(value) && i < count; ++i) store_value(column, i, value);
  return column;
}

ErrorCode validate_files(const FileList& files) {
  if (files.size() > kMaxContainerObjects) return ErrorCode::kTooManyContainerObjects;
  for (size_t i = 0; i < files.size(); ++i) {
    const std::string& name = files[i].name;
    if (!is_valid_file_name(name) || !is_valid_shortcut(files[i].shortcut)) return ErrorCode::kNoFileName;
    const auto same = [&name](const FileObject& other) { return same_name(name, other.name); };
    if (std::any_of(files.begin(), files.begin() + static_cast<std::ptrdiff_t>(i), same)) {
      return ErrorCode::kNameNotUnique;
    }
  }
  return ErrorCode::kOk;
}

}  // namespace

CWorkSheet::CWorkSheet(std::string name, TableData data)
    : name_(std::move(name)), data_(std::move(data)), revision_(next_revision()) {
  std::vector<FieldId> ids = new_field_ids(data_.fields.size());
  LaterTableObjects& later = data_.later_objects;
  if (later.are_valid(data_.fields, data_.field_ids)) {
    later.set_fields(data_.fields, ids);
  } else if (!data_.field_ids.empty()) {
    later.kinds.clear();  // they stay with the table that DATA is copied from, where undo finds them
  }
  data_.field_ids = std::move(ids);
}

CWorkSheet::CWorkSheet(std::string name, std::vector<Field> fields)
    : name_(std::move(name)), revision_(next_revision()) {
  data_.columns = make_columns(fields);
  data_.field_ids = new_field_ids(fields.size());
  data_.fields = std::move(fields);
}

CWorkSheet::~CWorkSheet() = default;

std::string CWorkSheet::path() const {
  return folder_ != nullptr ? Database::join_path(folder_->path(), name_) : name_;
}

std::optional<size_t> CWorkSheet::find_field(std::string_view name) const {
  for (size_t i = 0; i < data_.fields.size(); ++i) {
    if (data_.fields[i].name == name) return i;
  }
  for (size_t i = 0; i < data_.fields.size(); ++i) {
    if (same_name(data_.fields[i].name, name)) return i;
  }
  return std::nullopt;
}

std::optional<size_t> CWorkSheet::find_field_with_id(FieldId id) const {
  const auto found = std::find(data_.field_ids.begin(), data_.field_ids.end(), id);
  if (found == data_.field_ids.end()) return std::nullopt;
  return static_cast<size_t>(found - data_.field_ids.begin());
}

CellValue CWorkSheet::value(RecordNumber record, size_t field) const {
  return cell_value(data_.columns[field], record.position());
}

std::string CWorkSheet::value_text(RecordNumber record, size_t field,
                                   const NumberSeparators& separators) const {
  const CellValue cell = value(record, field);
  if (const auto* number = std::get_if<double>(&cell)) return number_cell_text(*number, separators);
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  std::string text;
  if (const auto* files = std::get_if<FileList>(&cell)) append_file_names(*files, text);
  if (const auto* content = std::get_if<Content>(&cell)) {
    if (content->read(text) != ErrorCode::kOk) text.clear();
  }
  return text;
}

void CWorkSheet::touch() {
  revision_ = next_revision();
}

void CWorkSheet::before_change() {
  if (database_ != nullptr) database_->before_change();
}

void CWorkSheet::apply(std::unique_ptr<Change> change) {
  before_change();
  change->toggle();
  if (database_ != nullptr) database_->record(std::move(change), this);
}

template <typename Tell>
void CWorkSheet::apply_and_tell(std::unique_ptr<Change> change, const Tell& tell) {
  const FieldHooks* hooks = database_ != nullptr ? database_->hooks() : nullptr;
  if (hooks == nullptr) return apply(std::move(change));
  const ChangeGroup group(*database_, {});
  apply(std::move(change));
  tell(*hooks);
}

ErrorCode CWorkSheet::require_editable_field(size_t field) const {
  if (field >= field_count()) return ErrorCode::kInvalidCacheIndex;
  return data_.fields[field].encrypted ? ErrorCode::kEncryptedField : ErrorCode::kOk;
}

ErrorCode CWorkSheet::validate_new_name(std::string_view name, std::optional<size_t> own_index) const {
  if (!is_valid_field_name(name)) return ErrorCode::kFieldTypeMismatch;
  const auto taken = find_field(name);
  return taken && taken != own_index ? ErrorCode::kNameNotUnique : ErrorCode::kOk;
}

ErrorCode CWorkSheet::insert_field(size_t index, Field field) {
  if (index > field_count()) return ErrorCode::kInvalidCacheIndex;
  if (const auto error = validate_new_name(field.name, std::nullopt); error != ErrorCode::kOk) return error;
  if (record_bytes(field_count() + 1) > kMaxRecordBytes) return ErrorCode::kRecordSize;
  Column column = make_column(field.type);
  resize_column(column, record_count());
  auto change = std::make_unique<FieldPresenceChange>(*this, index, std::move(field),
                                                      new_field_ids(1).front(), std::move(column));
  apply_and_tell(std::move(change), [&](const FieldHooks& hooks) { hooks.field_changed(*this, index); });
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::rename_field(size_t index, std::string name) {
  if (index >= field_count()) return ErrorCode::kInvalidCacheIndex;
  if (const auto error = validate_new_name(name, index); error != ErrorCode::kOk) return error;
  Field renamed = data_.fields[index];
  renamed.name = std::move(name);
  auto change = std::make_unique<FieldChange>(*this, index, std::move(renamed));
  if (database_ == nullptr) {
    apply(std::move(change));
  } else {
    database_->rename([&] { apply(std::move(change)); });
  }
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::delete_field(size_t index) {
  if (index >= field_count()) return ErrorCode::kInvalidCacheIndex;
  if (field_count() == 1) return ErrorCode::kLastField;
  apply_and_tell(std::make_unique<FieldPresenceChange>(*this, index),
                 [&](const FieldHooks& hooks) { hooks.names_deleted(); });
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::move_field(size_t from, size_t to) {
  if (from >= field_count() || to >= field_count()) return ErrorCode::kInvalidCacheIndex;
  if (from != to) apply(std::make_unique<FieldMoveChange>(*this, from, to));
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::change_field(size_t index, Field definition) {
  if (index >= field_count()) return ErrorCode::kInvalidCacheIndex;
  const Field& present = data_.fields[index];
  definition.name = present.name;
  definition.type = present.type;
  definition.encrypted = present.encrypted;
  definition.encryption = present.encryption;
  if (definition == present) return ErrorCode::kOk;
  const bool new_formula = definition.formula != present.formula;
  apply_and_tell(std::make_unique<FieldChange>(*this, index, std::move(definition)),
                 [&](const FieldHooks& hooks) {
                   if (new_formula) hooks.field_changed(*this, index);
                 });
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::store_results(size_t field, Column cells) {
  if (field >= field_count() || column_size(cells) != record_count()) return ErrorCode::kInvalidCacheIndex;
  if (cells.index() != data_.columns[field].index()) return ErrorCode::kFieldTypeMismatch;
  apply(std::make_unique<FieldChange>(*this, field, Field(data_.fields[field]), std::move(cells)));
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::store_results(size_t field, std::vector<uint32_t> positions, Column cells) {
  if (field >= field_count() || column_size(cells) != positions.size()) return ErrorCode::kInvalidCacheIndex;
  if (cells.index() != data_.columns[field].index()) return ErrorCode::kFieldTypeMismatch;
  const auto is_missing = [this](uint32_t position) { return position >= record_count(); };
  if (std::ranges::any_of(positions, is_missing)) return ErrorCode::kInvalidCacheIndex;
  if (!positions.empty()) {
    apply(std::make_unique<CellsChange>(*this, field, std::move(positions), std::move(cells)));
  }
  return ErrorCode::kOk;
}

void CWorkSheet::rewrite_formulas(size_t field, std::string formula, std::string validation) {
  Field definition = data_.fields[field];
  definition.formula = std::move(formula);
  definition.validation = std::move(validation);
  apply(std::make_unique<FieldChange>(*this, field, std::move(definition)));
}

void CWorkSheet::store_outcomes(std::span<const RecordFlags> outcomes) {
  before_change();
  if (data_.flags.empty()) data_.flags.resize(data_.record_count, RecordFlags{0});
  for (size_t i = 0; i < data_.flags.size() && i < outcomes.size(); ++i) {
    const unsigned kept = data_.flags[i] & ~static_cast<unsigned>(kOutcomeMask);
    data_.flags[i] = static_cast<RecordFlags>(kept | (outcomes[i] & static_cast<unsigned>(kOutcomeMask)));
  }
}

ErrorCode CWorkSheet::replace_column(size_t index, Field definition, Column column) {
  if (index >= field_count() || column_size(column) != record_count()) return ErrorCode::kInvalidCacheIndex;
  if (column.index() != make_column(definition.type).index()) return ErrorCode::kFieldTypeMismatch;
  definition.name = data_.fields[index].name;
  apply_and_tell(std::make_unique<FieldChange>(*this, index, std::move(definition), std::move(column)),
                 [&](const FieldHooks& hooks) { hooks.field_changed(*this, index); });
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::validate_value(RecordNumber record, size_t field, const CellValue& value) const {
  if (record.position() >= record_count()) return ErrorCode::kInvalidCacheIndex;
  if (const auto error = require_editable_field(field); error != ErrorCode::kOk) return error;
  if (!fits_column(data_.columns[field], value)) return ErrorCode::kFieldTypeMismatch;
  ErrorCode error = ErrorCode::kOk;
  if (const auto* number = std::get_if<double>(&value); number != nullptr && std::isinf(*number)) {
    error = ErrorCode::kFieldTypeMismatch;
  }
  if (const auto* text = std::get_if<std::string>(&value)) error = validate_text(*text);
  if (const auto* files = std::get_if<FileList>(&value)) error = validate_files(*files);
  if (error != ErrorCode::kOk) return error;
  const FieldHooks* hooks = database_ != nullptr ? database_->hooks() : nullptr;
  if (hooks != nullptr && !data_.fields[field].validation.empty() &&
      !hooks->accepts(*this, record, field, value)) {
    return ErrorCode::kValidation;
  }
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::set_value(RecordNumber record, size_t field, const CellValue& value) {
  if (const auto error = validate_value(record, field, value); error != ErrorCode::kOk) return error;
  Column cell = make_column(data_.fields[field].type);
  resize_column(cell, 1);
  store_value(cell, 0, value);
  const std::vector<uint32_t> position{record.position()};
  apply_and_tell(std::make_unique<CellsChange>(*this, field, position, std::move(cell)),
                 [&](const FieldHooks& hooks) { hooks.values_changed(*this, field, position); });
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::set_values(size_t field, std::vector<uint32_t> positions, Column cells,
                                 std::vector<RefusedValue>& refused) {
  if (const auto error = require_editable_field(field); error != ErrorCode::kOk) return error;
  if (column_size(cells) != positions.size()) return ErrorCode::kInvalidCacheIndex;
  if (cells.index() != data_.columns[field].index()) return ErrorCode::kFieldTypeMismatch;
  std::vector<uint32_t> kept;  // indices into CELLS
  for (uint32_t i = 0; i < positions.size(); ++i) {
    const ErrorCode error = validate_value(record_number(positions[i]), field, cell_value(cells, i));
    if (error == ErrorCode::kOk) {
      kept.push_back(i);
    } else {
      refused.push_back({positions[i], error});
    }
  }
  if (kept.empty()) return ErrorCode::kOk;
  if (kept.size() < positions.size()) {
    cells = select_cells(cells, kept);
    std::vector<uint32_t> kept_positions;
    for (const uint32_t i : kept) kept_positions.push_back(positions[i]);
    positions = std::move(kept_positions);
  }
  apply_and_tell(std::make_unique<CellsChange>(*this, field, positions, std::move(cells)),
                 [&](const FieldHooks& hooks) {
                   std::ranges::sort(positions);
                   hooks.values_changed(*this, field, positions);
                 });
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::insert_records(RecordNumber before, uint32_t count) {
  if (before.position() > record_count()) return ErrorCode::kInvalidCacheIndex;
  const uint32_t limit = database_ != nullptr ? database_->max_records() : kDefaultMaxRecords;
  if (count > limit || record_count() > limit - count) return ErrorCode::kTooManyRecords;
  if (count == 0) return ErrorCode::kOk;
  std::vector<uint32_t> positions(count);
  std::iota(positions.begin(), positions.end(), before.position());
  std::vector<Column> cells;
  for (const Field& field : data_.fields) cells.push_back(default_cells(field, count));
  apply_and_tell(std::make_unique<RecordsChange>(*this, positions, std::move(cells)),
                 [&](const FieldHooks& hooks) { hooks.values_changed(*this, std::nullopt, positions); });
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::delete_records(std::span<const uint32_t> positions) {
  const bool ascending =
      std::adjacent_find(positions.begin(), positions.end(), std::greater_equal<>()) == positions.end();
  if (!ascending || (!positions.empty() && positions.back() >= record_count()))
    return ErrorCode::kInvalidCacheIndex;
  if (positions.empty()) return ErrorCode::kOk;
  apply_and_tell(
      std::make_unique<RecordsChange>(*this, std::vector<uint32_t>(positions.begin(), positions.end())),
      [&](const FieldHooks& hooks) { hooks.values_changed(*this, std::nullopt, {}); });
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::set_flag_type(std::span<const uint32_t> positions, int type) {
  const size_t types = database_ != nullptr ? database_->settings().record_flag_types.size() : 0;
  if (type < 0 || static_cast<size_t>(type) > types) return ErrorCode::kInvalidCacheIndex;
  const auto is_missing = [this](uint32_t position) { return position >= record_count(); };
  if (std::any_of(positions.begin(), positions.end(), is_missing)) return ErrorCode::kInvalidCacheIndex;
  if (positions.empty()) return ErrorCode::kOk;
  std::vector<uint32_t> once(positions.begin(), positions.end());
  std::sort(once.begin(), once.end());
  once.erase(std::unique(once.begin(), once.end()), once.end());
  std::vector<RecordFlags> new_flags;
  for (const uint32_t position : once) {
    const RecordFlags rest = flags(record_number(position)) & ((1u << kFlagTypeShift) - 1);
    new_flags.push_back(static_cast<RecordFlags>(rest | static_cast<unsigned>(type) << kFlagTypeShift));
  }
  apply(std::make_unique<FlagsChange>(*this, std::move(once), std::move(new_flags)));
  return ErrorCode::kOk;
}

std::optional<size_t> CWorkSheet::find_search_key(std::string_view name) const {
  const auto& keys = data_.objects.search_keys;
  const auto found =
      std::ranges::find_if(keys, [name](const SearchKey& key) { return same_name(key.name, name); });
  return found == keys.end() ? std::nullopt : std::optional(static_cast<size_t>(found - keys.begin()));
}

ErrorCode CWorkSheet::validate_search_key_name(std::string_view name, std::optional<size_t> own_index) const {
  if (!is_valid_search_key_name(name)) return ErrorCode::kFieldTypeMismatch;
  const auto taken = find_search_key(name);
  return taken && taken != own_index ? ErrorCode::kNameNotUnique : ErrorCode::kOk;
}

void CWorkSheet::replace_search_keys(std::vector<SearchKey> keys) {
  if (keys != data_.objects.search_keys) apply(std::make_unique<SearchKeysChange>(*this, std::move(keys)));
}

void CWorkSheet::change_arrangement(GridArrangement arrangement) {
  arrangement.lines = std::clamp(arrangement.lines, 1, kMaxRecordLines);
  if (arrangement != data_.objects.arrangement)
    apply(std::make_unique<ArrangementChange>(*this, arrangement));
}

ErrorCode CWorkSheet::add_search_key(SearchKey key) {
  if (const auto error = validate_search_key_name(key.name, std::nullopt); error != ErrorCode::kOk)
    return error;
  if (!are_valid_expressions(key.expressions, field_count())) return ErrorCode::kFieldTypeMismatch;
  std::vector<SearchKey> keys = data_.objects.search_keys;
  keys.push_back(std::move(key));
  replace_search_keys(std::move(keys));
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::rename_search_key(size_t index, std::string name) {
  if (index >= data_.objects.search_keys.size()) return ErrorCode::kInvalidCacheIndex;
  if (const auto error = validate_search_key_name(name, index); error != ErrorCode::kOk) return error;
  std::vector<SearchKey> keys = data_.objects.search_keys;
  keys[index].name = std::move(name);
  replace_search_keys(std::move(keys));
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::change_search_key(size_t index, std::vector<SearchExpression> expressions) {
  if (index >= data_.objects.search_keys.size()) return ErrorCode::kInvalidCacheIndex;
  if (!are_valid_expressions(expressions, field_count())) return ErrorCode::kFieldTypeMismatch;
  std::vector<SearchKey> keys = data_.objects.search_keys;
  keys[index].expressions = std::move(expressions);
  replace_search_keys(std::move(keys));
  return ErrorCode::kOk;
}

ErrorCode CWorkSheet::delete_search_key(size_t index) {
  if (index >= data_.objects.search_keys.size()) return ErrorCode::kInvalidCacheIndex;
  std::vector<SearchKey> keys = data_.objects.search_keys;
  keys.erase(keys.begin() + static_cast<std::ptrdiff_t>(index));
  replace_search_keys(std::move(keys));
  return ErrorCode::kOk;
}

void CWorkSheet::clean_pools() {
  before_change();
  for (Column& column : data_.columns) clean_pool(column);
}

CellValue default_value_of(const Field& field) {
  const std::string& text = field.default_value;
  if (text.empty() || validate_text(text) != ErrorCode::kOk) return {};
  switch (field.type) {
    case FieldType::kText:
      return text;
    case FieldType::kNumber: {
      const FormulaError error = formula_error_named(text);
      if (error != FormulaError::kNone) return error_number(error);
      const auto number = parse_number(text, NumberSeparators());
      return number ? CellValue(*number) : CellValue();
    }
    case FieldType::kLongText:
    case FieldType::kCode:
      return Content::of(text);
    case FieldType::kFiles:
      break;
  }
  return {};
}

ErrorCode validate_text(std::string_view text) {
  if (!is_valid_utf8(text)) return ErrorCode::kInvalidUtf8;
  return count_characters(text) > kMaxTextCharacters ? ErrorCode::kOutputTooLong : ErrorCode::kOk;
}

TextEntry read_text_entry(std::string_view text) {
  constexpr size_t kMaxEntryBytes = 8192;
  TextEntry entry;
  if (count_characters(text) >= kEntryWarningCharacters || text.size() > kMaxEntryBytes)
    entry.warning = texts::kEntryTruncated;
  entry.text = truncate_bytes(truncate_characters(text, kMaxTextCharacters), kMaxEntryBytes);
  return entry;
}

}  // namespace rowvane

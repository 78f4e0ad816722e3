// A table: a grid of records and typed fields.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/messages/error_code.h"
#include "core/messages/user_text.h"
#include "core/table/record_number.h"
#include "core/table/table_data.h"
#include "core/values/number_text.h"

namespace rowvane {

class Change;
class Database;
class Folder;

// A value that was not stored, by the position of its record.
struct RefusedValue {
  uint32_t position = 0;
  ErrorCode error = ErrorCode::kOk;

  bool operator==(const RefusedValue&) const = default;
};

// Fields are addressed by their 0-based index, records by their number or by their positions. All changes
// check the rules, can be undone while the table belongs to a database, and are told to its observers.
//
// Errors: kInvalidCacheIndex for a field or record that is not there; kEncryptedField for a change to an
// encrypted field; others as named. A change that fails changes nothing.
class CWorkSheet {
 public:
  // A table that belongs to no database yet. DATA must be consistent: at least one field, as many columns,
  // all of record_count cells. The fields get identities of their own. Of another table's data it takes the
  // objects too.
  CWorkSheet(std::string name, TableData data);
  // A table without records.
  CWorkSheet(std::string name, std::vector<Field> fields);
  ~CWorkSheet();
  CWorkSheet(const CWorkSheet&) = delete;
  CWorkSheet& operator=(const CWorkSheet&) = delete;

  const std::string& name() const { return name_; }
  // Folder names and the table name joined with "/".
  std::string path() const;
  Database* database() const { return database_; }
  Folder* folder() const { return folder_; }

  const TableData& data() const { return data_; }
  uint32_t record_count() const { return data_.record_count; }
  // The number behind that of the last record.
  RecordNumber end_record() const { return record_number(record_count()); }
  size_t field_count() const { return data_.fields.size(); }
  const Field& field(size_t index) const { return data_.fields[index]; }
  const Column& column(size_t index) const { return data_.columns[index]; }
  // Letter case does not matter.
  std::optional<size_t> find_field(std::string_view name) const;
  FieldId field_id(size_t index) const { return data_.field_ids[index]; }
  // Nothing when the field is deleted.
  std::optional<size_t> find_field_with_id(FieldId id) const;

  CellValue value(RecordNumber record, size_t field) const;
  // The value as text: numbers in SEPARATORS, errors by their names, long texts whole (empty when
  // unreadable), files as their names joined by "; ".
  std::string value_text(RecordNumber record, size_t field, const NumberSeparators& separators = {}) const;

  RecordFlags flags(RecordNumber record) const {
    return data_.flags.empty() ? RecordFlags{0} : data_.flags[record.position()];
  }
  const std::vector<SearchKey>& search_keys() const { return data_.objects.search_keys; }
  // Letter case does not matter.
  std::optional<size_t> find_search_key(std::string_view name) const;

  // Number of the record's flag type, 0 for none.
  int flag_type(RecordNumber record) const { return flags(record) >> kFlagTypeShift; }

  // Inserts FIELD at INDEX. kNameNotUnique, kFieldTypeMismatch for an invalid name, kRecordSize.
  ErrorCode insert_field(size_t index, Field field);
  ErrorCode rename_field(size_t index, std::string name);
  // kLastField.
  ErrorCode delete_field(size_t index);
  ErrorCode move_field(size_t from, size_t to);
  // Replaces everything but the name, the type and the encryption: those change by rename_field,
  // convert_field, encrypt_fields and decrypt_fields.
  ErrorCode change_field(size_t index, Field definition);
  // Replaces the column of a field and, with it, its type: conversions and encryption. The
  // column must be of the kind that TYPE has and of record_count() cells.
  ErrorCode replace_column(size_t index, Field definition, Column column);

  // Stores what a calculated field's formula gave for the records at these positions: CELLS, of the
  // field's kind, hold the values in their order. No rule for entered values is checked.
  ErrorCode store_results(size_t field, std::vector<uint32_t> positions, Column cells);
  // The same for all records.
  ErrorCode store_results(size_t field, Column cells);
  // Stores the formulas of a field with other names for the same things; nothing is worked out anew.
  void rewrite_formulas(size_t field, std::string formula, std::string validation);
  // Keeps the outcome of a per-record pass in the flag words of all records. Not a change: nothing that the
  // stored form shows differs.
  void store_outcomes(std::span<const RecordFlags> outcomes);

  // kFieldTypeMismatch when VALUE is not of the field's kind or an infinite number, kOutputTooLong for a text
  // of more than 8169 characters, kTooManyContainerObjects, kInvalidUtf8, kValidation.
  ErrorCode set_value(RecordNumber record, size_t field, const CellValue& value);
  // Stores CELLS, of the field's kind, in the records at these positions, each there once, as one
  // change. Cells that set_value would refuse are left out and listed in REFUSED.
  ErrorCode set_values(size_t field, std::vector<uint32_t> positions, Column cells,
                       std::vector<RefusedValue>& refused);
  // Inserts COUNT records with the fields' default values (encrypted fields are empty) before record BEFORE
  // (end_record(): at the end). kTooManyRecords.
  ErrorCode insert_records(RecordNumber before, uint32_t count);
  // Deletes the records at these positions, which ascend.
  ErrorCode delete_records(std::span<const uint32_t> positions);
  // Gives records the flag type of this number; 0 takes it away. kInvalidCacheIndex when
  // the database has no such type.
  ErrorCode set_flag_type(std::span<const uint32_t> positions, int type);

  // Search keys are addressed by their 0-based index; their expressions follow the fields when those are
  // inserted, deleted and moved. Errors: kNameNotUnique; kFieldTypeMismatch for a name or for expressions
  // that no key can have.
  ErrorCode add_search_key(SearchKey key);
  ErrorCode rename_search_key(size_t index, std::string name);
  ErrorCode change_search_key(size_t index, std::vector<SearchExpression> expressions);
  ErrorCode delete_search_key(size_t index);

  const GridArrangement& arrangement() const { return data_.objects.arrangement; }
  // The number of lines is brought into its range.
  void change_arrangement(GridArrangement arrangement);

  // What set_value would answer.
  ErrorCode validate_value(RecordNumber record, size_t field, const CellValue& value) const;

  // Changes with every change to fields and records that the table's stored form shows. No two tables ever
  // have the same number: equal numbers mean the same table with equal content.
  uint64_t revision() const { return revision_; }
  // Drops texts and values that no record uses. Not a change: nothing that can be seen differs.
  void clean_pools();

 private:
  friend class Database;

  ErrorCode require_editable_field(size_t field) const;
  ErrorCode validate_new_name(std::string_view name, std::optional<size_t> own_index) const;
  ErrorCode validate_search_key_name(std::string_view name, std::optional<size_t> own_index) const;
  void replace_search_keys(std::vector<SearchKey> keys);
  void before_change();
  void apply(std::unique_ptr<Change> change);
  // Applies CHANGE and, as part of the same undo step, what TELL makes the hooks do.
  template <typename Tell>
  void apply_and_tell(std::unique_ptr<Change> change, const Tell& tell);
  void touch();

  std::string name_;
  Database* database_ = nullptr;
  Folder* folder_ = nullptr;
  TableData data_;
  uint64_t revision_;

  friend class TableChange;
};

// What new records have in FIELD: its default value, whose numbers are stored with a decimal point. Empty
// where it is no value of the field, and in Images/Files.
CellValue default_value_of(const Field& field);

// The rules for TEXT as a value of a Text field: kInvalidUtf8; kOutputTooLong for more than 8169 characters.
ErrorCode validate_text(std::string_view text);

// A text as it was entered, cut to what its place can hold with no character halved.
struct TextEntry {
  std::string text;
  UserText warning;  // texts::kEntryTruncated where it is too long
};
// Into a Text field: 8169 characters and 8192 bytes; the warning comes from 8164 characters on.
TextEntry read_text_entry(std::string_view text);

}  // namespace rowvane

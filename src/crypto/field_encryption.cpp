#include "crypto/field_encryption.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <functional>
#include <new>
#include <set>

#include "core/database/database.h"
#include "core/parallel_blocks.h"
#include "core/values/base64.h"
#include "crypto/field_cipher.h"

namespace rowvane {
namespace {

constexpr std::string_view kEncryptedFileEnd = ".encrypted";
constexpr size_t kLengthBytes = 4;

bool is_in_record(FieldType type) {
  return !is_outside_record(type);
}

// The plain bytes of values.

void append_number(uint64_t number, size_t bytes, std::string& out) {
  for (size_t i = 0; i < bytes; ++i) out += static_cast<char>(static_cast<unsigned char>(number >> (8 * i)));
}

uint64_t number_of(std::string_view bytes) {
  uint64_t number = 0;
  for (size_t i = 0; i < bytes.size(); ++i)
    number |= uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
  return number;
}

std::string pack_double(double number) {
  std::string bytes;
  append_number(std::bit_cast<uint64_t>(number), sizeof number, bytes);
  return bytes;
}

ErrorCode pack_file(const FileObject& file, std::string& out) {
  for (const std::string* text : {&file.name, &file.shortcut}) {
    append_number(text->size(), kLengthBytes, out);
    out += *text;
  }
  std::string content;
  const ErrorCode error = file.content.read(content);
  out += content;
  return error;
}

bool take_text(std::string_view& bytes, std::string& text) {
  if (bytes.size() < kLengthBytes) return false;
  const uint64_t length = number_of(bytes.substr(0, kLengthBytes));
  bytes.remove_prefix(kLengthBytes);
  if (bytes.size() < length) return false;
  text = bytes.substr(0, static_cast<size_t>(length));
  bytes.remove_prefix(static_cast<size_t>(length));
  return true;
}

bool unpack_file(std::string_view bytes, FileObject& file) {
  if (!take_text(bytes, file.name) || !take_text(bytes, file.shortcut)) return false;
  file.content = file.is_shortcut() ? Content() : Content::of(std::string(bytes));
  return true;
}

// One value in its two forms; an empty value stays empty.

ErrorCode encrypt_text(FieldCipher& cipher, std::string_view plain, std::string& value) {
  std::string bytes;
  const ErrorCode error = cipher.encrypt(plain, bytes);
  value = base64_encode(bytes);
  return error;
}

ErrorCode decrypt_text(FieldCipher& cipher, std::string_view value, std::string& plain) {
  const auto bytes = base64_decode(value);
  return bytes ? cipher.decrypt(*bytes, plain) : ErrorCode::kFileDecrypt;
}

ErrorCode encrypt_cell(FieldCipher& cipher, const CellValue& plain, CellValue& value) {
  ErrorCode error = ErrorCode::kOk;
  std::string text;
  if (const auto* number = std::get_if<double>(&plain)) {
    error = encrypt_text(cipher, pack_double(*number), text);
    value = std::move(text);
  } else if (const auto* short_text = std::get_if<std::string>(&plain)) {
    error = encrypt_text(cipher, *short_text, text);
    value = std::move(text);
  } else if (const auto* content = std::get_if<Content>(&plain)) {
    std::string bytes;
    error = content->read(bytes);
    if (error == ErrorCode::kOk) error = encrypt_text(cipher, bytes, text);
    value = Content::of(std::move(text));
  } else if (const auto* files = std::get_if<FileList>(&plain)) {
    FileList encrypted;
    for (const FileObject& file : *files) {
      std::string packed;
      std::string bytes;
      error = pack_file(file, packed);
      if (error == ErrorCode::kOk) error = cipher.encrypt(packed, bytes);
      if (error != ErrorCode::kOk) return error;
      std::string name = std::to_string(encrypted.size() + 1).append(kEncryptedFileEnd);
      encrypted.push_back({std::move(name), {}, Content::of(std::move(bytes))});
    }
    value = std::move(encrypted);
  }
  return error;
}

ErrorCode decrypt_files(FieldCipher& cipher, const FileList& encrypted, CellValue& plain) {
  FileList files;
  for (const FileObject& file : encrypted) {
    std::string bytes;
    std::string packed;
    ErrorCode error = file.content.read(bytes);
    if (error == ErrorCode::kOk) error = cipher.decrypt(bytes, packed);
    if (error == ErrorCode::kOk && !unpack_file(packed, files.emplace_back()))
      error = ErrorCode::kFileDecrypt;
    if (error != ErrorCode::kOk) return error;
  }
  plain = std::move(files);
  return ErrorCode::kOk;
}

ErrorCode decrypt_cell(FieldCipher& cipher, FieldType plain_type, const CellValue& value, CellValue& plain) {
  if (const auto* files = std::get_if<FileList>(&value)) return decrypt_files(cipher, *files, plain);
  std::string encrypted;
  ErrorCode error = ErrorCode::kOk;
  if (const auto* text = std::get_if<std::string>(&value)) encrypted = *text;
  if (const auto* content = std::get_if<Content>(&value)) error = content->read(encrypted);
  std::string bytes;
  if (error == ErrorCode::kOk) error = decrypt_text(cipher, encrypted, bytes);
  if (error != ErrorCode::kOk) return error;
  if (plain_type == FieldType::kNumber) {
    if (bytes.size() != sizeof(double)) return ErrorCode::kFileDecrypt;
    plain = std::bit_cast<double>(number_of(bytes));
  } else if (plain_type == FieldType::kText) {
    plain = std::move(bytes);
  } else {
    plain = Content::of(std::move(bytes));
  }
  return ErrorCode::kOk;
}

// Makes a column out of another, cell by cell, on several threads.
class ColumnPass {
 public:
  // Fills the second value from the first, which is not empty.
  using Convert = std::function<ErrorCode(FieldCipher&, const CellValue&, CellValue&)>;

  ColumnPass(const Column& source, int threads, Progress& progress)
      : source_(source),
        count_(column_size(source)),
        progress_(progress),
        ciphers_(static_cast<size_t>(threads)) {}

  ErrorCode run(const Secret& key, std::string_view salt, const Convert& convert, Column& target) {
    for (FieldCipher& cipher : ciphers_) {
      if (const ErrorCode error = cipher.start(key, salt); error != ErrorCode::kOk) return error;
    }
    constexpr size_t kChunk = size_t{1} << 14;
    resize_column(target, count_);
    std::vector<CellValue> values;
    for (size_t first = 0; first < count_ && !progress_.cancelled(); first += kChunk) {
      values.assign(std::min(kChunk, count_ - first), CellValue());
      if (const ErrorCode error = convert_chunk(first, convert, values); error != ErrorCode::kOk)
        return error;
      for (size_t i = 0; i < values.size(); ++i) {
        if (!is_empty(values[i])) store_value(target, first + i, values[i]);
      }
      progress_.report(first + values.size(), count_);
    }
    return ErrorCode::kOk;
  }

 private:
  ErrorCode convert_chunk(size_t first, const Convert& convert, std::vector<CellValue>& values) {
    std::vector<ErrorCode> errors(ciphers_.size(), ErrorCode::kOk);
    parallel_blocks(values.size(), static_cast<int>(ciphers_.size()),
                    [&](int thread, uint64_t from, uint64_t end) {
                      ErrorCode& error = errors[static_cast<size_t>(thread)];
                      try {
                        for (uint64_t i = from; i < end && error == ErrorCode::kOk; ++i) {
                          const CellValue cell = cell_value(source_, first + i);
                          if (!is_empty(cell))
                            error = convert(ciphers_[static_cast<size_t>(thread)], cell, values[i]);
                        }
                      } catch (const std::bad_alloc&) {
                        error = ErrorCode::kOutOfMemory;
                      }
                    });
    const auto failed = std::ranges::find_if(errors, [](ErrorCode error) { return error != ErrorCode::kOk; });
    return failed == errors.end() ? ErrorCode::kOk : *failed;
  }

  const Column& source_;
  size_t count_;
  Progress& progress_;
  std::vector<FieldCipher> ciphers_;
};

struct NewColumn {
  Field definition;
  Column column;
};

ErrorCode encrypt_column(const CWorkSheet& table, size_t index, const FieldEncryptionSettings& settings,
                         Progress& progress, NewColumn& made) {
  const Field& field = table.field(index);
  EncryptedFieldHeader header;
  Secret key;
  ErrorCode error = make_field_header(settings.password, field.type, header);
  if (error == ErrorCode::kOk) error = field_key(settings.password, header, key);
  if (error != ErrorCode::kOk) return error;
  made.definition = field;
  made.definition.encrypted = true;
  made.definition.encryption = encode_field_header(header);
  if (is_in_record(field.type)) made.definition.type = FieldType::kText;
  made.column = make_column(made.definition.type);
  if (auto* texts = std::get_if<TextColumn>(&made.column)) texts->interning = false;  // no two are equal
  return ColumnPass(table.column(index), settings.threads, progress)
      .run(key, header.salt, encrypt_cell, made.column);
}

ErrorCode decrypt_column(const CWorkSheet& table, size_t index, const FieldEncryptionSettings& settings,
                         Progress& progress, NewColumn& made) {
  const auto header = decode_field_header(table.field(index).encryption);
  if (!header) return ErrorCode::kFileDecrypt;
  Secret key;
  if (const auto error = field_key(settings.password, *header, key); error != ErrorCode::kOk) return error;
  made.definition = table.field(index);
  made.definition.encrypted = false;
  made.definition.encryption.clear();
  made.definition.type = header->plain_type;
  made.column = make_column(header->plain_type);
  const FieldType type = header->plain_type;
  const auto convert = [type](FieldCipher& cipher, const CellValue& value, CellValue& plain) {
    return decrypt_cell(cipher, type, value, plain);
  };
  return ColumnPass(table.column(index), settings.threads, progress)
      .run(key, header->salt, convert, made.column);
}

using MakeColumn = ErrorCode (*)(const CWorkSheet&, size_t, const FieldEncryptionSettings&, Progress&,
                                 NewColumn&);

// Makes all columns before the first one is replaced.
Outcome replace_fields(CWorkSheet& table, const FieldEncryptionSettings& settings, Progress& progress,
                       std::string_view caption, MakeColumn make) {
  ErrorCode error = ErrorCode::kOk;
  progress.begin(caption);
  std::vector<NewColumn> columns(settings.fields.size());
  try {
    for (size_t i = 0; i < columns.size() && error == ErrorCode::kOk; ++i)
      error = make(table, settings.fields[i], settings, progress, columns[i]);
  } catch (const std::bad_alloc&) {
    error = ErrorCode::kOutOfMemory;
  }
  Outcome outcome = error;
  outcome.cancelled = progress.cancelled();
  if (!outcome.is_done()) return outcome;
  std::optional<ChangeGroup> step;
  if (table.database() != nullptr) step.emplace(*table.database(), std::string(caption));
  for (size_t i = 0; i < columns.size() && error == ErrorCode::kOk; ++i) {
    error = table.replace_column(settings.fields[i], std::move(columns[i].definition),
                                 std::move(columns[i].column));
  }
  if (error != ErrorCode::kOk && step) step->roll_back();
  return error;
}

Check check_indices(const CWorkSheet& table, const std::vector<size_t>& fields) {
  std::set<size_t> seen;
  const bool valid = std::ranges::all_of(
      fields, [&](size_t index) { return index < table.field_count() && seen.insert(index).second; });
  return valid && !fields.empty() ? Check() : Check(ErrorCode::kInvalidCacheIndex);
}

// True for a cell that an encrypted field may have.
bool is_intact(const Column& column, size_t position, const std::string& salt) {
  const auto is_text_value = [&salt](std::string_view text) {
    const auto bytes = base64_decode(text);
    return bytes && is_field_value(*bytes, salt);
  };
  if (const auto* texts = std::get_if<TextColumn>(&column)) {
    const std::string_view text = texts->text(position);
    return text.empty() || is_text_value(text);
  }
  if (const auto* contents = std::get_if<ContentColumn>(&column)) {
    const Content* content = contents->value(position);
    return content == nullptr || content->source() != nullptr || is_text_value(content->in_memory());
  }
  const auto* files = std::get_if<FilesColumn>(&column);
  const FileList* list = files != nullptr ? files->value(position) : nullptr;
  return files != nullptr && (list == nullptr || std::ranges::all_of(*list, [&salt](const FileObject& file) {
                                return file.content.source() != nullptr ||
                                       is_field_value(file.content.in_memory(), salt);
                              }));
}

}  // namespace

Check check_encrypt_fields(const CWorkSheet& table, const FieldEncryptionSettings& settings) {
  if (Check check = check_indices(table, settings.fields); !check.passes()) return check;
  const auto is_encrypted = [&table](size_t index) { return table.field(index).encrypted; };
  if (std::ranges::any_of(settings.fields, is_encrypted)) return ErrorCode::kEncryptedField;
  return check_new_password(settings.password, settings.repeated);
}

Check check_decrypt_fields(const CWorkSheet& table, const FieldEncryptionSettings& settings) {
  if (Check check = check_indices(table, settings.fields); !check.passes()) return check;
  for (const size_t index : settings.fields) {
    const Field& field = table.field(index);
    if (!field.encrypted) return ErrorCode::kFieldTypeMismatch;
    const auto header = decode_field_header(field.encryption);
    if (!header) return ErrorCode::kFileDecrypt;
    Secret key;
    const ErrorCode error = field_key(settings.password, *header, key);
    if (error != ErrorCode::kOk) return error;
  }
  return {};
}

FieldType plain_type(const Field& field) {
  const auto header = field.encrypted ? decode_field_header(field.encryption) : std::nullopt;
  return header ? header->plain_type : field.type;
}

Outcome encrypt_fields(CWorkSheet& table, const FieldEncryptionSettings& settings, Progress& progress) {
  return replace_fields(table, settings, progress, kEncryptFieldsTitle, encrypt_column);
}

Outcome decrypt_fields(CWorkSheet& table, const FieldEncryptionSettings& settings, Progress& progress) {
  return replace_fields(table, settings, progress, kDecryptFieldsTitle, decrypt_column);
}

ErrorCode verify_encrypted_fields(const CWorkSheet& table, int threads) {
  std::atomic<ErrorCode> error = ErrorCode::kOk;
  for (size_t index = 0; index < table.field_count() && error == ErrorCode::kOk; ++index) {
    if (!table.field(index).encrypted) continue;
    const auto header = decode_field_header(table.field(index).encryption);
    if (!header) return ErrorCode::kEncryptedDataChanged;
    const Column& column = table.column(index);
    parallel_blocks(table.record_count(), threads, [&](int, uint64_t first, uint64_t end) {
      try {
        for (uint64_t position = first; position < end && error == ErrorCode::kOk; ++position) {
          if (!is_intact(column, position, header->salt)) error.store(ErrorCode::kEncryptedDataChanged);
        }
      } catch (const std::bad_alloc&) {
        error.store(ErrorCode::kOutOfMemory);
      }
    });
  }
  return error;
}

}  // namespace rowvane

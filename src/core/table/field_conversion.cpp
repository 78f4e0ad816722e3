#include "core/table/field_conversion.h"

#include "core/database/binary_names.h"
#include "core/messages/messages.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

constexpr uint32_t kReportEvery = 65'536;  // records

bool is_in_record(FieldType type) {
  return !is_outside_record(type);
}

// Does the conversion of one field.
class Converter {
 public:
  Converter(const CWorkSheet& table, const FieldConversion& settings, Progress& progress)
      : settings_(settings),
        progress_(progress),
        source_(table.column(settings.field)),
        count_(table.record_count()) {}

  Column run() {
    if (const auto* texts = std::get_if<TextColumn>(&source_)) return from_texts(*texts);
    Column target = make_column(settings_.type);
    resize_column(target, count_);
    for (uint32_t i = 0; i < count_ && error == ErrorCode::kOk && !stopped(i); ++i) {
      store_value(target, i, convert(cell_value(source_, i)));
    }
    return target;
  }

  bool was_cancelled() const { return cancelled_; }

  ErrorCode error = ErrorCode::kOk;
  bool not_numeric = false;
  bool truncated = false;

 private:
  bool stopped(uint32_t position) {
    if (position % kReportEvery != 0) return false;
    progress_.report(position, count_);
    cancelled_ = cancelled_ || progress_.cancelled();
    return cancelled_;
  }

  // Converts each text of the pool once.
  Column from_texts(const TextColumn& texts) {
    if (settings_.type == FieldType::kText) return texts;
    Column converted = make_column(settings_.type);
    resize_column(converted, texts.pool->size());
    std::vector<bool> used(texts.pool->size(), false);
    for (const TextPool::Code code : texts.cells) used[code] = true;
    for (TextPool::Code code = 1; code < texts.pool->size(); ++code) {
      if (used[code]) store_value(converted, code, from_text(texts.pool->text(code)));
    }
    return std::visit(
        [&](auto& of_pool) -> Column {
          auto target = of_pool;
          target.cells.resize(count_);
          for (uint32_t i = 0; i < count_ && !stopped(i); ++i)
            target.cells[i] = of_pool.cells[texts.cells[i]];
          return target;
        },
        converted);
  }

  CellValue convert(const CellValue& value) {
    if (is_empty(value)) return {};
    if (const auto* number = std::get_if<double>(&value)) return from_number(*number);
    std::string bytes;
    if (const auto* content = std::get_if<Content>(&value)) {
      error = content->read(bytes);
    } else {
      error = std::get<FileList>(value).front().content.read(bytes);
    }
    return error == ErrorCode::kOk ? from_text(bytes) : CellValue();
  }

  CellValue from_number(double number) {
    const FormulaError formula_error = error_of_number(number);
    if (settings_.type == FieldType::kNumber) return number;
    return from_text(formula_error == FormulaError::kNone ? number_to_text(number, settings_.separators)
                                                          : std::string(formula_error_text(formula_error)));
  }

  CellValue from_text(std::string_view text) {
    switch (settings_.type) {
      case FieldType::kText: {
        if (!is_valid_utf8(text)) return from_text(repair_utf8(text));
        const std::string_view cut = truncate_characters(text, kMaxTextCharacters);
        truncated = truncated || cut.size() < text.size();
        return std::string(cut);
      }
      case FieldType::kNumber: {
        CellValue number;
        if (value_from_text(FieldType::kNumber, text, settings_.separators, number) != ErrorCode::kOk) {
          not_numeric = true;
        }
        return number;
      }
      case FieldType::kLongText:
      case FieldType::kCode:
        return Content::of(std::string(text));
      case FieldType::kFiles:
        break;
    }
    return FileList{{std::string(long_text_file_name(text)), {}, Content::of(std::string(text))}};
  }

  const FieldConversion& settings_;
  Progress& progress_;
  const Column& source_;
  uint32_t count_;
  bool cancelled_ = false;
};

// True when every value is one inserted file whose content is text.
bool holds_single_texts(const FilesColumn& column) {
  for (size_t i = 0; i < column.cells.size(); ++i) {
    const FileList* files = column.value(i);
    if (files == nullptr) continue;
    if (files->size() != 1 || files->front().is_shortcut()) return false;
    std::string bytes;
    if (files->front().content.read(bytes) != ErrorCode::kOk || !is_valid_utf8(bytes)) return false;
  }
  return true;
}

}  // namespace

Check check_conversion(const CWorkSheet& table, const FieldConversion& settings) {
  if (settings.field >= table.field_count()) return ErrorCode::kInvalidCacheIndex;
  const Field& field = table.field(settings.field);
  if (field.encrypted) return ErrorCode::kEncryptedField;
  if (settings.type == field.type) return {};
  if (is_in_record(field.type) && settings.type == FieldType::kFiles) return texts::kNoConversionToFiles;
  if (field.type == FieldType::kFiles && is_in_record(settings.type)) return texts::kNoConversionFromFiles;
  if (field.type == FieldType::kFiles &&
      !holds_single_texts(std::get<FilesColumn>(table.column(settings.field))))
    return MessageId::kConversionUnavailable;
  const bool has_files = field.type == FieldType::kFiles || settings.type == FieldType::kFiles;
  return has_files ? Check::asking(texts::kSaveCopyAndReload) : Check();
}

Outcome convert_field(CWorkSheet& table, const FieldConversion& settings, Progress& progress) {
  Field definition = table.field(settings.field);
  const FieldType former_type = definition.type;
  const bool former_link = definition.link;
  definition.type = settings.type;
  definition.link = settings.type == FieldType::kText && settings.link;
  const bool same_column = make_column(former_type).index() == make_column(settings.type).index();
  if (same_column) return table.replace_column(settings.field, definition, table.column(settings.field));
  Converter converter(table, settings, progress);
  Column column = converter.run();
  Outcome outcome = converter.error;
  outcome.cancelled = converter.was_cancelled();
  if (!outcome.is_done()) return outcome;
  outcome.failure = table.replace_column(settings.field, definition, std::move(column));
  if (converter.not_numeric) outcome.note(MessageId::kTextNotNumeric);
  if (converter.truncated) {
    outcome.note(fill_inserts(texts::kConversionTruncated, {field_type_name(former_type, former_link),
                                                            field_type_name(settings.type, settings.link)}));
  }
  return outcome;
}

}  // namespace rowvane

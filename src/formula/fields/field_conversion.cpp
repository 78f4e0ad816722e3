#include "formula/fields/field_conversion.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "core/database/binary_names.h"
#include "core/messages/messages.h"
#include "core/parallel_blocks.h"
#include "core/values/date_text.h"
#include "formula/fields/value_input.h"
#include "formula/formats/format_code.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

constexpr uint32_t kRecordsPerReport = 65'536;  // records
constexpr uint32_t kTextsAtATime = 1 << 18;     // that are read on all processors between two reports
constexpr size_t kExampleCharacters = 60;       // of a text in a question
constexpr double kMostDaysOfTime = 1'000'000;   // a longer time is written as a number

bool is_in_record(FieldType type) {
  return !is_outside_record(type);
}

// Writes the numbers of one field so that they read back as what they are.
class NumberWriter {
 public:
  NumberWriter(const Field& field, const platform::RegionalSettings& region)
      : code_(field.format), separators_{region.decimal_separator, {}} {}

  std::string text(double cell) const {
    const bool is_number = error_of_number(cell) == FormulaError::kNone;
    const FormatSection* section = is_number ? code_.section_of(cell) : nullptr;
    if (section == nullptr || section->layout != FormatLayout::kDate)
      return number_cell_text(cell, separators_);
    const bool is_time = section->elapsed || (!section->has_calendar_part && cell >= 0 && cell < 1);
    if (is_time && std::abs(cell) < kMostDaysOfTime) return time_text(cell);
    constexpr double kHalfSecond = 0.5 / kSecondsInDay;
    const bool is_date = !is_time && cell >= kFirstDay && cell < kBehindLastDay - kHalfSecond;
    return is_date ? standard_date_text(cell) : number_cell_text(cell, separators_);
  }

 private:
  static constexpr double kSecondsInDay = 86'400;

  static std::string time_text(double days) {
    const long long seconds = std::llround(std::abs(days) * kSecondsInDay);
    char text[40];
    const int length = std::snprintf(text, sizeof text, "%s%02lld:%02lld:%02lld", days < 0 ? "-" : "",
                                     seconds / 3600, seconds / 60 % 60, seconds % 60);
    return {text, static_cast<size_t>(length)};
  }

  FormatCode code_;
  NumberSeparators separators_;
};

// TEXT on one line, not too long.
std::string example_line(std::string_view text) {
  const std::string_view front = truncate_characters(text, kExampleCharacters);
  std::string line(front);
  std::ranges::replace_if(
      line, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  return front.size() < text.size() ? line + "..." : line;
}

// Does the conversion of one field and notes what it loses.
class Converter {
 public:
  Converter(const CWorkSheet& table, const FieldConversion& settings, Progress& progress)
      : settings_(settings),
        progress_(progress),
        source_(table.column(settings.field)),
        count_(table.record_count()),
        target_field_(table.field(settings.field)),
        writer_(target_field_, settings.region) {
    target_field_.type = settings.type;
  }

  Column run() {
    if (const auto* texts = std::get_if<TextColumn>(&source_)) return from_texts(*texts);
    Column target = make_column(settings_.type);
    resize_column(target, count_);
    for (uint32_t i = 0; i < count_ && loss.failure.empty() && !stopped(i, count_); ++i) {
      store_value(target, i, convert(cell_value(source_, i)));
    }
    return target;
  }

  ConversionLoss loss;

 private:
  bool stopped(uint64_t done, uint64_t total) {
    if (done % kRecordsPerReport != 0) return false;
    progress_.report(done, total);
    loss.cancelled = loss.cancelled || progress_.cancelled();
    return loss.cancelled;
  }

  void note_loss(std::string_view text) {
    ++loss.values;
    if (loss.examples.size() == ConversionLoss::kMostExamples) return;
    std::string line = example_line(text);
    if (std::ranges::find(loss.examples, line) == loss.examples.end())
      loss.examples.push_back(std::move(line));
  }

  // Converts each text of the pool that a record has, once.
  Column from_texts(const TextColumn& texts) {
    std::vector<bool> used(texts.pool->size(), false);
    for (const TextPool::Code code : texts.cells) used[code] = true;
    used[0] = false;
    if (settings_.type == FieldType::kNumber) return numbers_of(texts, used);
    ContentColumn target;
    std::vector<uint32_t> references(used.size(), 0);
    for (TextPool::Code code = 1; code < used.size(); ++code) {
      if (used[code]) references[code] = target.add(Content::of(std::string(texts.pool->text(code))));
    }
    target.cells.resize(count_);
    for (uint32_t i = 0; i < count_ && !stopped(i, count_); ++i) target.cells[i] = references[texts.cells[i]];
    return target;
  }

  // An empty number for a text that is none: no text but the empty one reads as empty.
  Column numbers_of(const TextColumn& texts, const std::vector<bool>& used) {
    std::vector<double> numbers(used.size(), kEmptyNumber);
    NumberColumn target;
    for (uint64_t begin = 0; begin < numbers.size(); begin += kTextsAtATime) {
      if (stopped(begin, numbers.size() + count_)) return target;
      const uint64_t size = std::min<uint64_t>(kTextsAtATime, numbers.size() - begin);
      parallel_blocks(size, thread_count(0), [&](int, uint64_t first, uint64_t end) {
        for (uint64_t code = begin + first; code < begin + end; ++code) {
          if (used[code]) numbers[code] = number_of(texts.pool->text(static_cast<TextPool::Code>(code)));
        }
      });
    }
    target.cells.resize(count_);
    for (uint32_t i = 0; i < count_ && !stopped(numbers.size() + i, numbers.size() + count_); ++i) {
      const TextPool::Code code = texts.cells[i];
      target.cells[i] = numbers[code];
      if (code != 0 && is_empty_number(numbers[code])) note_loss(texts.pool->text(code));
    }
    return target;
  }

  double number_of(std::string_view text) const {
    return read_field_value(target_field_, text, settings_.region).number().value_or(kEmptyNumber);
  }

  CellValue convert(const CellValue& value) {
    if (is_empty(value)) return {};
    if (const auto* number = std::get_if<double>(&value)) return from_text(writer_.text(*number));
    std::string bytes;
    if (const auto* content = std::get_if<Content>(&value)) {
      loss.failure = content->read(bytes);
    } else {
      loss.failure = std::get<FileList>(value).front().content.read(bytes);
    }
    return loss.failure.empty() ? from_text(bytes) : CellValue();
  }

  CellValue from_text(std::string_view text) {
    if (settings_.type == FieldType::kFiles)
      return FileList{{std::string(long_text_file_name(text)), {}, Content::of(std::string(text))}};
    if (settings_.type == FieldType::kText && !is_valid_utf8(text)) return from_text(repair_utf8(text));
    ValueReading read = read_field_value(target_field_, text, settings_.region);
    if (read.error == ErrorCode::kOk) return std::move(read.value);
    note_loss(text);
    if (read.error != ErrorCode::kOutputTooLong) return {};
    return std::string(truncate_characters(text, kMaxTextCharacters));
  }

  const FieldConversion& settings_;
  Progress& progress_;
  const Column& source_;
  uint32_t count_;
  Field target_field_;
  NumberWriter writer_;
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

bool is_same_column(FieldType one, FieldType other) {
  return make_column(one).index() == make_column(other).index();
}

// Into what not every value fits: nothing is lost by the other conversions.
bool can_lose(FieldType from, FieldType to) {
  if (is_same_column(from, to)) return false;
  return (to == FieldType::kNumber && from != FieldType::kFiles) ||
         (to == FieldType::kText && from != FieldType::kNumber);
}

std::string loss_question(const ConversionLoss& loss, const FieldConversion& settings,
                          std::string_view field_name) {
  const bool one = loss.values == 1;
  std::string question = std::to_string(loss.values) + (one ? " value" : " values") + " of the field \"" +
                         std::string(field_name) + "\" ";
  if (settings.type == FieldType::kNumber) {
    question += one ? "does not read as a number, a date or a time and would be lost:"
                    : "do not read as numbers, dates or times and would be lost:";
  } else {
    question += std::string(one ? "has" : "have") + " more than " + std::to_string(kMaxTextCharacters) +
                " characters and would be cut:";
  }
  for (const std::string& example : loss.examples) question += "\n\"" + example + "\"";
  return question + "\nConvert the field?";
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

ConversionLoss find_conversion_loss(const CWorkSheet& table, const FieldConversion& settings,
                                    Progress& progress) {
  const Field& field = table.field(settings.field);
  if (!can_lose(field.type, settings.type)) return {};
  Converter converter(table, settings, progress);
  converter.run();
  ConversionLoss loss = std::move(converter.loss);
  if (loss.is_done() && loss.values > 0)
    loss.check = Check::asking(loss_question(loss, settings, field.name));
  return loss;
}

Outcome convert_field(CWorkSheet& table, const FieldConversion& settings, Progress& progress) {
  Field definition = table.field(settings.field);
  const FieldType former_type = definition.type;
  const bool former_link = definition.link;
  definition.type = settings.type;
  definition.link = settings.type == FieldType::kText && settings.link;
  if (is_same_column(former_type, settings.type))
    return table.replace_column(settings.field, definition, table.column(settings.field));
  Converter converter(table, settings, progress);
  Column column = converter.run();
  Outcome outcome = converter.loss.outcome();
  if (!outcome.is_done()) return outcome;
  outcome.failure = table.replace_column(settings.field, definition, std::move(column));
  if (converter.loss.values == 0) return outcome;
  if (settings.type == FieldType::kNumber) {
    outcome.note(MessageId::kTextNotNumeric);
  } else {
    outcome.note(fill_inserts(texts::kConversionTruncated, {field_type_name(former_type, former_link),
                                                            field_type_name(settings.type, settings.link)}));
  }
  return outcome;
}

}  // namespace rowvane

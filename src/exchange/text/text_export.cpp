#include "exchange/text/text_export.h"

#include <algorithm>
#include <numeric>

#include "core/database/database.h"
#include "core/parallel_blocks.h"
#include "exchange/text/archived_cells.h"
#include "exchange/text/ordered_blocks.h"
#include "exchange/text/text_file_sink.h"
#include "platform/code_pages.h"
#include "zip/save_time.h"
#include "zip/zip_writer.h"

namespace rowvane {
namespace {

// A block is formatted at a time: so many bytes as a rule, but not more records.
constexpr uint64_t kBlockBytes = uint64_t{1} << 20;
constexpr uint64_t kMaxBlockRecords = 16'384;

bool loses_features_as_text(const Field& field) {
  return is_outside_record(field.type) || field.link || field.encrypted || !field.formula.empty() ||
         !field.validation.empty() || !field.default_value.empty() || !field.drop_down_list.empty() ||
         !field.format.empty();
}

bool loses_features_as_text(const Database& database) {
  return database.tables().size() > 1 || !database.root().folders().empty() ||
         database.settings() != DatabaseSettings();
}

bool has_flag_types(const CWorkSheet& table) {
  return std::ranges::any_of(table.data().flags,
                             [](RecordFlags flags) { return flags >> kFlagTypeShift != 0; });
}

uint64_t record_count_of(const CWorkSheet& table, const TextExport& settings) {
  return settings.positions ? settings.positions->size() : table.record_count();
}

// An export without records still has a file.
uint64_t file_count_of(uint64_t records, uint64_t row_limit) {
  return row_limit == 0 || records == 0 ? 1 : (records - 1) / row_limit + 1;
}

// Length of TARGET without the extension and its point.
size_t stem_length(const std::string& target) {
  const size_t place = target.find_last_of("/\\.");
  const bool has_extension = place != std::string::npos && place > 0 && target[place] == '.' &&
                             target[place - 1] != '/' && target[place - 1] != '\\';
  return has_extension ? place : target.size();
}

// "NAME" of "folder/NAME.EXT".
std::string file_name_stem(const std::string& target) {
  const std::string stem = target.substr(0, stem_length(target));
  return stem.substr(stem.find_last_of("/\\") + 1);
}

// "NAME(2).EXT" for number 2.
std::string numbered_target(const std::string& target, uint64_t number) {
  if (number == 0) return target;
  const size_t stem = stem_length(target);
  return target.substr(0, stem) + "(" + std::to_string(number) + ")" + target.substr(stem);
}

// About the bytes that a cell of COLUMN takes in a line.
uint64_t mean_cell_bytes(const Column& column) {
  constexpr uint64_t kSmallCell = 10;
  if (const auto* texts = std::get_if<TextColumn>(&column)) {
    return texts->pool->text_bytes() / texts->pool->size() + 1;
  }
  const auto* contents = std::get_if<ContentColumn>(&column);
  if (contents == nullptr || contents->values.empty()) return kSmallCell;
  uint64_t bytes = 0;
  for (const Content& content : contents->values) bytes += content.size();
  return bytes / contents->values.size() + 1;
}

// Moving the bytes to the disk keeps one of the threads busy.
int maker_threads(int setting) {
  return std::max(thread_count(setting) - 1, 1);
}

// One run of export_text.
class ExportRun {
 public:
  ExportRun(const CWorkSheet& table, const std::string& target, const TextExport& settings,
            Progress& progress)
      : table_(table),
        target_(target),
        settings_(settings),
        progress_(progress),
        fields_(settings.fields),
        archived_(table, file_name_stem(target), settings.save_files, settings.save_long_texts),
        record_count_(record_count_of(table, settings)) {
    if (fields_.empty()) {
      fields_.resize(table.field_count());
      std::iota(fields_.begin(), fields_.end(), size_t{0});
    }
  }

  TextExportResult run() {
    progress_.begin("Saving Text File");
    ErrorCode error = write_all();
    if (!cancelled_ && error == ErrorCode::kOk) error = commit_all();
    result_.cancelled = cancelled_;
    if (!cancelled_) result_.failure = error;
    return std::move(result_);
  }

 private:
  bool is_cancelled() {
    cancelled_ = cancelled_ || progress_.cancelled();
    return cancelled_;
  }

  ErrorCode write_all();
  std::string archive_path() const { return target_.substr(0, stem_length(target_)) + ".rvb-bin.zip"; }
  ErrorCode write_archive();
  ErrorCode write_file(const TextFormatter& formatter, uint64_t number);
  ErrorCode make_block(const TextFormatter& formatter, uint64_t first, uint64_t end, std::string& out) const;
  ErrorCode commit_all();

  std::string file_start(const TextFormatter& formatter) const;
  uint64_t records_of_block() const;
  // The records to save in ascending order, each once.
  std::vector<uint32_t> sorted_positions() const;

  const CWorkSheet& table_;
  const std::string& target_;
  const TextExport& settings_;
  Progress& progress_;
  std::vector<size_t> fields_;
  ArchivedCells archived_;
  uint64_t record_count_;
  uint64_t written_records_ = 0;
  bool cancelled_ = false;
  std::vector<std::unique_ptr<TextFileSink>> sinks_;
  std::optional<ZipWriter> archive_;  // nothing when none is wanted
  TextExportResult result_;
};

ErrorCode ExportRun::write_all() {
  // The archive comes first: the cells name what is in it.
  const bool archiving = settings_.save_files || settings_.save_long_texts;
  if (archiving) {
    if (const auto error = write_archive(); error != ErrorCode::kOk) return error;
  }
  if (is_cancelled()) return ErrorCode::kOk;
  const TextDialect dialect{.numbers = settings_.numbers, .archived = archiving ? &archived_ : nullptr};
  const TextFormatter formatter(table_, fields_, settings_.text, dialect);
  const uint64_t files = file_count_of(record_count_, settings_.row_limit);
  for (uint64_t number = 0; number < files && !cancelled_; ++number) {
    if (const auto error = write_file(formatter, number); error != ErrorCode::kOk) return error;
  }
  if (formatter.has_cut_cells()) result_.note(MessageId::kCellsTruncated);
  result_.replaced_characters = formatter.has_replaced_characters();
  return ErrorCode::kOk;
}

ErrorCode ExportRun::write_archive() {
  ZipWriterOptions options;
  options.save_time = save_time_now();
  if (archive_.emplace().create(archive_path(), options) != ErrorCode::kOk) return ErrorCode::kFileCreate;
  std::vector<size_t> fields = fields_;
  std::erase_if(fields, [&](size_t field) { return !archived_.holds(field); });
  if (fields.empty()) return ErrorCode::kOk;
  std::ranges::sort(fields);
  fields.erase(std::unique(fields.begin(), fields.end()), fields.end());
  for (const uint32_t position : sorted_positions()) {
    if (is_cancelled()) return ErrorCode::kOk;
    for (const size_t field : fields) {
      if (const auto error = archived_.archive(position, field, *archive_); error != ErrorCode::kOk)
        return error;
    }
  }
  return ErrorCode::kOk;
}

std::vector<uint32_t> ExportRun::sorted_positions() const {
  std::vector<uint32_t> positions;
  if (settings_.positions) {
    positions = *settings_.positions;
    std::ranges::sort(positions);
    positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
  } else {
    positions.resize(table_.record_count());
    std::iota(positions.begin(), positions.end(), 0u);
  }
  return positions;
}

// What every file begins with.
std::string ExportRun::file_start(const TextFormatter& formatter) const {
  std::string names;
  if (settings_.text.has_field_names()) formatter.append_names(names);
  if (settings_.text.encoding != TextFileSettings::kUtf16) return names;
  std::string start = "\xFF\xFE";
  platform::utf8_to_utf16le(names, start);
  return start;
}

uint64_t ExportRun::records_of_block() const {
  uint64_t bytes = 1;
  for (size_t i = 0; i < fields_.size(); ++i) {
    bytes += mean_cell_bytes(table_.column(fields_[i]));
    if (settings_.text.has_fixed_widths() && i < settings_.text.fixed_widths.size()) {
      bytes += settings_.text.fixed_widths[i];
    }
  }
  return std::clamp<uint64_t>(kBlockBytes / bytes, 1, kMaxBlockRecords);
}

ErrorCode ExportRun::write_file(const TextFormatter& formatter, uint64_t number) {
  sinks_.push_back(std::make_unique<TextFileSink>());
  TextFileSink& sink = *sinks_.back();
  if (const auto error = sink.open(numbered_target(target_, number)); error != ErrorCode::kOk) return error;
  const uint64_t limit = settings_.row_limit > 0 ? settings_.row_limit : record_count_;
  const uint64_t first = number * limit;
  const uint64_t records = std::min(limit, record_count_ - first);
  const uint64_t block_records = records_of_block();
  const auto first_of = [&](uint64_t block) { return first + std::min(block * block_records, records); };
  const auto make = [&](uint64_t block, std::string& out) {
    return make_block(formatter, first_of(block), first_of(block + 1), out);
  };
  const auto take = [&](uint64_t block, std::string_view bytes) {
    if (is_cancelled() || !sink.write(bytes)) return false;
    written_records_ += first_of(block + 1) - first_of(block);
    progress_.report(written_records_, record_count_);
    return true;
  };
  const uint64_t blocks = (records + block_records - 1) / block_records;
  ErrorCode error = ErrorCode::kOk;
  if (sink.write(file_start(formatter))) {
    error = make_blocks_in_order(blocks, maker_threads(settings_.threads), make, take);
  }
  // A pipe that takes nothing any more is not the cause of a failure, the disk behind it is.
  const ErrorCode write_error = sink.close();
  return write_error != ErrorCode::kOk ? write_error : error;
}

ErrorCode ExportRun::make_block(const TextFormatter& formatter, uint64_t first, uint64_t end,
                                std::string& out) const {
  std::string utf8;
  const bool utf16 = settings_.text.encoding == TextFileSettings::kUtf16;
  std::string& lines = utf16 ? utf8 : out;
  ErrorCode error;
  if (settings_.positions) {
    error = formatter.append_records(std::span(*settings_.positions).subspan(first, end - first), lines);
  } else {
    error = formatter.append_range(static_cast<uint32_t>(first), static_cast<uint32_t>(end), lines);
  }
  if (utf16) platform::utf8_to_utf16le(lines, out);
  return error;
}

ErrorCode ExportRun::commit_all() {
  if (is_cancelled()) return ErrorCode::kOk;
  // The archive first: it still writes, and may find the disk full, while the texts are complete.
  if (archive_) {
    if (const auto error = archive_->finish(); error != ErrorCode::kOk) return error;
  }
  ErrorCode error = ErrorCode::kOk;
  for (size_t number = 0; number < sinks_.size() && error == ErrorCode::kOk; ++number) {
    error = sinks_[number]->commit();
    if (error == ErrorCode::kOk) result_.files.push_back(numbered_target(target_, number));
  }
  if (archive_) result_.files.push_back(archive_path());
  return error;
}

}  // namespace

Check check_text_export(const CWorkSheet& table) {
  const bool loses =
      std::ranges::any_of(table.data().fields, [](const Field& f) { return loses_features_as_text(f); }) ||
      (table.database() != nullptr && loses_features_as_text(*table.database())) || has_flag_types(table);
  return loses ? Check::asking(MessageId::kFeaturesLostAsText) : Check();
}

Check check_text_export_settings(const CWorkSheet& table, const TextExport& settings) {
  if (Check check = check_text_settings(settings.text); !check.passes()) return check;
  const auto is_missing_field = [&](size_t field) { return field >= table.field_count(); };
  if (std::ranges::any_of(settings.fields, is_missing_field)) return "A selected field isn't in the table.";
  const auto is_missing_record = [&](uint32_t position) { return position >= table.record_count(); };
  if (settings.positions && std::ranges::any_of(*settings.positions, is_missing_record)) {
    return "A selected record isn't in the table.";
  }
  if (file_count_of(record_count_of(table, settings), settings.row_limit) > kMaxExportFiles) {
    return "The row limit is too small: more than " + std::to_string(kMaxExportFiles) +
           " files would be needed. Please enter a larger one.";
  }
  return {};
}

TextExportResult export_text(const CWorkSheet& table, const std::string& target, const TextExport& settings,
                             Progress& progress) {
  if (!check_text_export_settings(table, settings).passes()) {
    TextExportResult refused;
    refused.failure = ErrorCode::kInvalidCacheIndex;
    return refused;
  }
  return ExportRun(table, target, settings, progress).run();
}

}  // namespace rowvane

#include "exchange/text/text_import.h"

#include <algorithm>
#include <new>

#include "core/database/names.h"
#include "core/log.h"
#include "core/messages/file_error.h"
#include "core/parallel_blocks.h"
#include "exchange/text/text_stream.h"

namespace rowvane {
namespace {

constexpr uint64_t kSampleBytes = uint64_t{1} << 20;

TextImportResult load_table(TextSource& source, const TextImport& settings, TextLoadPlan plan,
                            Progress& progress) {
  plan.max_records = settings.max_records;
  plan.threads = thread_count(settings.threads);
  TextStreamResult loaded = load_text(source, plan, progress);
  TextImportResult result;
  result.outcome() = loaded.outcome();
  if (!result.is_done()) return result;
  result.table = std::make_unique<CWorkSheet>(repair_table_name(settings.table_name), std::move(loaded.data));
  return result;
}

TextImportResult failed(ErrorCode error) {
  TextImportResult result;
  result.failure = error;
  return result;
}

TextImportResult import_text(TextSource& source, const TextImport& settings, TextLoadPlan plan,
                             Progress& progress) {
  try {
    return load_table(source, settings, std::move(plan), progress);
  } catch (const std::bad_alloc&) {
    return failed(ErrorCode::kOutOfMemory);
  }
}

}  // namespace

TextImportResult import_text_file(const std::string& path, const TextImport& settings, Progress& progress) {
  platform::InputFile file;
  if (const auto error = file_error(file.open(path), ErrorCode::kFileOpen); error != ErrorCode::kOk)
    return failed(error);
  LogScope log(LogCategory::kOpening, path);
  FileTextSource source(file);
  TextImportResult result =
      import_text(source, settings, text_load_plan(settings.text, settings.region), progress);
  if (result.table != nullptr) log.note(result.table->record_count(), "records");
  return result;
}

TextImportResult import_text_block(std::string_view text, const TextImport& settings, Progress& progress) {
  MemoryTextSource source(text);
  return import_text(source, settings, text_load_plan(settings.text, settings.region), progress);
}

TextImportResult import_text_sample(const std::string& path, const TextImport& settings, uint32_t records) {
  platform::InputFile file;
  if (const auto error = file_error(file.open(path), ErrorCode::kFileOpen); error != ErrorCode::kOk)
    return failed(error);
  TextImport sample = settings;
  sample.max_records = records;
  TextLoadPlan plan = text_load_plan(settings.text, settings.region);
  for (ColumnPlan& column : plan.columns) column.load = ColumnLoad::kText;
  FileTextSource source(file, kSampleBytes);
  return import_text(source, sample, plan, Progress::none());
}

}  // namespace rowvane

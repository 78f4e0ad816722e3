// All ways to cut a text into cells agree, and any text opens as a table in order. The first four bytes are
// the settings.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "../exchange/text_record_support.h"
#include "exchange/text/text_stream.h"

namespace {

using namespace rowvane;

void require(bool condition) {
  if (!condition) std::abort();
}

void set_widths(TextFileSettings& settings, uint8_t choice) {
  settings.fixed_widths_on = choice % 4 == 3;
  for (size_t i = 0; i < choice % 3u; ++i)
    settings.fixed_widths[i] = static_cast<uint16_t>(1 + (choice >> 4));
}

TextFileSettings settings_of(const uint8_t* bytes) {
  constexpr std::string_view kSeparators = ",;\t .|";
  TextFileSettings settings;
  settings.separator = static_cast<uint8_t>(kSeparators[bytes[0] % kSeparators.size()]);
  settings.set(settings.flags, TextFileSettings::kQuoting, bytes[1] & 1);
  settings.set(settings.flags, TextFileSettings::kSeparated, (bytes[1] & 2) || (bytes[1] & 4));
  settings.set(settings.flags, TextFileSettings::kFieldNames, bytes[1] & 8);
  settings.set(settings.options, TextFileSettings::kAnalyze, bytes[1] & 16);
  settings.set(settings.options, TextFileSettings::kConvertDates, bytes[1] & 32);
  settings.column_options[0] = static_cast<uint8_t>(bytes[1] & 64 ? TextFileSettings::kLongText : 0);
  settings.column_options[1] = static_cast<uint8_t>(bytes[1] & 128 ? TextFileSettings::kNumber : 0);
  set_widths(settings, bytes[2]);
  settings.encoding = static_cast<uint8_t>(1 + bytes[3] % kLastEncoding);
  return settings;
}

void check_records(std::string_view text, const TextFileSettings& settings, uint8_t sizes) {
  const TextRules rules = text_rules(settings);
  const TextRecords streamed = streamed_records(text, rules, [&] { return size_t{1} + sizes % 7; });
  require(block_records(text, rules) == streamed);
  const TextBlockSizes small{1u + sizes, 1u + sizes % 16, 2u + sizes};
  if (text.size() < 400) require(loaded_records(text, rules, small, 1) == as_loaded(streamed));
}

void check_text(const std::string& text) {
  require(is_valid_utf8(text));
  require(count_characters(text) <= kMaxTextCharacters);
}

void check_table(const TableData& data, uint32_t max_records) {
  require(!data.fields.empty() && data.columns.size() == data.fields.size());
  require(data.record_count <= max_records);
  for (size_t field = 0; field < data.fields.size(); ++field) {
    check_text(data.fields[field].name);
    require(column_size(data.columns[field]) == data.record_count);
    const auto* texts = std::get_if<TextColumn>(&data.columns[field]);
    for (size_t i = 0; texts != nullptr && i < data.record_count; ++i)
      check_text(std::string(texts->text(i)));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 4) return 0;
  const TextFileSettings settings = settings_of(data);
  const std::string_view text(reinterpret_cast<const char*>(data) + 4, size - 4);
  check_records(text, settings, data[0]);
  TextLoadPlan plan = text_load_plan(settings, platform::RegionalSettings::generic());
  plan.sizes = {512, 512, 1024};
  plan.max_records = data[2] & 8 ? 3 : kDefaultMaxRecords;
  MemoryTextSource source(text);
  const TextStreamResult result = load_text(source, plan, Progress::none());
  require(result.status() == Status::kOk);
  check_table(result.data, plan.max_records);
  return 0;
}

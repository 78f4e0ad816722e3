#include "cli/cell_input.h"

#include <charconv>
#include <set>

#include "cli/report.h"
#include "core/messages/file_error.h"
#include "formula/fields/value_input.h"
#include "platform/file.h"
#include "platform/paths.h"

namespace rowvane::cli {
namespace {

constexpr std::string_view kShortcutPrefix = "link:";

ErrorCode read_file(const std::string& path, Content& content) {
  std::string bytes;
  const ErrorCode error = file_error(platform::read_whole_file(path, bytes), ErrorCode::kFileOpen);
  content = Content::of(std::move(bytes));
  return error;
}

ErrorCode read_files(std::string_view text, FileList& files) {
  while (!text.empty()) {
    const size_t end = text.find(';');
    const std::string path(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    if (path.starts_with(kShortcutPrefix)) {
      const std::string target = path.substr(kShortcutPrefix.size());
      files.push_back({platform::file_name(target), target, Content()});
      continue;
    }
    files.push_back({platform::file_name(path), {}, Content()});
    if (const ErrorCode error = read_file(path, files.back().content); error != ErrorCode::kOk) return error;
  }
  return ErrorCode::kOk;
}

ValueReading read_value(const Field& field, std::string_view text) {
  if (field.type == FieldType::kFiles) {
    FileList files;
    const ErrorCode error = read_files(text, files);
    return {error, files.empty() ? CellValue() : CellValue(std::move(files))};
  }
  if ((field.type == FieldType::kLongText || field.type == FieldType::kCode) && text.starts_with('@')) {
    Content content;
    const ErrorCode error = read_file(std::string(text.substr(1)), content);
    return {error, std::move(content)};
  }
  return read_field_value(field, text, platform::RegionalSettings::generic());
}

bool read_number(std::string_view text, uint32_t& number) {
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

}  // namespace

int read_assignments(const CWorkSheet& table, const std::vector<std::string>& texts,
                     std::vector<Assignment>& assignments) {
  for (const std::string& text : texts) {
    const size_t equals = text.find('=');
    if (equals == std::string::npos) return fail_usage("\"" + text + "\" is not FIELD=VALUE");
    const std::string name = text.substr(0, equals);
    const auto field = table.find_field(name);
    if (!field) return fail("there is no field \"" + name + "\" in " + table.path());
    ValueReading read = read_value(table.field(*field), std::string_view(text).substr(equals + 1));
    if (read.error != ErrorCode::kOk) return fail(read.error);
    assignments.push_back({*field, std::move(read.value)});
  }
  return kDone;
}

std::vector<uint32_t> read_record_list(std::string_view text, uint32_t record_count) {
  std::set<uint32_t> positions;
  while (!text.empty()) {
    const size_t comma = text.find(',');
    const std::string_view range = text.substr(0, comma);
    text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    const size_t dash = range.find('-');
    uint32_t first = 0;
    uint32_t last = 0;
    if (!read_number(range.substr(0, dash), first)) return {};
    if (dash == std::string_view::npos) {
      last = first;
    } else if (!read_number(range.substr(dash + 1), last)) {
      return {};
    }
    if (first < 1 || last < first || last > record_count) return {};
    for (RecordNumber record(first); record <= RecordNumber(last); ++record)
      positions.insert(record.position());
  }
  return {positions.begin(), positions.end()};
}

}  // namespace rowvane::cli

#include "file/stored_table.h"

#include "core/database/names.h"
#include "core/parallel_blocks.h"

namespace rowvane {
namespace {

ColumnLoad stored_load(const Field& field) {
  switch (field.type) {
    case FieldType::kText:
      return field.encrypted ? ColumnLoad::kEncryptedText : ColumnLoad::kText;
    case FieldType::kNumber:
      return ColumnLoad::kStoredNumber;
    case FieldType::kFiles:
      return ColumnLoad::kLongText;
    case FieldType::kLongText:
    case FieldType::kCode:
      break;
  }
  return ColumnLoad::kSkip;
}

UninitializedVector<RecordFlags> stored_flags(const StoredTable& stored, uint32_t record_count) {
  UninitializedVector<RecordFlags> flags;
  if (stored.record_count != record_count) return flags;
  for (const FlagRun& run : stored.flag_runs) flags.insert(flags.end(), run.records, run.flags);
  return flags;
}

}  // namespace

TextLoadPlan stored_table_plan(const StoredTable& stored, const Options& options) {
  TextLoadPlan plan;
  plan.rules = text_rules(TextFileSettings());
  plan.rules.keep_controls = true;
  plan.region = platform::RegionalSettings::generic();
  for (const Field& field : stored.fields) plan.columns.push_back({stored_load(field), false});
  plan.further = {ColumnLoad::kAnalyze, false};
  plan.max_records = options.max_records;
  plan.threads = thread_count(options.used_processor_cores);
  return plan;
}

TableData assemble_table(const StoredTable& stored, TableData loaded,
                         std::vector<std::pair<size_t, ContentColumn>>& file_lists) {
  TableData data;
  data.record_count = loaded.record_count;
  data.fields = stored.fields;
  data.flags = stored_flags(stored, loaded.record_count);
  data.objects = stored.objects;
  data.later_objects.kinds = stored.later_objects;
  data.later_objects.set_fields(stored.fields, {});
  size_t next = 0;
  for (size_t i = 0; i < stored.fields.size(); ++i) {
    const FieldType type = stored.fields[i].type;
    Column column = make_column(type);
    if (stored_load(stored.fields[i]) != ColumnLoad::kSkip && next < loaded.columns.size()) {
      Column& read = loaded.columns[next++];
      if (type == FieldType::kFiles) {
        file_lists.emplace_back(i, std::move(std::get<ContentColumn>(read)));
      } else {
        column = std::move(read);
      }
    }
    resize_column(column, data.record_count);
    data.columns.push_back(std::move(column));
  }
  std::vector<std::string> names;
  for (const Field& field : data.fields) names.push_back(field.name);
  for (; next < loaded.columns.size() && record_bytes(data.fields.size() + 1) <= kMaxRecordBytes; ++next) {
    names.push_back(loaded.fields[next].name);
    data.fields.push_back(std::move(loaded.fields[next]));
    data.fields.back().position = static_cast<uint16_t>(data.fields.size() - 1);
    data.columns.push_back(std::move(loaded.columns[next]));
  }
  make_names_unique(names);
  for (size_t i = 0; i < names.size(); ++i) data.fields[i].name = std::move(names[i]);
  return data;
}

}  // namespace rowvane

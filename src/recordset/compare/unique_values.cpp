#include "recordset/compare/unique_values.h"

#include "core/database/database.h"
#include "recordset/compare/record_groups.h"

namespace rowvane {

Check check_unique_values(const CWorkSheet& table, const UniqueSearch& search) {
  Check check = check_compared_fields(table, search.fields);
  if (!check.passes() || !search.save_frequencies) return check;
  const bool is_numeric = search.frequency_field < table.field_count() &&
                          table.field(search.frequency_field).type == FieldType::kNumber;
  if (!is_numeric) return texts::kNumericFieldNeeded;
  return table.field(search.frequency_field).encrypted ? Check(ErrorCode::kEncryptedField) : Check();
}

UniqueResult find_unique_values(const CWorkSheet& table, const RecordSet& scope, const UniqueSearch& search,
                                const SortOptions& sort_options, const Options& options, Progress& progress) {
  UniqueResult result;
  if (search.fields.empty()) result.failure = ErrorCode::kInvalidCacheIndex;
  if (!result.is_done()) return result;
  progress.begin("Finding Unique Values");
  const RecordGroups groups(table, scope, search.fields, sort_options, options, progress);
  result.outcome() = groups.outcome();
  const auto choose = [&search](size_t size) {
    return search.mode == UniqueMode::kFirst ? GroupPart{0, 1} : GroupPart{size - 1, size};
  };
  ChosenRecords chosen = choose_records(groups, choose, search.sort_results);
  result.records = std::move(chosen.records);
  result.frequencies = std::move(chosen.group_sizes);
  return result;
}

ErrorCode save_frequencies(CWorkSheet& table, const UniqueSearch& search, const UniqueResult& result) {
  std::optional<ChangeGroup> group;
  if (table.database() != nullptr) group.emplace(*table.database(), "Save frequencies");
  NumberColumn frequencies;
  frequencies.cells.assign(result.frequencies.begin(), result.frequencies.end());
  std::vector<RefusedValue> refused;
  const ErrorCode error =
      table.set_values(search.frequency_field, result.records, std::move(frequencies), refused);
  if (error != ErrorCode::kOk || refused.empty()) return error;
  if (group) group->roll_back();
  return refused.front().error;
}

}  // namespace rowvane

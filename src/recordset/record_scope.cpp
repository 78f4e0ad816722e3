#include "recordset/record_scope.h"

#include "core/messages/messages.h"
#include "core/table/work_sheet.h"

namespace rowvane {

RecordSetResult records_of_scope(const CWorkSheet& table, bool whole_table, const RecordSet& shown,
                                 const SortKeys& shown_by, const SortOptions& sort_options,
                                 const Options& options, Progress& progress) {
  RecordSetResult result;
  result.records = whole_table ? all_records(table) : shown;
  if (!whole_table || shown_by.empty()) return result;
  return sort_records(table, result.records, shown_by, sort_options, options, progress);
}

Check nothing_to_find() {
  Check check = texts::kNothingToFind;
  check.beeps = true;
  return check;
}

Check check_compared_fields(const CWorkSheet& table, std::span<const size_t> fields) {
  if (fields.empty()) return nothing_to_find();
  if (fields.size() > kMaxSortKeys)
    return UserText(MessageId::kTooManyKeyFields, {static_cast<long long>(kMaxSortKeys)});
  return check_sort_keys(table, ascending_keys(fields));
}

}  // namespace rowvane

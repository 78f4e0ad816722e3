#include "recordset/sort/sort.h"

#include "core/parallel_blocks.h"
#include "recordset/sort/key_sort.h"

namespace rowvane {

RecordSetResult sort_records(const CWorkSheet& table, std::span<const uint32_t> records, const SortKeys& keys,
                             const SortOptions& sort_options, const Options& options, Progress& progress) {
  RecordSetResult result;
  result.error = check_sort_keys(table, keys);
  if (result.error != ErrorCode::kOk) return result;
  const int threads = thread_count(options.used_processor_cores);
  progress.begin("Sorting");
  const KeyCodes codes = make_key_codes(table, records, keys, sort_options, threads, progress);
  result.error = codes.error;
  if (result.error != ErrorCode::kOk) return result;
  result.records = sort_by_codes(codes, records, threads, progress);
  result.cancelled = progress.cancelled();
  if (result.cancelled) result.records.clear();
  return result;
}

}  // namespace rowvane

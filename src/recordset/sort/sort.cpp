#include "recordset/sort/sort.h"

#include "core/parallel_blocks.h"
#include "recordset/sort/key_sort.h"

namespace rowvane {

RecordSetResult sort_records(const CWorkSheet& table, std::span<const uint32_t> records, const SortKeys& keys,
                             const SortOptions& sort_options, const Options& options, Progress& progress) {
  RecordSetResult result;
  result.failure = check_sort_keys(table, keys).refusal;
  if (!result.is_done()) return result;
  const int threads = thread_count(options.used_processor_cores);
  progress.begin("Sorting");
  const KeyCodes codes = make_key_codes(table, records, keys, sort_options, threads, progress);
  result.failure = codes.failure;
  if (!result.is_done()) return result;
  result.records = sort_by_codes(codes, records, threads, progress);
  result.cancelled = progress.cancelled();
  if (result.cancelled) result.records.clear();
  return result;
}

}  // namespace rowvane

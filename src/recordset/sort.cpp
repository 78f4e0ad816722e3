#include "recordset/sort.h"

#include "core/parallel_blocks.h"
#include "recordset/key_sort.h"

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
  const PlainVector<uint32_t> indices = sort_by_codes(codes, records, false, threads, progress).indices;
  result.cancelled = progress.cancelled();
  if (result.cancelled) return result;
  result.records.resize(records.size());
  parallel_blocks(records.size(), threads, [&](int, uint64_t first, uint64_t last) {
    for (size_t i = first; i <= last; ++i) result.records[i] = records[indices[i]];
  });
  return result;
}

}  // namespace rowvane

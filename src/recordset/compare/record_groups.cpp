#include "recordset/compare/record_groups.h"

#include "core/parallel_blocks.h"
#include "recordset/sort/key_sort.h"

namespace rowvane {

RecordGroups::RecordGroups(const CWorkSheet& table, std::span<const uint32_t> scope,
                           std::span<const size_t> fields, const SortOptions& sort_options,
                           const Options& options, Progress& progress)
    : scope_(scope) {
  const SortKeys keys = ascending_keys(fields);
  outcome_.failure = check_sort_keys(table, keys).refusal;
  if (!outcome_.is_done()) return;
  const int threads = thread_count(options.used_processor_cores);
  const KeyCodes codes = make_key_codes(table, scope, keys, sort_options, threads, progress);
  outcome_.failure = codes.failure;
  if (!outcome_.is_done()) return;
  SortedIndices sorted = sort_indices_by_codes(codes, scope, threads, progress);
  outcome_.cancelled = progress.cancelled();
  if (outcome_.cancelled || scope.empty()) return;
  order_ = std::move(sorted.indices);
  starts_.push_back(0);
  for (size_t i = 1; i < order_.size(); ++i) {
    if (sorted.differs[i] != 0) starts_.push_back(static_cast<uint32_t>(i));
  }
  starts_.push_back(static_cast<uint32_t>(order_.size()));
}

ChosenRecords choose_records(const RecordGroups& groups, const std::function<GroupPart(size_t)>& choose,
                             bool sorted) {
  ChosenRecords chosen;
  std::vector<uint32_t> sizes(sorted ? 0 : groups.scope().size(), 0);  // of chosen records, by their index
  for (size_t number = 0; number < groups.size(); ++number) {
    const std::span<const uint32_t> group = groups.group(number);
    const GroupPart part = choose(group.size());
    for (size_t i = part.first; i < part.end; ++i) {
      if (sorted) {
        chosen.records.push_back(groups.scope()[group[i]]);
        chosen.group_sizes.push_back(static_cast<uint32_t>(group.size()));
      } else {
        sizes[group[i]] = static_cast<uint32_t>(group.size());
      }
    }
  }
  for (size_t i = 0; i < sizes.size(); ++i) {
    if (sizes[i] == 0) continue;
    chosen.records.push_back(groups.scope()[i]);
    chosen.group_sizes.push_back(sizes[i]);
  }
  return chosen;
}

}  // namespace rowvane

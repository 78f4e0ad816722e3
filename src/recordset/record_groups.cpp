#include "recordset/record_groups.h"

#include <array>

#include "core/parallel_blocks.h"
#include "recordset/key_sort.h"

namespace rowvane {
namespace {

constexpr size_t kChunk = 1024;  // records compared at a time

// Finds where records differ from those before them, chunk by chunk.
class DifferenceFinder {
 public:
  explicit DifferenceFinder(const KeyCodes& codes) : codes_(codes) {}

  // Calls `found(i)` for each I from 1 to the size of POSITIONS - 1 whose record differs from the one before.
  template <typename Found>
  void run(std::span<const uint32_t> positions, const Found& found) {
    differs_.fill(false);
    for (const KeyColumn& column : codes_.columns) {
      words_.fill(0);
      column.append(positions, words_.data());
      for (size_t i = 1; i < positions.size(); ++i) differs_[i] |= words_[i] != words_[i - 1];
    }
    for (size_t i = 1; i < positions.size(); ++i) {
      if (differs_[i]) found(i);
    }
  }

 private:
  const KeyCodes& codes_;
  std::array<uint64_t, kChunk + 1> words_{};
  std::array<bool, kChunk + 1> differs_{};
};

}  // namespace

RecordGroups::RecordGroups(const CWorkSheet& table, std::span<const uint32_t> scope,
                           std::span<const size_t> fields, const SortOptions& sort_options,
                           const Options& options, Progress& progress)
    : scope_(scope) {
  const SortKeys keys = ascending_keys(fields);
  error_ = check_sort_keys(table, keys);
  if (error_ != ErrorCode::kOk) return;
  const int threads = thread_count(options.used_processor_cores);
  const KeyCodes codes = make_key_codes(table, scope, keys, sort_options, threads, progress);
  error_ = codes.error;
  if (error_ != ErrorCode::kOk) return;
  order_ = sort_by_codes(codes, scope, threads, progress);
  cancelled_ = progress.cancelled();
  if (!cancelled_ && !scope.empty()) cut(codes, threads);
}

void RecordGroups::cut(const KeyCodes& codes, int threads) {
  std::vector<std::vector<uint32_t>> found(static_cast<size_t>(threads));
  parallel_blocks(order_.size(), threads, [&](int thread, uint64_t first, uint64_t last) {
    DifferenceFinder finder(codes);
    std::array<uint32_t, kChunk + 1> positions;
    // Each chunk begins with the record before it.
    for (size_t from = std::max<size_t>(first, 1); from <= last; from += kChunk) {
      const size_t count = std::min(kChunk, last - from + 1) + 1;
      for (size_t i = 0; i < count; ++i) positions[i] = scope_[order_[from - 1 + i]];
      finder.run({positions.data(), count}, [&](size_t i) {
        found[static_cast<size_t>(thread)].push_back(static_cast<uint32_t>(from - 1 + i));
      });
    }
  });
  starts_.push_back(0);
  for (const std::vector<uint32_t>& starts : found)
    starts_.insert(starts_.end(), starts.begin(), starts.end());
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

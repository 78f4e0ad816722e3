#include "recordset/search/search.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <numeric>

#include "core/parallel_blocks.h"
#include "core/uninitialized_vector.h"
#include "formula/passes/block_vector.h"
#include "recordset/search/record_filter.h"
#include "recordset/search/similar_order.h"
#include "text/regular_expression.h"

namespace rowvane {
namespace {

constexpr std::string_view kCaption = "Search";
constexpr uint64_t kBlocksPerReport = 64;  // blocks

using Positions = UninitializedVector<uint32_t>;

// Puts filters, the fastest first, to records in ascending order.
class FilterPass {
 public:
  // WITHIN are ascending positions; null: all records. Both are borrowed.
  FilterPass(const CWorkSheet& table, const Positions* within, SearchState& state, Progress& progress)
      : within_(within),
        count_(within != nullptr ? within->size() : table.record_count()),
        state_(state),
        progress_(progress) {}

  // The records that pass all FILTERS, ascending.
  RecordSet run(const std::vector<RecordFilterPointer>& filters, int threads) {
    make_workers(filters, threads);
    found_.resize(workers_.size());
    parallel_blocks(count_, threads, [this](int thread, uint64_t first, uint64_t end) {
      run_thread(static_cast<size_t>(thread), first, end);
    });
    RecordSet all;
    size_t size = 0;
    for (const Positions& found : found_) size += found.size();
    all.reserve(size);
    for (const Positions& found : found_) all.insert(all.end(), found.begin(), found.end());
    return all;
  }

 private:
  using Workers = std::vector<std::unique_ptr<FilterWorker>>;

  // On the calling thread, where a lack of memory can be told.
  void make_workers(const std::vector<RecordFilterPointer>& filters, int threads) {
    workers_.resize(static_cast<size_t>(threads));
    for (Workers& workers : workers_) {
      for (const RecordFilterPointer& filter : filters) workers.push_back(filter->make_worker());
    }
  }

  // The candidates from FIRST on that lie in one block, before END, written to POSITIONS; answers how many.
  size_t take_block(uint64_t first, uint64_t end, uint32_t* positions) const {
    const auto block_end = [](uint64_t position) { return (position / kBlockRecords + 1) * kBlockRecords; };
    if (within_ == nullptr) {
      const uint64_t count = std::min(end, block_end(first)) - first;
      std::iota(positions, positions + count, static_cast<uint32_t>(first));
      return count;
    }
    const uint64_t limit = block_end((*within_)[first]);
    size_t count = 0;
    for (uint64_t i = first; i < end && (*within_)[i] < limit; ++i) positions[count++] = (*within_)[i];
    return count;
  }

  void run_thread(size_t thread, uint64_t first, uint64_t end) {
    std::array<uint32_t, kBlockRecords> positions;
    Positions& found = found_[thread];
    for (uint64_t from = first, block = 0; from < end && !state_.is_over(); ++block) {
      const size_t taken = take_block(from, end, positions.data());
      size_t count = taken;
      for (const auto& worker : workers_[thread]) {
        if (count > 0) count = worker->keep(positions.data(), count);
      }
      found.insert(found.end(), positions.begin(), positions.begin() + static_cast<std::ptrdiff_t>(count));
      from += taken;
      report(taken, block);
    }
  }

  void report(size_t taken, uint64_t block) {
    const uint64_t done = done_.fetch_add(taken, std::memory_order_relaxed) + taken;
    if (block % kBlocksPerReport == 0) progress_.report(done, count_);
  }

  const Positions* within_;
  uint64_t count_;
  SearchState& state_;
  Progress& progress_;
  std::vector<Workers> workers_;  // by thread
  std::vector<Positions> found_;  // by thread
  std::atomic<uint64_t> done_ = 0;
};

// Each record once.
Positions in_ascending_order(const RecordSet& records) {
  Positions ascending(records.begin(), records.end());
  if (!std::ranges::is_sorted(ascending)) std::ranges::sort(ascending);
  ascending.erase(std::unique(ascending.begin(), ascending.end()), ascending.end());
  return ascending;
}

// FOUND, which ascends, in the order of SHOWN.
RecordSet in_display_order(RecordSet found, const RecordSet& shown, uint32_t record_count) {
  if (std::ranges::is_sorted(shown)) return found;
  std::vector<bool> is_found(record_count);
  for (const uint32_t position : found) is_found[position] = true;
  found.clear();
  for (const uint32_t position : shown) {
    if (is_found[position]) found.push_back(position);
  }
  return found;
}

std::vector<RecordFilterPointer> make_filters(const FilterContext& context,
                                              const std::vector<FieldCriterion>& criteria) {
  std::vector<RecordFilterPointer> filters;
  for (const FieldCriterion& wanted : criteria)
    filters.push_back(make_record_filter(context, wanted.field, wanted.criterion));
  std::ranges::stable_sort(filters, {}, [](const RecordFilterPointer& filter) { return filter->cost(); });
  return filters;
}

bool is_plain_text_search(const CWorkSheet& table, const FieldCriterion& wanted) {
  return wanted.criterion.kind == CriterionKind::kRegEx &&
         table.field(wanted.field).type == FieldType::kLongText;
}

void add_notices(const CWorkSheet& table, const Search& settings, const SearchState& state,
                 SearchResult& result) {
  if (std::ranges::any_of(settings.criteria,
                          [&](const FieldCriterion& each) { return is_plain_text_search(table, each); }))
    result.note(texts::kNoRegexInLongTexts);
  if (state.missed() > 0) {
    result.note(std::to_string(state.missed()) +
                " values could not be read: " + std::string(error_text(state.missed_error())));
  }
}

}  // namespace

SearchResult search(const CWorkSheet& table, const Search& settings, const FormulaSettings& formulas,
                    Progress& progress) {
  SearchResult result;
  result.failure = check_search(table, settings, formulas).refusal;
  if (!result.is_done()) return result;
  progress.begin(kCaption);
  const int threads = thread_count(settings.threads);
  SearchState state(progress);
  Positions within;
  if (settings.within) within = in_ascending_order(*settings.within);
  const size_t candidates = settings.within ? within.size() : table.record_count();
  const FilterContext context{table, formulas, settings.options, candidates, state};
  const std::vector<RecordFilterPointer> filters = make_filters(context, settings.criteria);
  FilterPass pass(table, settings.within ? &within : nullptr, state, progress);
  result.records = pass.run(filters, threads);
  if (settings.within)
    result.records = in_display_order(std::move(result.records), *settings.within, table.record_count());
  sort_by_similarity(table, settings.criteria, threads, state, result.records);
  result.failure = state.failure();
  result.cancelled = result.failure.empty() && progress.cancelled();
  if (state.is_over()) result.records.clear();
  add_notices(table, settings, state, result);
  return result;
}

}  // namespace rowvane

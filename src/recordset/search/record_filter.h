// One criterion, made ready to be put to the records of a table.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "core/progress.h"
#include "core/table/work_sheet.h"
#include "formula/language/formula_settings.h"
#include "recordset/search/criterion.h"
#include "recordset/search/search_options.h"

namespace rowvane {

// What the threads of a search tell each other.
class SearchState {
 public:
  explicit SearchState(const Progress& progress) : progress_(progress) {}

  // True once the search has failed or is to stop.
  bool is_over() const { return failed_.load(std::memory_order_relaxed) || progress_.cancelled(); }

  // The search ends with TEXT. The first failure counts.
  void fail(std::string_view text);
  // A value could not be read.
  void miss(ErrorCode error);

  // To be asked when all threads have ended.
  const std::string& failure() const { return failure_; }
  uint64_t missed() const { return missed_; }
  ErrorCode missed_error() const { return missed_error_; }

 private:
  const Progress& progress_;
  std::atomic<bool> failed_ = false;
  std::mutex mutex_;
  std::string failure_;
  uint64_t missed_ = 0;
  ErrorCode missed_error_ = ErrorCode::kOk;
};

struct FilterContext {
  const CWorkSheet& table;
  const FormulaSettings& formulas;
  const SearchOptions& options;
  size_t records;  // that will be looked at, at most
  SearchState& state;
};

// Puts the criterion to records, on one thread.
class FilterWorker {
 public:
  virtual ~FilterWorker() = default;
  // Keeps those of COUNT record positions that match; answers how many. They ascend and lie in one run of
  // kBlockRecords, which begins at a multiple of that.
  virtual size_t keep(uint32_t* positions, size_t count) = 0;
};

class RecordFilter {
 public:
  virtual ~RecordFilter() = default;
  // Workers read the filter, which they do not own.
  virtual std::unique_ptr<FilterWorker> make_worker() const = 0;
  // About how many nanoseconds a record takes.
  virtual int cost() const = 0;
};

using RecordFilterPointer = std::unique_ptr<RecordFilter>;

// A criterion that check_search accepts, for the field with this index. CONTEXT is borrowed.
RecordFilterPointer make_record_filter(const FilterContext& context, size_t field,
                                       const Criterion& criterion);

// The filters that make_record_filter chooses from.
RecordFilterPointer make_flag_filter(const FilterContext& context, const Criterion& criterion);
RecordFilterPointer make_text_filter(const FilterContext& context, size_t field, const Criterion& criterion);
RecordFilterPointer make_formula_filter(const FilterContext& context, std::string_view formula);
// The kinds kEqual to kIsEmpty; null where values of CRITERION are no plain numbers.
RecordFilterPointer make_number_filter(const FilterContext& context, size_t field,
                                       const Criterion& criterion);

// Keeps the positions for which MATCHES answers true or 1.
template <typename Matches>
size_t keep_matches(uint32_t* positions, size_t count, const Matches& matches) {
  size_t kept = 0;
  for (size_t i = 0; i < count; ++i) {
    const uint32_t position = positions[i];
    positions[kept] = position;
    kept += static_cast<size_t>(matches(position));
  }
  return kept;
}

}  // namespace rowvane

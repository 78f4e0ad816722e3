#include "recordset/compare/duplicates.h"

#include <numeric>

#include "recordset/compare/record_groups.h"

namespace rowvane {
namespace {

GroupPart part_of_group(size_t size, DuplicatesMode mode) {
  if (size < 2) return {};
  switch (mode) {
    case DuplicatesMode::kAll:
      return {0, size};
    case DuplicatesMode::kFirst:
      return {0, 1};
    case DuplicatesMode::kLast:
      return {size - 1, size};
    case DuplicatesMode::kAllButFirst:
      return {1, size};
    case DuplicatesMode::kAllButLast:
      return {0, size - 1};
  }
  return {};
}

DuplicatesSearch quick_search(size_t first, size_t end, DuplicatesMode mode, bool sort_results) {
  DuplicatesSearch search;
  search.sort_results = sort_results;
  search.fields.resize(end - first);
  std::iota(search.fields.begin(), search.fields.end(), first);
  search.mode = mode;
  return search;
}

}  // namespace

Check check_duplicates(const CWorkSheet& table, const DuplicatesSearch& search) {
  return check_compared_fields(table, search.fields);
}

RecordSetResult find_duplicates(const CWorkSheet& table, const RecordSet& scope,
                                const DuplicatesSearch& search, const SortOptions& sort_options,
                                const Options& options, Progress& progress) {
  RecordSetResult result;
  if (search.fields.empty()) result.failure = ErrorCode::kInvalidCacheIndex;
  if (!result.is_done()) return result;
  progress.begin("Finding Duplicates");
  const RecordGroups groups(table, scope, search.fields, sort_options, options, progress);
  result.outcome() = groups.outcome();
  const auto choose = [&search](size_t size) { return part_of_group(size, search.mode); };
  result.records = choose_records(groups, choose, search.sort_results).records;
  return result;
}

DuplicatesSearch quick_duplicates(size_t first, size_t end) {
  return quick_search(first, end, DuplicatesMode::kAll, true);
}

DuplicatesSearch quick_filtered_duplicates(size_t first, size_t end) {
  return quick_search(first, end, DuplicatesMode::kAllButFirst, false);
}

}  // namespace rowvane

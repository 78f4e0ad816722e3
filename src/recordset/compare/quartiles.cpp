#include "recordset/compare/quartiles.h"

#include <algorithm>
#include <cmath>

#include "core/messages/messages.h"
#include "core/parallel_blocks.h"
#include "core/table/work_sheet.h"
#include "core/uninitialized_vector.h"
#include "core/values/exact_sum.h"
#include "core/values/quantiles.h"
#include "recordset/compare/number_selection.h"

namespace rowvane {
namespace {

constexpr uint64_t kRecordsPerCheck = 1 << 16;  // records between two looks at the progress

// Calls `work(thread, position)` for all RECORDS, each thread its own part, as long as nobody cancels.
template <typename Work>
void for_records(std::span<const uint32_t> records, int threads, const Progress& progress, const Work& work) {
  parallel_blocks(records.size(), threads, [&](int thread, uint64_t first, uint64_t end) {
    for (uint64_t i = first; i < end; ++i) {
      if (i % kRecordsPerCheck == 0 && progress.cancelled()) return;
      work(static_cast<size_t>(thread), records[i]);
    }
  });
}

// What a thread found: the numbers from `first` up to the one before `end`.
struct NumberPart {
  size_t first = 0;
  size_t end = 0;
  ExactSum sum;
};

// Moves the numbers of the parts together and answers the sum of all.
ExactSum join_parts(const std::vector<NumberPart>& parts, UninitializedVector<double>& numbers) {
  ExactSum sum;
  size_t size = 0;
  for (const NumberPart& part : parts) {
    if (part.first != size) {
      std::copy(numbers.begin() + static_cast<std::ptrdiff_t>(part.first),
                numbers.begin() + static_cast<std::ptrdiff_t>(part.end),
                numbers.begin() + static_cast<std::ptrdiff_t>(size));
    }
    size += part.end - part.first;
    sum.add(part.sum);
  }
  numbers.resize(size);
  return sum;
}

std::array<double, 3> select_quartiles(std::span<const double> numbers, int threads,
                                       const Progress& progress) {
  std::array<QuantilePlace, 3> quantiles;
  std::vector<size_t> places;
  for (size_t i = 0; i < quantiles.size(); ++i) {
    quantiles[i] = quantile_place(numbers.size(), static_cast<double>(i + 1) / 4);
    places.push_back(quantiles[i].lower);
    places.push_back(std::min(quantiles[i].lower + 1, numbers.size() - 1));
  }
  std::ranges::sort(places);
  const std::vector<double> selected = select_places(numbers, places, threads, progress);
  const auto number_at = [&](size_t place) {
    return selected[static_cast<size_t>(std::ranges::lower_bound(places, place) - places.begin())];
  };
  std::array<double, 3> found{};
  for (size_t i = 0; i < found.size(); ++i) {
    const auto [lower, fraction] = quantiles[i];
    found[i] = interpolate(number_at(lower), number_at(std::min(lower + 1, numbers.size() - 1)), fraction);
  }
  return found;
}

// Whether a number is to be found.
class NumberTest {
 public:
  NumberTest(uint8_t mode, const FieldStatistics& statistics)
      : mode_(mode), choice_(quartile_choice(mode)), statistics_(statistics) {}

  bool operator()(double cell) const {
    if (cell != cell) return false;  // empty, or an error
    if (choice_ == QuartileChoice::kSmaller) return cell < statistics_.mean;
    if (choice_ == QuartileChoice::kEqualOrGreater) return cell >= statistics_.mean;
    unsigned band = 0;
    for (const double quartile : statistics_.quartiles) band += cell >= quartile ? 1 : 0;
    return (mode_ >> band & 1) != 0;
  }

 private:
  uint8_t mode_;
  QuartileChoice choice_;
  const FieldStatistics& statistics_;
};

const NumberColumn* number_column(const CWorkSheet& table, size_t field) {
  return field < table.field_count() ? std::get_if<NumberColumn>(&table.column(field)) : nullptr;
}

}  // namespace

QuartileChoice quartile_choice(uint8_t mode) {
  if ((mode & kBelowMean) != 0) return QuartileChoice::kSmaller;
  return (mode & kFromMean) != 0 ? QuartileChoice::kEqualOrGreater : QuartileChoice::kBands;
}

uint8_t with_choice(uint8_t mode, QuartileChoice choice) {
  const unsigned boxes = mode & kQuartileBits;
  if (choice == QuartileChoice::kSmaller) return static_cast<uint8_t>(boxes | kBelowMean);
  return static_cast<uint8_t>(choice == QuartileChoice::kEqualOrGreater ? boxes | kFromMean : boxes);
}

uint8_t with_band(uint8_t mode, uint8_t band, bool checked) {
  return static_cast<uint8_t>(checked ? mode | band : mode & ~static_cast<unsigned>(band));
}

bool is_statistics_choice_enabled(const QuartileSearch& search) {
  return !search.whole_table;
}

bool uses_whole_table_statistics(const QuartileSearch& search) {
  return search.whole_table || search.whole_table_statistics;
}

Check check_quartiles(const CWorkSheet& table, const QuartileSearch& search) {
  if (number_column(table, search.field) == nullptr) return texts::kNumericFieldNeeded;
  if (table.field(search.field).encrypted) return ErrorCode::kEncryptedField;
  constexpr uint8_t kBothSides = kBelowMean | kFromMean;
  const bool finds =
      search.mode != 0 && search.mode < 2 * kFromMean && (search.mode & kBothSides) != kBothSides;
  return finds ? Check() : nothing_to_find();
}

FieldStatistics field_statistics(const CWorkSheet& table, std::span<const uint32_t> records, size_t field,
                                 const Options& options, const Progress& progress) {
  FieldStatistics statistics;
  const int threads = thread_count(options.used_processor_cores);
  const NumberColumn& column = *number_column(table, field);
  UninitializedVector<double> numbers(records.size());
  std::vector<NumberPart> parts(static_cast<size_t>(threads));
  parallel_blocks(records.size(), threads, [&](int thread, uint64_t first, uint64_t end) {
    NumberPart part{.first = first, .end = first, .sum = {}};
    for (uint64_t i = first; i < end; ++i) {
      if (i % kRecordsPerCheck == 0 && progress.cancelled()) break;
      const double cell = column.cells[records[i]];
      if (!std::isfinite(cell)) continue;
      numbers[part.end++] = cell;
      part.sum.add(cell);
    }
    parts[static_cast<size_t>(thread)] = part;
  });
  const ExactSum sum = join_parts(parts, numbers);
  statistics.count = numbers.size();
  if (numbers.empty() || progress.cancelled()) return statistics;
  statistics.mean = sum.mean(numbers.size());
  statistics.quartiles = select_quartiles(numbers, threads, progress);
  return statistics;
}

QuartileResult find_quartiles(const CWorkSheet& table, const RecordSet& scope, const QuartileSearch& search,
                              const Options& options, Progress& progress) {
  QuartileResult result;
  const NumberColumn* column = number_column(table, search.field);
  if (column == nullptr) result.failure = ErrorCode::kFieldTypeMismatch;
  if (column != nullptr && table.field(search.field).encrypted) result.failure = ErrorCode::kEncryptedField;
  if (!result.is_done()) return result;
  progress.begin("Finding Quartiles");
  const bool is_all_needed = uses_whole_table_statistics(search) && scope.size() < table.record_count();
  result.statistics =
      field_statistics(table, is_all_needed ? all_records(table) : scope, search.field, options, progress);
  const int threads = thread_count(options.used_processor_cores);
  const NumberTest is_wanted(search.mode, result.statistics);
  std::vector<RecordSet> found(static_cast<size_t>(threads));
  for_records(scope, threads, progress, [&](size_t thread, uint32_t position) {
    if (is_wanted(column->cells[position])) found[thread].push_back(position);
  });
  result.cancelled = progress.cancelled();
  if (result.cancelled || result.statistics.count == 0) return result;
  for (const RecordSet& part : found) result.records.insert(result.records.end(), part.begin(), part.end());
  return result;
}

}  // namespace rowvane

#include "recordset/sort/counting_sort.h"

#include <algorithm>
#include <utility>

#include "core/parallel_blocks.h"

namespace rowvane {
namespace {

constexpr size_t kCodesAtOnce = 1024;  // records whose codes are made at a time

class CountingSort {
 public:
  CountingSort(const KeyCodes& codes, std::span<const uint32_t> records, int threads,
               const Progress& progress)
      : columns_(codes.columns), records_(records), threads_(threads), progress_(progress) {}

  SortedIndices run(bool with_indices) {
    codes_.resize(records_.size());
    places_.resize(static_cast<size_t>(threads_));
    count();
    if (progress_.cancelled()) return {};
    counts_to_places();
    SortedIndices sorted;
    sorted.indices.resize(records_.size());
    if (with_indices) {
      move([](size_t index) { return static_cast<uint32_t>(index); }, sorted.indices);
      sorted.differs = first_places();
    } else {
      move([&](size_t index) { return records_[index]; }, sorted.indices);
    }
    return sorted;
  }

 private:
  using Places = std::vector<uint32_t>;  // of each code

  void count() {
    const size_t codes = size_t{1} << bits_of(columns_);
    parallel_blocks(records_.size(), threads_, [&](int thread, uint64_t first, uint64_t end) {
      Places counts(codes);
      uint64_t words[kCodesAtOnce];
      for (size_t from = first; from < end && !progress_.cancelled(); from += kCodesAtOnce) {
        const size_t chunk = std::min(kCodesAtOnce, end - from);
        join_codes(columns_, records_.subspan(from, chunk), words);
        for (size_t i = 0; i < chunk; ++i) {
          codes_[from + i] = static_cast<uint16_t>(words[i]);
          ++counts[words[i]];
        }
      }
      places_[static_cast<size_t>(thread)] = std::move(counts);
    });
    std::erase_if(places_, [](const Places& counts) { return counts.empty(); });
  }

  void counts_to_places() {
    uint32_t place = 0;
    for (size_t code = 0; !places_.empty() && code < places_[0].size(); ++code) {
      firsts_.push_back(place);
      for (Places& own : places_) place += std::exchange(own[code], place);
    }
  }

  template <typename ValueOf>
  void move(const ValueOf& value_of, std::span<uint32_t> sorted) {
    parallel_blocks(records_.size(), threads_, [&](int thread, uint64_t first, uint64_t end) {
      Places& places = places_[static_cast<size_t>(thread)];
      for (size_t i = first; i < end; ++i) sorted[places[codes_[i]]++] = value_of(i);
    });
  }

  // Marks where each code begins.
  UninitializedVector<uint8_t> first_places() const {
    UninitializedVector<uint8_t> marks(records_.size(), uint8_t{0});
    for (const uint32_t first : firsts_) {
      if (first < marks.size()) marks[first] = 1;
    }
    return marks;
  }

  std::span<const KeyColumn> columns_;
  std::span<const uint32_t> records_;
  int threads_;
  const Progress& progress_;
  UninitializedVector<uint16_t> codes_;  // of the records
  std::vector<Places> places_;           // of each thread
  std::vector<uint32_t> firsts_;  // the place of the first record with each code, or with a greater one
};

}  // namespace

SortedIndices sort_by_counting(const KeyCodes& codes, std::span<const uint32_t> records, bool with_indices,
                               int threads, const Progress& progress) {
  return CountingSort(codes, records, threads, progress).run(with_indices);
}

}  // namespace rowvane

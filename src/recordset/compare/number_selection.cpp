#include "recordset/compare/number_selection.h"

#include <algorithm>
#include <cstdint>

#include "core/parallel_blocks.h"
#include "recordset/sort/number_coding.h"

namespace rowvane {
namespace {

constexpr int kLeadingBits = 16;
constexpr size_t kSelectionBuckets = size_t{1} << kLeadingBits;

// Numbers of a greater bucket are greater.
size_t bucket_of(double number) {
  constexpr uint64_t kSign = uint64_t{1} << 63;
  return (ordered_bits(number) ^ kSign) >> (64 - kLeadingBits);
}

using Counts = std::vector<uint32_t>;

Counts count_buckets(std::span<const double> numbers, int threads) {
  std::vector<Counts> counts(static_cast<size_t>(threads), Counts(kSelectionBuckets, 0));
  parallel_blocks(numbers.size(), threads, [&](int thread, uint64_t first, uint64_t end) {
    Counts& own = counts[static_cast<size_t>(thread)];
    for (size_t i = first; i < end; ++i) ++own[bucket_of(numbers[i])];
  });
  for (size_t thread = 1; thread < counts.size(); ++thread) {
    std::ranges::transform(counts[0], counts[thread], counts[0].begin(), std::plus<>());
  }
  return std::move(counts[0]);
}

// The numbers of the wanted buckets, each bucket by itself.
class BucketMembers {
 public:
  explicit BucketMembers(const std::vector<size_t>& buckets)
      : number_of_(kSelectionBuckets, 0), members_(buckets.size() + 1) {
    for (size_t i = 0; i < buckets.size(); ++i) number_of_[buckets[i]] = static_cast<uint8_t>(i + 1);
  }

  void collect(std::span<const double> numbers, int threads) {
    std::vector<std::vector<UninitializedVector<double>>> found(static_cast<size_t>(threads), members_);
    parallel_blocks(numbers.size(), threads, [&](int thread, uint64_t first, uint64_t end) {
      auto& own = found[static_cast<size_t>(thread)];
      for (size_t i = first; i < end; ++i) {
        if (const uint8_t number = number_of_[bucket_of(numbers[i])]; number != 0)
          own[number].push_back(numbers[i]);
      }
    });
    for (const auto& own : found) {
      for (size_t i = 0; i < members_.size(); ++i)
        members_[i].insert(members_[i].end(), own[i].begin(), own[i].end());
    }
  }

  // The member that has so many before it.
  double select(size_t bucket, size_t place) {
    UninitializedVector<double>& members = members_[number_of_[bucket]];
    const auto wanted = members.begin() + static_cast<std::ptrdiff_t>(place);
    std::nth_element(members.begin(), wanted, members.end());
    return *wanted;
  }

 private:
  std::vector<uint8_t> number_of_;                    // of each bucket, 0 for those that are not wanted
  std::vector<UninitializedVector<double>> members_;  // of the wanted buckets, from 1
};

}  // namespace

std::vector<double> select_places(std::span<const double> numbers, std::span<const size_t> places,
                                  int threads, const Progress& progress) {
  const Counts counts = count_buckets(numbers, threads);
  struct Wanted {
    size_t bucket;
    size_t place;  // in the bucket
  };
  std::vector<Wanted> wanted;
  std::vector<size_t> buckets;
  size_t before = 0;
  for (size_t bucket = 0; bucket < kSelectionBuckets && wanted.size() < places.size(); ++bucket) {
    const size_t end = before + counts[bucket];
    while (wanted.size() < places.size() && places[wanted.size()] < end) {
      if (buckets.empty() || buckets.back() != bucket) buckets.push_back(bucket);
      wanted.push_back({bucket, places[wanted.size()] - before});
    }
    before = end;
  }
  std::vector<double> selected(places.size());
  if (progress.cancelled()) return selected;
  BucketMembers members(buckets);
  members.collect(numbers, threads);
  for (size_t i = 0; i < wanted.size() && !progress.cancelled(); ++i) {
    selected[i] = members.select(wanted[i].bucket, wanted[i].place);
  }
  return selected;
}

}  // namespace rowvane

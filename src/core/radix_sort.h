// Stable sorting of large arrays by integers, on several threads.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/parallel_blocks.h"
#include "core/progress.h"

namespace rowvane {

// An element of radix_sort: a key and what belongs to it.
struct KeyedIndex {
  uint64_t key;
  uint32_t index;
};
inline uint64_t radix_key(const KeyedIndex& element) {
  return element.key;
}
// The same for elements that hold everything in one integer.
inline uint64_t radix_key(uint64_t element) {
  return element;
}

// Elements fewer than these are not worth counting or sharing.
inline constexpr size_t kFewElements = 2048;

// Elements so many that counts of wide digits do not show.
inline constexpr size_t kManyElements = 1 << 12;

// So few that comparing them in place is fastest.
inline constexpr size_t kInsertedElements = 32;

// Sorts by the bits FIRST_BIT to LAST_BIT - 1 of the keys, lowest digit first: each pass counts the values of
// one digit and moves every element to its place, the threads side by side, elements of equal digits in their
// order. Passes in which nothing differs cost a count only.
template <typename Element>
class RadixSort {
 public:
  // ELEMENTS, fewer than 2^32, and SPARE are of the same size; SPARE is work space.
  RadixSort(std::span<Element> elements, std::span<Element> spare, int threads)
      : from_(elements), to_(spare), threads_(elements.size() < kFewElements ? 1 : threads) {}

  // Answers where the result is, in ELEMENTS or in SPARE; it is not complete when PROGRESS was cancelled.
  std::span<Element> sort(int first_bit, int last_bit, const Progress& progress) {
    if (from_.size() <= kInsertedElements) {
      insert_in_order(first_bit, last_bit);
      return from_;
    }
    // As few passes as can be, and their digits as narrow as can be.
    const int most = from_.size() < kManyElements ? 8 : 11;
    const int passes = (last_bit - first_bit + most - 1) / most;
    for (int left = passes; left > 0 && !progress.cancelled(); --left) {
      const int width = (last_bit - first_bit + left - 1) / left;
      pass(first_bit, width);
      first_bit += width;
    }
    return from_;
  }

 private:
  using Counts = std::vector<uint32_t>;

  void insert_in_order(int first_bit, int last_bit) {
    if (first_bit == last_bit) return;
    const auto key = [first_bit, above = 64 - last_bit](const Element& element) {
      return radix_key(element) << above >> above >> first_bit;
    };
    for (size_t i = 1; i < from_.size(); ++i) {
      const Element element = from_[i];
      size_t place = i;
      for (; place > 0 && key(from_[place - 1]) > key(element); --place) from_[place] = from_[place - 1];
      from_[place] = element;
    }
  }

  void pass(int bit, int width) {
    const uint64_t mask = (uint64_t{1} << width) - 1;
    const auto digit = [bit, mask](const Element& element) { return (radix_key(element) >> bit) & mask; };
    for (Counts& counts : counts_) counts.assign(size_t{1} << width, 0);
    for_blocks([&](Counts& counts, size_t first, size_t end) {
      for (size_t i = first; i < end; ++i) ++counts[digit(from_[i])];
    });
    if (!counts_become_places()) return;
    for_blocks([&](Counts& places, size_t first, size_t end) {
      for (size_t i = first; i < end; ++i) to_[places[digit(from_[i])]++] = from_[i];
    });
    std::swap(from_, to_);
  }

  // False when all elements have the same digit.
  bool counts_become_places() {
    uint32_t place = 0;
    for (size_t digit = 0; digit < counts_[0].size(); ++digit) {
      const uint32_t first = place;
      for (Counts& counts : counts_) {
        const uint32_t count = counts[digit];
        counts[digit] = place;
        place += count;
      }
      if (place - first == from_.size()) return false;
    }
    return true;
  }

  template <typename Work>
  void for_blocks(const Work& work) {
    if (threads_ == 1) {
      if (!from_.empty()) work(counts_[0], 0, from_.size());
      return;
    }
    parallel_blocks(from_.size(), threads_, [&](int thread, uint64_t first, uint64_t end) {
      work(counts_[static_cast<size_t>(thread)], first, end);
    });
  }

  std::span<Element> from_;
  std::span<Element> to_;
  int threads_;
  std::vector<Counts> counts_ = std::vector<Counts>(static_cast<size_t>(threads_));
};

}  // namespace rowvane

#include "recordset/sort/key_sort.h"

#include <array>
#include <atomic>

#include "core/parallel_blocks.h"
#include "core/radix_sort.h"
#include "recordset/sort/counting_sort.h"

namespace rowvane {
namespace {

constexpr int kWordBits = 64;
constexpr size_t kWordsAtOnce = 1024;  // records whose words are made at a time

// The leading digit of the words, by which records are dealt out to buckets.
constexpr int kBucketBits = 8;
constexpr size_t kSortBuckets = size_t{1} << kBucketBits;

// Columns whose codes stand side by side in a word.
struct WordColumns {
  std::span<const KeyColumn> columns;
  int bits = 0;
};

// The first word holds the first keys, as many as leave room for what is sorted; a larger one has a word of
// its own.
std::vector<WordColumns> words_of(std::span<const KeyColumn> columns, int value_bits) {
  std::vector<WordColumns> words;
  const int most = std::min(kWordBits, kWordBits + kBucketBits - value_bits);
  for (size_t first = 0; first < columns.size();) {
    int bits = columns[first].bits();
    size_t end = first + 1;
    while (end < columns.size() && bits + columns[end].bits() <= most) {
      bits += columns[end++].bits();
    }
    words.push_back({columns.subspan(first, end - first), bits});
    first = end;
  }
  return words;
}

// A word without its leading digit, and what is sorted, in one integer, where there is room for both: half
// the memory to move.
class PackedElements {
 public:
  explicit PackedElements(int value_bits) : value_bits_(value_bits) {}

  uint64_t make(uint64_t word, uint32_t value) const { return word << value_bits_ | value; }
  uint32_t value_of(uint64_t element) const {
    return static_cast<uint32_t>(element & ((uint64_t{1} << value_bits_) - 1));
  }
  uint64_t word_of(uint64_t element) const { return element >> value_bits_; }
  int first_bit() const { return value_bits_; }
  static void keep_word(uint64_t word, uint64_t& place) { place = word; }

 private:
  int value_bits_;
};

class PairedElements {
 public:
  static KeyedIndex make(uint64_t word, uint32_t value) { return {word, value}; }
  static uint32_t value_of(const KeyedIndex& element) { return element.index; }
  static uint64_t word_of(const KeyedIndex& element) { return element.key; }
  static int first_bit() { return 0; }
  static void keep_word(uint64_t word, KeyedIndex& place) { place.key = word; }
};

// What is sorted: records, or where it must be told which ones differ, their indices of the record set.
enum class Sorted { kRecords, kIndices };

// Sorts by the last word first, then stably by those before it.
class WordSort {
 public:
  WordSort(const KeyCodes& codes, std::span<const uint32_t> records, Sorted what, int threads,
           Progress& progress)
      : columns_(codes.columns),
        records_(records),
        what_(what),
        value_bits_(static_cast<int>(
            std::bit_width(what == Sorted::kRecords ? size_t{codes.table_records} : records.size()))),
        threads_(threads),
        progress_(progress) {}

  SortedIndices run() {
    const std::vector<WordColumns> words = words_of(columns_, value_bits_);
    for (size_t left = words.size(); left > 0 && !progress_.cancelled(); --left) {
      progress_.report((words.size() - left) * records_.size(), words.size() * records_.size());
      sort_by(words[left - 1]);
    }
    if (what_ == Sorted::kIndices && words.size() > 1 && !progress_.cancelled())
      compare(columns_.subspan(words[0].columns.size()));
    return std::move(sorted_);
  }

 private:
  using Places = std::array<size_t, kSortBuckets + 1>;

  void sort_by(const WordColumns& word) {
    if (word.bits - kBucketBits + value_bits_ <= kWordBits) {
      sort_elements<uint64_t>(word, PackedElements(value_bits_));
    } else {
      sort_elements<KeyedIndex>(word, PairedElements());
    }
  }

  // Marks the records that differ in COLUMNS only, which belong to words behind the first.
  void compare(std::span<const KeyColumn> columns) {
    parallel_blocks(records_.size(), threads_, [&](int, uint64_t first, uint64_t end) {
      for (size_t i = std::max<size_t>(first, 1); i < end; ++i) {
        if (sorted_.differs[i] != 0) continue;
        const uint32_t record = records_[sorted_.indices[i]];
        const uint32_t before = records_[sorted_.indices[i - 1]];
        for (const KeyColumn& column : columns) {
          if (column.code(record) != column.code(before)) sorted_.differs[i] = 1;
        }
      }
    });
  }

  // Deals the records out by the leading digit of their words, which no element needs to hold then, and sorts
  // each bucket: most fit into a processor's own cache.
  template <typename Element, typename Elements>
  void sort_elements(const WordColumns& word, const Elements& kind) {
    UninitializedVector<Element> elements(records_.size());
    UninitializedVector<Element> spare(records_.size());
    const int rest_bits = std::max(word.bits - kBucketBits, 0);
    std::vector<Places> places(static_cast<size_t>(threads_), Places{});
    make_words(word, kind, rest_bits, spare.data(), places);
    if (progress_.cancelled()) return;
    const Places starts = counts_to_places(places);
    deal_out<Element>(kind, rest_bits, spare, places, elements.data());
    sorted_.indices.resize(records_.size());
    if (what_ == Sorted::kIndices) sorted_.differs.resize(records_.size());
    sort_buckets<Element>(kind, rest_bits, starts, elements, spare);
  }

  // Counts the leading digits on the way.
  template <typename Element, typename Elements>
  void make_words(const WordColumns& word, const Elements&, int rest_bits, Element* out,
                  std::vector<Places>& counts) const {
    parallel_blocks(records_.size(), threads_, [&](int thread, uint64_t first, uint64_t end) {
      Places& own = counts[static_cast<size_t>(thread)];
      uint32_t positions[kWordsAtOnce];
      uint64_t words[kWordsAtOnce];
      for (size_t from = first; from < end && !progress_.cancelled(); from += kWordsAtOnce) {
        const size_t count = std::min(kWordsAtOnce, end - from);
        for (size_t i = 0; i < count; ++i) positions[i] = position_of(value_at(from + i));
        join_codes(word.columns, {positions, count}, words);
        for (size_t i = 0; i < count; ++i) {
          ++own[words[i] >> rest_bits];
          Elements::keep_word(words[i], out[from + i]);
        }
      }
    });
  }

  // Answers where each bucket starts, and the end.
  static Places counts_to_places(std::vector<Places>& counts) {
    Places starts;
    size_t place = 0;
    for (size_t bucket = 0; bucket <= kSortBuckets; ++bucket) {
      starts[bucket] = place;
      for (Places& own : counts) {
        const size_t count = own[bucket];
        own[bucket] = place;
        place += count;
      }
    }
    return starts;
  }

  template <typename Element, typename Elements>
  void deal_out(const Elements& kind, int rest_bits, std::span<const Element> words,
                std::vector<Places>& places, Element* elements) const {
    const uint64_t rest_mask = (uint64_t{1} << rest_bits) - 1;
    parallel_blocks(records_.size(), threads_, [&](int thread, uint64_t first, uint64_t end) {
      Places& own = places[static_cast<size_t>(thread)];
      for (size_t i = first; i < end; ++i) {
        const uint64_t word = radix_key(words[i]);
        elements[own[word >> rest_bits]++] = kind.make(word & rest_mask, value_at(i));
      }
    });
  }

  // Large buckets one after the other on all threads, the others side by side.
  template <typename Element, typename Elements>
  void sort_buckets(const Elements& kind, int rest_bits, const Places& starts, std::span<Element> elements,
                    std::span<Element> spare) {
    const auto sort = [&](size_t bucket, int threads) {
      const size_t first = starts[bucket];
      const size_t count = starts[bucket + 1] - first;
      RadixSort<Element> radix(elements.subspan(first, count), spare.subspan(first, count), threads);
      keep<Element>(kind, first, radix.sort(kind.first_bit(), kind.first_bit() + rest_bits, progress_));
    };
    const size_t large = std::max(records_.size() / static_cast<size_t>(2 * threads_), kFewElements);
    const auto is_large = [&](size_t bucket) { return starts[bucket + 1] - starts[bucket] > large; };
    for (size_t bucket = 0; bucket < kSortBuckets; ++bucket) {
      if (is_large(bucket)) sort(bucket, threads_);
    }
    std::atomic<size_t> next = 0;
    parallel_blocks(kSortBuckets, threads_, [&](int, uint64_t, uint64_t) {
      for (size_t bucket = next++; bucket < kSortBuckets && !progress_.cancelled(); bucket = next++) {
        if (!is_large(bucket) && starts[bucket] < starts[bucket + 1]) sort(bucket, 1);
      }
    });
  }

  // Keeps what a sorted bucket says.
  template <typename Element, typename Elements>
  void keep(const Elements& kind, size_t first, std::span<const Element> bucket) {
    uint32_t* const values = sorted_.indices.data() + first;
    for (size_t i = 0; i < bucket.size(); ++i) values[i] = kind.value_of(bucket[i]);
    if (what_ == Sorted::kRecords) return;
    uint8_t* const differs = sorted_.differs.data() + first;
    differs[0] = 1;
    for (size_t i = 1; i < bucket.size(); ++i) {
      differs[i] = kind.word_of(bucket[i]) != kind.word_of(bucket[i - 1]) ? 1 : 0;
    }
  }

  // What stands at PLACE before a sort.
  uint32_t value_at(size_t place) const {
    if (!sorted_.indices.empty()) return sorted_.indices[place];
    return what_ == Sorted::kRecords ? records_[place] : static_cast<uint32_t>(place);
  }

  uint32_t position_of(uint32_t value) const { return what_ == Sorted::kRecords ? value : records_[value]; }

  std::span<const KeyColumn> columns_;
  std::span<const uint32_t> records_;
  Sorted what_;
  int value_bits_;
  int threads_;
  Progress& progress_;
  SortedIndices sorted_;
};

bool can_be_counted(const KeyCodes& codes) {
  return bits_of(codes.columns) <= kMostCountedBits;
}

}  // namespace

RecordSet sort_by_codes(const KeyCodes& codes, std::span<const uint32_t> records, int threads,
                        Progress& progress) {
  if (can_be_counted(codes)) return sort_by_counting(codes, records, false, threads, progress).indices;
  return WordSort(codes, records, Sorted::kRecords, threads, progress).run().indices;
}

SortedIndices sort_indices_by_codes(const KeyCodes& codes, std::span<const uint32_t> records, int threads,
                                    Progress& progress) {
  if (can_be_counted(codes)) return sort_by_counting(codes, records, true, threads, progress);
  return WordSort(codes, records, Sorted::kIndices, threads, progress).run();
}

}  // namespace rowvane

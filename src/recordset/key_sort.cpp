#include "recordset/key_sort.h"

#include <numeric>

#include "core/parallel_blocks.h"
#include "recordset/radix_sort.h"

namespace rowvane {
namespace {

constexpr int kWordBits = 64;
constexpr size_t kChunk = 1024;  // records whose words are made at a time

int index_bits_of(size_t count) {
  return static_cast<int>(std::bit_width(count));
}

// Columns whose codes stand side by side in a word.
struct WordColumns {
  std::span<const KeyColumn> columns;
  int bits = 0;
};

// The first word holds the first keys, as many as leave room for an index; a larger one has a word of its
// own.
std::vector<WordColumns> words_of(std::span<const KeyColumn> columns, int index_bits) {
  std::vector<WordColumns> words;
  for (size_t first = 0; first < columns.size();) {
    int bits = columns[first].bits();
    size_t end = first + 1;
    while (end < columns.size() && bits + columns[end].bits() + index_bits <= kWordBits) {
      bits += columns[end++].bits();
    }
    words.push_back({columns.subspan(first, end - first), bits});
    first = end;
  }
  return words;
}

// A word and an index in one integer, where there is room for both: half the memory to move.
class PackedElements {
 public:
  explicit PackedElements(int index_bits) : index_bits_(index_bits) {}

  uint64_t make(uint64_t word, uint32_t index) const { return word << index_bits_ | index; }
  uint32_t index_of(uint64_t element) const {
    return static_cast<uint32_t>(element & ((uint64_t{1} << index_bits_) - 1));
  }
  int first_bit() const { return index_bits_; }

 private:
  int index_bits_;
};

class PairedElements {
 public:
  static KeyedIndex make(uint64_t word, uint32_t index) { return {word, index}; }
  static uint32_t index_of(const KeyedIndex& element) { return element.index; }
  static int first_bit() { return 0; }
};

// Sorts by the last word first, then stably by those before it.
class WordSort {
 public:
  WordSort(std::span<const uint32_t> records, int threads, Progress& progress)
      : records_(records), threads_(threads), progress_(progress), indices_(records.size()) {
    std::iota(indices_.begin(), indices_.end(), 0u);
  }

  void sort_by(const WordColumns& word) {
    const int index_bits = index_bits_of(records_.size());
    if (word.bits + index_bits <= kWordBits) {
      sort_elements<uint64_t>(word, PackedElements(index_bits));
    } else {
      sort_elements<KeyedIndex>(word, PairedElements());
    }
  }

  PlainVector<uint32_t> take() { return std::move(indices_); }

 private:
  template <typename Element, typename Elements>
  void sort_elements(const WordColumns& word, const Elements& kind) {
    PlainVector<Element> elements(records_.size());
    PlainVector<Element> spare(records_.size());
    make_elements(word, kind, elements.data());
    const int first_bit = kind.first_bit();
    const std::span<Element> sorted =
        RadixSort<Element>(elements, spare, threads_).sort(first_bit, first_bit + word.bits, progress_);
    parallel_blocks(sorted.size(), threads_, [&](int, uint64_t first, uint64_t last) {
      for (size_t i = first; i <= last; ++i) indices_[i] = kind.index_of(sorted[i]);
    });
  }

  template <typename Element, typename Elements>
  void make_elements(const WordColumns& word, const Elements& kind, Element* elements) const {
    parallel_blocks(records_.size(), threads_, [&](int, uint64_t first, uint64_t last) {
      uint32_t positions[kChunk];
      uint64_t words[kChunk];
      for (size_t from = first; from <= last && !progress_.cancelled(); from += kChunk) {
        const size_t count = std::min(kChunk, last - from + 1);
        for (size_t i = 0; i < count; ++i) positions[i] = records_[indices_[from + i]];
        std::fill_n(words, count, uint64_t{0});
        for (const KeyColumn& column : word.columns) column.append({positions, count}, words);
        for (size_t i = 0; i < count; ++i) elements[from + i] = kind.make(words[i], indices_[from + i]);
      }
    });
  }

  std::span<const uint32_t> records_;
  int threads_;
  Progress& progress_;
  PlainVector<uint32_t> indices_;
};

}  // namespace

PlainVector<uint32_t> sort_by_codes(const KeyCodes& codes, std::span<const uint32_t> records, int threads,
                                    Progress& progress) {
  WordSort sort(records, threads, progress);
  const std::vector<WordColumns> words = words_of(codes.columns, index_bits_of(records.size()));
  for (size_t left = words.size(); left > 0 && !progress.cancelled(); --left) {
    progress.report((words.size() - left) * records.size(), words.size() * records.size());
    sort.sort_by(words[left - 1]);
  }
  return sort.take();
}

}  // namespace rowvane

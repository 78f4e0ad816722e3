#include "text/text_ranks.h"

#include <atomic>
#include <bit>
#include <cstring>
#include <memory>
#include <optional>

#include "core/radix_sort.h"

namespace rowvane {
namespace {

constexpr size_t kPrefixBytes = 8;
constexpr size_t kTextsPerCheck = 256;    // texts between two looks at the progress
constexpr size_t kComparedRun = 1 << 13;  // runs up to this are sorted by comparing
constexpr size_t kBlockBytes = size_t{1} << 20;

// Keeps the bytes of keys.
class KeyStore {
 public:
  // Keeps the key of TEXT under ORDER.
  std::string_view keep_key(std::string_view text, const TextOrder& order) {
    key_.clear();
    order.append_key(text, key_);
    std::memcpy(place_for(key_.size()), key_.data(), key_.size());
    return kept(key_.size());
  }

  // Keeps the weights of the characters of TEXT, without zeros.
  std::string_view keep_weights(std::string_view text, std::span<const uint8_t> weights) {
    char* const place = place_for(text.size());
    size_t size = 0;
    for (const char character : text) {
      const uint8_t weight = weights[static_cast<unsigned char>(character)];
      place[size] = static_cast<char>(weight);
      size += weight != 0 ? 1 : 0;
    }
    return kept(size);
  }

 private:
  char* place_for(size_t bytes) {
    if (left_ < bytes) {
      left_ = std::max(kBlockBytes, bytes);
      blocks_.push_back(std::make_unique_for_overwrite<char[]>(left_));
      next_ = blocks_.back().get();
    }
    return next_;
  }

  std::string_view kept(size_t bytes) {
    left_ -= bytes;
    next_ += bytes;
    return {next_ - bytes, bytes};
  }

  std::vector<std::unique_ptr<char[]>> blocks_;
  char* next_ = nullptr;
  size_t left_ = 0;
  std::string key_;  // work space
};

bool has_only_ascii(std::string_view text) {
  unsigned char bits = 0;
  for (const char character : text) bits |= static_cast<unsigned char>(character);
  return bits < 0x80;
}

// The bytes of KEY from OFFSET on as an integer that compares as they do; zeros stand for missing ones.
uint64_t prefix_at(std::string_view key, size_t offset) {
  uint64_t word = 0;
  if (offset < key.size())
    std::memcpy(&word, key.data() + offset, std::min(kPrefixBytes, key.size() - offset));
  if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
  return word;
}

class TextRanking {
 public:
  TextRanking(size_t count, const TextOrder& order, int threads, const Progress& progress)
      : order_(order),
        threads_(threads),
        progress_(progress),
        keys_(count),
        elements_(count),
        spare_(count) {}

  TextRanks run(const std::function<std::string_view(size_t)>& text_at) {
    if (!make_ascii_keys(text_at)) make_keys(text_at);
    sort_run(elements_, spare_, 0);
    sort_small_runs();
    return progress_.cancelled() ? TextRanks() : number_ranks();
  }

 private:
  using Run = std::span<KeyedIndex>;
  struct SmallRun {
    Run run;
    size_t offset;  // so many bytes of the keys are equal
  };

  // Keys without the collation. False where it gives no weights or a text is not of ASCII alone.
  bool make_ascii_keys(const std::function<std::string_view(size_t)>& text_at) {
    const std::span<const uint8_t> weights = order_.ascii_weights();
    if (weights.empty()) return false;
    std::atomic<bool> all_ascii = true;
    for_texts([&](size_t i, KeyStore& store) {
      const std::string_view text = text_at(i);
      if (!has_only_ascii(text)) all_ascii = false;
      if (!all_ascii) return false;
      const std::string_view compared = text.substr(0, text.size() - order_.ignored_part(text).size());
      set_key(i, store.keep_weights(compared, weights));
      return true;
    });
    return all_ascii;
  }

  void make_keys(const std::function<std::string_view(size_t)>& text_at) {
    for_texts([&](size_t i, KeyStore& store) {
      const std::string_view text = text_at(i);
      set_key(i, order_.is_neutral() ? text : store.keep_key(text, order_));
      return true;
    });
  }

  // Calls WORK for each text with its number and the store of the thread, until it answers false.
  template <typename Work>
  void for_texts(const Work& work) {
    stores_.clear();
    stores_.resize(static_cast<size_t>(threads_));
    parallel_blocks(keys_.size(), threads_, [&](int thread, uint64_t first, uint64_t end) {
      KeyStore store;
      for (size_t i = first; i < end; ++i) {
        if (i % kTextsPerCheck == 0 && progress_.cancelled()) break;
        if (!work(i, store)) break;
      }
      stores_[static_cast<size_t>(thread)] = std::move(store);
    });
  }

  void set_key(size_t i, std::string_view key) {
    keys_[i] = key;
    elements_[i] = {prefix_at(key, 0), static_cast<uint32_t>(i)};
  }

  // Sorts RUN, whose keys are equal in the first OFFSET bytes and whose elements hold the bytes from there
  // on; small parts with equal bytes are left for later.
  void sort_run(Run run, Run spare, size_t offset) {
    if (progress_.cancelled()) return;
    const Run sorted = RadixSort<KeyedIndex>(run, spare, threads_).sort(0, 64, progress_);
    if (sorted.data() != run.data()) std::ranges::copy(sorted, run.begin());
    for (size_t first = 0; first < run.size();) {
      size_t end = first + 1;
      while (end < run.size() && run[end].key == run[first].key) ++end;
      if (end - first > 1) go_on_with(run.subspan(first, end - first), spare, offset + kPrefixBytes);
      first = end;
    }
  }

  void go_on_with(Run run, Run spare, size_t offset) {
    // Only comparing tells the zeros of a key from those that stand for missing bytes.
    const auto has_ended = [&](const KeyedIndex& element) { return keys_[element.index].size() <= offset; };
    if (run.size() <= kComparedRun || std::ranges::any_of(run, has_ended)) {
      small_runs_.push_back({run, offset});
      return;
    }
    for (KeyedIndex& element : run) element.key = prefix_at(keys_[element.index], offset);
    sort_run(run, spare.first(run.size()), offset);
  }

  void sort_small_runs() {
    std::atomic<size_t> next = 0;
    const auto work = [&] {
      for (size_t i = next++; i < small_runs_.size() && !progress_.cancelled(); i = next++) {
        const auto [run, offset] = small_runs_[i];
        std::ranges::sort(run, [&, skipped = offset](const KeyedIndex& a, const KeyedIndex& b) {
          return is_before(a, b, skipped);
        });
      }
    };
    parallel_blocks(small_runs_.size(), threads_, [&](int, uint64_t, uint64_t) { work(); });
  }

  // A key comes before those that it is the beginning of, also where zeros go on from there.
  bool is_before(const KeyedIndex& a, const KeyedIndex& b, size_t offset) const {
    const int order = rest_of(a, offset).compare(rest_of(b, offset));
    return order != 0 ? order < 0 : keys_[a.index].size() < keys_[b.index].size();
  }

  std::string_view rest_of(const KeyedIndex& element, size_t offset) const {
    const std::string_view key = keys_[element.index];
    return key.substr(std::min(offset, key.size()));
  }

  TextRanks number_ranks() {
    TextRanks result;
    result.ranks.resize(keys_.size());
    // Whether each differs from the one before takes most of the time.
    parallel_blocks(elements_.size(), threads_, [&](int, uint64_t first, uint64_t end) {
      for (size_t i = first; i < end; ++i) {
        elements_[i].key = i > 0 && keys_[elements_[i].index] != keys_[elements_[i - 1].index] ? 1 : 0;
      }
    });
    uint32_t rank = 0;
    for (const KeyedIndex& element : elements_) {
      rank += static_cast<uint32_t>(element.key);
      result.ranks[element.index] = rank;
    }
    result.count = elements_.empty() ? 0 : rank + 1;
    return result;
  }

  const TextOrder& order_;
  int threads_;
  const Progress& progress_;
  std::vector<std::string_view> keys_;
  std::vector<KeyStore> stores_;  // of each thread
  UninitializedVector<KeyedIndex> elements_;
  UninitializedVector<KeyedIndex> spare_;
  std::vector<SmallRun> small_runs_;
};

}  // namespace

TextRanks rank_texts(size_t count, const std::function<std::string_view(size_t)>& text_at,
                     const TextOrder& order, int threads, const Progress& progress) {
  return TextRanking(count, order, threads, progress).run(text_at);
}

}  // namespace rowvane

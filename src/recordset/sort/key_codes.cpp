#include "recordset/sort/key_codes.h"

#include <algorithm>
#include <optional>

#include "core/parallel_blocks.h"
#include "recordset/search/outside_text.h"
#include "text/text_order.h"
#include "text/text_ranks.h"

namespace rowvane {
namespace {

// Makes the columns of all keys.
class CodeMaker {
 public:
  CodeMaker(const CWorkSheet& table, std::span<const uint32_t> records, const SortOptions& options,
            int threads, const Progress& progress)
      : table_(table), records_(records), options_(options), threads_(threads), progress_(progress) {}

  KeyCodes run(std::span<const SortKey> keys) {
    made_.table_records = table_.record_count();
    std::vector<bool> seen(table_.field_count(), false);
    for (const SortKey& key : keys) {
      if (seen[key.field]) continue;  // records that get here are equal in it
      seen[key.field] = true;
      add(key);
      made_.cancelled = progress_.cancelled();
      if (!made_.is_done()) break;
    }
    std::erase_if(made_.columns, [](const KeyColumn& column) { return column.bits() == 0; });
    return std::move(made_);
  }

 private:
  const TextOrder& text_order() {
    if (!order_) order_.emplace(options_);
    return *order_;
  }

  void add(const SortKey& key) {
    const Column& column = table_.column(key.field);
    if (const auto* numbers = std::get_if<NumberColumn>(&column)) return add_numbers(*numbers, key);
    if (const auto* texts = std::get_if<TextColumn>(&column)) return add_texts(*texts, key);
    std::visit(
        [&](const auto& references) {
          if constexpr (requires { references.values; })
            add_outside(references.cells, references.values.size(), key);
        },
        column);
  }

  void add_numbers(const NumberColumn& numbers, const SortKey& key) {
    std::vector<NumberSurvey> surveys(static_cast<size_t>(threads_));
    parallel_blocks(records_.size(), threads_, [&](int thread, uint64_t first, uint64_t end) {
      NumberSurvey survey;
      for (size_t i = first; i < end; ++i) survey.add(numbers.cells[records_[i]]);
      surveys[static_cast<size_t>(thread)] = survey;
    });
    NumberSurvey all;
    for (const NumberSurvey& survey : surveys) all.add(survey);
    made_.columns.emplace_back(numbers.cells, NumberCoding(all), key.descending);
  }

  void add_texts(const TextColumn& texts, const SortKey& key) {
    const TextPool& pool = *texts.pool;
    const std::vector<uint32_t> used = used_references(texts.cells, pool.size());
    rank_and_add(texts.cells, pool.size(), used, key, [&](size_t i) { return pool.text(used[i]); });
  }

  void add_outside(std::span<const uint32_t> cells, size_t values, const SortKey& key) {
    const std::vector<uint32_t> used = used_references(cells, values + 1);
    std::vector<std::string> texts;
    if (!read_outside_texts(cells, values + 1, used, key.field, texts)) return;
    rank_and_add(cells, values + 1, used, key, [&](size_t i) { return std::string_view(texts[i]); });
    const auto is_cut = [&](const std::string& text) { return !text_order().ignored_part(text).empty(); };
    if (std::ranges::none_of(texts, is_cut)) return;
    const TextOrder bytes({.collation = SortCollation::kNeutral});
    rank_and_add(
        cells, values + 1, used, key, [&](size_t i) { return text_order().ignored_part(texts[i]); }, bytes);
  }

  // The references in the cells of the records, without the empty one, ascending. A set that is larger than
  // the pool is taken to use all of it.
  std::vector<uint32_t> used_references(std::span<const uint32_t> cells, size_t count) const {
    std::vector<uint32_t> used;
    if (records_.size() > count) {
      for (uint32_t reference = 1; reference < count; ++reference) used.push_back(reference);
      return used;
    }
    std::vector<bool> is_used(count, false);
    for (const uint32_t position : records_) is_used[cells[position]] = true;
    for (uint32_t reference = 1; reference < count; ++reference) {
      if (is_used[reference]) used.push_back(reference);
    }
    return used;
  }

  // Reads the texts of the values USED. False when one can't be read or the work was cancelled.
  bool read_outside_texts(std::span<const uint32_t> cells, size_t count, std::span<const uint32_t> used,
                          size_t field, std::vector<std::string>& texts) {
    // A cell of each value.
    std::vector<uint32_t> positions(count);
    for (const uint32_t position : records_) positions[cells[position]] = position;
    texts.resize(used.size());
    std::atomic<ErrorCode> error = ErrorCode::kOk;
    parallel_blocks(used.size(), threads_, [&](int, uint64_t first, uint64_t end) {
      for (size_t i = first; i < end && error == ErrorCode::kOk && !progress_.cancelled(); ++i) {
        const ErrorCode found = read_outside_text(table_, positions[used[i]], field, texts[i]);
        if (found != ErrorCode::kOk) error.store(found);
      }
    });
    made_.failure = error.load();
    return made_.failure.empty() && !progress_.cancelled();
  }

  template <typename TextAt>
  void rank_and_add(std::span<const uint32_t> cells, size_t count, std::span<const uint32_t> used,
                    const SortKey& key, const TextAt& text_at) {
    rank_and_add(cells, count, used, key, text_at, text_order());
  }

  template <typename TextAt>
  void rank_and_add(std::span<const uint32_t> cells, size_t count, std::span<const uint32_t> used,
                    const SortKey& key, const TextAt& text_at, const TextOrder& order) {
    const TextRanks found = rank_texts(used.size(), text_at, order, threads_, progress_);
    if (progress_.cancelled()) return;
    UninitializedVector<uint32_t> codes(count);
    codes[0] = found.count;  // empty cells come last
    for (size_t i = 0; i < used.size(); ++i) codes[used[i]] = found.ranks[i];
    made_.columns.emplace_back(cells, std::move(codes), found.count, key.descending);
  }

  const CWorkSheet& table_;
  std::span<const uint32_t> records_;
  const SortOptions& options_;
  std::optional<TextOrder> order_;  // made for the first key of texts: that takes as long as small sorts
  int threads_;
  const Progress& progress_;
  KeyCodes made_;
};

}  // namespace

KeyColumn::KeyColumn(std::span<const double> cells, const NumberCoding& coding, bool descending)
    : numbers_(cells), coding_(coding), greatest_(coding.greatest_code()), descending_(descending) {}

KeyColumn::KeyColumn(std::span<const uint32_t> cells, UninitializedVector<uint32_t> codes, uint32_t greatest,
                     bool descending)
    : cells_(cells), codes_(std::move(codes)), greatest_(greatest), descending_(descending) {}

// What the codes are made of is copied, so that writing words does not seem to change it.
void KeyColumn::append(std::span<const uint32_t> positions, uint64_t* words) const {
  if (numbers_.empty()) {
    append_each(
        positions, [cells = cells_.data(), codes = codes_.data()](uint32_t i) { return codes[cells[i]]; },
        words);
  } else {
    append_each(
        positions, [cells = numbers_.data(), coding = coding_](uint32_t i) { return coding.code(cells[i]); },
        words);
  }
}

template <typename CodeAt>
void KeyColumn::append_each(std::span<const uint32_t> positions, const CodeAt& code_at,
                            uint64_t* words) const {
  const int width = bits();
  // Counted from the greatest code down, or from 0 up.
  const uint64_t start = descending_ ? greatest_ : 0;
  const uint64_t sign = descending_ ? ~uint64_t{0} : 1;
  for (size_t i = 0; i < positions.size(); ++i) {
    words[i] = (width < 64 ? words[i] << width : 0) | (start + sign * code_at(positions[i]));
  }
}

int bits_of(std::span<const KeyColumn> columns) {
  int bits = 0;
  for (const KeyColumn& column : columns) bits += column.bits();
  return bits;
}

void join_codes(std::span<const KeyColumn> columns, std::span<const uint32_t> positions, uint64_t* words) {
  std::fill_n(words, positions.size(), uint64_t{0});
  for (const KeyColumn& column : columns) column.append(positions, words);
}

KeyCodes make_key_codes(const CWorkSheet& table, std::span<const uint32_t> records,
                        std::span<const SortKey> keys, const SortOptions& options, int threads,
                        const Progress& progress) {
  return CodeMaker(table, records, options, threads, progress).run(keys);
}

}  // namespace rowvane

#include "recordset/find/find_text.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <span>

#include "core/parallel_blocks.h"

namespace rowvane {
namespace {

constexpr size_t kFoundAtATime = 4096;
constexpr size_t kFirstStretch = 2 * kFoundAtATime;  // records looked at before the first ones are shown
constexpr size_t kStretchGrowth = 4;
constexpr size_t kRecordsForThreads = 32'768;  // fewer are done before a thread has started

// What is known about a text or value.
enum Verdict : uint8_t { kUnknown, kNoMatch, kMatch };

Verdict verdict(bool matches) {
  return matches ? kMatch : kNoMatch;
}

// Verdicts on the numbers that a thread saw last: columns repeat their numbers.
class NumberMemo {
 public:
  NumberMemo() : keys_(kSlots, kEmptyNumberBits), verdicts_(kSlots, kNoMatch) {}

  template <typename Judge>
  bool matches(double number, const Judge& judge) {
    const uint64_t bits = std::bit_cast<uint64_t>(number);
    const size_t slot = (bits * 0x9E37'79B9'7F4A'7C15ull) >> (64 - kSlotBits);
    if (keys_[slot] != bits) {
      keys_[slot] = bits;
      verdicts_[slot] = verdict(judge(number));
    }
    return verdicts_[slot] == kMatch;
  }

 private:
  static constexpr int kSlotBits = 12;
  static constexpr size_t kSlots = size_t{1} << kSlotBits;

  std::vector<uint64_t> keys_;  // an empty cell, which is never asked for, in a free slot
  std::vector<uint8_t> verdicts_;
};

// True when no number of a field without display format, and no error, has PATTERN in its text.
bool is_in_no_number(const FindPattern& pattern, const std::string& decimal) {
  if (pattern.regular_expression || pattern.similar) return false;
  const std::string signs = "0123456789-+eE" + decimal;
  if (pattern.text.find_first_not_of(signs) == std::string::npos) return false;
  const auto matcher = PreparedPattern(pattern).matcher();
  for (int code = 1; code < 256; ++code) {
    if (matcher->matches(formula_error_text(static_cast<FormulaError>(code)))) return false;
  }
  return true;
}

}  // namespace

// What one thread works with.
struct TextFinder::Worker {
  std::unique_ptr<TextMatcher> matcher;
  std::unique_ptr<TextMatcher> long_text_matcher;
  std::vector<NumberMemo> memos;  // by place among the fields; empty until one is needed
  std::string text;
  ErrorCode error = ErrorCode::kOk;
  std::vector<uint32_t> found;  // indices
};

struct TextFinder::Scan {
  const RecordSet& records;
  Progress& progress;
  std::atomic<uint64_t> done = 0;
  size_t total = 0;
};

// Looks at the cells of one field.
class TextFinder::FieldSearch {
 public:
  FieldSearch(const TextFinder& finder, size_t place)
      : texts_(finder.texts_),
        place_(place),
        field_(finder.fields_[place]),
        column_(texts_.table().column(field_)),
        never_(texts_.table().field(field_).encrypted),
        is_long_text_(texts_.table().field(field_).type == FieldType::kLongText),
        is_slow_(finder.settings_.pattern.regular_expression || !std::holds_alternative<TextColumn>(column_)),
        of_empty_(finder.finds_empty_ ? kMatch : kNoMatch) {
    if (const auto* texts = std::get_if<TextColumn>(&column_)) {
      make_verdicts(texts->pool->size());
    } else if (const auto* contents = std::get_if<ContentColumn>(&column_)) {
      make_verdicts(contents->values.size() + 1);
    } else if (const auto* files = std::get_if<FilesColumn>(&column_)) {
      make_verdicts(files->values.size() + 1);
    } else if (!texts_.has_format(field_)) {
      never_ = never_ || is_in_no_number(finder.settings_.pattern, texts_.decimal_separator());
    }
  }

  size_t field() const { return field_; }

  // Sets HITS[i] where record I of RECORDS has a match here, as far as it is not set already.
  void mark(std::span<const uint32_t> records, uint8_t* hits, Worker& worker, const Progress& progress) {
    if (never_) return;
    if (const auto* numbers = std::get_if<NumberColumn>(&column_)) {
      if (worker.memos.size() <= place_) worker.memos.resize(place_ + 1);
      for (size_t i = 0; i < records.size(); ++i) {
        const double cell = numbers->cells[records[i]];
        if (hits[i] == 0)
          hits[i] = is_empty_number(cell) ? of_empty_ == kMatch : matches_number(cell, worker);
      }
    } else {
      mark_coded(records, hits, worker, progress);
    }
  }

  bool matches(uint32_t position, Worker& worker) {
    uint8_t hit = 0;
    mark({&position, 1}, &hit, worker, Progress::none());
    return hit != 0;
  }

  // The matcher for texts of this field.
  TextMatcher& matcher(Worker& worker) const {
    return is_long_text_ ? *worker.long_text_matcher : *worker.matcher;
  }

 private:
  void make_verdicts(size_t count) {
    verdicts_ = std::vector<std::atomic<uint8_t>>(never_ ? 0 : count);
    if (!never_) verdicts_[0] = of_empty_;
  }

  bool matches_number(double cell, Worker& worker) const {
    return worker.memos[place_].matches(cell, [&](double number) {
      texts_.read_number(number, field_, worker.text);
      return worker.matcher->matches(worker.text);
    });
  }

  void mark_coded(std::span<const uint32_t> records, uint8_t* hits, Worker& worker,
                  const Progress& progress) {
    const UninitializedVector<uint32_t>& codes = std::visit(
        [](const auto& kind) -> const UninitializedVector<uint32_t>& {
          if constexpr (std::is_same_v<std::remove_cvref_t<decltype(kind)>, NumberColumn>) {
            static const UninitializedVector<uint32_t> kNone;
            return kNone;
          } else {
            return kind.cells;
          }
        },
        column_);
    for (size_t i = 0; i < records.size(); ++i) {
      std::atomic<uint8_t>& known = verdicts_[codes[records[i]]];
      uint8_t now = known.load(std::memory_order_relaxed);
      if (now == kUnknown && hits[i] == 0) {
        if (is_slow_ && progress.cancelled()) return;
        now = verdict(matches_text(records[i], worker));
        known.store(now, std::memory_order_relaxed);
      }
      hits[i] = static_cast<uint8_t>(hits[i] | (now == kMatch));
    }
  }

  bool matches_text(uint32_t position, Worker& worker) const {
    if (const auto* texts = std::get_if<TextColumn>(&column_)) {
      return worker.matcher->matches(texts->text(position));
    }
    const ErrorCode error = texts_.read(position, field_, worker.text);
    if (error != ErrorCode::kOk && worker.error == ErrorCode::kOk) worker.error = error;
    return error == ErrorCode::kOk && matcher(worker).matches(worker.text);
  }

  const ShownTexts& texts_;
  size_t place_;  // among the fields that are looked at
  size_t field_;
  const Column& column_;
  bool never_;  // nothing can be found here
  bool is_long_text_;
  bool is_slow_;      // one record may take long
  uint8_t of_empty_;  // the verdict on empty cells
  std::vector<std::atomic<uint8_t>>
      verdicts_;  // by code, of all but numbers; the same whichever thread sets it
};

Check check_find(const CWorkSheet& table, const FindText& settings) {
  Check check = check_pattern(settings.pattern);
  const auto is_long = [&table](size_t field) { return table.field(field).type == FieldType::kLongText; };
  const std::vector<size_t> fields = settings.fields.empty() ? shown_fields(table) : settings.fields;
  if (settings.pattern.regular_expression && check.passes() && std::ranges::any_of(fields, is_long)) {
    check.notice = texts::kNoRegexInLongTexts;
  }
  return check;
}

TextFinder::TextFinder(const CWorkSheet& table, FindText settings)
    : settings_(std::move(settings)),
      pattern_(settings_.pattern),
      finds_empty_(settings_.pattern.regular_expression && pattern_.matcher()->matches({})),
      texts_(table, settings_.region),
      fields_(settings_.fields.empty() ? shown_fields(table) : settings_.fields) {
  for (size_t i = 0; i < fields_.size(); ++i) searches_.push_back(std::make_unique<FieldSearch>(*this, i));
  for (int i = 0; i < thread_count(settings_.threads); ++i) {
    auto worker = std::make_unique<Worker>();
    worker->matcher = pattern_.matcher();
    worker->long_text_matcher = pattern_.long_text_matcher();
    workers_.push_back(std::move(worker));
  }
}

TextFinder::~TextFinder() = default;

void TextFinder::scan_part(Scan& scan, Worker& worker, size_t first, size_t end) {
  std::array<uint8_t, kFoundAtATime> hits;
  for (size_t from = first; from < end && !scan.progress.cancelled(); from += kFoundAtATime) {
    const size_t count = std::min(kFoundAtATime, end - from);
    const std::span<const uint32_t> block(scan.records.data() + from, count);
    std::fill_n(hits.begin(), count, uint8_t{0});
    for (const auto& search : searches_) search->mark(block, hits.data(), worker, scan.progress);
    for (size_t i = 0; i < count; ++i) {
      if (hits[i] != 0) worker.found.push_back(static_cast<uint32_t>(from + i));
    }
    scan.progress.report(scan.done += count, scan.total);
  }
}

std::vector<uint32_t> TextFinder::scan(const RecordSet& records, size_t first, size_t end,
                                       Progress& progress) {
  Scan scan{records, progress, first, records.size()};
  for (const auto& worker : workers_) worker->found.clear();
  if (end - first < kRecordsForThreads) {
    scan_part(scan, *workers_[0], first, end);
  } else {
    parallel_blocks(end - first, static_cast<int>(workers_.size()),
                    [&](int thread, uint64_t begin, uint64_t stop) {
                      scan_part(scan, *workers_[static_cast<size_t>(thread)], first + begin, first + stop);
                    });
  }
  std::vector<uint32_t> found = std::move(workers_[0]->found);
  for (size_t i = 1; i < workers_.size(); ++i) {
    found.insert(found.end(), workers_[i]->found.begin(), workers_[i]->found.end());
  }
  return found;
}

void TextFinder::take_problems(FoundRecords& found) {
  for (const auto& worker : workers_) {
    found.note(worker->error);
    for (const TextMatcher* matcher : {worker->matcher.get(), worker->long_text_matcher.get()}) {
      found.note(matcher->problem());
    }
  }
}

FoundRecords TextFinder::find(const RecordSet& records, size_t start, size_t most, Progress& progress) {
  FoundRecords found;
  found.next = std::min(start, records.size());
  size_t stretch = most == kAll ? records.size() : kFirstStretch;
  while (found.next < records.size() && found.records.size() < most && !found.cancelled) {
    const size_t end = found.next + std::min(stretch, records.size() - found.next);
    for (const uint32_t index : scan(records, found.next, end, progress)) {
      found.next = size_t{index} + 1;
      found.records.push_back(records[index]);
      found.indices.push_back(index);
      if (found.records.size() == most) break;
    }
    if (found.records.size() < most) found.next = end;
    found.cancelled = progress.cancelled();
    stretch *= kStretchGrowth;
  }
  if (found.cancelled) {
    found.records.clear();
    found.indices.clear();
  }
  take_problems(found);
  return found;
}

std::optional<size_t> TextFinder::nearest(const RecordSet& records, size_t first, size_t end, bool forward,
                                          Progress& progress) {
  for (size_t stretch = kFirstStretch; first < end && !progress.cancelled(); stretch *= kStretchGrowth) {
    const size_t count = std::min(stretch, end - first);
    const size_t start = forward ? first : end - count;
    const std::vector<uint32_t> found = scan(records, start, start + count, progress);
    if (progress.cancelled()) break;
    if (!found.empty()) return forward ? found.front() : found.back();
    (forward ? first : end) = forward ? start + count : start;
  }
  return std::nullopt;
}

std::optional<CellPlace> TextFinder::find_next(const RecordSet& records, CellPlace from, bool forward,
                                               Progress& progress) {
  if (from.index >= records.size()) return std::nullopt;
  Worker& worker = *workers_[0];
  const size_t all = fields_.size();
  // Where the cell stands among the fields; a field that is not searched stands before the first.
  const auto found_field = std::ranges::find(fields_, from.field);
  const bool is_searched = found_field != fields_.end();
  const size_t here = is_searched ? static_cast<size_t>(found_field - fields_.begin()) : 0;
  const size_t behind = is_searched ? here + 1 : 0;
  const auto search_cells = [&](size_t index, size_t first, size_t end) -> std::optional<CellPlace> {
    for (size_t i = first; i < end; ++i) {
      const size_t place = forward ? i : end - 1 - (i - first);
      if (searches_[place]->matches(records[index], worker)) return CellPlace{index, fields_[place]};
    }
    return std::nullopt;
  };
  auto place = forward ? search_cells(from.index, behind, all) : search_cells(from.index, 0, here);
  if (place) return place;
  auto record = forward ? nearest(records, from.index + 1, records.size(), forward, progress)
                        : nearest(records, 0, from.index, forward, progress);
  if (!record) {
    record = forward ? nearest(records, 0, from.index, forward, progress)
                     : nearest(records, from.index + 1, records.size(), forward, progress);
  }
  if (progress.cancelled()) return std::nullopt;
  if (record) return search_cells(*record, 0, all);
  return forward ? search_cells(from.index, 0, behind) : search_cells(from.index, here, all);
}

std::vector<CellMatches> TextFinder::matches_in(uint32_t position) {
  std::vector<CellMatches> cells;
  Worker& worker = *workers_[0];
  for (const auto& search : searches_) {
    if (!search->matches(position, worker)) continue;
    CellMatches cell{search->field(), {}, {}};
    if (texts_.read(position, cell.field, cell.text) != ErrorCode::kOk) continue;
    cell.spans = search->matcher(worker).find_all(cell.text);
    cells.push_back(std::move(cell));
  }
  return cells;
}

std::vector<TableFound> find_in_all_tables(const Database& database, const FindText& settings,
                                           Progress& progress) {
  std::vector<TableFound> all;
  FindText each = settings;
  each.fields.clear();
  for (CWorkSheet* table : database.tables()) {
    FoundRecords found = TextFinder(*table, each).find(all_records(*table), 0, TextFinder::kAll, progress);
    const bool cancelled = found.cancelled;
    const bool tells = !found.records.empty() || !found.notices.empty() || cancelled;
    if (tells) all.push_back({table, std::move(found)});
    if (cancelled) break;
  }
  return all;
}

}  // namespace rowvane

// Puts the blocks of a text together into the columns of a table.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "core/messages/user_text.h"
#include "core/table/table_data.h"
#include "exchange/text/text_block_columns.h"

namespace rowvane {

// One block on its way: filled by who cuts the text, parsed by any thread, merged in order.
struct LoadJob {
  uint64_t index = 0;  // 0, 1, 2 ... in the order of the text
  TextBlock block;
  bool tokenized = false;  // the cells of the block were found already
  std::deque<BlockColumn> columns;
  TextLoadFindings findings;

  // Empty again, ready for the next block.
  void clear();
};

// The columns so far. `parse` may run on several threads with one reader each; `merge` takes jobs in any
// order and merges them by index, on whatever thread brings the one that was missing.
class TextLoader {
 public:
  // TEXT_BYTES: size of the whole text as far as it is known, to reserve memory; 0 where it is not.
  TextLoader(const TextLoadPlan& plan, uint64_t text_bytes);
  ~TextLoader();

  BlockReader make_reader() { return {plan_, hints_}; }
  void parse(LoadJob& job, BlockReader& reader) const;
  // Answers the jobs that are done with, for use again.
  std::vector<std::unique_ptr<LoadJob>> merge(std::unique_ptr<LoadJob> job, BlockReader& reader);

  // True when no further record will be taken.
  bool is_full() const { return full_.load(std::memory_order_relaxed); }
  // Number of jobs merged.
  uint64_t merged() const { return next_; }

  // After the last merge:
  // What to tell the user.
  std::vector<UserText> notices() const;
  // Columns that turned out to be Text after records had been stored as numbers. Their texts have to be read
  // again.
  std::vector<size_t> columns_to_reload() const;
  // Takes the columns COLUMNS, and what was found in them, from another load of the same text.
  void take_columns(TextLoader& other, const std::vector<size_t>& columns);
  // The columns, all of the same length; those of kSkip are left out. FIELDS get names, types and positions.
  TableData finish();

 private:
  struct LoadedColumn;

  void merge_in_order(LoadJob& job, BlockReader& reader);
  size_t heading_records(const LoadJob& job) const;
  void drop_overflow(LoadJob& job, BlockReader& reader);
  void take_names(const TextBlock& block, BlockReader& reader);
  void reserve(const LoadJob& job, size_t records);
  void add_column();
  void add_block(size_t index, BlockColumn& column, const LoadJob& job, size_t first, size_t records,
                 BlockReader& reader);
  void add_texts(size_t index, const BlockColumn& column, size_t records);
  void add_repeating(LoadedColumn& loaded, const BlockColumn& column, size_t records);
  void add_distinct(LoadedColumn& loaded, const BlockColumn& column, size_t records);

  const TextLoadPlan& plan_;
  uint64_t text_bytes_;
  ColumnHints hints_;
  std::mutex mutex_;
  std::map<uint64_t, std::unique_ptr<LoadJob>> waiting_;
  std::atomic<uint64_t> next_ = 0;
  std::vector<std::unique_ptr<LoadedColumn>> columns_;
  std::vector<std::string> names_;
  size_t expected_records_ = 0;
  uint32_t records_ = 0;
  std::atomic<bool> full_ = false;
  TextLoadFindings findings_;
  bool too_many_records_ = false;
  bool too_many_columns_ = false;
};

}  // namespace rowvane

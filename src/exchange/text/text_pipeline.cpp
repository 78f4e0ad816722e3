#include "exchange/text/text_pipeline.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <new>
#include <thread>

#include "exchange/text/text_tokenizer.h"

namespace rowvane {
namespace {

constexpr size_t kMaxRawCell = 4 * kMaxTextCharacters + 4;
constexpr size_t kMaxJobBytes = size_t{1} << 31;  // cells are addressed with 32 bits

// The threads that parse, the jobs that wait for them, and the jobs that are free for use again.
class ParserPool {
 public:
  ParserPool(TextLoader& loader, int threads)
      : loader_(loader), limit_(2 * static_cast<size_t>(threads) + 2) {
    for (int i = 0; i < threads; ++i) threads_.emplace_back([this] { run(); });
  }

  ~ParserPool() { finish(); }

  // A job to fill; waits while too many are under way.
  std::unique_ptr<LoadJob> free_job() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !free_.empty() || made_ < limit_; });
    if (free_.empty()) {
      ++made_;
      return std::make_unique<LoadJob>();
    }
    auto job = std::move(free_.back());
    free_.pop_back();
    return job;
  }

  void submit(std::unique_ptr<LoadJob> job) {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(job));
    changed_.notify_all();
  }

  // Waits for all jobs.
  void finish() {
    {
      const std::lock_guard lock(mutex_);
      closed_ = true;
      changed_.notify_all();
    }
    threads_.clear();
  }

  bool is_out_of_memory() const { return out_of_memory_; }

 private:
  void run() {
    BlockReader reader = loader_.make_reader();
    while (auto job = next_job()) {
      std::vector<std::unique_ptr<LoadJob>> done;
      try {
        if (!out_of_memory_) {
          if (!loader_.is_full()) loader_.parse(*job, reader);
          done = loader_.merge(std::move(job), reader);
        }
      } catch (const std::bad_alloc&) {
        out_of_memory_ = true;
      }
      give_back(std::move(done));
    }
  }

  std::unique_ptr<LoadJob> next_job() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !waiting_.empty() || closed_; });
    if (waiting_.empty()) return nullptr;
    auto job = std::move(waiting_.front());
    waiting_.pop_front();
    return job;
  }

  void give_back(std::vector<std::unique_ptr<LoadJob>> done) {
    const std::lock_guard lock(mutex_);
    for (auto& job : done) {
      job->clear();
      free_.push_back(std::move(job));
    }
    if (out_of_memory_) made_ = 0;
    changed_.notify_all();
  }

  TextLoader& loader_;
  size_t limit_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::unique_ptr<LoadJob>> waiting_;
  std::vector<std::unique_ptr<LoadJob>> free_;
  size_t made_ = 0;
  bool closed_ = false;
  std::atomic<bool> out_of_memory_ = false;
  std::vector<std::jthread> threads_;
};

// Cuts the stream into blocks.
class StreamCutter {
 public:
  StreamCutter(const TextLoadPlan& plan, const std::function<size_t(std::span<char>)>& read, ParserPool& pool)
      : plan_(plan), read_(read), pool_(pool), sizes_(plan.sizes), job_(pool.free_job()) {}

  void run(const TextLoader& loader) {
    while (!loader.is_full() && !pool_.is_out_of_memory() && fill(block_target_)) {
      cut();
    }
    if (!loader.is_full() && !pool_.is_out_of_memory() && job_->block.size() > 0) submit(nullptr);
  }

 private:
  TextBlock& block() { return job_->block; }

  // Reads until the block holds SIZE bytes and no more, so that the blocks of a text are the same whatever
  // the pieces it arrives in. False at the end of the text.
  bool fill(size_t size) {
    block().reserve(size);
    while (block().size() < size) {
      const size_t count =
          read_({block().text() + block().size(), std::min(sizes_.read, size - block().size())});
      if (count == 0) return false;
      block().set_size(block().size() + count);
    }
    return true;
  }

  // Sends the whole records of the block off; what is left begins the next one.
  void cut() {
    const size_t end = last_record_end({block().text(), block().size()}, plan_.rules);
    if (end == 0 && block().size() < sizes_.largest) {
      block_target_ = block().size() * 2;
      return;
    }
    block_target_ = sizes_.block;
    if (end == 0) {
      read_large_record();
      return;
    }
    auto next = pool_.free_job();
    move_tail(end, next->block);
    block().set_size(end);
    submit(std::move(next));
  }

  void move_tail(size_t end, TextBlock& target) {
    const size_t left = block().size() - end;
    std::memcpy(target.reserve(std::max(sizes_.block, left)), block().text() + end, left);
    target.set_size(left);
  }

  void submit(std::unique_ptr<LoadJob> next) {
    job_->index = index_++;
    pool_.submit(std::move(job_));
    job_ = std::move(next);
  }

  bool is_loaded(size_t column) const {
    return column < plan_.max_columns && plan_.column(column).load != ColumnLoad::kSkip;
  }

  size_t cell_limit(const LoadJob& job, size_t column) const {
    if (!is_loaded(column)) return 0;
    if (plan_.column(column).load == ColumnLoad::kEncryptedText) return TextPool::kMaxTextBytes;
    if (plan_.column(column).load != ColumnLoad::kLongText) return kMaxRawCell;
    return kMaxJobBytes - std::min(kMaxJobBytes, job.block.size());
  }

  // Replaces the block by the next piece of the text; answers its size.
  size_t read_piece() {
    block().set_size(read_({block().text(), std::min(sizes_.read, block().capacity())}));
    return block().size();
  }

  // Reads the record at the front of the block to its end, however long it is, keeping what the columns can
  // hold.
  void read_large_record() {
    auto large = pool_.free_job();
    large->tokenized = true;
    bool ended = false;
    TextTokenizer::Handler handler;
    handler.limit = [&](size_t column) { return cell_limit(*large, column); };
    handler.cell = [&](size_t column, std::string_view cell, bool cut) {
      if (column > plan_.max_columns) return;
      large->block.add_cell(cell);
      if (cut && is_loaded(column)) large->block.has_cut_cells = true;
    };
    handler.record_end = [&] {
      large->block.end_record();
      ended = true;
      return false;
    };
    TextTokenizer tokenizer(plan_.rules, handler);
    size_t taken = tokenizer.feed({block().text(), block().size()});
    while (!ended) {
      if (read_piece() == 0) {
        tokenizer.finish();
        taken = 0;
      } else {
        taken = tokenizer.feed({block().text(), block().size()});
      }
    }
    if (taken == block().size() && tokenizer.line_feed_may_follow()) {
      taken = read_piece() > 0 && *block().text() == '\n' ? 1 : 0;
    }
    auto rest = std::move(job_);
    const size_t left = rest->block.size() - taken;
    std::memmove(rest->block.text(), rest->block.text() + taken, left);
    rest->block.set_size(left);
    job_ = std::move(large);
    submit(std::move(rest));
  }

  const TextLoadPlan& plan_;
  const std::function<size_t(std::span<char>)>& read_;
  ParserPool& pool_;
  TextBlockSizes sizes_;
  std::unique_ptr<LoadJob> job_;
  uint64_t index_ = 0;
  size_t block_target_ = sizes_.block;
};

}  // namespace

ErrorCode load_text_stream(TextLoader& loader, const TextLoadPlan& plan,
                           const std::function<size_t(std::span<char>)>& read) {
  ParserPool pool(loader, plan.threads);
  try {
    StreamCutter(plan, read, pool).run(loader);
  } catch (const std::bad_alloc&) {
    return ErrorCode::kOutOfMemory;
  }
  pool.finish();
  return pool.is_out_of_memory() ? ErrorCode::kOutOfMemory : ErrorCode::kOk;
}

ErrorCode load_text_blocks(TextLoader& loader, const TextLoadPlan& plan, uint64_t count,
                           const std::function<ErrorCode(uint64_t index, LoadJob& job)>& read_block) {
  constexpr auto kPause = std::chrono::microseconds(50);
  const uint64_t ahead = 2 * static_cast<uint64_t>(plan.threads) + 2;
  std::atomic<uint64_t> next = 0;
  std::atomic<ErrorCode> failure = ErrorCode::kOk;
  const auto run = [&] {
    BlockReader reader = loader.make_reader();
    auto job = std::make_unique<LoadJob>();
    for (uint64_t index = next++; index < count && failure == ErrorCode::kOk; index = next++) {
      try {
        // A thread that was held up must not be left behind by ever more blocks that wait for its own.
        while (index > loader.merged() + ahead && failure == ErrorCode::kOk)
          std::this_thread::sleep_for(kPause);
        job->index = index;
        const ErrorCode error = read_block(index, *job);
        if (error != ErrorCode::kOk) {
          failure.store(error);
          break;
        }
        loader.parse(*job, reader);
        auto done = loader.merge(std::move(job), reader);
        job = done.empty() ? std::make_unique<LoadJob>() : std::move(done.back());
        job->clear();
      } catch (const std::bad_alloc&) {
        failure.store(ErrorCode::kOutOfMemory);
        break;
      }
    }
  };
  std::vector<std::jthread> threads;
  for (int i = 0; i < plan.threads; ++i) threads.emplace_back(run);
  threads.clear();
  return failure;
}

}  // namespace rowvane

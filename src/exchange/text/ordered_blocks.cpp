#include "exchange/text/ordered_blocks.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <new>
#include <thread>
#include <vector>

namespace rowvane {
namespace {

struct Slot {
  std::string bytes;
  ErrorCode error = ErrorCode::kOk;
  bool ready = false;
};

// Where the makers and the taker meet. Block n lies in slot n modulo the number of slots.
class Exchange {
 public:
  Exchange(uint64_t count, size_t slots) : count_(count), slots_(slots) {}

  // Makes blocks until there are no more.
  void run_maker(const MakeBlock& make) {
    std::unique_lock lock(mutex_);
    for (;;) {
      slot_free_.wait(lock, [this] { return stopped_ || next_ >= count_ || next_ < taken_ + slots_.size(); });
      if (stopped_ || next_ >= count_) return;
      const uint64_t block = next_++;
      Slot& slot = slots_[block % slots_.size()];
      lock.unlock();
      slot.error = make_block(make, block, slot.bytes);
      lock.lock();
      slot.ready = true;
      slot_ready_.notify_one();
    }
  }

  // The slot of the next block, once it is made.
  const Slot& wait_for_block() {
    std::unique_lock lock(mutex_);
    Slot& slot = slots_[taken_ % slots_.size()];
    slot_ready_.wait(lock, [&slot] { return slot.ready; });
    return slot;
  }
  void free_block() {
    const std::lock_guard lock(mutex_);
    slots_[taken_++ % slots_.size()].ready = false;
    slot_free_.notify_one();
  }

  void stop() {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
    slot_free_.notify_all();
  }

 private:
  static ErrorCode make_block(const MakeBlock& make, uint64_t block, std::string& bytes) {
    try {
      bytes.clear();
      return make(block, bytes);
    } catch (const std::bad_alloc&) {
      return ErrorCode::kOutOfMemory;
    }
  }

  std::mutex mutex_;
  std::condition_variable slot_free_;
  std::condition_variable slot_ready_;
  const uint64_t count_;
  uint64_t next_ = 0;   // to be made
  uint64_t taken_ = 0;  // so far
  bool stopped_ = false;
  std::vector<Slot> slots_;
};

}  // namespace

ErrorCode make_blocks_in_order(uint64_t count, int threads, const MakeBlock& make, const TakeBlock& take) {
  constexpr size_t kSlotsPerThread = 2;
  const auto makers =
      static_cast<size_t>(std::min<uint64_t>(count, static_cast<uint64_t>(std::max(threads, 1))));
  if (makers == 0) return ErrorCode::kOk;
  Exchange exchange(count, makers * kSlotsPerThread);
  std::vector<std::jthread> running;
  // Stops the makers before they are joined, however this ends.
  struct Stopper {
    Exchange& exchange;
    ~Stopper() { exchange.stop(); }
  } stopper{exchange};
  for (size_t i = 0; i < makers; ++i) running.emplace_back([&] { exchange.run_maker(make); });
  for (uint64_t block = 0; block < count; ++block) {
    const Slot& slot = exchange.wait_for_block();
    if (slot.error != ErrorCode::kOk) return slot.error;
    if (!take(block, slot.bytes)) break;
    exchange.free_block();
  }
  return ErrorCode::kOk;
}

}  // namespace rowvane

#include "zip/block_packer.h"

#include <new>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace rowvane {
namespace {

ErrorCode pack_block(const BlockPacker::Produce& produce, const BlockOrder& order, Deflater& deflater,
                     PackedBlock& block) {
  if (produce) {
    block.raw.clear();
    if (const ErrorCode error = produce(block.raw); error != ErrorCode::kOk) return error;
  }
  if (order.with_crc) block.crc = crc32_of(block.raw);
  if (order.method == ZipMethod::kStored) return ErrorCode::kOk;
  return deflater.deflate_block(block.raw, order.last, block.deflated);
}

}  // namespace

BlockPacker::BlockPacker(int level, int threads)
    : level_(level),
      threads_(threads < 1 ? 1 : threads),
      own_deflater_(level),
      slots_(threads_ == 1 ? 1 : 2 * static_cast<size_t>(threads_) + 2) {}

BlockPacker::~BlockPacker() {
  clear();
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  work_there_.notify_all();
  for (std::thread& worker : workers_) worker.join();
}

// When the system has no more threads the work is done with those there are.
void BlockPacker::start_threads() {
  started_ = true;
  try {
    for (int i = 1; i < threads_; ++i) workers_.emplace_back([this] { work(); });
  } catch (const std::system_error&) {
  }
}

void BlockPacker::submit(Produce produce, const BlockOrder& order) {
  enqueue(std::move(produce), order);
}

void BlockPacker::submit_bytes(std::string& raw, const BlockOrder& order) {
  slot(submitted_).block.raw.swap(raw);
  raw.clear();
  enqueue(nullptr, order);
}

void BlockPacker::enqueue(Produce produce, const BlockOrder& order) {
  if (!started_) start_threads();
  Slot& next = slot(submitted_);
  next.produce = std::move(produce);
  next.order = order;
  next.done = false;
  {
    const std::lock_guard lock(mutex_);
    ++submitted_;
  }
  work_there_.notify_one();
}

PackedBlock& BlockPacker::front() {
  Slot& oldest = slot(taken_);
  std::unique_lock lock(mutex_);
  while (!oldest.done) {
    if (next_work_ < submitted_) {
      pack_next(lock, own_deflater_);
    } else {
      block_done_.wait(lock);
    }
  }
  return oldest.block;
}

void BlockPacker::pop() {
  ++taken_;
}

void BlockPacker::clear() {
  std::unique_lock lock(mutex_);
  next_work_ = submitted_;
  block_done_.wait(lock, [&] { return working_ == 0; });
  taken_ = submitted_;
}

void BlockPacker::work() {
  Deflater deflater(level_);
  std::unique_lock lock(mutex_);
  while (true) {
    work_there_.wait(lock, [&] { return stop_ || next_work_ < submitted_; });
    if (stop_) return;
    pack_next(lock, deflater);
  }
}

void BlockPacker::pack_next(std::unique_lock<std::mutex>& lock, Deflater& deflater) {
  Slot& mine = slot(next_work_++);
  ++working_;
  lock.unlock();
  pack(mine, deflater);
  lock.lock();
  mine.done = true;
  --working_;
  block_done_.notify_all();
}

void BlockPacker::pack(Slot& slot, Deflater& deflater) {
  try {
    slot.block.error = pack_block(slot.produce, slot.order, deflater, slot.block);
  } catch (const std::bad_alloc&) {
    slot.block.error = ErrorCode::kZipMemory;
  } catch (const std::length_error&) {
    slot.block.error = ErrorCode::kZipMemory;
  }
}

}  // namespace rowvane

// Packs the blocks of a member on several threads, the caller's among them, and hands them back in order.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "core/messages/error_code.h"
#include "zip/zip_format.h"
#include "zip/zlib_codec.h"

namespace rowvane {

struct PackedBlock {
  std::string raw;
  std::string deflated;  // not used for stored blocks
  uint32_t crc = 0;      // of raw
  ErrorCode error = ErrorCode::kOk;

  std::string& bytes(ZipMethod method) { return method == ZipMethod::kStored ? raw : deflated; }
};

// What becomes of a block.
struct BlockOrder {
  ZipMethod method = ZipMethod::kStored;
  bool last = false;     // the last block of a member
  bool with_crc = true;  // false leaves PackedBlock::crc alone: an encrypted member has a CRC of its own
};

// Belongs to one thread, the owner, which puts blocks in at one end and takes them out at the other. The room
// for blocks is fixed, so that memory does not grow with the member: twice as many as threads, and two more.
// While the owner waits for a block it packs others, so what it does between two blocks (encrypting, which
// goes on from one block to the next) never waits for a processor that packing holds.
class BlockPacker {
 public:
  // Fills `raw`, which may hold old content, with one block; called on any of the threads. Running out of
  // memory in it is answered as kZipMemory; it must not throw anything else.
  using Produce = std::function<ErrorCode(std::string& raw)>;

  // THREADS includes the owner's. The others start with the first block.
  BlockPacker(int level, int threads);
  ~BlockPacker();
  BlockPacker(const BlockPacker&) = delete;
  BlockPacker& operator=(const BlockPacker&) = delete;

  bool is_full() const { return submitted_ - taken_ == slots_.size(); }
  bool is_empty() const { return submitted_ == taken_; }

  // Adds a block; not when it is full.
  void submit(Produce produce, const BlockOrder& order);
  // The same for a block that is there already; RAW gets the buffer of an old block in exchange.
  void submit_bytes(std::string& raw, const BlockOrder& order);

  // The oldest block, packed; not when it is empty. The block is the owner's until `pop`.
  PackedBlock& front();
  void pop();

  // Forgets all blocks, waiting for those in work.
  void clear();

 private:
  struct Slot {
    PackedBlock block;
    Produce produce;  // empty: raw is filled already
    BlockOrder order;
    bool done = false;
  };

  Slot& slot(uint64_t number) { return slots_[number % slots_.size()]; }
  void start_threads();
  void enqueue(Produce produce, const BlockOrder& order);
  void work();
  // Takes up the next block; LOCK is given back meanwhile.
  void pack_next(std::unique_lock<std::mutex>& lock, Deflater& deflater);
  static void pack(Slot& slot, Deflater& deflater);

  const int level_;
  const int threads_;
  Deflater own_deflater_;  // for work on the owner's thread
  std::vector<Slot> slots_;
  std::vector<std::thread> workers_;
  bool started_ = false;

  uint64_t submitted_ = 0;  // changed by the owner, under the lock
  uint64_t taken_ = 0;      // the owner's
  std::mutex mutex_;
  std::condition_variable work_there_;
  std::condition_variable block_done_;
  uint64_t next_work_ = 0;  // next block that a thread takes up
  int working_ = 0;
  bool stop_ = false;
};

}  // namespace rowvane

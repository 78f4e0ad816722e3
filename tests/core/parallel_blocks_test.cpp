#include "core/parallel_blocks.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace rowvane {
namespace {

struct Block {
  int thread;
  uint64_t first;
  uint64_t end;
  bool operator==(const Block&) const = default;
};

std::vector<Block> blocks_of(uint64_t count, int threads) {
  std::mutex guard;
  std::vector<Block> blocks;
  parallel_blocks(count, threads, [&](int thread, uint64_t first, uint64_t end) {
    const std::lock_guard lock(guard);
    blocks.push_back({thread, first, end});
  });
  std::sort(blocks.begin(), blocks.end(), [](const Block& a, const Block& b) { return a.thread < b.thread; });
  return blocks;
}

TEST(ParallelBlocks, BlocksHoldAThreadsShareAndOneMore) {
  EXPECT_EQ(blocks_of(10, 3), (std::vector<Block>{{0, 0, 4}, {1, 4, 8}, {2, 8, 10}}));
  EXPECT_EQ(blocks_of(16, 16).size(), 8u);
  EXPECT_EQ(blocks_of(5, 16).size(), 5u);
  EXPECT_EQ(blocks_of(1, 4), (std::vector<Block>{{0, 0, 1}}));
  EXPECT_EQ(blocks_of(100, 1), (std::vector<Block>{{0, 0, 100}}));
  EXPECT_EQ(blocks_of(100, 0), (std::vector<Block>{{0, 0, 100}}));
  EXPECT_EQ(blocks_of(1000, 99), blocks_of(1000, 16));
  EXPECT_TRUE(blocks_of(0, 4).empty());
}

TEST(ParallelBlocks, VisitsEveryPositionOnce) {
  for (const uint64_t count : {1u, 2u, 15u, 16u, 17u, 31u, 33u, 255u, 4'097u}) {
    for (int threads = 1; threads <= 17; ++threads) {
      std::vector<int> visits(count);  // each thread writes only its own part
      std::atomic<int> started = 0;
      parallel_blocks(count, threads, [&](int, uint64_t first, uint64_t end) {
        ++started;
        for (uint64_t i = first; i < end; ++i) ++visits[i];
      });
      ASSERT_EQ(std::count(visits.begin(), visits.end(), 1), static_cast<std::ptrdiff_t>(count));
      ASSERT_LE(started.load(), std::min(threads, kMaxThreads));
    }
  }
}

TEST(ParallelBlocks, ThreadsFollowTheSettingUpToSixteen) {
  EXPECT_EQ(thread_count(1), 1);
  EXPECT_EQ(thread_count(16), 16);
  EXPECT_EQ(thread_count(64), 16);
  const int of_machine = static_cast<int>(std::thread::hardware_concurrency());
  EXPECT_EQ(thread_count(0), std::clamp(of_machine, 1, 16));
}

}  // namespace
}  // namespace rowvane

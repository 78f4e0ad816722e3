#include "exchange/text/ordered_blocks.h"

#include <atomic>
#include <new>

#include <gtest/gtest.h>

namespace rowvane {
namespace {

constexpr int kThreads = 3;

TEST(OrderedBlocks, MakesFewMoreOnceNobodyTakes) {
  std::atomic<uint64_t> made = 0;
  uint64_t taken = 0;
  const auto make = [&](uint64_t block, std::string& out) {
    ++made;
    out = std::to_string(block);
    return ErrorCode::kOk;
  };
  const auto take = [&](uint64_t block, std::string_view bytes) {
    EXPECT_EQ(block, taken);
    EXPECT_EQ(bytes, std::to_string(block));
    return ++taken < 10;
  };
  EXPECT_EQ(make_blocks_in_order(10'000, kThreads, make, take), ErrorCode::kOk);
  EXPECT_EQ(taken, 10U);
  EXPECT_LE(made, 10U + 2 * kThreads);
}

TEST(OrderedBlocks, AnswersTheFirstError) {
  uint64_t taken = 0;
  const auto make = [](uint64_t block, std::string&) {
    if (block == 5) throw std::bad_alloc();
    return block > 5 ? ErrorCode::kFileRead : ErrorCode::kOk;
  };
  const auto take = [&](uint64_t, std::string_view) {
    ++taken;
    return true;
  };
  EXPECT_EQ(make_blocks_in_order(100, kThreads, make, take), ErrorCode::kOutOfMemory);
  EXPECT_EQ(taken, 5U);
  EXPECT_EQ(make_blocks_in_order(0, kThreads, make, take), ErrorCode::kOk);
}

}  // namespace
}  // namespace rowvane

// Work spread over the processors.
#pragma once

#include <cstdint>
#include <functional>

namespace rowvane {

inline constexpr int kMaxThreads = 16;

// Threads to use for SETTING, the number of the options (0: as many as the machine has), from 1 to
// kMaxThreads.
int thread_count(int setting);

// Cuts the positions 0 to COUNT - 1 into contiguous blocks and calls `work(thread, first, end)` for each
// block, the positions from `first` to the one before `end`, on a thread of its own; returns when all are
// done. With n positions and t threads a block holds n / t + 1 positions, the last one what is left, so fewer
// than t threads may start. `work` must not throw.
void parallel_blocks(uint64_t count, int threads,
                     const std::function<void(int thread, uint64_t first, uint64_t end)>& work);

}  // namespace rowvane

#include "core/parallel_blocks.h"

#include <algorithm>
#include <thread>
#include <vector>

namespace rowvane {

int thread_count(int setting) {
  const int wanted = setting > 0 ? setting : static_cast<int>(std::thread::hardware_concurrency());
  return std::clamp(wanted, 1, kMaxThreads);
}

void parallel_blocks(uint64_t count, int threads,
                     const std::function<void(int thread, uint64_t first, uint64_t end)>& work) {
  if (count == 0) return;
  const uint64_t size = count / static_cast<uint64_t>(std::clamp(threads, 1, kMaxThreads)) + 1;
  std::vector<std::jthread> running;
  for (uint64_t first = 0; first < count; first += size) {
    const uint64_t end = std::min(first + size, count);
    const int thread = static_cast<int>(running.size());
    running.emplace_back([&work, thread, first, end] { work(thread, first, end); });
  }
}

}  // namespace rowvane

#include "allocation_counter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<size_t> g_allocations = 0;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

bool rowvane::counts_allocations() {
  return false;
}

#else

void* operator new(size_t size) {
  ++g_allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
  std::free(memory);
}

bool rowvane::counts_allocations() {
  return true;
}

#endif

size_t rowvane::allocation_count() {
  return g_allocations;
}

// Counts what the test program allocates.
#pragma once

#include <cstddef>

namespace rowvane {

// False under sanitizers, which bring operators of their own.
bool counts_allocations();
// Calls of operator new so far.
size_t allocation_count();

}  // namespace rowvane

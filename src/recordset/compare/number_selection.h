// The smallest, the second smallest, ... of many numbers, without sorting them.
#pragma once

#include <span>
#include <vector>

#include "core/progress.h"
#include "core/uninitialized_vector.h"

namespace rowvane {

// The numbers that would stand at PLACES, which ascend, if NUMBERS (finite ones) were sorted. Counts the
// numbers by their leading bits on all threads and then looks only at those that share them with a wanted
// one. Meaningless when PROGRESS was cancelled.
std::vector<double> select_places(std::span<const double> numbers, std::span<const size_t> places,
                                  int threads, const Progress& progress);

}  // namespace rowvane

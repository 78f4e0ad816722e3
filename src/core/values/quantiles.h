// Quantiles of numbers, by one rule everywhere: linear interpolation between the sorted numbers at the
// position (n - 1) * q, counted from 0 (R. Hyndman, Y. Fan, "Sample quantiles in statistical packages", 1996:
// definition 7).
#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace rowvane {

// Where the quantile lies: between the sorted numbers `lower` and `lower + 1`, or on the first of them where
// `fraction` is 0.
struct QuantilePlace {
  size_t lower;
  double fraction;
};

// COUNT is at least 1; Q from 0 to 1.
QuantilePlace quantile_place(size_t count, double q);
// Between LOWER and UPPER, numbers that follow each other.
double interpolate(double lower, double upper, double fraction);

// Of finite NUMBERS, at least one, which are put in another order meanwhile.
double quantile(std::span<double> numbers, double q);
// The three quartiles; the second is the median.
std::array<double, 3> quartiles(std::span<double> numbers);

}  // namespace rowvane

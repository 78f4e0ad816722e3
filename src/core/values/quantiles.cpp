#include "core/values/quantiles.h"

#include <algorithm>
#include <cmath>

namespace rowvane {
namespace {

// The quantile, given that the numbers before the first FROM are not greater than any behind.
double select_quantile(std::span<double> numbers, size_t from, QuantilePlace place) {
  const auto begin = numbers.begin();
  const auto lower = begin + static_cast<std::ptrdiff_t>(place.lower);
  std::nth_element(begin + static_cast<std::ptrdiff_t>(from), lower, numbers.end());
  if (place.fraction == 0) return *lower;
  return interpolate(*lower, *std::min_element(lower + 1, numbers.end()), place.fraction);
}

}  // namespace

QuantilePlace quantile_place(size_t count, double q) {
  const double position = static_cast<double>(count - 1) * q;
  const double lower = std::floor(position);
  return {static_cast<size_t>(lower), position - lower};
}

double interpolate(double lower, double upper, double fraction) {
  return std::lerp(lower, upper, fraction);
}

double quantile(std::span<double> numbers, double q) {
  return select_quantile(numbers, 0, quantile_place(numbers.size(), q));
}

std::array<double, 3> quartiles(std::span<double> numbers) {
  std::array<double, 3> found{};
  size_t from = 0;
  for (size_t i = 0; i < found.size(); ++i) {
    const QuantilePlace place = quantile_place(numbers.size(), static_cast<double>(i + 1) / 4);
    found[i] = select_quantile(numbers, from, place);
    from = place.lower;
  }
  return found;
}

}  // namespace rowvane

// Exact sums and quantiles.
#include <algorithm>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "core/values/exact_sum.h"
#include "core/values/quantiles.h"

namespace rowvane {
namespace {

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kSmallest = std::numeric_limits<double>::denorm_min();

ExactSum sum_of(const std::vector<double>& numbers) {
  ExactSum sum;
  for (const double number : numbers) sum.add(number);
  return sum;
}

TEST(ExactSum, LosesNothing) {
  EXPECT_EQ(ExactSum().rounded(), 0);
  EXPECT_EQ(sum_of({0.1, 0.2, 0.3, -0.1, -0.2, -0.3}).rounded(), 0);
  EXPECT_EQ(sum_of({1e300, 1, -1e300}).rounded(), 1);
  EXPECT_EQ(sum_of({1e16, 1, 1, -3.5}).rounded(), 1e16 - 2);
  EXPECT_EQ(sum_of({kSmallest, kSmallest, -1e-300, 1e-300}).rounded(), 2 * kSmallest);
  EXPECT_EQ(sum_of({kLargest, kLargest, -kLargest}).rounded(), kLargest);
  EXPECT_EQ(sum_of({-kLargest, -kLargest}).rounded(), -std::numeric_limits<double>::infinity());
}

TEST(ExactSum, RoundsToTheNearestAndOfTwoToTheEvenOne) {
  const double half = std::ldexp(1, -53);
  EXPECT_EQ(sum_of({1, half}).rounded(), 1);
  EXPECT_EQ(sum_of({1, half, kSmallest}).rounded(), 1 + 2 * half);
  EXPECT_EQ(sum_of({1, half, -kSmallest}).rounded(), 1);
  EXPECT_EQ(sum_of({1, 3 * half}).rounded(), 1 + 4 * half);
  EXPECT_EQ(sum_of({-1, -half, -kSmallest}).rounded(), -1 - 2 * half);
}

TEST(ExactSum, DoesNotDependOnOrderAndParts) {
  std::mt19937 random(1);
  std::vector<double> numbers;
  for (int i = 0; i < 20'000; ++i) {
    const double mantissa = static_cast<double>(random()) - 2147483648.0;
    numbers.push_back(i % 3 == 0 ? mantissa : std::ldexp(mantissa, static_cast<int>(random() % 2000) - 1040));
  }
  const double expected = sum_of(numbers).rounded();
  const double mean = sum_of(numbers).mean(numbers.size());
  for (int round = 0; round < 3; ++round) {
    std::shuffle(numbers.begin(), numbers.end(), random);
    const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(random() % numbers.size());
    ExactSum parts = sum_of({numbers.begin(), middle});
    parts.add(sum_of({middle, numbers.end()}));
    EXPECT_EQ(parts.rounded(), expected);
    EXPECT_EQ(parts.mean(numbers.size()), mean);
  }
  for (double& number : numbers) number = -number;
  EXPECT_EQ(sum_of(numbers).rounded(), -expected);
}

TEST(ExactSum, MeanStaysFinite) {
  EXPECT_EQ(sum_of({kLargest, kLargest, kLargest}).mean(3), kLargest);
  EXPECT_EQ(sum_of({-kLargest, -kLargest}).mean(2), -kLargest);
  EXPECT_EQ(sum_of({1, 2}).mean(2), 1.5);
}

TEST(Quantiles, InterpolateAtThePlaceOfTheRule) {
  std::vector<double> numbers{10, 1, 7, 3};
  EXPECT_EQ(quartiles(numbers), (std::array<double, 3>{2.5, 5, 7.75}));
  EXPECT_EQ(quantile(numbers, 0), 1);
  EXPECT_EQ(quantile(numbers, 1), 10);
  EXPECT_DOUBLE_EQ(quantile(numbers, 0.1), 1.6);
  std::vector<double> one{-4};
  EXPECT_EQ(quartiles(one), (std::array<double, 3>{-4, -4, -4}));
  std::vector<double> wide{-kLargest, kLargest};
  EXPECT_EQ(quantile(wide, 0.5), 0);
}

TEST(Quantiles, EqualThoseOfSortedNumbers) {
  std::mt19937 random(2);
  for (size_t count = 1; count < 60; ++count) {
    std::vector<double> numbers(count);
    for (double& number : numbers) number = static_cast<double>(random() % 30);
    std::vector<double> sorted = numbers;
    std::sort(sorted.begin(), sorted.end());
    const std::array<double, 3> found = quartiles(numbers);
    for (size_t i = 0; i < 3; ++i) {
      const QuantilePlace place = quantile_place(count, static_cast<double>(i + 1) / 4);
      const double upper = sorted[std::min(place.lower + 1, count - 1)];
      EXPECT_EQ(found[i], std::lerp(sorted[place.lower], upper, place.fraction));
      EXPECT_EQ(found[i], quantile(numbers, static_cast<double>(i + 1) / 4));
    }
  }
}

}  // namespace
}  // namespace rowvane

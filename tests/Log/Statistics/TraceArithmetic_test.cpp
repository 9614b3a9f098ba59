#include "Statistics/TraceArithmetic.h"

#include <limits>

#include <gtest/gtest.h>

namespace {

using YLog::AddCounts;
using YLog::GetWeightedAverage;

constexpr int LARGEST_COUNT = std::numeric_limits<int>::max();
constexpr long long LARGEST = std::numeric_limits<long long>::max();
constexpr long long SMALLEST = std::numeric_limits<long long>::min();

TEST(AddCounts, StopsAtTheLimit) {
  EXPECT_EQ(AddCounts(2, 3), 5);
  EXPECT_EQ(AddCounts(LARGEST_COUNT - 1, 1), LARGEST_COUNT);
  EXPECT_EQ(AddCounts(LARGEST_COUNT, 1), LARGEST_COUNT);
  EXPECT_EQ(AddCounts(LARGEST_COUNT, LARGEST_COUNT), LARGEST_COUNT);
}

TEST(WeightedAverage, WeightsEachAverageByItsCount) {
  EXPECT_EQ(GetWeightedAverage(10, 3, 20, 1), 12);
  EXPECT_EQ(GetWeightedAverage(10, 0, 20, 1), 20);
  EXPECT_EQ(GetWeightedAverage(10, 1, 20, 0), 10);
}

TEST(WeightedAverage, RoundsTowardsZero) {
  EXPECT_EQ(GetWeightedAverage(1, 1, 2, 1), 1);
  EXPECT_EQ(GetWeightedAverage(-1, 1, -2, 1), -1);
}

TEST(WeightedAverage, IsZeroIfNothingWasCounted) {
  EXPECT_EQ(GetWeightedAverage(10, 0, 20, 0), 0);
}

TEST(WeightedAverage, DoesNotOverflowForTheLargestAndTheSmallestDurations) {
  EXPECT_EQ(GetWeightedAverage(LARGEST, LARGEST_COUNT, LARGEST, LARGEST_COUNT), LARGEST);
  EXPECT_EQ(GetWeightedAverage(SMALLEST, LARGEST_COUNT, SMALLEST, LARGEST_COUNT), SMALLEST);
  EXPECT_EQ(GetWeightedAverage(LARGEST, 1, SMALLEST, 1), 0);
  EXPECT_EQ(GetWeightedAverage(LARGEST, 3LL * LARGEST_COUNT, LARGEST, 3LL * LARGEST_COUNT), LARGEST);
}

}  // namespace

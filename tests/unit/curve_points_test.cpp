// The points of a curve as the window holds them: filled from a served curve,
// thinned for a plot (per column the first, lowest, highest and last point).
#include "plot/curve_points.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "plot/curve_fill.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::vector<double> iota(std::size_t n, double start = 0.0) {
  std::vector<double> values(n);
  for (std::size_t i = 0; i < n; ++i) values[i] = start + static_cast<double>(i);
  return values;
}

plot::CurvePoints curveOf(const std::vector<double>& x, const std::vector<double>& y) {
  plot::CurvePoints curve;
  curve.append(x, y);
  return curve;
}

TEST(CurvePoints, FewPointsAreKeptAsTheyAreWithOneNeighbourOutsideEachBorder) {
  const plot::CurvePoints curve = curveOf(iota(10), iota(10, 100.0));
  const plot::ThinnedPoints kept = curve.thin(2.5, 6.0, 100);
  EXPECT_EQ(kept.x, (std::vector<double>{2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(kept.y, (std::vector<double>{102, 103, 104, 105, 106, 107}));
  EXPECT_EQ(curve.thin(20.0, 30.0, 100).x, std::vector<double>{9});
  EXPECT_TRUE(plot::CurvePoints().thin(0.0, 1.0, 100).x.empty());
  EXPECT_TRUE(curve.thin(5.0, 1.0, 100).x.empty());
  EXPECT_EQ(curve.thin(5.0, 5.0, 100).x, (std::vector<double>{4, 5, 6}));
}

// Whatever the range, columns and pieces appended: points of the curve in
// order, at most four a column, the range's extremes among them.
TEST(CurvePoints, ThinnedPointsKeepTheExtremesOfEveryRange) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> noise(-1.0, 1.0);
  const std::size_t n = 20'000;
  std::vector<double> x(n), y(n);
  for (std::size_t i = 0; i < n; ++i) {
    x[i] = i == 0 ? 0.0 : x[i - 1] + (i % 5 == 0 ? 0.0 : 0.5);  // runs of equal abscissae
    y[i] = noise(random);
  }
  plot::CurvePoints curve;
  for (std::size_t at = 0, piece = 0; at < n; at += piece) {
    piece = std::min<std::size_t>(n - at, 1 + (at * 7919) % 997);
    curve.append(std::span(x).subspan(at, piece), std::span(y).subspan(at, piece));
  }
  std::uniform_real_distribution<double> where(-100.0, x.back() + 100.0);
  for (int trial = 0; trial < 200; ++trial) {
    const auto [low, high] = std::minmax({where(random), where(random)});
    const int columns = 1 + trial * 7 % 900;
    const plot::ThinnedPoints kept = curve.thin(low, high, columns);
    EXPECT_LE(kept.x.size(), 4u * static_cast<std::size_t>(columns + 2)) << "trial " << trial;
    for (std::size_t k = 0, from = 0; k < kept.x.size(); ++k) {
      while (from < n && !(x[from] == kept.x[k] && y[from] == kept.y[k])) ++from;
      ASSERT_LT(from, n) << "trial " << trial << " point " << k;
    }
    const auto first = std::lower_bound(x.begin(), x.end(), std::max(low, x.front())) - x.begin();
    const auto last = std::upper_bound(x.begin(), x.end(), std::min(high, x.back())) - x.begin();
    if (last <= first + 1) continue;
    for (const double extreme : {*std::max_element(y.begin() + first, y.begin() + last),
                                 *std::min_element(y.begin() + first, y.begin() + last)}) {
      EXPECT_NE(std::find(kept.y.begin(), kept.y.end(), extreme), kept.y.end()) << trial;
    }
  }
  EXPECT_GE(curve.thin(-kInfinity, kInfinity, 500).x.size(), 2u * 500u);
  EXPECT_GE(curve.thin(1000.0, 3000.0, 200).x.size(), 3u * 200u);  // columns of the range asked
  // One column over everything: first, lowest and highest in their order, last.
  const auto low = std::min_element(y.begin(), y.end()) - y.begin();
  const auto high = std::max_element(y.begin(), y.end()) - y.begin();
  EXPECT_EQ(
      curve.thin(-kInfinity, kInfinity, 1).y,
      (std::vector<double>{y.front(), y[std::min(low, high)], y[std::max(low, high)], y.back()}));
}

// Abscissae in equal pairs, as time steps give them, are no descent, also
// when they are cut off; of equal extremes the first is kept.
TEST(CurvePoints, TruncatedThenGrownAgainIsSummarisedAfresh) {
  std::vector<double> x = iota(1000);
  for (double& value : x) value = std::floor(value / 2);
  plot::CurvePoints curve = curveOf(x, std::vector<double>(1000, 1.0));
  curve.truncate(300);
  std::vector<double> y(700, 2.0);
  y[650] = y[655] = y[670] = -9.0;
  curve.append(iota(700, 300.0), y);
  EXPECT_EQ(curve.size(), 1000u);
  const plot::ThinnedPoints one = curve.thin(-kInfinity, kInfinity, 1);
  EXPECT_EQ(one.x, (std::vector<double>{0, 300, 950, 999}));
  EXPECT_EQ(one.y, (std::vector<double>{1, 2, -9, 2}));
}

TEST(CurvePoints, ShapesAreKeptWholeUntilTheirDescentIsCutOff) {
  // A blade side listed from its trailing edge to its leading edge.
  const std::vector<double> backwards{0.06, 0.05, 0.03, 0.01, 0.0};
  plot::CurvePoints curve = curveOf(backwards, backwards);
  EXPECT_EQ(curve.thin(0.02, 0.03, 1).x, backwards);
  // One step back among many points forward is enough to be a shape.
  std::vector<double> oneStepBack = iota(1'000);
  oneStepBack[500] = 10.0;
  EXPECT_EQ(curveOf(oneStepBack, oneStepBack).thin(-kInfinity, kInfinity, 10).x, oneStepBack);
  curve.truncate(1);
  curve.append(iota(10'000, 1.0), iota(10'000));
  EXPECT_LE(curve.thin(-kInfinity, kInfinity, 10).x.size(), 40u);
}

TEST(CurvePoints, StatisticsOfTheLastValues) {
  const auto values = [](const plot::SeriesStatistics& s) {
    return std::vector<double>{double(s.count), s.mean, s.standardDeviation, s.minimum, s.maximum};
  };
  const plot::CurvePoints curve = curveOf(iota(5), {100.0, 1.0, 2.0, 3.0, 4.0});
  EXPECT_EQ(values(curve.statisticsOfLast(4)),
            (std::vector<double>{4, 2.5, std::sqrt(1.25), 1, 4}));
  const std::vector<double> all{5, 22, std::sqrt(1522.0), 1, 100};
  EXPECT_EQ(values(curve.statisticsOfLast(0)), all);
  EXPECT_EQ(values(curve.statisticsOfLast(99)), all);
  EXPECT_EQ(values(plot::CurvePoints().statisticsOfLast(3)), std::vector<double>(5, 0.0));
  // A small oscillation on a large mean keeps its digits.
  const plot::CurvePoints offset = curveOf(iota(4), {1e9 + 1, 1e9 - 1, 1e9 + 1, 1e9 - 1});
  EXPECT_EQ(values(offset.statisticsOfLast(0)), (std::vector<double>{4, 1e9, 1, 1e9 - 1, 1e9 + 1}));
}

// Missing points at the borders of the batches of 4096, and a trailing run
// from 8292 that begins in one range and goes on in the next.
TEST(CurveFill, LongRangesAcrossBatchesKeepEveryPointInOrder) {
  constexpr std::size_t kCount = 3 * 4096 + 17;
  const auto source = plot::pointsByPosition(kCount, [](std::size_t i) {
    const bool missing = i % 4096 == 0 || i % 4096 == 4095 || i == 1 || i > 2 * 4096 + 99;
    const double y = missing ? std::numeric_limits<double>::quiet_NaN() : 0.5 * double(i);
    return plot::Point{static_cast<double>(i), y};
  });
  plot::CurvePoints held;
  EXPECT_EQ(plot::fill(*source, 0, 2, held).trailingMissingFrom, 0);
  std::string outcomes;
  for (std::size_t first = 0; first < kCount; first += 5000) {
    const auto outcome = plot::fill(*source, first, std::min(kCount, first + 5000), held);
    outcomes +=
        std::to_string(outcome.appended) + " " + std::to_string(outcome.trailingMissingFrom) + ", ";
  }
  EXPECT_EQ(outcomes, "4996 -1, 3290 8292, 0 10000, ");
  ASSERT_EQ(held.size(), 8286u);
  for (std::size_t i = 1; i < held.size(); ++i) {
    EXPECT_LT(held.x()[i - 1], held.x()[i]);
    EXPECT_EQ(held.y()[i], 0.5 * held.x()[i]);
  }
}

}  // namespace

// Copying a long range of a served curve into the window's points, across the
// batches the copy reads in. (Which points count as missing, and the run of
// them that ends a range, monitor_curve's fill pins.)
#include "plot/curve_fill.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(CurveFill, LongRangesAcrossBatchesKeepEveryPointInOrder) {
  // Missing points at the borders of the batches of 4096, and a trailing run
  // that begins in one range and goes on in the next.
  constexpr std::size_t kCount = 3 * 4096 + 17;
  constexpr std::size_t kLastGiven = 2 * 4096 + 99;
  const auto missing = [](std::size_t i) {
    return i % 4096 == 0 || i % 4096 == 4095 || i == 1 || i > kLastGiven;
  };
  const auto source = plot::pointsByPosition(kCount, [&](std::size_t i) {
    return plot::Point{static_cast<double>(i), missing(i) ? kNaN : 0.5 * static_cast<double>(i)};
  });
  plot::CurvePoints held;
  EXPECT_EQ(plot::fill(*source, 0, 2, held).trailingMissingFrom, 0);
  std::size_t expected = 0;
  for (std::size_t first = 0; first < kCount; first += 5000) {
    const std::size_t end = std::min(kCount, first + 5000);
    const plot::FillOutcome outcome = plot::fill(*source, first, end, held);
    std::size_t given = 0;
    for (std::size_t i = first; i < end; ++i) given += missing(i) ? 0 : 1;
    EXPECT_EQ(outcome.appended, given);
    const auto trailing = static_cast<std::int64_t>(std::max(first, kLastGiven + 1));
    EXPECT_EQ(outcome.trailingMissingFrom, end > kLastGiven + 1 ? trailing : -1);
    expected += given;
  }
  ASSERT_EQ(held.size(), expected);
  for (std::size_t i = 1; i < held.size(); ++i) {
    EXPECT_LT(held.x()[i - 1], held.x()[i]);
    EXPECT_EQ(held.y()[i], 0.5 * held.x()[i]);
  }
}

}  // namespace

// Copying a range of a served curve into the window's points: missing points
// (NaN, infinite, the program's mark, in either coordinate) are left out, and
// the first position of the missing points that end the range is told, also
// across the batches the copy reads in.
#include "plot/curve_fill.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kMark =
    3.4028234663852886e38;  // the largest float, as the program writes a missing point

class Table final : public plot::CurveSource {
 public:
  explicit Table(std::vector<plot::Point> points) : points_(std::move(points)) {}
  std::size_t size() const override { return points_.size(); }
  void read(std::size_t first, std::span<plot::Point> out) const override {
    for (std::size_t i = 0; i < out.size(); ++i) out[i] = points_[first + i];
  }

 private:
  std::vector<plot::Point> points_;
};

TEST(CurveFill, MissingPointsAreLeftOutAndATrailingRunIsTold) {
  const Table table({{1, 10},
                     {2, kNaN},
                     {3, 30},
                     {kNaN, 40},
                     {5, kMark},
                     {6, -kInfinity},
                     {7, 3.4e38},
                     {8, -kMark}});
  const struct {
    std::size_t first, end;
    std::vector<double> xs;
    std::int64_t trailing;
  } cases[] = {
      {0, 8, {1, 3, 7}, 7},  // 3.4e38 is below the mark: given
      {0, 1, {1}, -1},      {1, 2, {}, 1},   {1, 3, {3}, -1},
      {3, 6, {}, 3},        {3, 7, {7}, -1}, {4, 4, {}, -1},
  };
  for (const auto& c : cases) {
    plot::CurvePoints points;
    const plot::FillOutcome outcome = plot::fill(table, c.first, c.end, points);
    EXPECT_EQ(points.x(), c.xs) << c.first << ".." << c.end;
    EXPECT_EQ(outcome.appended, c.xs.size()) << c.first << ".." << c.end;
    EXPECT_EQ(outcome.trailingMissingFrom, c.trailing) << c.first << ".." << c.end;
  }
}

TEST(CurveFill, LongRangesAcrossBatchesKeepEveryPointInOrder) {
  // Missing points at the batch borders and a trailing run that begins in
  // one batch and ends in the next.
  constexpr std::size_t kCount = 3 * 4096 + 17;
  constexpr std::size_t kLastGiven = 2 * 4096 + 99;
  std::vector<plot::Point> points;
  for (std::size_t i = 0; i < kCount; ++i) {
    const bool missing = i % 4096 == 0 || i % 4096 == 4095 || i > kLastGiven;
    points.push_back({static_cast<double>(i), missing ? kNaN : 0.5 * static_cast<double>(i)});
  }
  const Table table(points);
  plot::CurvePoints held;
  held.append(std::vector<double>{-1.0}, std::vector<double>{-1.0});
  std::size_t expected = 1;
  for (std::size_t first = 0; first < kCount; first += 5000) {
    const std::size_t end = std::min(kCount, first + 5000);
    const plot::FillOutcome outcome = plot::fill(table, first, end, held);
    std::size_t given = 0;
    for (std::size_t i = first; i < end; ++i) given += std::isnan(points[i].y) ? 0 : 1;
    EXPECT_EQ(outcome.appended, given);
    // The range's own part of the run of missing points at the end.
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

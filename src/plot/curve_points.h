// The points of one curve as the window holds them, and what a plot draws of
// them: no more points than its pixels can show, and the statistics that
// engineers quote for a converging quantity. Plain arithmetic on arrays, so
// that it is tested without a display.
//
// The curve keeps, for every block of kBlock points, where its lowest and
// highest values are; appending points summarises only the blocks they fill.
// Thinning a range then reads whole blocks from that summary and only the
// points of the partial blocks at the edges of each pixel column, so that a
// redraw costs about the same for a million points as for a few thousand.
#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace plot {

struct ThinnedPoints {
  std::vector<double> x;
  std::vector<double> y;
};

struct SeriesStatistics {
  std::size_t count = 0;
  double mean = 0.0;
  double standardDeviation = 0.0;  // of the population: the size of the oscillation
  double minimum = 0.0;
  double maximum = 0.0;
};

class CurvePoints {
 public:
  static constexpr std::size_t kBlock = 64;

  // Appends the pairs (x[i], y[i]); both spans have the same length.
  void append(std::span<const double> x, std::span<const double> y);
  // Makes room for `count` more points and an eighth more, or half as many
  // again as held when that is more: a long history read at once is not
  // copied as it comes in, nor at the refreshes that follow, and the room
  // left unused costs address space, not memory.
  void reserveFor(std::size_t count);
  // Keeps the first `count` points.
  void truncate(std::size_t count);

  std::size_t size() const { return x_.size(); }
  const std::vector<double>& x() const { return x_; }
  const std::vector<double>& y() const { return y_; }

  // The points whose abscissa lies in [xMin, xMax] (the limits may be
  // infinite), plus the nearest point on each side so that the line runs on
  // to the border of the plot. When they are more than four per pixel
  // column, each of the `columns` equal slices of the range keeps only its
  // first, lowest, highest and last point, in their order along the curve:
  // every spike stays visible and the line stays continuous. A curve whose
  // abscissae go back somewhere (a shape, not a history) is kept whole.
  ThinnedPoints thin(double xMin, double xMax, int columns) const;

  // Statistics of the last `lastCount` values (all of them when `lastCount`
  // is 0 or larger than the curve). Two passes, so that a large mean does not
  // eat the digits of a small oscillation.
  SeriesStatistics statisticsOfLast(std::size_t lastCount) const;

 private:
  // Positions of the lowest and highest y in [begin, end).
  std::pair<std::size_t, std::size_t> extremes(std::size_t begin, std::size_t end) const;
  std::pair<std::size_t, std::size_t> scan(std::size_t begin, std::size_t end) const;
  void summariseFrom(std::size_t block);
  void keepColumn(std::size_t begin, std::size_t end, ThinnedPoints& out) const;

  std::vector<double> x_;
  std::vector<double> y_;
  std::vector<std::size_t> blockLowest_;
  std::vector<std::size_t> blockHighest_;
  std::size_t descents_ = 0;  // places where an abscissa is below the one before
};

}  // namespace plot

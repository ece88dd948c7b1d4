// What a plot draws of a long curve: no more points than its pixels can show,
// and the statistics that engineers quote for a converging quantity.
// Plain arithmetic on arrays, so that it is tested without a display.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace plot {

struct ThinnedPoints {
  std::vector<double> x;
  std::vector<double> y;
};

// The points of (x, y) whose abscissa lies in [xMin, xMax] (the limits may be
// infinite), plus the nearest point on each side so that the line runs on to
// the border of the plot. When they are more than four per pixel column, each
// of the `columns` equal slices of the range keeps only its first, lowest,
// highest and last point, in their order along the curve: every spike stays
// visible and the line stays continuous. A curve whose abscissae go back
// somewhere (a shape, not a history) is kept whole.
ThinnedPoints thinToColumns(std::span<const double> x, std::span<const double> y, double xMin, double xMax,
                            int columns);

struct SeriesStatistics {
  std::size_t count = 0;
  double mean = 0.0;
  double standardDeviation = 0.0;  // of the population: the size of the oscillation
  double minimum = 0.0;
  double maximum = 0.0;
};

// Statistics of the last `lastCount` values (all of them when `lastCount` is 0
// or larger than the series). Two passes, so that a large mean does not eat
// the digits of a small oscillation.
SeriesStatistics statisticsOfLast(std::span<const double> values, std::size_t lastCount);

}  // namespace plot

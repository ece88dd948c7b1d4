#include "script/curve_thinning.h"

#include <algorithm>
#include <cmath>

namespace plot {

namespace {

constexpr std::size_t kPointsKeptPerColumn = 4;

// Appends the first, lowest, highest and last point of [begin, end), in
// their order along the curve, without repeating a point.
void keepColumnExtremes(std::span<const double> x, std::span<const double> y, std::size_t begin,
                        std::size_t end, ThinnedPoints& out) {
  std::size_t lowest = begin;
  std::size_t highest = begin;
  for (std::size_t i = begin + 1; i < end; ++i) {
    if (y[i] < y[lowest]) lowest = i;
    if (y[i] > y[highest]) highest = i;
  }
  std::size_t kept[] = {begin, std::min(lowest, highest), std::max(lowest, highest), end - 1};
  std::size_t previous = end;  // no point kept yet
  for (const std::size_t i : kept) {
    if (i == previous) continue;
    out.x.push_back(x[i]);
    out.y.push_back(y[i]);
    previous = i;
  }
}

}  // namespace

ThinnedPoints thinToColumns(std::span<const double> x, std::span<const double> y, double xMin, double xMax,
                            int columns) {
  ThinnedPoints out;
  const std::size_t size = std::min(x.size(), y.size());
  if (size == 0 || !(xMin <= xMax)) return out;
  const auto xs = x.first(size);
  // One point beyond each border, so that the line leaves the plot there.
  std::size_t first = static_cast<std::size_t>(std::lower_bound(xs.begin(), xs.end(), xMin) - xs.begin());
  std::size_t last = static_cast<std::size_t>(std::upper_bound(xs.begin(), xs.end(), xMax) - xs.begin());
  if (first > 0) --first;
  if (last < size) ++last;
  const std::size_t count = last - first;
  const std::size_t columnCount = columns > 0 ? static_cast<std::size_t>(columns) : 1;
  if (count <= kPointsKeptPerColumn * columnCount || xMax == xMin) {
    out.x.assign(xs.begin() + static_cast<std::ptrdiff_t>(first), xs.begin() + static_cast<std::ptrdiff_t>(last));
    out.y.assign(y.begin() + static_cast<std::ptrdiff_t>(first), y.begin() + static_cast<std::ptrdiff_t>(last));
    return out;
  }
  out.x.reserve(kPointsKeptPerColumn * (columnCount + 2));
  out.y.reserve(kPointsKeptPerColumn * (columnCount + 2));
  const double columnWidth = (xMax - xMin) / static_cast<double>(columnCount);
  auto columnOf = [&](double value) {
    if (value < xMin) return std::ptrdiff_t{-1};
    if (value > xMax) return static_cast<std::ptrdiff_t>(columnCount);
    return std::min(static_cast<std::ptrdiff_t>((value - xMin) / columnWidth),
                    static_cast<std::ptrdiff_t>(columnCount) - 1);
  };
  std::size_t begin = first;
  while (begin < last) {
    const std::ptrdiff_t column = columnOf(xs[begin]);
    std::size_t end = begin + 1;
    while (end < last && columnOf(xs[end]) == column) ++end;
    keepColumnExtremes(xs, y, begin, end, out);
    begin = end;
  }
  return out;
}

SeriesStatistics statisticsOfLast(std::span<const double> values, std::size_t lastCount) {
  SeriesStatistics statistics;
  if (lastCount == 0 || lastCount > values.size()) lastCount = values.size();
  const auto tail = values.last(lastCount);
  if (tail.empty()) return statistics;
  statistics.count = tail.size();
  double sum = 0.0;
  statistics.minimum = tail.front();
  statistics.maximum = tail.front();
  for (const double value : tail) {
    sum += value;
    statistics.minimum = std::min(statistics.minimum, value);
    statistics.maximum = std::max(statistics.maximum, value);
  }
  statistics.mean = sum / static_cast<double>(tail.size());
  double squares = 0.0;
  for (const double value : tail) squares += (value - statistics.mean) * (value - statistics.mean);
  statistics.standardDeviation = std::sqrt(squares / static_cast<double>(tail.size()));
  return statistics;
}

}  // namespace plot

#include "script/curve_thinning.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace plot {

namespace {

constexpr std::size_t kPointsKeptPerColumn = 4;

// The lowest and highest value of y[begin, end). Four running pairs, so that
// the comparisons do not wait on each other; a column holds thousands of
// points when a long curve is drawn.
std::pair<double, double> extremes(std::span<const double> y, std::size_t begin, std::size_t end) {
  double low[4] = {y[begin], y[begin], y[begin], y[begin]};
  double high[4] = {y[begin], y[begin], y[begin], y[begin]};
  std::size_t i = begin;
  for (; i + 4 <= end; i += 4) {
    for (std::size_t k = 0; k < 4; ++k) {
      low[k] = std::min(low[k], y[i + k]);
      high[k] = std::max(high[k], y[i + k]);
    }
  }
  for (; i < end; ++i) {
    low[0] = std::min(low[0], y[i]);
    high[0] = std::max(high[0], y[i]);
  }
  return {std::min(std::min(low[0], low[1]), std::min(low[2], low[3])),
          std::max(std::max(high[0], high[1]), std::max(high[2], high[3]))};
}

// Appends the first, lowest, highest and last point of [begin, end), in
// their order along the curve, without repeating a point.
void keepColumnExtremes(std::span<const double> x, std::span<const double> y, std::size_t begin,
                        std::size_t end, ThinnedPoints& out) {
  const auto [lowValue, highValue] = extremes(y, begin, end);
  const auto column = y.subspan(begin, end - begin);
  const auto position = [&](double value) {
    const auto found = std::find(column.begin(), column.end(), value);
    return begin + static_cast<std::size_t>(found == column.end() ? 0 : found - column.begin());
  };
  const std::size_t lowest = position(lowValue);
  const std::size_t highest = position(highValue);
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
  if (!std::is_sorted(xs.begin(), xs.end())) {
    // A shape rather than a history (a blade profile drawn from its
    // trailing edge): drawn whole.
    out.x.assign(xs.begin(), xs.end());
    out.y.assign(y.begin(), y.begin() + static_cast<std::ptrdiff_t>(size));
    return out;
  }
  // One point beyond each border, so that the line leaves the plot there.
  std::size_t first = static_cast<std::size_t>(std::lower_bound(xs.begin(), xs.end(), xMin) - xs.begin());
  std::size_t last = static_cast<std::size_t>(std::upper_bound(xs.begin(), xs.end(), xMax) - xs.begin());
  if (first > 0) --first;
  if (last < size) ++last;
  const std::size_t count = last - first;
  const std::size_t columnCount = columns > 0 ? static_cast<std::size_t>(columns) : 1;
  // The columns divide the part of the range that holds points; an open
  // range (infinite limits) is the curve's own.
  xMin = std::max(xMin, xs.front());
  xMax = std::min(xMax, xs.back());
  if (count <= kPointsKeptPerColumn * columnCount || !(xMin < xMax)) {
    out.x.assign(xs.begin() + static_cast<std::ptrdiff_t>(first), xs.begin() + static_cast<std::ptrdiff_t>(last));
    out.y.assign(y.begin() + static_cast<std::ptrdiff_t>(first), y.begin() + static_cast<std::ptrdiff_t>(last));
    return out;
  }
  out.x.reserve(kPointsKeptPerColumn * (columnCount + 2));
  out.y.reserve(kPointsKeptPerColumn * (columnCount + 2));
  const double columnWidth = (xMax - xMin) / static_cast<double>(columnCount);
  const auto at = [&xs](std::size_t i) { return xs.begin() + static_cast<std::ptrdiff_t>(i); };
  std::size_t begin = first;
  while (begin < last) {
    // The column of the point at `begin` runs up to the first abscissa of
    // the next column; the neighbours outside the range are columns of
    // their own.
    const double x0 = xs[begin];
    std::size_t end = begin + 1;
    if (x0 >= xMin && x0 <= xMax) {
      const auto column = std::min(static_cast<std::size_t>((x0 - xMin) / columnWidth), columnCount - 1);
      end = column + 1 == columnCount
                ? static_cast<std::size_t>(std::upper_bound(at(begin), at(last), xMax) - xs.begin())
                : static_cast<std::size_t>(
                      std::lower_bound(at(begin), at(last), xMin + static_cast<double>(column + 1) * columnWidth) -
                      xs.begin());
      end = std::max(end, begin + 1);
    }
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

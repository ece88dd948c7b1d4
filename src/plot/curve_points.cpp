#include "plot/curve_points.h"

#include <algorithm>
#include <cmath>

namespace plot {

namespace {

constexpr std::size_t kPointsKeptPerColumn = 4;

}  // namespace

void CurvePoints::append(std::span<const double> x, std::span<const double> y) {
  const std::size_t count = std::min(x.size(), y.size());
  if (count == 0) return;
  const std::size_t before = x_.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (!x_.empty() && x[i] < x_.back()) ++descents_;
    x_.push_back(x[i]);
    y_.push_back(y[i]);
  }
  summariseFrom(before / kBlock);
}

void CurvePoints::reserveFor(std::size_t count) {
  const std::size_t needed = x_.size() + count;
  if (needed <= x_.capacity()) return;
  const std::size_t capacity = std::max(needed + needed / 8, x_.capacity() + x_.capacity() / 2);
  x_.reserve(capacity);
  y_.reserve(capacity);
}

void CurvePoints::truncate(std::size_t count) {
  if (count >= x_.size()) return;
  for (std::size_t i = std::max<std::size_t>(count, 1); i < x_.size(); ++i) {
    if (x_[i] < x_[i - 1]) --descents_;
  }
  x_.resize(count);
  y_.resize(count);
  summariseFrom(count / kBlock);
}

void CurvePoints::summariseFrom(std::size_t block) {
  const std::size_t blocks = (x_.size() + kBlock - 1) / kBlock;
  blockLowest_.resize(blocks);
  blockHighest_.resize(blocks);
  for (std::size_t b = block; b < blocks; ++b) {
    const auto [lowest, highest] = scan(b * kBlock, std::min(x_.size(), (b + 1) * kBlock));
    blockLowest_[b] = lowest;
    blockHighest_[b] = highest;
  }
}

std::pair<std::size_t, std::size_t> CurvePoints::scan(std::size_t begin, std::size_t end) const {
  std::size_t lowest = begin;
  std::size_t highest = begin;
  for (std::size_t i = begin + 1; i < end; ++i) {
    if (y_[i] < y_[lowest]) lowest = i;
    if (y_[i] > y_[highest]) highest = i;
  }
  return {lowest, highest};
}

std::pair<std::size_t, std::size_t> CurvePoints::extremes(std::size_t begin,
                                                          std::size_t end) const {
  const std::size_t firstWhole = (begin + kBlock - 1) / kBlock;
  const std::size_t endWhole = end / kBlock;
  if (firstWhole >= endWhole) return scan(begin, end);
  // The partial block before the whole ones, the whole ones from the
  // summary, the partial block after them.
  auto [lowest, highest] = begin < firstWhole * kBlock
                               ? scan(begin, firstWhole * kBlock)
                               : std::pair{blockLowest_[firstWhole], blockHighest_[firstWhole]};
  const auto take = [&](std::size_t low, std::size_t high) {
    if (y_[low] < y_[lowest]) lowest = low;
    if (y_[high] > y_[highest]) highest = high;
  };
  for (std::size_t b = firstWhole; b < endWhole; ++b) take(blockLowest_[b], blockHighest_[b]);
  if (endWhole * kBlock < end) {
    const auto [low, high] = scan(endWhole * kBlock, end);
    take(low, high);
  }
  return {lowest, highest};
}

// Appends the first, lowest, highest and last point of [begin, end), in
// their order along the curve, without repeating a point.
void CurvePoints::keepColumn(std::size_t begin, std::size_t end, ThinnedPoints& out) const {
  const auto [lowest, highest] = extremes(begin, end);
  const std::size_t kept[] = {begin, std::min(lowest, highest), std::max(lowest, highest), end - 1};
  std::size_t previous = end;  // no point kept yet
  for (const std::size_t i : kept) {
    if (i == previous) continue;
    out.x.push_back(x_[i]);
    out.y.push_back(y_[i]);
    previous = i;
  }
}

ThinnedPoints CurvePoints::thin(double xMin, double xMax, int columns) const {
  ThinnedPoints out;
  const std::size_t size = x_.size();
  if (size == 0 || !(xMin <= xMax)) return out;
  if (descents_ > 0) {
    // A shape rather than a history (a blade profile drawn from its
    // trailing edge): drawn whole.
    out.x = x_;
    out.y = y_;
    return out;
  }
  const auto at = [this](std::size_t i) { return x_.begin() + static_cast<std::ptrdiff_t>(i); };
  // One point beyond each border, so that the line leaves the plot there.
  std::size_t first =
      static_cast<std::size_t>(std::lower_bound(x_.begin(), x_.end(), xMin) - x_.begin());
  std::size_t last =
      static_cast<std::size_t>(std::upper_bound(x_.begin(), x_.end(), xMax) - x_.begin());
  if (first > 0) --first;
  if (last < size) ++last;
  const std::size_t columnCount = columns > 0 ? static_cast<std::size_t>(columns) : 1;
  // The columns divide the part of the range that holds points; an open
  // range (infinite limits) is the curve's own.
  xMin = std::max(xMin, x_.front());
  xMax = std::min(xMax, x_.back());
  if (last - first <= kPointsKeptPerColumn * columnCount || !(xMin < xMax)) {
    out.x.assign(at(first), at(last));
    out.y.assign(y_.begin() + static_cast<std::ptrdiff_t>(first),
                 y_.begin() + static_cast<std::ptrdiff_t>(last));
    return out;
  }
  out.x.reserve(kPointsKeptPerColumn * (columnCount + 2));
  out.y.reserve(kPointsKeptPerColumn * (columnCount + 2));
  const double columnWidth = (xMax - xMin) / static_cast<double>(columnCount);
  std::size_t begin = first;
  while (begin < last) {
    // The column of the point at `begin` runs up to the first abscissa of
    // the next column; the neighbours outside the range are columns of
    // their own.
    const double x0 = x_[begin];
    std::size_t end = begin + 1;
    if (x0 >= xMin && x0 <= xMax) {
      const auto column =
          std::min(static_cast<std::size_t>((x0 - xMin) / columnWidth), columnCount - 1);
      end = column + 1 == columnCount
                ? static_cast<std::size_t>(std::upper_bound(at(begin), at(last), xMax) - x_.begin())
                : static_cast<std::size_t>(
                      std::lower_bound(at(begin), at(last),
                                       xMin + static_cast<double>(column + 1) * columnWidth) -
                      x_.begin());
      end = std::max(end, begin + 1);
    }
    keepColumn(begin, end, out);
    begin = end;
  }
  return out;
}

SeriesStatistics CurvePoints::statisticsOfLast(std::size_t lastCount) const {
  SeriesStatistics statistics;
  if (lastCount == 0 || lastCount > y_.size()) lastCount = y_.size();
  const auto tail = std::span<const double>(y_).last(lastCount);
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

#include "plot/curve_fill.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace plot {

namespace {

// Points read from the source at a time: the copy stays in the cache and
// its memory stays small whatever the range.
constexpr std::size_t kBatch = 4096;

}  // namespace

bool isMissing(const Point& point) {
  // Written so that NaN, which fails every comparison, counts as missing.
  return !(std::fabs(point.x) < kMissingMark && std::fabs(point.y) < kMissingMark);
}

FillOutcome fill(const CurveSource& source, std::size_t first, std::size_t end,
                 CurvePoints& points) {
  FillOutcome outcome;
  if (first >= end) return outcome;
  // Room for the whole rest of the curve at once: a long history coming in
  // for the first time is not copied again and again as it grows.
  points.reserveFor(source.size() - first);
  std::array<Point, kBatch> batch;
  std::array<double, kBatch> xs;
  std::array<double, kBatch> ys;
  for (std::size_t from = first; from < end; from += kBatch) {
    const std::size_t count = std::min(kBatch, end - from);
    source.read(from, std::span(batch).first(count));
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
      if (isMissing(batch[i])) {
        if (outcome.trailingMissingFrom < 0)
          outcome.trailingMissingFrom = static_cast<std::int64_t>(from + i);
        continue;
      }
      outcome.trailingMissingFrom = -1;
      xs[kept] = batch[i].x;
      ys[kept] = batch[i].y;
      ++kept;
    }
    points.append(std::span(xs).first(kept), std::span(ys).first(kept));
    outcome.appended += kept;
  }
  return outcome;
}

}  // namespace plot

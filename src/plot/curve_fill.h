// Copies a range of a served curve into the window's points of it. Points
// that the solver did not give (NaN, infinite, or the program's mark for
// them, the largest float) are left out; where the range ends in such a run
// of missing points, its first position is told, because some curves (custom
// plots over motions that lag behind the forces) fill them in later and the
// window reads them again from there.
#pragma once

#include <cstddef>
#include <cstdint>

#include "plot/curve_points.h"
#include "plot/curve_source.h"

namespace plot {

// Values at least this large, in either coordinate, stand for a missing
// point: just below the largest float, whatever the digits it was printed
// with.
inline constexpr double kMissingMark = 3.4028234e38;

bool isMissing(const Point& point);

struct FillOutcome {
  std::size_t appended = 0;
  // The first position of the missing points that end the range; -1 when
  // the range ends with a given point or is empty.
  std::int64_t trailingMissingFrom = -1;
};

// Appends the given points of positions [first, end) of `source` to
// `points`. The caller keeps first <= end <= source.size().
FillOutcome fill(const CurveSource& source, std::size_t first, std::size_t end,
                 CurvePoints& points);

}  // namespace plot

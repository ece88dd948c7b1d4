// What the watch knows of a computation after a refresh: per chosen curve
// its points (those the solver gave: missing values left out, as the window
// leaves them out) and its verdict.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "convergence/verdict.h"
#include "plot/curve_points.h"
#include "watch/computation_mode.h"
#include "watch/named_curve.h"

namespace watch {

struct CurveReport {
  std::string name;
  bool shown = true;
  plot::CurvePoints points;
  convergence::Verdict verdict;

  // The value of the last point; nothing for a curve without points.
  std::optional<double> last() const;
  bool converged() const { return verdict.state == convergence::State::converged; }
};

// Reads the given points of the curve and judges them.
CurveReport judgeCurve(const NamedCurve& curve, bool shown, const convergence::Settings& criteria);

struct ComputationReport {
  std::string path;
  Mode mode = Mode::marine;
  std::optional<std::string> stamp;
  std::size_t rows = 0;
  std::vector<CurveReport> curves;
  // The curves were judged again at the last refresh (they may have changed).
  bool fresh = true;

  // The curve of that name; null when the computation has none.
  const CurveReport* find(std::string_view name) const;
};

}  // namespace watch

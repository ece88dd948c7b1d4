#include "watch/curve_report.h"

#include "plot/curve_fill.h"

namespace watch {

std::optional<double> CurveReport::last() const {
  if (points.size() == 0) return std::nullopt;
  return points.y().back();
}

CurveReport judgeCurve(const NamedCurve& curve, bool shown, const convergence::Settings& criteria) {
  CurveReport report{curve.name, shown, {}, {}};
  plot::fill(*curve.source, 0, curve.source->size(), report.points);
  report.verdict =
      convergence::judge(report.points.x(), report.points.y(), criteria, curve.residual);
  return report;
}

const CurveReport* ComputationReport::find(std::string_view name) const {
  for (const CurveReport& curve : curves) {
    if (curve.name == name) return &curve;
  }
  return nullptr;
}

}  // namespace watch

// The curves monitor-watch follows in a marine computation: named as the
// formulas name them, at the right abscissae, with the custom curves of
// --formula; and a new run on disk starting them over.
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "scratch_folder.h"
#include "solver_simulator/marine_case_writer.h"
#include "watch/curve_report.h"
#include "watch/followed_computation.h"

namespace {

using solver_simulator::RunMode;
using watch::CurveReport;
using Points = std::vector<double>;

class WatchMarineCurves : public ScratchFolder {
 protected:
  // The stand-in's case: hull (sub-bodies keel and bulb, moving) and rudder,
  // two actuator disks, three user quantities; 5 iterations per time step of
  // 0.05 s in an unsteady run.
  solver_simulator::MarineCaseWriter& writeCase(RunMode mode, int iterations) {
    writer_.emplace(solver_simulator::defaultCaseSetup(folder_, mode));
    writer_->writeHeaders();
    for (int i = 0; i < iterations; ++i) writer_->appendIteration();
    return *writer_;
  }
  std::string residualPath() const { return writer_->setup().residualPath().string(); }
  auto follow(const std::string& path, std::vector<watch::CustomFormula> formulas = {}) {
    auto computation = watch::followComputation(path, watch::Mode::marine, std::move(formulas));
    computation->refresh();
    return computation;
  }
  static std::map<std::string, CurveReport> pointsOf(watch::FollowedComputation& computation) {
    std::map<std::string, CurveReport> found;
    for (const watch::NamedCurve& curve : computation.curves()) {
      found.emplace(curve.name, watch::judgeCurve(curve, true, {}));
    }
    return found;
  }
  std::optional<solver_simulator::MarineCaseWriter> writer_;
  ConsoleCapture console_;
};

TEST_F(WatchMarineCurves, NamesCountsAndAbscissaeInBothRunModes) {
  // Residuals at their iteration; loads at the time of their row when
  // unsteady, at their iteration when steady; the converged values and the
  // motions at the time of their step; disks and user quantities at their row.
  // No curve (0 points) for what the run does not write.
  const struct {
    RunMode mode;
    const char* curve;
    std::size_t points;
    Points first;
  } cases[] = {
      {RunMode::unsteady, "ResU", 20, {1, 2, 3}},
      {RunMode::unsteady, "Fx_hull", 20, {0.05, 0.05, 0.05, 0.05, 0.05, 0.1}},
      {RunMode::unsteady, "MzV_keel", 20, {}},
      {RunMode::unsteady, "FxDyn_keel", 4, {0.05, 0.1, 0.15}},
      {RunMode::unsteady, "MyPDyn_rudder", 4, {}},
      {RunMode::unsteady, "Z_hull", 4, {0.05, 0.1, 0.15}},
      {RunMode::unsteady, "Torque1", 4, {1, 2, 3}},
      {RunMode::unsteady, "Thrust2", 4, {}},
      {RunMode::unsteady, "Pitch moment", 4, {1, 2, 3}},
      {RunMode::steady, "Fx_hull", 10, {1, 2, 3}},
      {RunMode::steady, "Z_hull", 10, {1, 2, 3}},
  };
  const std::map<RunMode, std::vector<std::string>> absent = {
      {RunMode::unsteady, {"ResE", "ResVt~", "X_rudder", "Thrust3", "Thrust", "Fx"}},
      {RunMode::steady, {"FxDyn_hull", "FxDyn_keel", "X_rudder"}}};
  for (const RunMode mode : {RunMode::unsteady, RunMode::steady}) {
    writeCase(mode, mode == RunMode::steady ? 10 : 20);
    auto computation = follow(residualPath());
    EXPECT_EQ(computation->rows(), mode == RunMode::steady ? 10u : 20u);
    EXPECT_EQ(computation->stamp(), "21/11/2026 14:05:09");
    const std::map<std::string, CurveReport> curves = pointsOf(*computation);
    for (const auto& c : cases) {
      if (c.mode != mode) continue;
      ASSERT_TRUE(curves.contains(c.curve)) << c.curve;
      const Points& x = curves.at(c.curve).points.x();
      EXPECT_EQ(x.size(), c.points) << c.curve;
      for (std::size_t i = 0; i < c.first.size(); ++i)
        EXPECT_NEAR(x[i], c.first[i], 1e-9) << c.curve;
    }
    for (const std::string& name : absent.at(mode)) EXPECT_FALSE(curves.contains(name)) << name;
  }
}

TEST_F(WatchMarineCurves, FormulaCurves) {
  writeCase(RunMode::unsteady, 20);
  auto computation =
      follow(residualPath(),
             {{"mean", "(Fx_hull+Fx_rudder)/2"}, {"unknown", "Fx_nothing"}, {"Fx_hull", "1"}});
  computation->refresh();
  const auto curves = pointsOf(*computation);
  const CurveReport& mean = curves.at("mean");
  const CurveReport& hull = curves.at("Fx_hull");
  const CurveReport& rudder = curves.at("Fx_rudder");
  ASSERT_EQ(mean.points.size(), 20u);
  EXPECT_EQ(mean.points.x(), hull.points.x());
  EXPECT_DOUBLE_EQ(mean.points.y()[19], (hull.points.y()[19] + rudder.points.y()[19]) / 2);
  // A formula over a name the computation lacks adds no curve; one named like
  // a curve leaves the curve as it is; each is told once.
  EXPECT_FALSE(curves.contains("unknown"));
  EXPECT_NE(hull.points.y()[0], 1.0);
  pointsOf(*computation);
  std::string told;  // the watch's lines among the reader's
  std::istringstream console(console_.text());
  for (std::string line; std::getline(console, line);) {
    if (line.starts_with("monitor-watch: ")) told += line.substr(15) + "\n";
  }
  EXPECT_EQ(told, residualPath() +
                      ": formula unknown cannot be computed: Fx_nothing names what the computation "
                      "does not have\n" +
                      residualPath() +
                      ": formula Fx_hull is named like a curve of the computation; the curve is "
                      "shown\n");
}

TEST_F(WatchMarineCurves, ANewRunStartsTheCurvesOver) {
  for (const int stampSecondsLater : {1, 0}) {  // 0: same stamp, files rewritten
    solver_simulator::MarineCaseWriter& writer = writeCase(RunMode::unsteady, 30);
    auto computation = watch::followComputation(residualPath(), watch::Mode::marine, {});
    EXPECT_FALSE(computation->refresh().newRun);
    for (int i = 0; i < 5; ++i) writer.appendIteration();
    const watch::RefreshOutcome grown = computation->refresh();
    EXPECT_TRUE(grown.grew && !grown.newRun);
    EXPECT_FALSE(computation->refresh().grew);
    writer.restart(writer.setup().stamp.plusSeconds(stampSecondsLater));
    for (int i = 0; i < 10; ++i) writer.appendIteration();
    const watch::RefreshOutcome restarted = computation->refresh();
    EXPECT_TRUE(restarted.newRun && restarted.grew) << stampSecondsLater;
    EXPECT_EQ(computation->rows(), 10u);
    EXPECT_EQ(pointsOf(*computation).at("Fx_hull").points.size(), 10u);
    EXPECT_EQ(computation->stamp(), writer.setup().stamp.text());
  }
}

}  // namespace

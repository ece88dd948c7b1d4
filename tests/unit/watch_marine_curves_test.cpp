// The curves monitor-watch follows in a marine computation: named as the
// formulas name them, holding the points the solver wrote (missing values
// left out), standing at the right abscissae, with the custom curves of
// --formula; and a new run on disk starting them over.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "console_capture.h"
#include "marine/project_monitor_marine.h"
#include "scratch_folder.h"
#include "solver_simulator/marine_case_writer.h"
#include "watch/curve_report.h"
#include "watch/followed_computation.h"
#include "watch/marine_catalogue.h"

namespace {

using solver_simulator::MarineCaseWriter;
using solver_simulator::RunMode;
using watch::CurveReport;
using watch::CustomFormula;
using watch::NamedCurve;

const convergence::Settings kCriteria;

class WatchMarineCurves : public ScratchFolder {
 protected:
  // Writes the stand-in's case: hull (sub-bodies keel and bulb, moving) and
  // rudder, two actuator disks, three user quantities; 5 iterations per time
  // step in an unsteady run.
  MarineCaseWriter& writeCase(RunMode mode, int iterations) {
    writer_.emplace(solver_simulator::defaultCaseSetup(folder_, mode));
    writer_->writeHeaders();
    for (int i = 0; i < iterations; ++i) writer_->appendIteration();
    return *writer_;
  }
  std::string residualPath() const { return writer_->setup().residualPath().string(); }

  // Each curve's points as the watch reads them, by name.
  static std::map<std::string, CurveReport> pointsOf(const std::vector<NamedCurve>& curves) {
    std::map<std::string, CurveReport> found;
    for (const NamedCurve& curve : curves) {
      found.emplace(curve.name, watch::judgeCurve(curve, true, kCriteria));
    }
    return found;
  }

  std::optional<MarineCaseWriter> writer_;
  ConsoleCapture console_;
};

TEST_F(WatchMarineCurves, UnsteadyRunNamesAndCounts) {
  writeCase(RunMode::unsteady, 60);  // 12 time steps
  auto computation = watch::followComputation(residualPath(), watch::Mode::marine, {});
  computation->refresh();
  const auto curves = pointsOf(computation->curves());

  const struct {
    const char* name;
    std::size_t points;
  } expected[] = {
      {"ResU", 60},        {"Res`w", 60},         {"X_hull", 12},   {"PSI_hull", 12},
      {"Fx_hull", 60},     {"FxDyn_hull", 12},    {"MzV_keel", 60}, {"MzVDyn_bulb", 12},
      {"Fx_rudder", 60},   {"MyPDyn_rudder", 12}, {"Thrust1", 12},  {"Torque2", 12},
      {"Heave force", 12}, {"Froude number", 12},
  };
  for (const auto& e : expected) {
    const auto found = curves.find(e.name);
    ASSERT_NE(found, curves.end()) << e.name;
    EXPECT_EQ(found->second.points.size(), e.points) << e.name;
  }
  // What the run does not write has no curve: residuals outside the file's
  // columns, motions of a fixed body, a third disk.
  for (const char* absent : {"ResE", "ResVt~", "X_rudder", "Thrust3", "Thrust", "Fx"}) {
    EXPECT_FALSE(curves.contains(absent)) << absent;
  }
  EXPECT_EQ(computation->rows(), 60u);
  EXPECT_EQ(computation->stamp(), "21/11/2026 14:05:09");
}

TEST_F(WatchMarineCurves, SteadyRunHasNoPerTimeStepValues) {
  writeCase(RunMode::steady, 30);
  auto computation = watch::followComputation(residualPath(), watch::Mode::marine, {});
  computation->refresh();
  const auto curves = pointsOf(computation->curves());
  EXPECT_TRUE(std::none_of(curves.begin(), curves.end(), [](const auto& curve) {
    return curve.first.find("Dyn") != std::string::npos;
  }));
  EXPECT_EQ(curves.at("X_hull").points.size(), 30u);
  EXPECT_EQ(curves.at("Fx_hull").points.size(), 30u);
}

TEST_F(WatchMarineCurves, LoadAndMotionCurvesAreTheFormulaVariables) {
  for (const RunMode mode : {RunMode::unsteady, RunMode::steady}) {
    writeCase(mode, 10);
    marine::ProjectMonitorMarine project(residualPath());
    project.refresh();
    std::vector<std::string> variables;
    project.variables().GetVariableNames(variables);

    std::set<std::string> fromCurves;
    for (const NamedCurve& curve : watch::marineCurves(project)) {
      if (curve.name.find('_') != std::string::npos) fromCurves.insert(curve.name);
    }
    EXPECT_EQ(fromCurves, std::set<std::string>(variables.begin(), variables.end()));
  }
}

TEST_F(WatchMarineCurves, CurvesStandAtTheirAbscissae) {
  const struct {
    RunMode mode;
    const char* curve;
    std::vector<double> firstAbscissae;
  } cases[] = {
      // Residuals at their iteration; loads at the physical time of their
      // row in an unsteady run (5 iterations per step of 0.05 s), at their
      // iteration in a steady one; the converged values and the motions at
      // the time of their step; disks and user quantities at their row.
      {RunMode::unsteady, "ResU", {1, 2, 3}},
      {RunMode::unsteady, "Fx_hull", {0.05, 0.05, 0.05, 0.05, 0.05, 0.1}},
      {RunMode::unsteady, "FxDyn_keel", {0.05, 0.1, 0.15}},
      {RunMode::unsteady, "Z_hull", {0.05, 0.1, 0.15}},
      {RunMode::unsteady, "Torque1", {1, 2, 3}},
      {RunMode::unsteady, "Pitch moment", {1, 2, 3}},
      {RunMode::steady, "Fx_hull", {1, 2, 3}},
      {RunMode::steady, "Z_hull", {1, 2, 3}},
  };
  for (const auto& c : cases) {
    writeCase(c.mode, 15);
    auto computation = watch::followComputation(residualPath(), watch::Mode::marine, {});
    computation->refresh();
    const CurveReport curve = pointsOf(computation->curves()).at(c.curve);
    ASSERT_GE(curve.points.size(), c.firstAbscissae.size()) << c.curve;
    for (std::size_t i = 0; i < c.firstAbscissae.size(); ++i) {
      EXPECT_NEAR(curve.points.x()[i], c.firstAbscissae[i], 1e-9) << c.curve << " point " << i;
    }
  }
}

TEST_F(WatchMarineCurves, MissingValuesAreLeftOut) {
  // Values beyond the floats, infinite or at the program's mark for a
  // missing point.
  write("ship.res",
        "#CREATED 21/11/2026 14:05:09\n#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n"
        "#COLUMNS itnl cpums ResU ResP\n"
        "1 0.1 0.5 0.5\n2 0.2 inf 0.5\n3 0.3 -inf 0.5\n4 0.4 1e39 0.5\n"
        "5 0.5 3.4028235e38 0.5\n6 0.6 0.25 0.5\n");
  write("eff_Fx.dat",
        "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n#QV_BEGIN\nBODY\nNAME hull\n#QV_END\n"
        "#QV_BEGIN\nVARIABLES = T itnl Fx\nNAMES = hull\n#QV_END\n#COLUMNS T itnl hull\n"
        "0.1 1 -1500\n0.2 2 -1e39\n0.3 3 -1490\n");
  const std::vector<CustomFormula> formulas = {{"root", "sqrt(Fx_hull)"}};
  auto computation = watch::followComputation(pathOf("ship.res"), watch::Mode::marine, formulas);
  computation->refresh();
  const auto curves = pointsOf(computation->curves());
  EXPECT_EQ(curves.at("ResU").points.x(), (std::vector<double>{1, 6}));
  EXPECT_EQ(curves.at("ResU").points.y(), (std::vector<double>{0.5, 0.25}));
  EXPECT_EQ(curves.at("ResP").points.size(), 6u);
  EXPECT_EQ(curves.at("Fx_hull").points.x(), (std::vector<double>{1, 3}));
  // The square root of a negative force is NaN at every point.
  EXPECT_EQ(curves.at("root").points.size(), 0u);
  EXPECT_EQ(curves.at("root").verdict.state, convergence::State::shortSeries);
}

TEST_F(WatchMarineCurves, FormulaCurves) {
  writeCase(RunMode::unsteady, 20);
  const std::vector<CustomFormula> formulas = {
      {"mean", "(Fx_hull+Fx_rudder)/2"}, {"unknown", "Fx_nothing"}, {"Fx_hull", "1"}};
  auto computation = watch::followComputation(residualPath(), watch::Mode::marine, formulas);
  computation->refresh();
  auto curves = pointsOf(computation->curves());
  computation->refresh();
  curves = pointsOf(computation->curves());

  const CurveReport& mean = curves.at("mean");
  const CurveReport& hull = curves.at("Fx_hull");
  const CurveReport& rudder = curves.at("Fx_rudder");
  ASSERT_EQ(mean.points.size(), 20u);
  for (std::size_t i = 0; i < 20; ++i) {
    EXPECT_EQ(mean.points.x()[i], hull.points.x()[i]);
    EXPECT_DOUBLE_EQ(mean.points.y()[i], (hull.points.y()[i] + rudder.points.y()[i]) / 2);
  }
  // A formula over a name the computation lacks adds no curve, and says so
  // once; a formula named like a curve leaves the curve as it is.
  EXPECT_FALSE(curves.contains("unknown"));
  EXPECT_NE(hull.points.y()[0], 1.0);
  const std::string told = console_.text();
  const auto occurrences = [&told](const std::string& part) {
    std::size_t count = 0;
    for (auto at = told.find(part); at != std::string::npos; at = told.find(part, at + 1)) ++count;
    return count;
  };
  EXPECT_EQ(occurrences("formula unknown cannot be computed: Fx_nothing"), 1u);
  EXPECT_EQ(occurrences("formula Fx_hull is named like a curve of the computation"), 1u);
}

TEST_F(WatchMarineCurves, ANewRunStartsTheCurvesOver) {
  const struct {
    const char* what;
    int stampSecondsLater;
  } cases[] = {{"new stamp", 1}, {"same stamp, files rewritten", 0}};
  for (const auto& c : cases) {
    MarineCaseWriter& writer = writeCase(RunMode::unsteady, 30);
    auto computation = watch::followComputation(residualPath(), watch::Mode::marine, {});
    EXPECT_FALSE(computation->refresh().newRun) << c.what;
    for (int i = 0; i < 5; ++i) writer.appendIteration();
    const watch::RefreshOutcome grown = computation->refresh();
    EXPECT_TRUE(grown.grew) << c.what;
    EXPECT_FALSE(grown.newRun) << c.what;
    EXPECT_FALSE(computation->refresh().grew) << c.what;

    writer.restart(writer.setup().stamp.plusSeconds(c.stampSecondsLater));
    for (int i = 0; i < 10; ++i) writer.appendIteration();
    const watch::RefreshOutcome restarted = computation->refresh();
    EXPECT_TRUE(restarted.newRun) << c.what;
    EXPECT_TRUE(restarted.grew) << c.what;
    EXPECT_EQ(computation->rows(), 10u) << c.what;
    EXPECT_EQ(pointsOf(computation->curves()).at("Fx_hull").points.size(), 10u) << c.what;
    EXPECT_EQ(computation->stamp(), writer.setup().stamp.text()) << c.what;
  }
}

}  // namespace

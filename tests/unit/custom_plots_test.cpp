// Custom plots over the solver stand-in's case (body hull with sub-bodies keel
// and bulb, body rudder): variables, points, failures, growth and new runs.
#include "marine/custom_plots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "console_capture.h"
#include "formula/error_collector.h"
#include "marine/marine_vars_provider.h"
#include "marine/project_monitor_marine.h"
#include "scratch_folder.h"
#include "solver_simulator/marine_case_writer.h"

namespace {

using marine::Component;
using marine::PlotPoints;
using solver_simulator::LineEnd;
using solver_simulator::RunMode;

constexpr double kLargestFloat = 3.4028234663852886e+38;

bool samePoints(const PlotPoints& a, const PlotPoints& b) {
  const auto same = [](double x, double y) { return x == y || (std::isnan(x) && std::isnan(y)); };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](const auto& p, const auto& q) {
    return same(p.first, q.first) && same(p.second, q.second);
  });
}

// Record i of a history, NaN past its end.
double at(const std::vector<double>* values, std::size_t i) {
  return values != nullptr && i < values->size() ? (*values)[i]
                                                 : std::numeric_limits<double>::quiet_NaN();
}

class CustomPlotsTest : public ScratchFolder {
 protected:
  ~CustomPlotsTest() override { formula::clearCollectedErrors(); }

  // The default case in its own folder with `iterations` written, read once.
  void open(RunMode mode, int iterations) {
    writer_ = std::make_unique<solver_simulator::MarineCaseWriter>(
        solver_simulator::defaultCaseSetup(folder_ / std::to_string(++cases_), mode));
    writer_->writeHeaders();
    project_ =
        std::make_unique<marine::ProjectMonitorMarine>(writer_->setup().residualPath().string());
    grow(iterations);
  }
  void grow(int iterations, LineEnd end = LineEnd::whole) {
    for (int i = 0; i < iterations; ++i) writer_->appendIteration(end);
    const ConsoleCapture quiet;
    project_->refresh();
  }
  PlotPoints afresh(const std::string& formula) const {
    PlotPoints points;
    EXPECT_TRUE(marine::computePlotPoints(project_->variables(), formula, 0, points)) << formula;
    return points;
  }
  int cases_ = 0;
  std::unique_ptr<solver_simulator::MarineCaseWriter> writer_;
  std::unique_ptr<marine::ProjectMonitorMarine> project_;
};

TEST_F(CustomPlotsTest, PointsStandAtTheRecordsOfTheFirstBodysFx) {
  for (const RunMode mode : {RunMode::steady, RunMode::unsteady}) {
    const bool unsteady = mode == RunMode::unsteady;
    SCOPED_TRACE(unsteady ? "unsteady" : "steady");
    open(mode, 60);
    std::vector<std::string> names;
    project_->variables().GetVariableNames(names);
    ASSERT_EQ(names.size(), unsteady ? 150u : 78u);
    EXPECT_EQ(names[5] + " " + names[6] + " " + names[7] + " " + names.back(),
              unsteady ? "PSI_hull Fx_hull FxDyn_hull MzVDyn_rudder"
                       : "PSI_hull Fx_hull FxP_hull MzV_rudder");

    const marine::BodyObject& hull = project_->bodies()[0];
    const auto* hullFx = hull.history(Component::force, 0);
    const auto* hullFxDyn = hull.history(Component::force, 1);
    const auto* rudderFx = project_->bodies()[1].history(Component::force, 0);
    const auto* keelFx = hull.subBody(0).history(Component::force, 0);
    const auto* bulbFx = hull.subBody(1).history(Component::force, 0);
    const auto* keelMz = hull.subBody(0).history(Component::moment, 12);
    // Motions and per-time-step quantities have one record per time step.
    const auto* heave = &project_->motionBodies().at(0)->motion().values(2);
    ASSERT_EQ(heave->size(), unsteady ? 12u : 60u);
    const formula::MarineVarsProvider& vars = project_->variables();
    EXPECT_EQ(vars.GetValue(0, "Fx_hull"), hullFx->front());
    EXPECT_TRUE(std::isnan(vars.GetValue(-1, "Fx_hull")) &&
                std::isnan(vars.GetValue(60, "Fx_hull")));
    EXPECT_TRUE(std::isnan(vars.GetValue(0, "Fx_nowhere")));
    std::vector<std::pair<std::string, PlotPoints>> rows = {
        {"t", {}},
        {"1.5e3/t + Fx_hull - Fx_rudder/2 + Fx_keel*3 + Fx_bulb - Mz_keel", {}},
        {"-Z_hull", {}},
        {"FxDyn_hull", {}},
        {"Fx_hull/(Fx_rudder-Fx_rudder) + 1", {}},
        {"cotan(Fx_hull-Fx_hull)", {}}};
    for (std::size_t i = 0; i < 60; ++i) {
      const double t = unsteady ? hull.times()[i] : static_cast<double>(i + 1);
      const double values[] = {t,
                               1500.0 / t + at(hullFx, i) - at(rudderFx, i) / 2 +
                                   at(keelFx, i) * 3 + at(bulbFx, i) - at(keelMz, i),
                               -at(heave, i),
                               at(hullFxDyn, i),
                               1.0,
                               kLargestFloat};
      for (std::size_t r = 0; r < rows.size(); ++r) rows[r].second.emplace_back(t, values[r]);
    }
    formula::clearCollectedErrors();
    marine::CustomPlots& plots = project_->customPlots();
    for (const auto& [formula, points] : rows) {
      // A steady run has no per-time-step quantities.
      const int number = plots.add(formula);
      if (!unsteady && formula == "FxDyn_hull") {
        EXPECT_EQ(number, -1);
        continue;
      }
      ASSERT_EQ(number, static_cast<int>(plots.size()) - 1) << formula;
      EXPECT_TRUE(samePoints(plots.plot(plots.size() - 1).points(), points)) << formula;
    }
    EXPECT_DOUBLE_EQ(plots.plot(0).points().back().first, unsteady ? 0.6 : 60.0);
    EXPECT_EQ(formula::collectedErrors(), " division by zero.cotan of 0 undefined.");
  }
}

TEST_F(CustomPlotsTest, AFormulaThatFailsLeavesTheListAsItWas) {
  open(RunMode::steady, 10);
  marine::CustomPlots& plots = project_->customPlots();
  ASSERT_EQ(plots.add("Fx_hull"), 0);
  ASSERT_EQ(plots.add("Fy_hull"), 1);
  const struct {
    std::string formula;
    std::string errors;
  } rows[] = {
      {"Fx_Hull", ""},
      {"Fx_hull + Fx_nowhere", ""},
      {"2*(Fx_hull+Fx_rudder", ""},
      {"sqr(Fx_hull)", "Error: Unknown function \"sqr\"\n"},
      {"Fx_hull + cos", "Error: Use of uninitialized variable cos\n"},
      {std::string(100000, '(') + "Fx_hull", "Error: Formula nested too deeply\n"},
  };
  for (const auto& row : rows) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(plots.add(row.formula), -1) << row.formula.substr(0, 30);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), row.errors) << row.formula.substr(0, 30);
  }
  ASSERT_EQ(plots.size(), 2u);
  // A failed edit keeps the formula and drops the points.
  EXPECT_FALSE(plots.edit(0, "Fx_nowhere"));
  EXPECT_EQ(plots.plot(0).formula(), "Fx_hull");
  EXPECT_TRUE(plots.plot(0).points().empty());
  EXPECT_TRUE(plots.edit(0, "Fy_rudder"));
  EXPECT_TRUE(samePoints(plots.plot(0).points(), afresh("Fy_rudder")));
  // The plots are numbered by their place in the list.
  plots.remove(1);
  EXPECT_EQ(plots.add("Mx_hull"), 1);
  EXPECT_EQ(plots.plot(0).formula() + " " + plots.plot(1).formula(), "Fy_rudder Mx_hull");
}

TEST_F(CustomPlotsTest, APlotFollowingALiveRunMatchesOneComputedAfresh) {
  // Motions and per-time-step values lag behind the force rows, and a file may
  // end in half a row: a point computed before its value came is redone.
  open(RunMode::unsteady, 20);
  const std::vector<std::string> formulas = {"Z_hull", "Fx_hull + PHI_hull", "FxDyn_keel*t"};
  for (const std::string& formula : formulas) project_->customPlots().add(formula);
  for (int i = 0; i < 12; ++i) {
    grow(1, i % 3 == 0 ? LineEnd::cutLastLine : LineEnd::whole);
    for (std::size_t p = 0; p < formulas.size(); ++p) {
      EXPECT_TRUE(samePoints(project_->customPlots().plot(p).points(), afresh(formulas[p])))
          << formulas[p] << " after iteration " << writer_->iterationsWritten();
    }
  }
}

TEST_F(CustomPlotsTest, AnUpdateRecomputesAllOrOnlyTheNewPoints) {
  open(RunMode::unsteady, 40);
  marine::CustomPlot plot;
  ASSERT_TRUE(plot.setFormula(project_->variables(), "Fx_hull*2"));
  project_->customPlots().add("Fx_hull*2");
  const PlotPoints oldRun = plot.points();
  const struct {
    const char* name;
    int rows;  // of the new run
    bool fromScratch;
    std::size_t kept;  // points of the old run kept
  } rows[] = {
      {"a shorter run", 7, false, 0},
      {"as long a run", 40, false, 40},
      {"a longer run", 47, false, 40},
      {"a longer run afresh", 47, true, 0},
  };
  for (int r = 0; const auto& row : rows) {
    SCOPED_TRACE(row.name);
    writer_->restart(writer_->setup().stamp.plusSeconds(3600 * ++r));
    grow(row.rows);
    marine::CustomPlot updated = plot;
    updated.update(project_->variables(), row.fromScratch);
    PlotPoints expected(oldRun.begin(), oldRun.begin() + static_cast<std::ptrdiff_t>(row.kept));
    const PlotPoints now = afresh("Fx_hull*2");
    expected.insert(expected.end(), now.begin() + static_cast<std::ptrdiff_t>(row.kept), now.end());
    EXPECT_TRUE(samePoints(updated.points(), expected));
    EXPECT_NE(now.front(), oldRun.front());
    // The project's own plots start over with the new run.
    EXPECT_TRUE(samePoints(project_->customPlots().plot(0).points(), now));
  }
}

}  // namespace

// Custom plots over marine computations that the solver stand-in writes:
// the variables a run offers, the points of a formula (abscissae of the
// first body, values of bodies, sub-bodies and motions), how a plot follows
// a live run and a restart, and the plot list's numbering and failures.
#include "marine/custom_plots.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "console_capture.h"
#include "formula/error_collector.h"
#include "marine/project_monitor_marine.h"
#include "solver_simulator/marine_case_writer.h"

namespace {

namespace fs = std::filesystem;
using marine::Component;
using marine::ComponentHistories;
using marine::PlotPoints;
using marine::ProjectMonitorMarine;
using solver_simulator::defaultCaseSetup;
using solver_simulator::LineEnd;
using solver_simulator::MarineCaseWriter;
using solver_simulator::RunMode;

constexpr double kLargestFloat = 3.4028234663852886e+38;
constexpr int kFx = 0;  // in the force table
constexpr int kFxDyn = 1;
constexpr int kMz = 12;  // in the moment table

const std::vector<double>& series(const ComponentHistories& owner, Component component,
                                  int quantity) {
  const std::vector<double>* values = owner.history(component, quantity);
  if (values == nullptr) throw std::logic_error("no such history");
  return *values;
}

// Two point lists are the same when every coordinate is equal or NaN in both.
testing::AssertionResult samePoints(const PlotPoints& actual, const PlotPoints& expected) {
  if (actual.size() != expected.size()) {
    return testing::AssertionFailure() << actual.size() << " points instead of " << expected.size();
  }
  const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
  for (std::size_t i = 0; i < actual.size(); ++i) {
    if (!same(actual[i].first, expected[i].first) || !same(actual[i].second, expected[i].second)) {
      return testing::AssertionFailure()
             << "point " << i << " is (" << actual[i].first << ", " << actual[i].second
             << ") instead of (" << expected[i].first << ", " << expected[i].second << ")";
    }
  }
  return testing::AssertionSuccess();
}

class CustomPlotsTest : public testing::Test {
 protected:
  CustomPlotsTest() {
    static int serial = 0;
    folder_ = fs::temp_directory_path() /
              ("custom_plots_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
    formula::clearCollectedErrors();
  }
  ~CustomPlotsTest() override {
    fs::remove_all(folder_);
    formula::clearCollectedErrors();
  }

  std::unique_ptr<MarineCaseWriter> write(RunMode mode, int iterations) {
    auto writer = std::make_unique<MarineCaseWriter>(defaultCaseSetup(folder_, mode));
    writer->writeHeaders();
    for (int i = 0; i < iterations; ++i) writer->appendIteration();
    return writer;
  }

  // A project loaded and refreshed once, as the monitor does when it opens it.
  static std::unique_ptr<ProjectMonitorMarine> open(const MarineCaseWriter& writer) {
    auto project = std::make_unique<ProjectMonitorMarine>(writer.setup().residualPath().string());
    const ConsoleCapture console;
    EXPECT_TRUE(project->load());
    EXPECT_TRUE(project->refresh().succeeded);
    return project;
  }

  static void refresh(ProjectMonitorMarine& project) {
    const ConsoleCapture console;
    project.refresh();
  }

  // The points of the formula computed from the first point on.
  static PlotPoints afresh(const ProjectMonitorMarine& project, const std::string& formula) {
    PlotPoints points;
    testing::internal::CaptureStderr();
    EXPECT_TRUE(marine::computePlotPoints(project.variables(), formula, 0, points)) << formula;
    testing::internal::GetCapturedStderr();
    return points;
  }

  static std::vector<std::string> variableNames(const ProjectMonitorMarine& project) {
    std::vector<std::string> names;
    project.variables().GetVariableNames(names);
    return names;
  }

  fs::path folder_;
};

// The variables of the default case in their three passes: the hull's
// motions; the forces of hull, keel, bulb and rudder; their moments.
std::vector<std::string> expectedVariables(bool unsteady) {
  std::vector<std::string> names;
  for (const char* motion : {"X", "Y", "Z", "PHI", "THETA", "PSI"})
    names.push_back(std::string(motion) + "_hull");
  for (const char axis : {'F', 'M'}) {
    for (const char* object : {"hull", "keel", "bulb", "rudder"}) {
      for (const char* direction : {"x", "y", "z"}) {
        for (const char* part : {"", "P", "V"}) {
          const std::string quantity = std::string(1, axis) + direction + part;
          names.push_back(quantity + "_" + object);
          if (unsteady) names.push_back(quantity + "Dyn_" + object);
        }
      }
    }
  }
  return names;
}

TEST_F(CustomPlotsTest, ASteadyRunOffersMotionsThenForcesThenMomentsOfEveryBodyAndSubBody) {
  const auto writer = write(RunMode::steady, 10);
  const auto project = open(*writer);
  const std::vector<std::string> names = variableNames(*project);
  EXPECT_EQ(names, expectedVariables(false));
  EXPECT_EQ(names.size(), 6u + 2 * 4 * 9);
}

TEST_F(CustomPlotsTest, AnUnsteadyRunAlsoOffersThePerTimeStepQuantities) {
  const auto writer = write(RunMode::unsteady, 10);
  const auto project = open(*writer);
  const std::vector<std::string> names = variableNames(*project);
  EXPECT_EQ(names, expectedVariables(true));
  EXPECT_EQ(names.size(), 6u + 2 * 4 * 18);
}

TEST_F(CustomPlotsTest, ASteadyPlotHasOnePointPerIterationOfTheFirstBody) {
  const auto writer = write(RunMode::steady, 40);
  const auto project = open(*writer);
  const marine::BodyObject& hull = project->bodies()[0];
  const marine::BodyObject& rudder = project->bodies()[1];

  marine::CustomPlots& plots = project->customPlots();
  ASSERT_EQ(plots.add("(Fx_hull+Fx_rudder)/2"), 0);
  const PlotPoints& points = plots.plot(0).points();
  ASSERT_EQ(points.size(), 40u);
  for (std::size_t i = 0; i < points.size(); ++i) {
    EXPECT_EQ(points[i].first, static_cast<double>(i + 1)) << i;
    EXPECT_EQ(
        points[i].second,
        (series(hull, Component::force, kFx)[i] + series(rudder, Component::force, kFx)[i]) / 2)
        << i;
  }
  EXPECT_EQ(plots.plot(0).formula(), "(Fx_hull+Fx_rudder)/2");
}

TEST_F(CustomPlotsTest, SubBodiesMomentsAndMotionsAreVariablesToo) {
  const auto writer = write(RunMode::steady, 30);
  const auto project = open(*writer);
  const marine::BodyObject& hull = project->bodies()[0];
  const std::vector<double>& keelFx = series(hull.subBody(0), Component::force, kFx);
  const std::vector<double>& bulbFx = series(hull.subBody(1), Component::force, kFx);
  const std::vector<double>& keelMz = series(hull.subBody(0), Component::moment, kMz);
  const std::vector<double>& heave = project->motionBodies().at(0)->motion().values(2);
  ASSERT_EQ(heave.size(), 30u);

  marine::CustomPlots& plots = project->customPlots();
  ASSERT_EQ(plots.add("Fx_keel + Fx_bulb - Mz_keel*2"), 0);
  ASSERT_EQ(plots.add("-Z_hull"), 1);
  ASSERT_EQ(plots.plot(0).points().size(), 30u);
  ASSERT_EQ(plots.plot(1).points().size(), 30u);
  for (std::size_t i = 0; i < 30; ++i) {
    EXPECT_EQ(plots.plot(0).points()[i].second, keelFx[i] + bulbFx[i] - keelMz[i] * 2) << i;
    EXPECT_EQ(plots.plot(1).points()[i].second, -heave[i]) << i;
  }
  // The sub-bodies are loads of their own, not copies of the body's.
  EXPECT_NE(keelFx, series(hull, Component::force, kFx));
  EXPECT_NE(keelFx, bulbFx);
}

TEST_F(CustomPlotsTest, AnUnsteadyPlotIsSampledAtThePhysicalTimesOfTheFirstBody) {
  const auto writer = write(RunMode::unsteady, 60);
  const auto project = open(*writer);
  const marine::BodyObject& hull = project->bodies()[0];
  ASSERT_EQ(hull.times().size(), 60u);

  marine::CustomPlots& plots = project->customPlots();
  ASSERT_EQ(plots.add("t"), 0);
  ASSERT_EQ(plots.add("1.5e3/t"), 1);
  ASSERT_EQ(plots.add("(Fx_hull+Fx_rudder)/2 - 0.5*sin(t)"), 2);
  for (std::size_t p = 0; p < 3; ++p) ASSERT_EQ(plots.plot(p).points().size(), 60u) << p;
  const std::vector<double>& hullFx = series(hull, Component::force, kFx);
  const std::vector<double>& rudderFx = series(project->bodies()[1], Component::force, kFx);
  for (std::size_t i = 0; i < 60; ++i) {
    const double time = hull.times()[i];
    EXPECT_EQ(plots.plot(0).points()[i], std::make_pair(time, time)) << i;
    EXPECT_EQ(plots.plot(1).points()[i], std::make_pair(time, 1500.0 / time)) << i;
    EXPECT_EQ(plots.plot(2).points()[i].second,
              (hullFx[i] + rudderFx[i]) / 2 - 0.5 * std::sin(time))
        << i;
  }
  EXPECT_DOUBLE_EQ(plots.plot(0).points().back().first, 0.6);
}

TEST_F(CustomPlotsTest, APerTimeStepQuantityFillsThePointsOfItsFirstSteps) {
  // One converged value per time step: record i of the series goes to point
  // i, and the points beyond the steps completed have no value.
  const auto writer = write(RunMode::unsteady, 60);
  const auto project = open(*writer);
  const std::vector<double>& converged = series(project->bodies()[0], Component::force, kFxDyn);
  ASSERT_EQ(converged.size(), 12u);

  ASSERT_EQ(project->customPlots().add("FxDyn_hull"), 0);
  const PlotPoints& points = project->customPlots().plot(0).points();
  ASSERT_EQ(points.size(), 60u);
  for (std::size_t i = 0; i < 12; ++i) EXPECT_EQ(points[i].second, converged[i]) << i;
  for (std::size_t i = 12; i < 60; ++i) EXPECT_TRUE(std::isnan(points[i].second)) << i;
}

TEST_F(CustomPlotsTest, ASteadyRunHasNoPerTimeStepQuantities) {
  const auto writer = write(RunMode::steady, 10);
  const auto project = open(*writer);
  EXPECT_EQ(project->customPlots().add("FxDyn_hull"), -1);
  EXPECT_EQ(project->customPlots().size(), 0u);
}

TEST_F(CustomPlotsTest, ARefreshAddsExactlyThePointsOfTheNewRows) {
  for (const RunMode mode : {RunMode::steady, RunMode::unsteady}) {
    fs::remove_all(folder_);
    const auto writer = write(mode, 40);
    const auto project = open(*writer);
    const std::string formula = "(Fx_hull+Fx_rudder)/2 - Fx_keel*t";
    ASSERT_EQ(project->customPlots().add(formula), 0);
    const PlotPoints before = project->customPlots().plot(0).points();
    ASSERT_EQ(before.size(), 40u);

    refresh(*project);
    EXPECT_TRUE(samePoints(project->customPlots().plot(0).points(), before));

    for (int i = 0; i < 7; ++i) writer->appendIteration();
    refresh(*project);
    const PlotPoints& after = project->customPlots().plot(0).points();
    ASSERT_EQ(after.size(), 47u);
    EXPECT_TRUE(samePoints(PlotPoints(after.begin(), after.begin() + 40), before));

    const marine::BodyObject& hull = project->bodies()[0];
    const std::vector<double>& hullFx = series(hull, Component::force, kFx);
    const std::vector<double>& keelFx = series(hull.subBody(0), Component::force, kFx);
    const std::vector<double>& rudderFx = series(project->bodies()[1], Component::force, kFx);
    for (std::size_t i = 40; i < 47; ++i) {
      const double abscissa =
          mode == RunMode::steady ? static_cast<double>(hull.iterations()[i]) : hull.times()[i];
      EXPECT_EQ(after[i].first, abscissa) << i;
      EXPECT_EQ(after[i].second, (hullFx[i] + rudderFx[i]) / 2 - keelFx[i] * abscissa) << i;
    }
    EXPECT_EQ(after.back().first, mode == RunMode::steady ? 47.0 : hull.times().back());
  }
}

TEST_F(CustomPlotsTest, AHalfWrittenRowAddsNoPointUntilItIsComplete) {
  const auto writer = write(RunMode::steady, 20);
  const auto project = open(*writer);
  ASSERT_EQ(project->customPlots().add("Fx_hull"), 0);

  writer->appendIteration(LineEnd::cutLastLine);
  refresh(*project);
  EXPECT_EQ(project->customPlots().plot(0).points().size(), 20u);

  writer->completeLines();
  refresh(*project);
  EXPECT_TRUE(samePoints(project->customPlots().plot(0).points(), afresh(*project, "Fx_hull")));
  EXPECT_EQ(project->customPlots().plot(0).points().size(), 21u);
}

TEST_F(CustomPlotsTest, APlotFollowingALiveRunMatchesOneComputedAfresh) {
  // Motions and per-time-step quantities grow more slowly than the force
  // rows in an unsteady run (one row per time step), and any history may lag
  // behind the force file while the solver writes; a point computed before
  // its value arrived must not keep the gap.
  for (const RunMode mode : {RunMode::steady, RunMode::unsteady}) {
    fs::remove_all(folder_);
    const auto writer = write(mode, 20);
    const auto project = open(*writer);
    const std::vector<std::string> formulas = {
        "Z_hull", "Fx_hull + PHI_hull", mode == RunMode::unsteady ? "FxDyn_keel" : "Mz_bulb"};
    for (const std::string& formula : formulas)
      ASSERT_GE(project->customPlots().add(formula), 0) << formula;

    for (int i = 0; i < 12; ++i) {
      writer->appendIteration(i % 3 == 0 ? LineEnd::cutLastLine : LineEnd::whole);
      refresh(*project);
      for (std::size_t p = 0; p < formulas.size(); ++p) {
        EXPECT_TRUE(
            samePoints(project->customPlots().plot(p).points(), afresh(*project, formulas[p])))
            << formulas[p] << " after iteration " << writer->iterationsWritten()
            << (mode == RunMode::steady ? " (steady)" : " (unsteady)");
      }
    }
  }
}

TEST_F(CustomPlotsTest, ARestartRecomputesEveryPointFromTheNewRun) {
  const auto writer = write(RunMode::unsteady, 60);
  const auto project = open(*writer);
  ASSERT_EQ(project->customPlots().add("Fx_hull*2"), 0);
  const PlotPoints oldRun = project->customPlots().plot(0).points();

  // A new run, shorter than the old one for now.
  writer->restart(writer->setup().stamp.plusSeconds(3600));
  for (int i = 0; i < 7; ++i) writer->appendIteration();
  refresh(*project);
  const marine::BodyObject& hull = project->bodies()[0];
  PlotPoints expected;
  for (std::size_t i = 0; i < 7; ++i) {
    expected.emplace_back(hull.times()[i], series(hull, Component::force, kFx)[i] * 2);
  }
  EXPECT_TRUE(samePoints(project->customPlots().plot(0).points(), expected));

  // And once it has gone past the old run's length.
  for (int i = 0; i < 70; ++i) writer->appendIteration();
  refresh(*project);
  const PlotPoints& newRun = project->customPlots().plot(0).points();
  ASSERT_EQ(newRun.size(), 77u);
  EXPECT_TRUE(samePoints(newRun, afresh(*project, "Fx_hull*2")));
  EXPECT_NE(PlotPoints(newRun.begin(), newRun.begin() + 60), oldRun);
}

TEST_F(CustomPlotsTest, ARestartWithoutANewStampIsANewRunToo) {
  auto writer = write(RunMode::steady, 30);
  const auto project = open(*writer);
  ASSERT_EQ(project->customPlots().add("Fx_hull"), 0);

  // The solver started over within the same second: the files are rewritten.
  writer->restart(writer->setup().stamp);
  for (int i = 0; i < 35; ++i) writer->appendIteration();
  refresh(*project);
  refresh(*project);
  EXPECT_TRUE(samePoints(project->customPlots().plot(0).points(), afresh(*project, "Fx_hull")));
  EXPECT_EQ(project->customPlots().plot(0).points().size(), 35u);
}

TEST_F(CustomPlotsTest, PlotsAreNumberedByTheirPositionInTheList) {
  const auto writer = write(RunMode::steady, 10);
  const auto project = open(*writer);
  marine::CustomPlots& plots = project->customPlots();
  EXPECT_EQ(plots.add("Fx_hull"), 0);
  EXPECT_EQ(plots.add("Fy_hull"), 1);
  EXPECT_EQ(plots.add("Fz_hull"), 2);
  ASSERT_EQ(plots.size(), 3u);

  plots.remove(0);
  ASSERT_EQ(plots.size(), 2u);
  EXPECT_EQ(plots.plot(0).formula(), "Fy_hull");
  EXPECT_EQ(plots.plot(1).formula(), "Fz_hull");
  EXPECT_TRUE(samePoints(plots.plot(0).points(), afresh(*project, "Fy_hull")));

  EXPECT_EQ(plots.add("Mx_hull"), 2);
  plots.remove(1);
  EXPECT_EQ(plots.plot(1).formula(), "Mx_hull");
}

TEST_F(CustomPlotsTest, AFormulaThatFailsAddsNoPlot) {
  const auto writer = write(RunMode::steady, 10);
  const auto project = open(*writer);
  marine::CustomPlots& plots = project->customPlots();
  ASSERT_EQ(plots.add("Fx_hull"), 0);
  const struct {
    std::string formula;
    std::string errors;
  } rows[] = {
      {"Fx_Hull", ""},
      {"Fx_hull + Fx_nowhere", ""},
      {"2*(Fx_hull+Fx_rudder", ""},
      {"", ""},
      {"sqr(Fx_hull)", "Error: Unknown function \"sqr\"\n"},
      {"sin", "Error: Use of uninitialized variable sin\n"},
      {"Fx_hull + cos", "Error: Use of uninitialized variable cos\n"},
      {std::string(100000, '(') + "Fx_hull", "Error: Formula nested too deeply\n"},
      {std::string(100000, '-') + "t", "Error: Formula nested too deeply\n"},
      {std::string("Fx_nowhere\0Fx_hull", 18), ""},
  };
  for (const auto& row : rows) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(plots.add(row.formula), -1) << row.formula.substr(0, 30);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), row.errors) << row.formula.substr(0, 30);
    EXPECT_EQ(plots.size(), 1u);
  }
  EXPECT_EQ(plots.plot(0).formula(), "Fx_hull");
}

TEST_F(CustomPlotsTest, AFailedEditKeepsTheFormulaAndDropsThePoints) {
  const auto writer = write(RunMode::steady, 10);
  const auto project = open(*writer);
  marine::CustomPlots& plots = project->customPlots();
  ASSERT_EQ(plots.add("Fx_hull"), 0);
  ASSERT_EQ(plots.plot(0).points().size(), 10u);

  EXPECT_FALSE(plots.edit(0, "Fx_nowhere"));
  EXPECT_EQ(plots.plot(0).formula(), "Fx_hull");
  EXPECT_TRUE(plots.plot(0).points().empty());

  EXPECT_TRUE(plots.edit(0, "Fy_rudder"));
  EXPECT_EQ(plots.plot(0).formula(), "Fy_rudder");
  EXPECT_TRUE(samePoints(plots.plot(0).points(), afresh(*project, "Fy_rudder")));
  EXPECT_EQ(plots.plot(0).points().size(), 10u);
}

TEST_F(CustomPlotsTest, DivisionByZeroAndAnUndefinedCotangentKeepEveryPoint) {
  const auto writer = write(RunMode::steady, 25);
  const auto project = open(*writer);
  marine::CustomPlots& plots = project->customPlots();

  ASSERT_EQ(plots.add("Fx_hull/(Fx_rudder-Fx_rudder) + 1"), 0);
  ASSERT_EQ(plots.plot(0).points().size(), 25u);
  for (const auto& point : plots.plot(0).points()) EXPECT_EQ(point.second, 1.0);
  EXPECT_EQ(formula::collectedErrors(), " division by zero.");

  ASSERT_EQ(plots.add("cotan(Fx_hull-Fx_hull)"), 1);
  ASSERT_EQ(plots.plot(1).points().size(), 25u);
  for (const auto& point : plots.plot(1).points()) EXPECT_EQ(point.second, kLargestFloat);
  EXPECT_EQ(formula::collectedErrors(), " division by zero.cotan of 0 undefined.");
}

TEST_F(CustomPlotsTest, AProjectWithoutBodiesGivesPlotsWithoutPoints) {
  auto setup = defaultCaseSetup(folder_, RunMode::steady);
  setup.bodies.clear();
  MarineCaseWriter writer(setup);
  writer.writeHeaders();
  for (int i = 0; i < 10; ++i) writer.appendIteration();
  ProjectMonitorMarine project(setup.residualPath().string());
  {
    const ConsoleCapture console;
    project.load();
    project.refresh();
  }
  ASSERT_TRUE(project.bodies().empty());
  EXPECT_EQ(variableNames(project), std::vector<std::string>{});

  marine::CustomPlots& plots = project.customPlots();
  EXPECT_EQ(plots.add("2*t + 1"), 0);
  EXPECT_TRUE(plots.plot(0).points().empty());
  // Nothing is evaluated, so not even a variable without value fails.
  EXPECT_EQ(plots.add("sin"), 1);
  EXPECT_TRUE(plots.plot(1).points().empty());
  EXPECT_EQ(plots.add("Fx_hull"), -1);
  EXPECT_EQ(plots.size(), 2u);
}

TEST_F(CustomPlotsTest, AProjectNotLoadedYetGivesPlotsWithoutPoints) {
  ProjectMonitorMarine project((folder_ / "missing.res").string());
  EXPECT_EQ(project.customPlots().add("t"), 0);
  EXPECT_TRUE(project.customPlots().plot(0).points().empty());
}

}  // namespace

// The curves monitor-watch follows: in a marine computation their names and abscissae, the
// custom curves of --formula, a new run starting them over; in a turbomachinery computation the
// global values, then per block the rms and maximum residual of each equation the header
// declares, each at its own position of the record, and a rewritten history starting them over.
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
#include "watch/turbo_catalogue.h"

namespace {

using solver_simulator::RunMode;
using watch::CurveReport;

class WatchCurves : public ScratchFolder {
 protected:
  // The stand-in's case (hull with the moving sub-bodies keel and bulb, rudder, two disks,
  // three user quantities; unsteady: 5 iterations per time step of 0.05 s).
  std::unique_ptr<watch::FollowedComputation> follow(RunMode mode, int iterations,
                                                     std::vector<watch::CustomFormula> formulas) {
    writer_.emplace(solver_simulator::defaultCaseSetup(folder_, mode));
    writer_->writeHeaders();
    for (int i = 0; i < iterations; ++i) writer_->appendIteration();
    return watch::followComputation(path(), watch::Mode::marine, std::move(formulas));
  }
  std::string path() const { return writer_->setup().residualPath().string(); }
  static std::map<std::string, CurveReport> curvesOf(watch::FollowedComputation& computation) {
    std::map<std::string, CurveReport> found;
    for (const watch::NamedCurve& curve : computation.curves())
      found.emplace(curve.name, watch::judgeCurve(curve, true, {}));
    return found;
  }
  std::optional<solver_simulator::MarineCaseWriter> writer_;
  ConsoleCapture console_;
};

TEST_F(WatchCurves, NamesAbscissaeAndFormulaCurvesInBothRunModes) {
  // Residuals at their iteration; loads at the time of their row when unsteady, at their
  // iteration when steady; converged values and motions at the time of their step; disks and
  // user quantities at their row. No curve (-) for what the run does not write.
  const std::pair<RunMode, const char*> cases[] = {
      {RunMode::unsteady, "ResU 20: 1 2 3 4 5 6"},
      {RunMode::unsteady, "Fx_hull 20: 0.05 0.05 0.05 0.05 0.05 0.1"},
      {RunMode::unsteady, "MzV_keel 20: 0.05 0.05 0.05 0.05 0.05 0.1"},
      {RunMode::unsteady, "FxDyn_keel 4: 0.05 0.1 0.15 0.2"},
      {RunMode::unsteady, "MyPDyn_rudder 4: 0.05 0.1 0.15 0.2"},
      {RunMode::unsteady, "Z_hull 4: 0.05 0.1 0.15 0.2"},
      {RunMode::unsteady, "Torque1 4: 1 2 3 4"},
      {RunMode::unsteady, "Thrust2 4: 1 2 3 4"},
      {RunMode::unsteady, "Pitch moment 4: 1 2 3 4"},
      {RunMode::unsteady, "mean 20: 0.05 0.05 0.05 0.05 0.05 0.1"},
      {RunMode::steady, "Fx_hull 10: 1 2 3 4 5 6"},
      {RunMode::steady, "Z_hull 10: 1 2 3 4 5 6"},
      {RunMode::steady, "mean 10: 1 2 3 4 5 6"},
  };
  const std::map<RunMode, std::string> absent = {
      {RunMode::unsteady, "ResE ResVt~ X_rudder Thrust3 Thrust Fx unknown"},
      {RunMode::steady, "FxDyn_hull FxDyn_keel X_rudder unknown"}};
  for (const RunMode mode : {RunMode::unsteady, RunMode::steady}) {
    const std::size_t rows = mode == RunMode::steady ? 10 : 20;
    auto computation =
        follow(mode, int(rows),
               {{"mean", "(Fx_hull+Fx_rudder)/2"}, {"unknown", "Fx_nothing"}, {"Fx_hull", "1"}});
    computation->refresh();
    computation->refresh();
    curvesOf(*computation);
    EXPECT_EQ(computation->rows(), rows);
    EXPECT_EQ(computation->stamp(), "21/11/2026 14:05:09");
    const std::map<std::string, CurveReport> curves = curvesOf(*computation);
    for (const auto& [caseMode, expected] : cases) {
      if (caseMode != mode) continue;
      const std::string name(
          expected, std::string_view(expected).rfind(' ', std::string_view(expected).find(':')));
      std::ostringstream text;
      if (curves.contains(name)) text << name << " " << curves.at(name).points.size() << ":";
      for (std::size_t i = 0; curves.contains(name) && i < 6 && i < curves.at(name).points.size();
           ++i)
        text << " " << curves.at(name).points.x()[i];
      EXPECT_EQ(text.str(), expected);
    }
    std::istringstream names(absent.at(mode));
    for (std::string name; names >> name;) EXPECT_FALSE(curves.contains(name)) << name;
    const auto& y = [&](const char* name) { return curves.at(name).points.y(); };
    EXPECT_DOUBLE_EQ(y("mean")[rows - 1], (y("Fx_hull")[rows - 1] + y("Fx_rudder")[rows - 1]) / 2);
    EXPECT_NE(y("Fx_hull")[0], 1.0);
  }
  // Each formula that cannot be shown is told once, among the reader's lines.
  std::string told;
  std::istringstream console(console_.text());
  for (std::string line; std::getline(console, line);)
    if (line.starts_with("monitor-watch: ")) told += line.substr(15) + "\n";
  const std::string unknown =
      ": formula unknown cannot be computed: Fx_nothing names what the "
      "computation does not have\n";
  const std::string shadowed =
      ": formula Fx_hull is named like a curve of the computation; the curve is shown\n";
  EXPECT_EQ(told, path() + unknown + path() + shadowed + path() + unknown + path() + shadowed);
}

TEST_F(WatchCurves, ANewMarineRunStartsTheCurvesOver) {
  auto computation = follow(RunMode::unsteady, 30, {});
  EXPECT_FALSE(computation->refresh().newRun);
  for (int i = 0; i < 5; ++i) writer_->appendIteration();
  const watch::RefreshOutcome grown = computation->refresh();
  EXPECT_TRUE(grown.grew && !grown.newRun && !computation->refresh().grew);
  writer_->restart(writer_->setup().stamp.plusSeconds(1));
  for (int i = 0; i < 10; ++i) writer_->appendIteration();
  const watch::RefreshOutcome restarted = computation->refresh();
  EXPECT_TRUE(restarted.newRun && restarted.grew);
  EXPECT_EQ(computation->rows(), 10u);
  EXPECT_EQ(curvesOf(*computation).at("Fx_hull").points.size(), 10u);
  EXPECT_EQ(computation->stamp(), writer_->setup().stamp.text());
}

// A record whose value k is `base` + k: each position reads back as what it is.
std::string record(int iteration, std::size_t values, double base = 0.0) {
  std::string text = std::to_string(iteration);
  for (std::size_t k = 0; k < values; ++k) text += " " + std::to_string(base + double(k));
  return text + "\n";
}

TEST_F(WatchCurves, EquationsTheHeaderDeclares) {
  const std::tuple<const char*, std::size_t, const char*> cases[] = {
      // values: 9 + 2 x blocks x equations
      {"0 3.0 2 3D K-E\n2 sp1 sp2\n0\n1\nSTEADY TURBO\n", 45, "d wx wy wz E k eps sp1 sp2 "},
      {"0 2.0 1 TF K-O\n0\n0\nSTEADY TURBO\n", 25, "d wx wy wz E bladeForce k omega "},
      {"0 1.0 1 B2B SPL-ALM\n1 h1\nSTEADY TURBO\n", 23, "d wx wy wz E nu h1 "},
      {"0 3.0 1 3D NONE\n1 a\n1 b\n0\nSTEADY TURBO\n", 23, "d wx wy wz E a b "},
      {"1 3\n", 15, "d wx wy "},  // a short header gives only the counts
  };
  for (const auto& [header, values, expected] : cases) {
    write("stage.res", header + record(1, values));
    turbo::ResFile file(pathOf("stage.res"));
    ASSERT_EQ(file.read(), 1) << header;
    std::string names;
    for (const watch::TurboEquation& equation : watch::turboEquations(file))
      names += equation.name + " ";
    EXPECT_EQ(names, expected) << header;
  }
}

TEST_F(WatchCurves, EachCurveReadsItsPositionOfTheRecordAndStartsOverWithANewRun) {
  // Two blocks of 7 equations (5 flow, k and omega): 9 + 28 values.
  const std::string header = "0 2.0 2 3D K-O\n0\n0\nSTEADY TURBO\n";
  write("stage.res", header + record(1, 37));
  auto computation = watch::followComputation(pathOf("stage.res"), watch::Mode::turbomachinery, {});
  EXPECT_TRUE(computation->refresh().grew);
  std::map<std::string, double> values;
  for (const watch::NamedCurve& curve : computation->curves())
    values[curve.name] = watch::judgeCurve(curve, true, {}).last().value_or(-1.0);
  EXPECT_EQ(values.size(), 9u + 2 * 2 * 7);
  const std::map<std::string, double> expected = {
      {"WorkUnit", 0},      {"Axial thrust", 3},   {"Out", 8},           {"max_d_block1", 9},
      {"rms_d_block1", 10}, {"rms_E_block1", 18},  {"max_k_block1", 19}, {"rms_omega_block1", 22},
      {"max_d_block2", 23}, {"rms_wx_block2", 26}, {"max_k_block2", 33}, {"rms_omega_block2", 36},
  };
  for (const auto& [curve, position] : expected) EXPECT_EQ(values[curve], position) << curve;
  // Growth, half a record, and the history rewritten: grew, new run, rows afterwards.
  const std::tuple<const char*, std::string, std::string, std::string> steps[] = {
      {"nothing new", "", "", "0 0 1"},
      {"appended", record(2, 37), "", "1 0 2"},
      {"half a record", "3 1 2", "", "0 0 2"},
      {"rest of it", record(0, 35).substr(1), "", "1 0 3"},
      {"rewritten", "", header + record(1, 37, 5.0), "1 1 1"},
  };
  for (const auto& [what, appended, rewritten, outcome] : steps) {
    if (!appended.empty()) append("stage.res", appended);
    if (!rewritten.empty()) write("stage.res", rewritten);
    const watch::RefreshOutcome got = computation->refresh();
    EXPECT_EQ(std::to_string(got.grew) + " " + std::to_string(got.newRun) + " " +
                  std::to_string(computation->rows()),
              outcome)
        << what;
  }
  EXPECT_FALSE(computation->stamp().has_value());
}

}  // namespace

// The curves monitor-watch follows in a turbomachinery computation: the global
// values, then per block the rms and maximum residual of each equation the
// header declares, each at its own position of the record; and a rewritten
// history starting them over.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "console_capture.h"
#include "scratch_folder.h"
#include "watch/curve_report.h"
#include "watch/followed_computation.h"
#include "watch/turbo_catalogue.h"

namespace {

// A record whose value k is `base` + k: each position reads back as what it is.
std::string record(int iteration, std::size_t values, double base = 0.0) {
  std::string text = std::to_string(iteration);
  for (std::size_t k = 0; k < values; ++k) text += " " + std::to_string(base + double(k));
  return text + "\n";
}

class WatchTurboCurves : public ScratchFolder {
 protected:
  std::unique_ptr<watch::FollowedComputation> follow() {
    return watch::followComputation(pathOf("stage.res"), watch::Mode::turbomachinery, {});
  }
  ConsoleCapture console_;
};

TEST_F(WatchTurboCurves, EquationsTheHeaderDeclares) {
  const struct {
    const char* header;
    std::size_t values;  // per record: 9 + 2 x blocks x equations
    std::string names;
  } cases[] = {
      {"0 3.0 2 3D K-E\n2 sp1 sp2\n0\n1\nSTEADY TURBO\n", 45, "d wx wy wz E k eps sp1 sp2 "},
      {"0 2.0 1 TF K-O\n0\n0\nSTEADY TURBO\n", 25, "d wx wy wz E bladeForce k omega "},
      {"0 1.0 1 B2B SPL-ALM\n1 h1\nSTEADY TURBO\n", 23, "d wx wy wz E nu h1 "},
      {"0 3.0 1 3D NONE\n1 a\n1 b\n0\nSTEADY TURBO\n", 23, "d wx wy wz E a b "},
      {"1 3\n", 15, "d wx wy "},  // a short header gives only the counts
  };
  for (const auto& c : cases) {
    write("stage.res", c.header + record(1, c.values));
    turbo::ResFile file(pathOf("stage.res"));
    ASSERT_EQ(file.read(), 1) << c.header;
    std::string names;
    for (const watch::TurboEquation& equation : watch::turboEquations(file)) {
      names += equation.name + " ";
    }
    EXPECT_EQ(names, c.names) << c.header;
  }
}

TEST_F(WatchTurboCurves, EachCurveReadsItsPositionOfTheRecord) {
  // Two blocks of 7 equations (5 flow, k and omega): 9 + 28 values.
  write("stage.res", "0 2.0 2 3D K-O\n0\n0\nSTEADY TURBO\n" + record(1, 37));
  auto computation = follow();
  computation->refresh();
  std::map<std::string, double> values;
  for (const watch::NamedCurve& curve : computation->curves()) {
    values[curve.name] = watch::judgeCurve(curve, true, {}).last().value_or(-1.0);
  }
  EXPECT_EQ(values.size(), 9u + 2 * 2 * 7);
  const std::map<std::string, double> expected = {
      {"WorkUnit", 0},      {"Axial thrust", 3},   {"Out", 8},           {"max_d_block1", 9},
      {"rms_d_block1", 10}, {"rms_E_block1", 18},  {"max_k_block1", 19}, {"rms_omega_block1", 22},
      {"max_d_block2", 23}, {"rms_wx_block2", 26}, {"max_k_block2", 33}, {"rms_omega_block2", 36},
  };
  for (const auto& [curve, position] : expected) EXPECT_EQ(values[curve], position) << curve;
}

TEST_F(WatchTurboCurves, GrowthAndRestarts) {
  const std::string header = "1 5\n";
  const std::size_t values = 9 + 2 * 5;
  write("stage.res", header + record(1, values) + record(2, values));
  auto computation = follow();
  const struct {
    const char* what;
    std::string appended;
    std::string rewritten;
    bool grew;
    bool newRun;
    std::size_t rows;
  } steps[] = {
      {"first read", "", "", true, false, 2},
      {"nothing new", "", "", false, false, 2},
      {"appended", record(3, values), "", true, false, 3},
      {"half a record", "4 1 2", "", false, false, 3},
      {"rest of it", record(0, values - 2).substr(1), "", true, false, 4},
      {"rewritten", "", header + record(1, values, 5.0), true, true, 1},
  };
  for (const auto& step : steps) {
    if (!step.appended.empty()) append("stage.res", step.appended);
    if (!step.rewritten.empty()) write("stage.res", step.rewritten);
    const watch::RefreshOutcome outcome = computation->refresh();
    EXPECT_EQ(outcome.grew, step.grew) << step.what;
    EXPECT_EQ(outcome.newRun, step.newRun) << step.what;
    EXPECT_EQ(computation->rows(), step.rows) << step.what;
  }
  EXPECT_FALSE(computation->stamp().has_value());
}

}  // namespace

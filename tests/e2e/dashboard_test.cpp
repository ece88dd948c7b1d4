// The window as a dashboard, through the real program: the first view of a
// computation in both modes, a layout of panels and a custom plot kept at
// quit and brought back after a restart, linked abscissae, a damaged
// settings file, and computations that keep layouts of their own.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "monitor_process.h"
#include "window_scenario.h"

namespace e2e {
namespace {

namespace fs = std::filesystem;

const std::string kMarineWindow =
    "set windowScript {" MONITOR_TCL_DIR "/_monitorTurbo/_monitorMarine/itf_init.tcl}\n";

// Each run opens the computation given on the command line, waits until its
// curves are read and runs `run`, then quits through the window (which keeps
// the layout).
const std::string kPrologue = R"tcl(
source $windowScript
set ::plotpanel::redrawEveryMs 0
proc opened {} {
  ::liverefresh::setPaused 1
  settle
  return [lindex $::marinewin::projects 0]
}
# Two clicks of the left button inside the plot of panel w, at fractions of
# its width.
proc zoomX {w from to} {
  set g [plotpanel::graph $w]
  update
  lassign [$g extents plotarea] left top width height
  set y [expr {$top + $height / 2}]
  foreach fraction [list $from $to] {
    set x [expr {int($left + $fraction * $width)}]
    event generate $g <Motion> -x $x -y [expr {$y + ($fraction == $to ? 20 : -20)}]
    event generate $g <ButtonPress-1> -x $x -y [expr {$y + ($fraction == $to ? 20 : -20)}]
    event generate $g <ButtonRelease-1> -x $x -y [expr {$y + ($fraction == $to ? 20 : -20)}]
  }
  update
}
)tcl";

const std::string kArrange = R"tcl(
proc run {} {
  set p [opened]
  say "first view: [panels]"
  say "first view names: [panelNames]"
  # A dashboard of two panels: a custom plot, and the hull's Mz beside it.
  ::monwin::closeAllPanels
  set ::marinewin::formula {Fx_hull * 2}
  ::marinewin::addFormula
  ::monwin::newPanel
  show [list [::marinewin::item $p moment 0 -1 12]]
  plotpanel::setLastCount [::monwin::panel] 20
  ::monwin::applyCriteria 90 5
  say "arranged: [panelNames]; [panels]"
}
runThenQuit ::monwin::quit
)tcl";

const std::string kRestore = R"tcl(
proc run {} {
  set p [opened]
  say "restored: [panelNames]; [panels]; statistics of the last [plotpanel::lastCount [lindex [dashboard::panels] 1]]; criteria [plotpanel::criteria]"
  # Linked abscissae: a zoom in one panel applies to the other.
  set ::monwin::linkAbscissae 1
  lassign [dashboard::panels] first second
  zoomX $first 0.25 0.75
  lassign [plotpanel::xRange $first] low high
  lassign [plotpanel::xRange $second] otherLow otherHigh
  say "linked: [expr {$low ne "" && $low == $otherLow && $high == $otherHigh}]"
  ::layout::reset
  settle
  say "reset: [panels]"
}
runThenQuit ::monwin::quit
)tcl";

class Dashboard : public testing::Test {
 protected:
  Dashboard() : installation_("dune_marine71") {
    fs::copy(fs::path(MONITOR_EXAMPLES_DIR) / "marine", installation_.work() / "a",
             fs::copy_options::recursive);
    fs::copy(fs::path(MONITOR_EXAMPLES_DIR) / "marine", installation_.work() / "b",
             fs::copy_options::recursive);
  }

  std::vector<std::string> runMarine(const std::string& scenario, const std::string& computation) {
    installation_.writeMarineScript(kMarineWindow + kHelpers + kPrologue + scenario);
    const RunResult result = installation_.run(
        RunOptions{}.withArguments({(installation_.work() / computation / "ship.res").string()}));
    EXPECT_TRUE(result.exited) << result.output << result.errors;
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output.find("script error"), std::string::npos) << result.output;
    return said(result.output);
  }

  fs::path settingsFile() const {
    return installation_.home() / ".talvik" / "monitor_settings.tcl";
  }

  Installation installation_;
};

TEST_F(Dashboard, MarineFirstViewThenALayoutKeptAcrossARestart) {
  // The example: 6 residuals and the hull's Fx over 60 iterations, its 6
  // motions over 12 time steps.
  const std::vector<std::string> first = runMarine(kArrange, "a");
  ASSERT_EQ(first.size(), 3u);
  EXPECT_EQ(first[0], "first view: 60 60 60 60 60 60 | 60 | 12 12 12 12 12 12");
  EXPECT_EQ(first[1],
            "first view names: ResU,ResV,ResW,ResP,ResK,Res`w | Fx | X,Y,Z,PHI,THETA,PSI");
  EXPECT_EQ(first[2], "arranged: Fx_hull * 2 | Mz; 60 | 60");
  ASSERT_TRUE(fs::exists(settingsFile()));

  const std::vector<std::string> second = runMarine(kRestore, "a");
  ASSERT_EQ(second.size(), 3u);
  EXPECT_EQ(second[0],
            "restored: Fx_hull * 2 | Mz; 60 | 60; statistics of the last 20; criteria 0.9 0.05");
  EXPECT_EQ(second[1], "linked: 1");
  EXPECT_EQ(second[2], "reset: 60 60 60 60 60 60 | 60 | 12 12 12 12 12 12");
}

TEST_F(Dashboard, TwoComputationsKeepLayoutsOfTheirOwn) {
  const std::string arrange = R"tcl(
proc run {} {
  set p [opened]
  ::monwin::closeAllPanels
  show [list [::marinewin::item $p {*}$::item]]
  say "[file tail [file dirname $p]]: [panelNames]"
}
runThenQuit ::monwin::quit
)tcl";
  const std::string look = R"tcl(
proc run {} {
  set p [opened]
  say "[file tail [file dirname $p]] again: [panelNames]"
}
runThenQuit ::monwin::quit
)tcl";
  EXPECT_EQ(runMarine("set item {force 0 -1 0}\n" + arrange, "a"),
            std::vector<std::string>{"a: Fx"});
  EXPECT_EQ(runMarine("set item {moment 0 -1 12}\n" + arrange, "b"),
            std::vector<std::string>{"b: Mz"});
  EXPECT_EQ(runMarine(look, "a"), std::vector<std::string>{"a again: Fx"});
  EXPECT_EQ(runMarine(look, "b"), std::vector<std::string>{"b again: Mz"});
}

TEST_F(Dashboard, ADamagedSettingsFileMeansDefaultsAndOneLine) {
  fs::create_directories(settingsFile().parent_path());
  std::ofstream(settingsFile()) << "version 1 window {geometry \"unbalanced";
  const std::string look = R"tcl(
proc run {} {
  set status $::monwin::status
  set p [opened]
  say "[panels]; status: $status"
}
runThenQuit itf_quit_command_KELP
)tcl";
  EXPECT_EQ(runMarine(look, "a"),
            std::vector<std::string>{
                "60 60 60 60 60 60 | 60 | 12 12 12 12 12 12; status: Settings file " +
                fs::weakly_canonical(settingsFile()).string() +
                " is damaged; starting from the defaults"});
}

// A longer run of the solver stand-in: the verdicts in the statistics tables
// are those of `monitor_curve verdict`, and a line marks each transient.
TEST(MarineVerdicts, TheTablesShowTheProgramsVerdictsAndTheTransientIsMarked) {
  Installation installation("dune_marine71");
  const fs::path caseFolder = installation.work() / "long";
  ASSERT_EQ(std::system(("'" MARINE_SOLVER "' --out '" + caseFolder.string() +
                         "' --steady --iterations 800 --stamp '21/11/2026 14:05:09' >/dev/null")
                            .c_str()),
            0);
  installation.writeMarineScript(kMarineWindow + kHelpers + kPrologue + R"tcl(
proc run {} {
  set p [opened]
  lassign [dashboard::panels] residuals force
  set id [lindex [::monwin::shownCurves $force] 0]
  set verdict [monitor_curve verdict [curves::store $id] -confidence 0.95 -tolerance 0.01 -residual 0]
  set row [$force.stats item $id -values]
  set marker [[plotpanel::graph $force] marker cget transient-$id -coords]
  say "Fx: [expr {[lindex $row end] eq [dict get $verdict verdict]}] [expr {[lindex $marker 0] == [dict get $verdict transientEnd]}] [expr {[lindex $row 5] eq [plotpanel::formatNumber [dict get $verdict transientEnd]]}]"
  say "keys: [lsort [dict keys $verdict]]"
  set r [lindex [::monwin::shownCurves $residuals] 0]
  set residual [monitor_curve verdict [curves::store $r] -residual 1]
  say "ResU: more than 3 orders dropped [expr {[dict get $residual ordersDropped] > 3}], still falling [dict get $residual stillFalling]"
}
runThenQuit itf_quit_command_KELP
)tcl");
  const RunResult result =
      installation.run(RunOptions{}.withArguments({(caseFolder / "ship.res").string()}));
  ASSERT_TRUE(result.exited) << result.output << result.errors;
  const std::vector<std::string> lines = said(result.output);
  ASSERT_EQ(lines.size(), 3u) << result.output << result.errors;
  EXPECT_EQ(lines[0], "Fx: 1 1 1");
  EXPECT_EQ(
      lines[1],
      "keys: amplitude confidence drift halfWidth mean ordersDropped period samples stillFalling "
      "transientEnd verdict");
  // The stand-in's residuals fall by about seven orders, then stay.
  EXPECT_EQ(lines[2], "ResU: more than 3 orders dropped 1, still falling 0");
}

TEST(TurbomachineryDashboard, FirstViewShowsTheFlowResidualsOfBlock1AndTheGlobalQuantities) {
  Installation installation("dune71");
  const fs::path caseFolder = installation.work() / "case";
  fs::create_directories(caseFolder);
  fs::copy_file(fs::path(MONITOR_EXAMPLES_DIR) / "turbo" / "stage.res", caseFolder / "stage.res");
  installation.writeTurboScript(
      "set windowScript {" MONITOR_TCL_DIR "/_monitorTurbo/itf_init.tcl}\n" + kHelpers +
      R"tcl(
source $windowScript
proc run {} {
  ::liverefresh::setPaused 1
  settle
  say "[panels]"
  say "[panelNames]"
}
runThenQuit itf_quit_command
)tcl");
  const RunResult result =
      installation.run(RunOptions{}.withArguments({(caseFolder / "stage.res").string()}));
  ASSERT_TRUE(result.exited) << result.output << result.errors;
  EXPECT_EQ(said(result.output),
            (std::vector<std::string>{"300 300 300 300 300 | 300 300 300 300 300 300 300",
                                      "d,wx,wy,wz,E | Lift,Axial thrust,Qmax,Tmax,In,Torque,Out"}))
      << result.output << result.errors;
}

}  // namespace
}  // namespace e2e

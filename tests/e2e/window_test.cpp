// The installation's windows through the real program: a start-up script
// sources the real window scripts, then drives the windows from Tcl as a user
// would (selecting curves, refreshing, exporting) while the solver stand-in or
// the test itself writes the files, and prints what the windows hold.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "monitor_process.h"
#include "window_scenario.h"

namespace e2e {
namespace {

namespace fs = std::filesystem;

const std::string kMarineScenario = R"tcl(
set res [file join $case ship.res]
proc solver {args} {
  global solver case
  exec $solver --out $case --stamp {21/11/2026 14:05:09} {*}$args
}
solver --iterations 10
set argv [list $res]
source $windowScript
set ::plotpanel::redrawEveryMs 0

# Statistics of the last 4 ResU values, from the file's own text.
proc fileStatistics {} {
  global res
  set values {}
  set in [open $res]
  foreach line [split [read $in] \n] {
    if {[regexp {^#COLUMNS (.*)} $line -> columns]} { set column [lsearch $columns ResU] }
    if {[regexp {^\d} $line]} { lappend values [lindex $line $column] }
  }
  close $in
  set last [lrange $values end-3 end]
  set mean [expr {[tcl::mathop::+ {*}$last] / 4.0}]
  set squares 0
  foreach v $last { set squares [expr {$squares + ($v - $mean) ** 2}] }
  set sorted [lsort -real $last]
  return [list 4 $mean [expr {sqrt($squares / 4)}] [lindex $sorted 0] [lindex $sorted end]]
}

# Reads the exported file back and compares it, number for number, with the
# shown curves.
proc csvCheck {file} {
  set in [open $file]
  fconfigure $in -encoding utf-8
  set lines [split [string trimright [read $in] \n] \n]
  close $in
  set mismatches 0
  foreach id [::monwin::shownCurves] {
    lassign [curves::values $id 0 [curves::length $id]] xs ys
    set i 0
    foreach line [lrange $lines 1 end] {
      if {![regexp {^"(.*)",([^,]+),([^,]+)$} $line -> label x y] || $label ne [curves::label $id]} continue
      if {$x != [lindex $xs $i] || $y != [lindex $ys $i]} { incr mismatches }
      incr i
    }
    if {$i != [llength $xs]} { incr mismatches }
  }
  return "[lindex $lines 0], [expr {[llength $lines] - 1}] rows, $mismatches mismatches, first [lindex $lines 1]"
}

proc run {} {
  global res case
  ::liverefresh::setPaused 1
  ::liverefresh::waitIdle
  set p [lindex $::marinewin::projects 0]
  set ::marinewin::formula {(Fx_hull+Fx_rudder)/2}
  say "plot: [::marinewin::addFormula]"
  set items {}
  foreach curve {{resid 0} {force 0 -1 0} {force 0 0 0} {moment 1 -1 12} {convforce 0 -1 0}
                {motion 0 2} {disk 1 0} {extra 1} {custom 0}} {
    lappend items [::marinewin::item $p {*}$curve]
  }
  show $items
  counts start $items
  set panel [::monwin::panel]
  say "x axis: [[plotpanel::graph $panel] axis cget x -title]"
  show [lrange $items 1 1]
  say "x axis: [[plotpanel::graph $panel] axis cget x -title]"
  show $items

  # Iterations 11 to 15, the last one half-written; then 16 and 17.
  solver --iterations 10 --append 5 --cut
  refresh
  counts cut $items
  solver --iterations 15 --append 2
  refresh
  counts completed $items
  say "exact: [exact]"

  show [lrange $items 0 0]
  plotpanel::setLastCount $panel 4
  set id [::monwin::curveOfItem [lindex $items 0]]
  foreach shown [plotpanel::statistics $panel $id] expected [fileStatistics] {
    lappend both [format %.9g $shown]/[format %.9g $expected]
  }
  say "statistics (window/file): $both"

  show [lrange $items 0 1]
  plotpanel::export $panel csv [file join $case curves.csv]
  say "csv: [csvCheck [file join $case curves.csv]]"
  plotpanel::export $panel png [file join $case graph.png]
  plotpanel::export $panel ps [file join $case graph.ps]
  say "png: [magic [file join $case graph.png] 4]; ps: [magic [file join $case graph.ps] 2]"

  # A formula whose every point is missing draws nothing; a formula with an
  # unknown name is refused with its reason.
  set ::marinewin::formula {sqrt(0-1)}
  set k [::marinewin::addFormula]
  show [list [::marinewin::item $p custom $k]]
  say "missing: [itm_get_custom_plot_points_no $p $k] points, [curves::length [lindex [::monwin::shownCurves] 0]] drawn"
  set ::marinewin::formula {Fx_nothing * 2 + foo(Fx_hull)}
  say "refused: [::marinewin::addFormula] $::marinewin::formulaMessage"

  # The solver starts over: only the new run is shown.
  show $items
  solver --iterations 7 --seed 2 --stamp {21/11/2026 15:05:09}
  refresh
  counts restarted $items
  say "exact: [exact]; status: $::monwin::status"
}
runThenQuit itf_quit_command_KELP
)tcl";

const std::string kTurboScenario = R"tcl(
source $windowScript
set ::plotpanel::redrawEveryMs 0
set res [file join $case stage.res]

# Appends records after the last one, copying its values; the last record
# may be left half-written and completed later.
proc appendRecords {count {cut 0}} {
  global res pendingEnd
  set in [open $res]
  set lines [split [string trimright [read $in] \n] \n]
  close $in
  set last [lindex $lines end]
  set number [lindex $last 0]
  set text ""
  for {set i 1} {$i <= $count} {incr i} {
    append text [format %6d [expr {$number + $i}]] [string range $last 6 end] \n
  }
  set cutAt [expr {$cut ? [string length $text] - 40 : [string length $text]}]
  set pendingEnd [string range $text $cutAt end]
  set out [open $res a]
  puts -nonewline $out [string range $text 0 $cutAt-1]
  close $out
}
proc completeRecord {} {
  global res pendingEnd
  set out [open $res a]
  puts -nonewline $out $pendingEnd
  close $out
}
# The solver starts over: the header and the first `count` records again.
proc rewrite {count} {
  global res
  set in [open $res]
  set lines [split [read $in] \n]
  close $in
  set out [open $res w]
  puts $out [join [lrange $lines 0 [expr {9 + $count}]] \n]
  close $out
}

proc run {} {
  ::liverefresh::setPaused 1
  ::liverefresh::waitIdle
  set p [lindex $::turbowin::projects 0]
  set items [list [::turbowin::item $p global 0] [::turbowin::item $p rms 0 0] [::turbowin::item $p max 1 4] \
                  [::turbowin::item $p rms 0 8] b1/Extrado_1 b2/Intrado]
  say "equations: [lmap e [::turbowin::equations $p] {lindex $e 0}]"
  show $items
  counts start $items
  say "x axis: [[plotpanel::graph [::monwin::panel]] axis cget x -title]"
  appendRecords 3 1
  refresh
  counts cut $items
  completeRecord
  refresh
  counts completed $items
  say "exact: [exact]"
  set ::turbowin::workUnit 1
  ::turbowin::applyWorkUnit
  ::liverefresh::waitIdle
  say "work units: [curves::length [lindex [::monwin::shownCurves] 0]] points from [format %.15g [lindex [curves::values [lindex [::monwin::shownCurves] 0] 0 0] 0 0]]; [[plotpanel::graph [::monwin::panel]] axis cget x -title]"
  rewrite 10
  refresh
  counts rewritten $items
  say "exact: [exact]; status: $::monwin::status"

  # A second file opened from the menu gets a branch; the file named on the
  # command line cannot be closed, the added one can.
  file copy $::res [file join $::case second.res]
  ::turbowin::openResidualFile [file join $::case second.res]
  set second [lindex $::turbowin::projects end]
  set items [list [::turbowin::item $second rms 0 0] b2/Intrado]
  show $items
  counts "second file" $items
  # Drawn whole (in tree order: the profile side first), short as they are.
  say "drawn: [lmap id [::monwin::shownCurves] {::plotpanel::dx_$id length}]"
  show [list [::turbowin::item $p global 0]]
  ::turbowin::closeSelected
  say "branches: [[::monwin::tree] children {}]; status: $::monwin::status"
  show [list [::turbowin::item $second global 0]]
  ::turbowin::closeSelected
  say "branches: [[::monwin::tree] children {}]; projects: [itf_read_running_project]"
}
runThenQuit itf_quit_command
)tcl";

const std::string kBundledExamples = R"tcl(
source $windowScript
set ::plotpanel::redrawEveryMs 0
proc run {} {
  ::liverefresh::setPaused 1
  ::liverefresh::waitIdle
  set p [lindex $::marinewin::projects 0]
  set lengths [lmap id [::monwin::shownCurves] {curves::length $id}]
  set maximum [lindex [plotpanel::statistics [::monwin::panel] [lindex [::monwin::shownCurves] 0]] end]
  say "opened: $::marinewin::projects; shown at once: [llength $lengths] curves of $lengths; largest ResU [format %.15g $maximum]"
  set items {}
  foreach curve {{force 0 -1 0} {convforce 0 -1 0} {motion 0 0} {disk 0 0} {extra 1}} {
    lappend items [::marinewin::item $p {*}$curve]
  }
  show $items
  counts unsteady $items

  # A plot whose first points are undefined: they stay out, and a refresh
  # that brings nothing new reads nothing again.
  set ::marinewin::formula {sqrt(t - 0.3)}
  set k [::marinewin::addFormula]
  set id [::monwin::curveOfItem [::marinewin::item $p custom $k]]
  ::liverefresh::waitIdle
  set before [curves::get $id fetched]
  refresh
  say "sqrt(t - 0.3): [curves::length $id] of [itm_get_custom_plot_points_no $p $k] points; read again: [expr {[curves::get $id fetched] - $before}]"

  # Zoomed on negative forces, then residuals of another computation.
  show [list [::marinewin::item $p force 0 -1 0]]
  set g [plotpanel::graph [::monwin::panel]]
  $g axis configure y -min -3000 -max -1000
  $g axis configure x -min 0.1 -max 0.2
  set s [::marinewin::openComputation steady/ship_steady.res]
  refresh
  show [list [::marinewin::item $s resid 0] [::marinewin::item $s resid 1]]
  counts "steady residuals" [list [::marinewin::item $s resid 0] [::marinewin::item $s resid 1]]
  set items [lmap curve {{force 0 -1 0} {motion 0 0} {disk 0 0} {extra 1}} {::marinewin::item $s {*}$curve}]
  show $items
  counts steady $items
  say "per time step: [[::monwin::tree] exists [::marinewin::item $s conv]]; x axis: [$g axis cget x -title]"

  # Closing the first computation and opening it again gives it a branch of
  # its own.
  ::marinewin::closeComputation $p
  set again [::marinewin::openComputation ship.res]
  refresh
  show [list [::marinewin::item $again force 0 -1 0] [::marinewin::item $s force 0 -1 0]]
  counts "closed and opened again" [list [::marinewin::item $again force 0 -1 0] [::marinewin::item $s force 0 -1 0]]
  say "branches: [[::monwin::tree] children {}]"
}
runThenQuit itf_quit_command_KELP
)tcl";

// Replaces the value of `column` (0-based, blank-separated) in the data row
// of iteration `iteration` of a marine residual file.
void setResidualValue(const fs::path& file, int iteration, std::size_t column,
                      const std::string& value) {
  std::ifstream in(file);
  std::ostringstream edited;
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind(std::to_string(iteration) + " ", 0) == 0) {
      std::istringstream words(line);
      std::vector<std::string> row{std::istream_iterator<std::string>(words), {}};
      row.at(column) = value;
      line.clear();
      for (const std::string& word : row) line += (line.empty() ? "" : " ") + word;
    }
    edited << line << '\n';
  }
  in.close();
  std::ofstream(file) << edited.str();
}

TEST(MarineWindow, FollowsAGrowingRunThenOnlyTheNewRun) {
  Installation installation("dune_marine71");
  const fs::path caseFolder = installation.work() / "case";
  installation.writeMarineScript(
      "set solver {" MARINE_SOLVER "}\nset case {" + caseFolder.string() +
      "}\nset windowScript {" MONITOR_TCL_DIR "/_monitorTurbo/_monitorMarine/itf_init.tcl}\n" +
      kHelpers + kMarineScenario);
  const RunResult result = installation.run();
  ASSERT_TRUE(result.exited) << result.output << result.errors;
  EXPECT_EQ(result.exitStatus, 1);
  const std::vector<std::string> lines = said(result.output);
  ASSERT_GE(lines.size(), 14u) << result.output << result.errors;
  // Order: residual, forces of hull, keel, moment of rudder, converged Fx of
  // hull, a motion, a disk quantity, a user quantity, the custom plot. The
  // iteration that completes time step 3 is cut in its converged rows: its
  // force rows are whole, its residual row is not.
  EXPECT_EQ(lines[0], "plot: 0");
  EXPECT_EQ(lines[1], "start: 10 10 10 10 2 2 2 2 10");
  EXPECT_EQ(lines[2], "x axis: Nonlinear Iterations");
  EXPECT_EQ(lines[3], "x axis: Time [s]");
  EXPECT_EQ(lines[4], "cut: 14 15 15 15 2 2 2 2 15");
  EXPECT_EQ(lines[5], "completed: 17 17 17 17 3 3 3 3 17");
  EXPECT_EQ(lines[6], "exact: yes");
  std::istringstream statistics(lines[7].substr(lines[7].find(':') + 2));
  std::string pair;
  int compared = 0;
  while (statistics >> pair) {
    const auto slash = pair.find('/');
    EXPECT_NEAR(std::stod(pair.substr(0, slash)), std::stod(pair.substr(slash + 1)),
                1e-6 * std::abs(std::stod(pair.substr(slash + 1))) + 1e-15)
        << lines[7];
    ++compared;
  }
  EXPECT_EQ(compared, 5) << lines[7];
  EXPECT_EQ(lines[8].substr(0, 45), "csv: curve,x,y, 34 rows, 0 mismatches, first ") << lines[8];
  EXPECT_EQ(lines[9], "png: \x89PNG; ps: %!");
  EXPECT_EQ(lines[10], "missing: 17 points, 0 drawn");
  EXPECT_EQ(lines[11], "refused: -1 Unknown function \"foo\"; Unknown variable \"Fx_nothing\"");
  EXPECT_EQ(lines[12], "restarted: 7 7 7 7 1 1 1 1 7");
  EXPECT_EQ(lines[13], "exact: yes; status: ship.res: a new run is on the disk; showing it");
}

TEST(MarineWindow, OpensTheBundledExamplesFromTheStartupFolder) {
  Installation installation("dune_marine71");
  const fs::path folder = installation.work() / "marine";
  fs::copy(fs::path(MONITOR_EXAMPLES_DIR) / "marine", folder, fs::copy_options::recursive);
  // Columns: itnl cpums t ResU ResV ... Values beyond single precision are
  // points the solver did not give.
  setResidualValue(folder / "ship.res", 3, 3, "1e39");
  setResidualValue(folder / "ship.res", 4, 4, "-1e40");
  installation.writeMarineScript("set windowScript {" MONITOR_TCL_DIR
                                 "/_monitorTurbo/_monitorMarine/itf_init.tcl}\n" +
                                 kHelpers + kBundledExamples);
  const RunResult result =
      installation.run(RunOptions{}.withArguments({"-startupdir", folder.string()}));
  ASSERT_TRUE(result.exited) << result.output << result.errors;
  EXPECT_EQ(result.exitStatus, 1);
  // The unsteady run: 60 iterations, 12 time steps (t = 0.05 to 0.6); the
  // steady one: 40 iterations, each writing a motion, disk and user row.
  EXPECT_EQ(said(result.output), (std::vector<std::string>{
                                     "opened: ship.res; shown at once: 6 curves of 59 59 60 60 60 "
                                     "60; largest ResU 0.84867000579834",
                                     "unsteady: 60 12 12 12 12",
                                     "sqrt(t - 0.3): 35 of 60 points; read again: 0",
                                     "steady residuals: 40 40",
                                     "steady: 40 40 40 40",
                                     "per time step: 0; x axis: Nonlinear Iterations",
                                     "closed and opened again: 60 40",
                                     "branches: p2 p3",
                                 }))
      << result.output << result.errors;
}

TEST(TurbomachineryWindow, FollowsAGrowingFileThenItsRewrite) {
  Installation installation("dune71");
  const fs::path caseFolder = installation.work() / "case";
  fs::create_directories(caseFolder);
  for (const char* name : {"stage.res", "blade.diag", "blade.prof"})
    fs::copy_file(fs::path(MONITOR_EXAMPLES_DIR) / "turbo" / name, caseFolder / name);
  installation.writeTurboScript("set case {" + caseFolder.string() +
                                "}\nset windowScript {" MONITOR_TCL_DIR
                                "/_monitorTurbo/itf_init.tcl}\n" +
                                kHelpers + kTurboScenario);
  const RunResult result = installation.run(RunOptions{}.withArguments(
      {(caseFolder / "stage.res").string(), (caseFolder / "blade.diag").string(),
       (caseFolder / "blade.prof").string()}));
  ASSERT_TRUE(result.exited) << result.output << result.errors;
  EXPECT_EQ(result.exitStatus, 1);
  // Lift, rms of d in block 1, max of E in block 2, rms of species sp2 in
  // block 1, a diagram curve, a profile curve.
  EXPECT_EQ(
      said(result.output),
      (std::vector<std::string>{
          "equations: d wx wy wz E k eps sp1 sp2",
          "start: 300 300 300 300 40 60",
          "x axis: Iterations",
          "cut: 302 302 302 302 40 60",
          "completed: 303 303 303 303 40 60",
          "exact: yes",
          "work units: 303 points from 1.26404404640198; Work units",
          "rewritten: 10 10 10 10 40 60",
          "exact: yes; status: stage.res: the file was written again; showing the new run",
          "second file: 10 60",
          "drawn: 60 10",
          "branches: r1 b1 b2 r2; status: stage.res was named on the command line and stays open",
          "branches: r1 b1 b2; projects: 1 {" + (caseFolder / "stage.res").string() + "} ",
      }))
      << result.output << result.errors;
}

}  // namespace
}  // namespace e2e

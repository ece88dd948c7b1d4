// The installation's windows through the real program: a start-up script
// sources the real window scripts and drives them as a user would while the
// solver stand-in or the script writes the files, and says what they hold.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "monitor_process.h"

namespace e2e {
namespace {

using Lines = std::vector<std::string>;

// `refresh` is one tick of the live refresh, waited for; `exact` whether every
// shown curve holds the points read afresh from its source (none twice, none
// lost, none from another run).
const std::string kHelpers = R"tcl(
proc say {text} { puts "> $text" }
proc scenarioThenQuit {} {
  set ::statusAtOpen $::monwin::status
  ::liverefresh::setPaused 1; settle
  if {[catch run message]} { puts "script error: $message $::errorInfo" }
  ::monwin::quit
}
proc panels {} { join [lmap w [dashboard::panels] {lmap id [::monwin::shownCurves $w] {curves::length $id}}] " | " }
proc panelNames {} { join [lmap w [dashboard::panels] {join [lmap i [::monwin::panelItems $w] {[::monwin::tree] item $i -text}] ,}] " | " }
proc settle {} { ::liverefresh::waitIdle; update }
proc refresh {} { ::liverefresh::refreshNow; settle }
proc counts {label items} { say "$label: [lmap item $items {curves::length [::monwin::curveOfItem $item]}]" }
proc exact {} {
  foreach id [::monwin::shownCurves] {
    set source [curves::source $id]; set fresh [monitor_curve new]
    monitor_curve fill $fresh 0 [expr {[monitor_curve positions {*}$source] - 1}] {*}$source
    set same [expr {[monitor_curve values $fresh 0 [monitor_curve length $fresh]] eq [curves::values $id 0 [curves::length $id]]}]
    monitor_curve delete $fresh; if {!$same} { return "no: [curves::label $id]" }
  }
  return yes
}
proc slurp {file} { set in [open $file rb]; set text [read $in]; close $in; return $text }
proc spill {file access text} { set out [open $file $access]; puts -nonewline $out $text; close $out }
proc show {items} { [::monwin::tree] selection set $items; ::monwin::selectionChanged; settle }
)tcl";

const std::string kMarineWindow = MONITOR_TCL_DIR "/_monitorTurbo/_monitorMarine/itf_init.tcl";
const std::string kTurboWindow = MONITOR_TCL_DIR "/_monitorTurbo/itf_init.tcl";

// Runs `setup`, opens the window (redrawing at once: the scenarios ask what is
// drawn), then runs `body` from the event loop; the lines it said, without their marks.
Lines runScenario(const Installation& installation, const std::string& window,
                  const std::string& setup, const std::string& body,
                  const RunOptions& options = {}) {
  writeFile(window == kMarineWindow ? installation.marineScript() : installation.turboScript(),
            kHelpers + setup + "source {" + window +
                "}\nset ::plotpanel::redrawEveryMs 0\nproc run {} {\n" + body +
                "}\nafter 0 scenarioThenQuit\n");
  const RunResult result = installation.run(options);
  EXPECT_EQ(result.exitStatus, 1) << result.output << result.errors;
  EXPECT_EQ(result.output.find("script error"), std::string::npos) << result.output;
  Lines said;
  std::istringstream in(result.output);
  for (std::string line; std::getline(in, line);)
    if (line.starts_with("> ")) said.push_back(line.substr(2));
  return said;
}

TEST(MarineWindow, FollowsAGrowingRunThenOnlyTheNewRun) {
  Installation installation("dune_marine71");
  const std::string folder = (installation.work() / "case").string();
  const Lines said = runScenario(installation, kMarineWindow, "set case {" + folder + R"tcl(}
set res [file join $case ship.res]
proc solver {args} {
  exec )tcl" MARINE_SOLVER R"tcl( --out $::case --stamp {21/11/2026 14:05:09} {*}$args
}
solver --iterations 10
set argv [list $res]
)tcl",
                                 R"tcl(  global res case
  set p [lindex $::marinewin::projects 0]
  set ::marinewin::formula {(Fx_hull+Fx_rudder)/2}; say "plot: [::marinewin::addFormula]"
  set items [lmap curve {{resid 0} {force 0 -1 0} {force 0 0 0} {moment 1 -1 12} {convforce 0 -1 0}
                         {motion 0 2} {disk 1 0} {extra 1} {custom 0}} {::marinewin::item $p {*}$curve}]
  set panel [::monwin::panel]
  foreach shown [list $items [lrange $items 1 1]] {
    show $shown
    say "x axis: [[plotpanel::graph $panel] axis cget x -title]"
  }
  show $items; counts start $items
  # Iterations 11 to 15, the last one half-written; then 16 and 17.
  solver --iterations 10 --append 5 --cut; refresh; counts cut $items
  solver --iterations 15 --append 2; refresh; counts completed $items
  say "exact: [exact]"

  show [lrange $items 0 0]
  plotpanel::setLastCount $panel 4
  say "statistics: [lmap v [plotpanel::statistics $panel [lindex [::monwin::shownCurves] 0]] {format %.9g $v}]"
  show [lrange $items 0 1]
  foreach format {csv png ps} {
    plotpanel::export $panel $format [file join $case graph.$format]
    set exported($format) [slurp [file join $case graph.$format]]
  }
  set csv [split [string trimright $exported(csv) \n] \n]
  say "csv: [llength $csv] lines: [join [lrange $csv 0 1] |] ... [lindex $csv end]"
  say "png: [string range $exported(png) 0 3]; ps: [string range $exported(ps) 0 3]"

  # A formula with every point missing draws nothing; unknown names are refused.
  set ::marinewin::formula {sqrt(0-1)}
  show [list [::marinewin::item $p custom [::marinewin::addFormula]]]
  say "missing: [curves::length [lindex [::monwin::shownCurves] 0]] drawn"
  set ::marinewin::formula {Fx_nothing * 2 + foo(Fx_hull)}; say "refused: [::marinewin::addFormula] $::marinewin::formulaMessage"

  show $items
  solver --iterations 7 --seed 2 --stamp {21/11/2026 15:05:09}; refresh; counts restarted $items
  say "exact: [exact]; status: $::monwin::status"
)tcl");
  // The cut iteration completes time step 3: its force rows are whole, its
  // residual and converged rows are not.
  EXPECT_EQ(
      said,
      (Lines{"plot: 0", "x axis: Nonlinear Iterations", "x axis: Time [s]",
             "start: 10 10 10 10 2 2 2 2 10", "cut: 14 15 15 15 2 2 2 2 15",
             "completed: 17 17 17 17 3 3 3 3 17", "exact: yes",
             "statistics: 4 0.213514103 0.261898248 0.00402839994 0.650510013",
             "csv: 35 lines: curve,x,y|\"ResU \xE2\x80\x94 ship.res\",1.0,0.8486700057983398 ... "
             "\"Fx hull \xE2\x80\x94 ship.res\",0.20000000298023224,-1885.8480224609375",
             "png: \x89PNG; ps: %!PS", "missing: 0 drawn",
             "refused: -1 Unknown function \"foo\"; Unknown variable \"Fx_nothing\"",
             "restarted: 7 7 7 7 1 1 1 1 7",
             "exact: yes; status: ship.res: a new run is on the disk; showing it"}));
}

TEST(TurbomachineryWindow, FollowsAGrowingFileThenItsRewrite) {
  Installation installation("dune71");
  const fs::path folder = installation.work() / "case";
  fs::create_directories(folder);
  for (const char* name : {"stage.res", "blade.diag", "blade.prof"})
    fs::copy_file(fs::path(MONITOR_EXAMPLES_DIR) / "turbo" / name, folder / name);
  const Lines said =
      runScenario(installation, kTurboWindow, "set res {" + (folder / "stage.res").string() + "}\n",
                  R"tcl(  global res
  say "first view: [panels]; [panelNames]"
  set p [lindex $::turbowin::projects 0]
  set items [list [::turbowin::item $p global 0] [::turbowin::item $p rms 0 0] [::turbowin::item $p max 1 4] \
                  [::turbowin::item $p rms 0 8] b1/Extrado_1 b2/Intrado]
  show $items; counts start $items
  say "x axis: [[plotpanel::graph [::monwin::panel]] axis cget x -title]"
  # Three copies of the last record, the last one cut 40 characters before its end.
  set last [lindex [split [string trimright [slurp $res] \n] \n] end]
  set text ""
  foreach i {1 2 3} { append text [format %6d [expr {[lindex $last 0] + $i}]] [string range $last 6 end] \n }
  spill $res a [string range $text 0 end-40]; refresh; counts cut $items
  spill $res a [string range $text end-39 end]; refresh; counts completed $items
  say "exact: [exact]"
  set ::turbowin::workUnit 1; ::turbowin::applyWorkUnit; ::liverefresh::waitIdle
  set first [lindex [::monwin::shownCurves] 0]
  say "work units: [curves::length $first] points from [format %.15g [lindex [curves::values $first 0 0] 0 0]]; [[plotpanel::graph [::monwin::panel]] axis cget x -title]"
  # The solver starts over: the header and the first 10 records again.
  spill $res w [join [lrange [split [slurp $res] \n] 0 19] \n]\n; refresh; counts rewritten $items
  say "exact: [exact]; status: $::monwin::status"

  # A file opened from the menu gets a branch and can be closed, the one named at start-up not.
  set copy [file join [file dirname $res] second.res]
  file copy $res $copy; ::turbowin::openResidualFile $copy
  set second [lindex $::turbowin::projects end]
  show [list [::turbowin::item $second rms 0 0] b2/Intrado]
  # Drawn whole (in tree order: the profile side first), short as they are.
  say "drawn: [lmap id [::monwin::shownCurves] {::plotpanel::dx_$id length}]"
  foreach project [list $p $second] {
    show [list [::turbowin::item $project global 0]]; set ::monwin::status ""; ::turbowin::closeSelected
    say "branches: [[::monwin::tree] children {}]; [itf_read_running_project]; status: $::monwin::status"
  }
)tcl",
                  {{(folder / "stage.res").string(), (folder / "blade.diag").string(),
                    (folder / "blade.prof").string()}});
  const std::string projects = "1 {" + (folder / "stage.res").string() + "} ";
  // Lift, rms of d in block 1, max of E in block 2, rms of species sp2 in
  // block 1, a diagram curve, a profile curve.
  EXPECT_EQ(said,
            (Lines{"first view: 300 300 300 300 300 | 300 300 300 300 300 300 300; "
                   "d,wx,wy,wz,E | Lift,Axial thrust,Qmax,Tmax,In,Torque,Out",
                   "start: 300 300 300 300 40 60", "x axis: Iterations",
                   "cut: 302 302 302 302 40 60", "completed: 303 303 303 303 40 60", "exact: yes",
                   "work units: 303 points from 1.26404404640198; Work units",
                   "rewritten: 10 10 10 10 40 60",
                   "exact: yes; status: stage.res: the file was written again; showing the new run",
                   "drawn: 60 10",
                   "branches: r1 b1 b2 r2; " + projects +
                       "; status: stage.res was named on the command line and stays open",
                   "branches: r1 b1 b2; " + projects + "; status: "}));
}

// The window as a dashboard: the first view of the example, a layout of
// panels and a custom plot kept at quit and brought back after a restart, for
// that computation only. Then, after a damaged settings file, the example's
// other computations opened from its folder.
TEST(Dashboard, ALayoutIsKeptAcrossARestartForItsComputation) {
  Installation installation("dune_marine71");
  for (const char* copy : {"a", "b"})
    fs::copy(fs::path(MONITOR_EXAMPLES_DIR) / "marine", installation.work() / copy,
             fs::copy_options::recursive);
  const auto run = [&](const std::string& computation, const std::string& scenario) {
    return runScenario(installation, kMarineWindow, "", scenario,
                       {{(installation.work() / computation / "ship.res").string()}});
  };
  // The example: 6 residuals and the hull's Fx over 60 iterations, its 6
  // motions over 12 time steps.
  const std::string firstView = "60 60 60 60 60 60 | 60 | 12 12 12 12 12 12";
  EXPECT_EQ(run("a", R"tcl(
  set p [lindex $::marinewin::projects 0]
  say "first view: [panels]; [panelNames]"
  ::monwin::closeAllPanels
  set ::marinewin::formula {Fx_hull * 2}; ::marinewin::addFormula
  ::monwin::newPanel
  show [list [::marinewin::item $p moment 0 -1 12]]
  plotpanel::setLastCount [::monwin::panel] 20
  ::monwin::applyCriteria 90 5
)tcl"),
            Lines{"first view: " + firstView +
                  "; ResU,ResV,ResW,ResP,ResK,Res`w | Fx | X,Y,Z,PHI,THETA,PSI"});
  const std::string restore = R"tcl(
  say "restored: [panels]"
  say "[panelNames]; last [plotpanel::lastCount [lindex [dashboard::panels] end]]; criteria [plotpanel::criteria]"
  # Linked abscissae: a zoom in one panel applies to the other.
  set ::monwin::linkAbscissae 1; lassign [dashboard::panels] first second
  set g [plotpanel::graph $first]; update
  lassign [$g extents plotarea] left top width height
  foreach fraction {0.25 0.75} dy {-20 20} {
    set x [expr {int($left + $fraction * $width)}]
    set y [expr {$top + $height / 2 + $dy}]
    foreach event {Motion ButtonPress-1 ButtonRelease-1} { event generate $g <$event> -x $x -y $y }
  }
  update
  say "linked: [expr {[plotpanel::xRange $first] eq [plotpanel::xRange $second] && [lindex [plotpanel::xRange $first] 0] ne ""}]"
  ::layout::reset; settle
  say "reset: [panels]"
)tcl";
  EXPECT_EQ(run("a", restore),
            (Lines{"restored: 60 | 60", "Fx_hull * 2 | Mz; last 20; criteria 0.9 0.05", "linked: 1",
                   "reset: " + firstView}));
  EXPECT_EQ(run("b", restore)[0], "restored: " + firstView);

  // A damaged settings file; the folder of the examples as start-up folder.
  const fs::path settings = installation.home() / ".talvik" / "monitor_settings.tcl";
  std::ofstream(settings) << "version 1 window {geometry \"unbalanced";
  EXPECT_EQ(
      runScenario(installation, kMarineWindow, "", R"tcl(
  say "[panels]; status: $::statusAtOpen"
  set p [lindex $::marinewin::projects 0]
  # Undefined first points stay out; a refresh bringing nothing new reads nothing again.
  set ::marinewin::formula {sqrt(t - 0.3)}
  set id [::monwin::curveOfItem [::marinewin::item $p custom [::marinewin::addFormula]]]
  settle; set before [curves::get $id fetched]; refresh
  say "sqrt(t - 0.3): [curves::length $id] points; read again: [expr {[curves::get $id fetched] - $before}]"
  # The steady run beside it: 40 iterations, each with a motion, disk and user row.
  set s [::marinewin::openComputation steady/ship_steady.res]; refresh
  set items [lmap curve {{resid 0} {force 0 -1 0} {motion 0 0} {disk 0 0} {extra 1}} {::marinewin::item $s {*}$curve}]
  show $items; counts steady $items
  say "per time step: [[::monwin::tree] exists [::marinewin::item $s conv]]; [[plotpanel::graph [::monwin::panel]] axis cget x -title]"
  # Closed and opened again, a computation gets a branch of its own.
  ::marinewin::closeComputation $p
  set again [::marinewin::openComputation ship.res]; refresh
  set items [list [::marinewin::item $again force 0 -1 0] [::marinewin::item $s force 0 -1 0]]
  show $items; counts "opened again" $items
  say "branches: [[::monwin::tree] children {}]"
  # A long steady run: its table row shows the verdict, a line marks where the transient ends.
  exec )tcl" MARINE_SOLVER R"tcl( --out long --steady --iterations 800 --stamp {21/11/2026 14:05:09}
  set long [::marinewin::openComputation long/ship.res]; refresh
  show [list [::marinewin::item $long force 0 -1 0]]
  set id [lindex [::monwin::shownCurves] 0]
  set verdict [monitor_curve verdict [curves::store $id] -confidence 0.95 -tolerance 0.01 -residual 0]
  set marker [[plotpanel::graph [::monwin::panel]] marker cget transient-$id -coords]
  say "long: [lrange [[::monwin::panel].stats item $id -values] 5 end]; [dict get $verdict verdict] after [dict get $verdict transientEnd]; marker at [lindex $marker 0]"
)tcl",
                  {{"-startupdir", (installation.work() / "a").string()}}),
      (Lines{firstView + "; status: Settings file " + fs::weakly_canonical(settings).string() +
                 " is damaged; starting from the defaults",
             "sqrt(t - 0.3): 35 points; read again: 0", "steady: 40 40 40 40 40",
             "per time step: 0; Nonlinear Iterations", "opened again: 60 40", "branches: p2 p3",
             "long: 221 {-1520 \xB1 0} no {} converged; converged after 221.0; marker at 221.0"}));
}

}  // namespace
}  // namespace e2e

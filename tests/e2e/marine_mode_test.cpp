// Marine mode through the real program: a start-up script loads a marine
// computation written by the solver stand-in, follows it while the stand-in
// appends to it and then starts it over, and reads it through the script
// commands. Bad paths and indexes are reported and the script goes on.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "monitor_process.h"
#include "solver_simulator/marine_case_writer.h"

namespace e2e {
namespace {

namespace fs = std::filesystem;
using solver_simulator::RunStamp;

// The default case's stamp, and the one of the run that starts over an hour later.
const RunStamp kFirstStamp{2026, 11, 21, 14, 5, 9};
const RunStamp kSecondStamp{2026, 11, 21, 15, 5, 9};

// Writes `iterations` iterations of the default case into `folder`, as
// marine_solver does: unsteady, 5 iterations per time step; the body hull
// (sub-bodies keel and bulb, moving) and the body rudder; two actuator
// disks; user quantities.
void writeCase(const fs::path& folder, int iterations, std::uint64_t seed = 1,
               const RunStamp& stamp = kFirstStamp) {
  solver_simulator::CaseSetup setup = solver_simulator::defaultCaseSetup(folder);
  setup.seed = seed;
  setup.stamp = stamp;
  solver_simulator::MarineCaseWriter writer(setup);
  writer.writeHeaders();
  for (int i = 0; i < iterations; ++i) writer.appendIteration();
}

using Row = std::vector<std::string>;

// The data rows of a file of the case, in words: the lines that start with a
// number, those at a negative time (the converged rows of the force and
// moment files) or the others.
std::vector<Row> rowsOf(const fs::path& path, bool converged = false) {
  std::ifstream file(path);
  std::vector<Row> rows;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || (line[0] != '-' && !std::isdigit(static_cast<unsigned char>(line[0]))))
      continue;
    if ((line[0] == '-') != converged) continue;
    std::istringstream words(line);
    rows.emplace_back(std::istream_iterator<std::string>(words),
                      std::istream_iterator<std::string>());
  }
  return rows;
}

// A number as the commands write it.
std::string written(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.15g", value);
  return text;
}

// A number of the files as the model holds it: in single precision, or as it stands.
double single(const std::string& word) { return static_cast<float>(std::stod(word)); }
double plain(const std::string& word) { return std::stod(word); }

// The rows of one run of the case that the script follows. Columns:
// ship.res "itnl cpums t ResU ResV ResW ResP ...", eff_Fx.dat and eff_Mz.dat
// "T itnl hull hull:keel hull:bulb rudder", Mvt_hull.dat "T X Y Z ...",
// eff_AD.dat "T Thrust1 Torque1 Thrust2 Torque2", user_data.csv
// "Time, Heave force, ...".
struct RunRows {
  explicit RunRows(const fs::path& folder)
      : residuals(rowsOf(folder / "ship.res")),
        forces(rowsOf(folder / "eff_Fx.dat")),
        converged(rowsOf(folder / "eff_Fx.dat", true)),
        moments(rowsOf(folder / "eff_Mz.dat")),
        motions(rowsOf(folder / "Mvt_hull.dat")),
        disks(rowsOf(folder / "eff_AD.dat")),
        user(rowsOf(folder / "user_data.csv")) {}
  std::vector<Row> residuals, forces, converged, moments, motions, disks, user;
};

// How far the script has read: residual rows, iteration rows of the force
// and moment files, time steps (converged, motion, disk and user rows).
struct Seen {
  int residuals = 0;
  int iterations = 0;
  int steps = 0;
};

// What the script's `state` prints: per curve its number of points, then the
// points past those already seen.
std::vector<std::string> stateLines(const std::string& label, const RunRows& run, Seen from,
                                    Seen to) {
  const auto line = [](const std::string& name, int from, int to, auto point) {
    std::string text = "  " + name + ": " + std::to_string(to);
    for (int i = from; i < to; ++i) text += (i == from ? ", new " : ", ") + point(i);
    return text;
  };
  const auto timed = [](const std::vector<Row>& rows, std::size_t column) {
    return [&rows, column](int i) {
      const Row& row = rows.at(static_cast<std::size_t>(i));
      return written(single(row.at(0))) + " " + written(single(row.at(column)));
    };
  };
  const auto at = [](const std::vector<Row>& rows, int i, std::size_t column) {
    return rows.at(static_cast<std::size_t>(i)).at(column);
  };
  return {
      label + ":",
      line("ResP", from.residuals, to.residuals,
           [&](int i) {
             return at(run.residuals, i, 0) + " " + written(single(at(run.residuals, i, 6)));
           }),
      line("Fx hull", from.iterations, to.iterations, timed(run.forces, 2)),
      line("Fx keel", from.iterations, to.iterations, timed(run.forces, 3)),
      line("Mz rudder", from.iterations, to.iterations, timed(run.moments, 5)),
      line("FxDyn hull", from.steps, to.steps,
           [&](int i) { return written(single(at(run.converged, i, 2))); }),
      line("Z hull", from.steps, to.steps, timed(run.motions, 3)),
      line("Thrust2", from.steps, to.steps,
           [&](int i) { return written(plain(at(run.disks, i, 3))); }),
      line("Heave force", from.steps, to.steps,
           [&](int i) { return written(plain(at(run.user, i, 1))); }),
      line("plot", from.iterations, to.iterations,
           [&](int i) {
             const double sum = single(at(run.forces, i, 2)) + single(at(run.forces, i, 5));
             return written(plain(at(run.forces, i, 0))) + " " + written(sum / 2);
           }),
  };
}

// What loading the case prints.
std::vector<std::string> loadLines(const std::string& res, const RunStamp& stamp) {
  return {"File '" + res + "' created on " + stamp.text(),
          "Reading eff_Fx.dat for steadiness...",
          "Mode: UNSTEADY",
          "Fallback body: hull",
          "Fallback body: rudder",
          "Reading ...body_param.dat file for body structure ...",
          "True body: hull",
          "True body: rudder",
          "Found Mvt body: hull"};
}

// A refresh: the hull's motion file is read to its end, then the script
// prints the answer.
std::vector<std::string> refreshLines(int answer) {
  return {"File End is reached", "update: " + std::to_string(answer)};
}

// The script of both installations below. `solver` runs the stand-in on the
// case, by default on the first run's stamp and seed; `state` prints, for
// each curve, its number of points and the points it has gained since the
// last `state`.
const std::string kScenario = R"tcl(
set res [file join $case ship.res]
proc solver {args} {
  global solver case
  exec $solver --out $case --stamp {21/11/2026 14:05:09} {*}$args
}
proc refresh {} { puts "update: [itf_update_now_monitor_KELP]" }
set curves {
  ResP          {itf_get_nbIter_KELP $res}                {itf_get_curve_value_KELP $res Resids 0 -1 3}
  {Fx hull}     {itf_get_nbIter_force_KELP $res 0 -1 0}   {itf_get_curve_value_KELP $res Forces 0 -1 0}
  {Fx keel}     {itf_get_nbIter_force_KELP $res 0 0 0}    {itf_get_curve_value_KELP $res Forces 0 0 0}
  {Mz rudder}   {itf_get_nbIter_moment_KELP $res 1 -1 12} {itf_get_curve_value_KELP $res Moments 1 -1 12}
  {FxDyn hull}  {itf_get_force_conv_length $res 0 -1 1}   {itf_get_force_conv_value 1 $res 0 -1}
  {Z hull}      {itf_get_nbIter_motion_KELP $res 0}       {itf_get_curve_value_KELP $res Motions 0 -1 2}
  Thrust2       {itf_get_disk_steps $res 1}               {itf_get_disk_quantity_value $res 1 0}
  {Heave force} {itm_get_extra_quantity_capacity $res 1}  {itm_get_extra_quantity_value $res 1}
  plot          {itm_get_custom_plot_points_no $res 0}    {itm_get_custom_plot_point $res 0}
}
proc state {label} {
  global res curves seen
  puts "$label:"
  foreach {name count point} $curves {
    set n [eval $count]
    set line "  $name: $n"
    set from [expr {[info exists seen($name)] ? $seen($name) : 0}]
    for {set i $from} {$i < $n} {incr i} {
      append line [expr {$i == $from ? ", new " : ", "}] [eval $point $i]
    }
    puts $line
    set seen($name) $n
  }
}
proc run {} {
  global res seen
  puts "added: [itf_add_res_file_KELP $res]"
  refresh
  set bodies {}
  for {set b 0} {$b < [get_number_of_bodies_KELP $res]} {incr b} {
    set subs {}
    for {set s 0} {$s < [get_sub_object_number_KELP $res $b]} {incr s} {
      lappend subs [get_subbody_name_KELP $res $b $s]
    }
    lappend bodies "[get_body_name_KELP $res $b] ([join $subs])"
  }
  puts "bodies: [join $bodies {, }]; [get_KELP_stational_mode_KELP $res]"
  set quantities {}
  for {set q 0} {$q < [itm_get_number_of_extra_quantities $res]} {incr q} {
    lappend quantities "[itm_get_extra_quantity_name $res $q] \[[itm_get_extra_quantity_unit $res $q]\]"
  }
  puts "disks: [itf_get_disk_count $res]; user quantities: [join $quantities {, }]"
  puts "plot [itm_add_custom_plot $res {(Fx_hull+Fx_rudder)/2}]: [itm_get_custom_plot_formula $res 0]"
  state start

  # Iterations 11 to 15; the last completes time step 3, and its lines are
  # half-written.
  solver --iterations 10 --append 5 --cut
  refresh
  state cut
  solver --iterations 15 --append 2
  refresh
  state completed
  refresh

  # The solver starts over: 7 iterations of another run.
  solver --iterations 7 --seed 2 --stamp {21/11/2026 15:05:09}
  refresh
  array unset seen
  state restarted
  refresh
  puts "projects: [itf_read_running_project_KELP]; plots: [itm_get_custom_plots_no $res]"
}
after 0 {
  if {[catch run message]} { puts "script error: $message" }
  itf_quit_command_KELP
}
)tcl";

void followAGrowingThenRestartedRun(const Installation& installation, const RunOptions& options) {
  const fs::path caseFolder = installation.work() / "case";
  const std::string res = (caseFolder / "ship.res").string();
  writeCase(caseFolder, 10);
  installation.writeMarineScript("set solver {" MARINE_SOLVER "}\nset case {" +
                                 caseFolder.string() + "}\n" + kScenario);

  // The rows of both runs, as the stand-in writes them at their longest.
  writeCase(installation.base() / "first", 17);
  writeCase(installation.base() / "second", 7, 2, kSecondStamp);
  const RunRows first(installation.base() / "first");
  const RunRows second(installation.base() / "second");

  std::vector<std::string> expected = loadLines(res, kFirstStamp);
  const auto add = [&expected](const std::vector<std::string>& lines) {
    expected.insert(expected.end(), lines.begin(), lines.end());
  };
  add({"added: 1 {" + res + "} "});
  add(refreshLines(1));
  add({"bodies: hull (keel bulb), rudder (); Time [s]",
       "disks: 2; user quantities: Time [s], Heave force [N], Pitch moment [N.m], Froude number []",
       "plot 0: (Fx_hull+Fx_rudder)/2"});
  add(stateLines("start", first, {}, {10, 10, 2}));
  // Iteration 15's half-written lines are not read yet: its residual row,
  // its converged rows and its motion, disk and user rows. Its rows of the
  // force and moment files came whole, before the cut converged rows.
  add(refreshLines(1));
  add(stateLines("cut", first, {10, 10, 2}, {14, 15, 2}));
  add(refreshLines(1));
  add(stateLines("completed", first, {14, 15, 2}, {17, 17, 3}));
  add(refreshLines(0));
  add(
      {"Different solver run detected, currently displayed run started at 2026-11-21 14:05:09, "
       "the run from 2026-11-21 15:05:09 is on the disk now.",
       "Re-initializing the data..."});
  add(loadLines(res, kSecondStamp));
  add(refreshLines(1));
  add(stateLines("restarted", second, {}, {7, 7, 1}));
  add(refreshLines(0));
  add({"projects: 1 {" + res + "} ; plots: 1"});

  const RunResult result = installation.run(options);
  EXPECT_EQ(result.output, bannerThen(expected));
  EXPECT_EQ(result.errors, "");
  EXPECT_TRUE(result.exited);
  EXPECT_EQ(result.exitStatus, 1);
}

TEST(MarineMode, ScriptFollowsAGrowingThenRestartedRun) {
  const Installation installation("dune_marine71");
  followAGrowingThenRestartedRun(installation, {});
}

TEST(MarineMode, VersionTagOptionRunsTheSameInATurbomachineryFolder) {
  const Installation installation("dune71");
  installation.writeRegistry(installation.registrySection("dunex_marine71"));
  followAGrowingThenRestartedRun(installation,
                                 RunOptions().withArguments({"-qvversion", "x_marine71"}));
}

TEST(MarineMode, BadPathsAndIndexesAreReportedAndTheScriptGoesOn) {
  const Installation installation("dune_marine71");
  const fs::path caseFolder = installation.work() / "case";
  const std::string res = (caseFolder / "ship.res").string();
  const std::string other = (caseFolder / "other.res").string();
  writeCase(caseFolder, 10);
  installation.writeMarineScript(R"tcl(
set res [file join [pwd] case ship.res]
set other [file join [pwd] case other.res]
proc run {} {
  global res other
  itf_add_res_file_KELP $res
  itf_update_now_monitor_KELP
  puts "<[get_body_name_KELP $res 5]>"
  puts "<[get_number_of_bodies_KELP $other]>"
  puts "<[itf_get_nbIter_KELP $other]>"
  puts "<[itf_get_curve_value_KELP $other Resids 0 -1 0 0]>"
  puts "<[itf_get_curve_value_KELP $res Forces 2 -1 0 0]>"
  puts "<[itf_get_curve_value_KELP $res Moments 0 2 0 0]>"
  puts "<[itf_get_curve_value_KELP $res Speed 0 -1 0 0]>"
  puts "<[itf_get_force_conv_value 18 $res 0 -1 0]>"
  puts "<[itf_get_force_conv_value 1 $res 0 -1 2]>"
  puts "<[itf_get_nbIter_force_KELP $res 1 0 0]>"
  puts "<[get_subbody_name_KELP $other 0 0]>"
  puts "<[itf_get_disk_quantity_value $res 1 2 0]>"
  puts "<[itm_get_extra_quantity_name $res 4]>"
  puts "<[itm_get_custom_plot_point $res 0 0]>"
  puts "<[get_KELP_stational_mode_KELP $other]>"
  itf_remove_res_file_KELP 1 [list $other]
  puts "turbomachinery: <[info commands itf_get_curve_value]> <[info commands itf_work_unit]>"
  puts "work unit [itf_get_work_unit_KELP]; projects: [itf_read_running_project_KELP]"
  puts "ResP: [itf_get_curve_value_KELP $res Resids 0 -1 3 9]"
}
after 0 {
  if {[catch run message]} { puts "script error: $message" }
  itf_quit_command_KELP
}
)tcl");
  const RunRows rows(caseFolder);

  std::vector<std::string> expected = loadLines(res, kFirstStamp);
  const std::vector<std::string> errors = {
      "File End is reached",
      "Error in get_body_name_KELP! Wrong body index 5, the valid range is [0..2)",
      "<>",
      "Error in is_unsteady_conv_available! Cannot find project '" + other + "'!",
      "<0>",
      "<>",
      "Error in itf_get_curve_value_KELP! Cannot find project '" + other + "'! category = Resids",
      "<>",
      "Error in itf_get_curve_value_KELP! Wrong body index 2 (0..2) category Forces",
      "<>",
      "Error in itf_get_curve_value_KELP! Wrong sub-body index 2 (0..2) category Moments",
      "<>",
      "Error in itf_get_curve_value_KELP! Unknown category name Speed",
      "<>",
      "Error in itf_get_force_conv_value! Wrong force index 18 (0..18)",
      "<0>",
      "Error in itf_get_force_conv_value! Wrong iteration index 2 (0..2)",
      "<0>",
      "Error in itf_get_nbIter_force_KELP! Wrong sub-body index 0 (0..0)",
      "<0>",
      "Error in get_body_name_KELP! Cannot find project '" + other + "'!",
      "<>",
      "Error in itf_get_disk_quantity_value! No quantity #2 for body #1.",
      "<0>",
      "Error in itm_get_extra_quantity_name: wrong quantity number 4. 4 quantities available in "
      "the project '" +
          res + "'.",
      "<>",
      "Error in get_custom_plot_point! Cannot find custom plot #0 in project '" + res +
          "'. Number of custom plots in the project: 0.",
      "<0 0>",
      "Error in itf_get_moment_conv_value! Cannot find project '" + other + "'!",
      "<Nonlinear Iterations>",
      "Error! Could not remove project " + other,
      "File End is reached",
      "turbomachinery: <> <>",
      "work unit 0; projects: 1 {" + res + "} ",
      "ResP: 10 " + written(single(rows.residuals.at(9).at(6))),
  };
  expected.insert(expected.end(), errors.begin(), errors.end());

  const RunResult result = installation.run();
  EXPECT_EQ(result.output, bannerThen(expected));
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.exitStatus, 1);
}

}  // namespace
}  // namespace e2e

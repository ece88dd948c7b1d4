// Turbomachinery mode through the real program: a start-up script follows a
// residual history as the solver writes it, through the script commands.
#include <gtest/gtest.h>

#include <sstream>

#include "monitor_process.h"

namespace e2e {
namespace {

namespace fs = std::filesystem;

// Script helpers shared by the runs below. A record of step s holds
// s * (p + 1) + 0.5 at position p; against the record of step 0 a residual
// then reads s * (p + 1). The work is done from the event loop, and the
// program is left with itf_quit_command whatever happened.
const std::string kHelpers = R"tcl(
proc record {iteration step count} {
  set line $iteration
  for {set p 0} {$p < $count} {incr p} { append line " " [expr {$step * ($p + 1) + 0.5}] }
  return $line
}
proc appendText {file text} {
  set f [open $file a]
  puts -nonewline $f $text
  close $f
}
after 0 {
  if {[catch run message]} { puts "script error: $message" }
  itf_quit_command
}
)tcl";

// The same records, written by the test before the program starts.
std::string record(int iteration, int step, int count) {
  std::ostringstream line;
  line << iteration;
  for (int p = 0; p < count; ++p) line << ' ' << step * (p + 1) + 0.5;
  return line.str() + "\n";
}

TEST(TurboMode, CommandLineProjectFollowsAGrowingThenRestartedRun) {
  Installation installation;
  const std::string res = (installation.work() / "run.res").string();
  writeFile(res, "1 5\n" + record(10, 0, 19) + record(20, 1, 19));
  installation.writeTurboScript(kHelpers + R"tcl(
set res [lindex $argv 0]
proc lifts {} {
  global res
  set points {}
  for {set i 0} {$i < [itf_get_nbIter $res]} {incr i} { lappend points [itf_get_curve_value 0 $res $i] }
  return [join $points ", "]
}
proc state {label} {
  global res
  puts "$label: [itf_get_nbIter $res] records, last iteration [itf_get_real_nbIter $res]: [lifts]"
}
proc run {} {
  global res
  puts "running: [itf_read_running_project]"
  puts "blocks: [itf_get_nbBlock $res] current: [itf_get_current_nb_blocks] mode: [itf_get_current_mode]"
  state start

  # Two records, then part of a third cut inside its "Lift" value 12.5.
  appendText $res "[record 30 2 19]\n[record 40 3 19]\n"
  set next [record 50 4 19]
  set cut [expr {[string first " 12.5" $next] + 3}]
  appendText $res [string range $next 0 [expr {$cut - 1}]]
  puts "update: [itf_update_now_monitor]"
  state appended
  puts "rms_d: [itf_get_curve_block_value 6 $res 0 3]"
  appendText $res "[string range $next $cut end]\n"
  puts "update: [itf_update_now_monitor]"
  state completed
  puts "update: [itf_update_now_monitor]"
  state unchanged
  itf_set_current_nbIter 0 0 $res 5
  puts "bookmark: [itf_get_current_nbIter 0 0 $res]"

  # The solver restarts: the file is written again from its top.
  set f [open $res w]
  puts $f "1 5\n[record 1 0 19]\n[record 2 5 19]"
  close $f
  puts "update: [itf_update_now_monitor]"
  state restarted
  puts "bookmark: [itf_get_current_nbIter 0 0 $res]"

  itf_add_res_file $res
  itf_remove_res_file 1 [list $res]
  itf_remove_res_file 1 [list $res]
  puts "running: [itf_read_running_project]"
}
)tcl");

  const RunResult result = installation.run(RunOptions().withArguments({res, "notes.txt"}));
  EXPECT_EQ(result.output,
            bannerThen({
                "running: 1 {" + res + "} ",
                "blocks: 1 current: 1 mode: 3D {NO-K-E}  0 0 { }  {TURBO} ",
                "start: 2 records, last iteration 20: 10 0.5, 20 3.5",
                "update: 1",
                "appended: 4 records, last iteration 40: 10 0.5, 20 3.5, 30 6.5, 40 9.5",
                "rms_d: 40 33",
                "update: 1",
                "completed: 5 records, last iteration 50: 10 0.5, 20 3.5, 30 6.5, 40 9.5, 50 12.5",
                "update: 1",
                "unchanged: 5 records, last iteration 50: 10 0.5, 20 3.5, 30 6.5, 40 9.5, 50 12.5",
                "bookmark: 5",
                "update: 1",
                "restarted: 2 records, last iteration 2: 1 0.5, 2 15.5",
                "bookmark: 0",
                "Project already loaded",
                "can't remove it!",
                "running: 1 {" + res + "} ",
            }));
  EXPECT_EQ(result.errors, "");
  EXPECT_TRUE(result.exited);
  EXPECT_EQ(result.exitStatus, 1);
}

TEST(TurboMode, ScriptAddsTheResidualFileItWrote) {
  Installation installation;
  const std::string res = (installation.work() / "added.res").string();
  installation.writeTurboScript(kHelpers + R"tcl(
proc run {} {
  # Two blocks of nine equations: TF, k-epsilon and one species.
  set res [file join [pwd] added.res]
  set f [open $res w]
  puts $f "0 3.0 2 TF K-E 1 sp1 0 3 STEADY TURBO\n[record 10 0 45]\n[record 20 1 45]"
  close $f
  puts "before: [itf_update_now_monitor] <[itf_get_nbIter $res]>"

  itf_add_res_file $res
  puts "mode: [itf_get_mode 0]"
  puts "choice: [itf_get_residuals_per_row_choice $res]"
  puts "records: [itf_get_nbIter $res] blocks: [itf_get_nbBlock $res]"
  puts "rms_sp1: [itf_get_curve_block_value 22 $res 1 1]"
  puts "max_harm1: [itf_get_harmonic_curve_block_value 41 max $res 1 1]"
  itf_work_unit 1
  puts "work unit [itf_get_work_unit]: [itf_get_curve_value 5 $res 1]"

  appendText $res "[record 30 2 45]\n"
  puts "update: [itf_update_now_monitor] records: [itf_get_nbIter $res]"
  puts "torque: [itf_get_curve_value 5 $res 2] [itf_get_curve_value 7 $res 2]"
  itf_print "not shown"

  itf_remove_res_file 1 [list $res]
  puts "removed: [itf_update_now_monitor] <[itf_get_nbIter $res]> [itf_get_mode 0]"
  puts "choice: [itf_get_residuals_per_row_choice $res]"
}
)tcl");

  const RunResult result = installation.run();
  EXPECT_EQ(result.output,
            bannerThen({
                "before: 0 <>",
                "mode: TF {K-E}  1 0 { {sp1}  }  {TURBO} ",
                "choice: 3",
                "records: 2 blocks: 2",
                // Block 1 starts at 9 + 18; species 1 is equation 5 + 2.
                "rms_sp1: 20 43",
                "max_harm1: 20 42",
                "work unit 1: 1.5 5.5",
                "update: 1 records: 3",
                "torque: 2.5 10.5 0 0",
                "removed: 0 <> 3D {NO-K-E}  0 0 { }  {TURBO} ",
                "itf_get_residuals_per_row_choice, ERROR: residual file: " + res + " not found!",
                "choice: 0",
            }));
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.exitStatus, 1);
}

}  // namespace
}  // namespace e2e

// The turbomachinery commands on projects: loading from the command line and
// by command, removal, the current project and block, mode descriptions,
// counts, the script's bookmarks and the refresh of growing histories.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "script/tcl_arg_stream.h"
#include "script/tcl_result_stream.h"
#include "turbo/commands/turbo_command_set.h"
#include "turbo/curve_names.h"
#include "turbo/monitor.h"
#include "turbo_command_runner.h"

namespace {

// One record of a steady history: the iteration number, then `count` values,
// value p being step * (p + 1) + 0.5. Against the record of step 0 every
// residual then reads step * (p + 1), which tells its position.
std::string steadyRecord(int iteration, int step, int count) {
  std::ostringstream line;
  line << iteration;
  for (int p = 0; p < count; ++p) line << ' ' << step * (p + 1) + 0.5;
  line << '\n';
  return line.str();
}

// Records of steps 0 .. records-1 with iteration numbers 10, 20, ...
std::string steadyRecords(int records, int count) {
  std::string text;
  for (int r = 0; r < records; ++r) text += steadyRecord(10 * (r + 1), r, count);
  return text;
}

// A short-header history of `blocks` blocks of `vars` equations.
std::string shortHistory(int blocks, int vars, int records) {
  return std::to_string(blocks) + " " + std::to_string(vars) + "\n" +
         steadyRecords(records, 9 + 2 * blocks * vars);
}

std::string cannotOpen(const std::string& path) {
  return "*** ResFile  :: read() Cannot open the file :\n\t\t\t      " + path + "\n";
}

const std::string kDefaultMode = "3D {NO-K-E}  0 0 { }  {TURBO} ";

class TurboProjects : public TurboMonitorTest {};

TEST(TurboExtension, IsWhatFollowsTheLastDotOfTheWholeArgument) {
  const struct {
    const char* argument;
    const char* extension;
  } cases[] = {
      {"a.res", "res"},
      {"dir.res/file", "res/file"},
      {"run.res.bak", "bak"},
      {"x.RES", "RES"},
      {"noext", ""},
      {"trail.", ""},
      {".res", "res"},
      {"d.1/run.res", "res"},
      {"", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(turbo::extensionOf(c.argument), c.extension) << c.argument;
}

TEST_F(TurboProjects, CommandLineArgumentsEndingInResBecomeRunningProjects) {
  const std::string a = write("a.res", shortHistory(1, 5, 2));
  const std::string c = write("c.res", shortHistory(2, 5, 2));
  // Arguments of other extensions are not opened: none of them exists.
  ConsoleCapture console;
  start({a, path("b.txt"), c, path("dir.res/file"), path("x.RES"), path("trail."),
         path("run.res.bak")});
  EXPECT_EQ(console.text(), "");
  EXPECT_EQ(call("itf_read_running_project"), "2 {" + a + "}  {" + c + "} ");
  EXPECT_EQ(call("itf_get_nbBlock", {a}), "1");
  EXPECT_EQ(call("itf_get_nbBlock", {c}), "2");

  // An added project comes after the running ones.
  const std::string d =
      write("d.res", "0 3.0 1 TF K-E 0 0 7 STEADY DUCT\n" + steadyRecords(1, 9 + 2 * 8));
  call("itf_add_res_file", {d});
  call("itf_set_current_project", {d});
  EXPECT_EQ(monitor_->currentProject, 2);
  EXPECT_EQ(call("itf_get_mode", {"2"}), "TF {K-E}  0 0 { }  {DUCT} ");
  EXPECT_EQ(call("itf_read_running_project"), "2 {" + a + "}  {" + c + "} ");
}

TEST_F(TurboProjects, NoRunningProjectAnswersZero) {
  start();
  EXPECT_EQ(call("itf_read_running_project"), "0");
  EXPECT_EQ(call("itf_update_now_monitor"), "0");
  EXPECT_EQ(call("itf_get_current_nb_blocks"), "0");
  call("itf_add_res_file", {write("a.res", shortHistory(1, 5, 1))});
  EXPECT_EQ(call("itf_read_running_project"), "0");
}

TEST_F(TurboProjects, MissingFileOfTheCommandLineStaysListedAndIsTriedAtEveryRead) {
  const std::string missing = path("missing.res");
  ConsoleCapture console;
  start({missing});
  // Start-up reads every project twice.
  EXPECT_EQ(console.text(), cannotOpen(missing) + cannotOpen(missing));
  EXPECT_EQ(call("itf_read_running_project"), "1 {" + missing + "} ");
  EXPECT_EQ(call("itf_get_nbIter", {missing}), "0");
  EXPECT_EQ(call("itf_get_nbBlock", {missing}), "0");
  EXPECT_EQ(call("itf_get_current_mode"), kDefaultMode);
  EXPECT_EQ(call("itf_update_now_monitor"), "0");
  EXPECT_EQ(console.text(), cannotOpen(missing) + cannotOpen(missing) + cannotOpen(missing));

  // Once the solver has written it, it is read like any other.
  write("missing.res", shortHistory(1, 5, 2));
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(call("itf_get_nbIter", {missing}), "2");
}

TEST_F(TurboProjects, UpdateNowAnswersOneWhenAnyProjectCouldBeRead) {
  start();
  EXPECT_EQ(call("itf_update_now_monitor"), "0");
  ConsoleCapture console;
  const std::string missing = path("missing.res");
  call("itf_add_res_file", {missing});
  EXPECT_EQ(call("itf_update_now_monitor"), "0");
  call("itf_add_res_file", {write("a.res", shortHistory(1, 5, 2))});
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  // Nothing new since the last read still answers 1.
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
}

TEST_F(TurboProjects, AddingReadsTheNewProjectThenEveryProjectInJointOrder) {
  const std::string running = path("running.res");
  ConsoleCapture console;
  start({running});
  const std::string first = path("first.res");
  const std::string second = path("second.res");
  const std::string atStart = console.text();
  call("itf_add_res_file", {first});
  EXPECT_EQ(console.text().substr(atStart.size()),
            cannotOpen(first) + cannotOpen(running) + cannotOpen(first));
  const std::string afterFirst = console.text();
  call("itf_add_res_file", {second});
  EXPECT_EQ(console.text().substr(afterFirst.size()),
            cannotOpen(second) + cannotOpen(running) + cannotOpen(first) + cannotOpen(second));
  EXPECT_EQ(call("itf_get_nbIter", {second}), "0");
}

TEST_F(TurboProjects, AddingTheFileOfARunningProjectWarnsAndAddsItAnyway) {
  const std::string a =
      write("a.res", "0 2.0 1 3D K-O 0 0 STEADY TURBO\n" + steadyRecords(2, 9 + 2 * 7));
  start({a});
  ConsoleCapture console;
  call("itf_add_res_file", {a});
  EXPECT_EQ(console.text(), "Project already loaded\n");
  EXPECT_EQ(call("itf_read_running_project"), "1 {" + a + "} ");
  EXPECT_EQ(call("itf_get_mode", {"1"}), "3D {K-O}  0 0 { }  {TURBO} ");

  // Lookups by path find the running project; removal only the added one.
  call("itf_set_current_nbIter", {"3", "4", a, "9"});
  call("itf_remove_res_file", {"1", a});
  EXPECT_EQ(console.text(), "Project already loaded\n");
  EXPECT_EQ(call("itf_get_mode", {"1"}), kDefaultMode);
  EXPECT_EQ(call("itf_get_current_nbIter", {"3", "4", a}), "9");
  call("itf_remove_res_file", {"1", a});
  EXPECT_EQ(console.text(), "Project already loaded\ncan't remove it!\n");
  EXPECT_EQ(call("itf_read_running_project"), "1 {" + a + "} ");
  EXPECT_EQ(call("itf_get_nbIter", {a}), "2");
}

TEST_F(TurboProjects, EveryRunningProjectOfThePathWarns) {
  const std::string a = write("a.res", shortHistory(1, 5, 1));
  const std::string b = write("b.res", shortHistory(1, 5, 1));
  start({a, b, a});
  EXPECT_EQ(call("itf_read_running_project"), "3 {" + a + "}  {" + b + "}  {" + a + "} ");
  ConsoleCapture console;
  call("itf_add_res_file", {a});
  EXPECT_EQ(console.text(), "Project already loaded\nProject already loaded\n");
  call("itf_add_res_file", {a});
  EXPECT_EQ(console.text(),
            "Project already loaded\nProject already loaded\n"
            "Project already loaded\nProject already loaded\n");
  call("itf_set_current_project", {a});
  EXPECT_EQ(monitor_->currentProject, 4);
}

TEST_F(TurboProjects, SamePathAddedThreeTimesMakesThreeProjectsAndLookupsFindTheFirst) {
  const std::string p =
      write("p.res", "0 2.0 1 B2B NO-K-E 1 sp1 0 STEADY TURBO\n" + steadyRecords(2, 9 + 2 * 6));
  const std::string described = "B2B {NO-K-E}  1 0 { {sp1}  }  {TURBO} ";
  start();
  ConsoleCapture console;
  call("itf_add_res_file", {p});
  call("itf_add_res_file", {p});
  call("itf_add_res_file", {p});
  EXPECT_EQ(console.text(), "");
  EXPECT_EQ(call("itf_get_mode", {"2"}), described);
  EXPECT_EQ(call("itf_get_mode", {"3"}), kDefaultMode);

  call("itf_set_current_nbIter", {"1", "2", p, "7"});
  EXPECT_EQ(call("itf_get_current_nbIter", {"1", "2", p}), "7");
  call("itf_set_current_project", {p});
  EXPECT_EQ(monitor_->currentProject, 2);

  // Removal takes the first; the bookmark went with it.
  call("itf_remove_res_file", {"1", p});
  EXPECT_EQ(call("itf_get_current_nbIter", {"1", "2", p}), "0");
  EXPECT_EQ(call("itf_get_mode", {"1"}), described);
  EXPECT_EQ(call("itf_get_mode", {"2"}), kDefaultMode);
  EXPECT_EQ(console.text(), "");
}

TEST_F(TurboProjects, RemovalTakesCountPathsFromTheListAndResetsCurrentProjectAndBlock) {
  const std::string r = write("r.res", shortHistory(1, 5, 1));
  const std::string p =
      write("p.res", "0 2.0 1 3D NO-K-E 0 1 h1 STEADY P\n" + steadyRecords(1, 9 + 2 * 6));
  const std::string q =
      write("q.res", "0 2.0 1 3D NO-K-E 0 1 h1 STEADY Q\n" + steadyRecords(1, 9 + 2 * 6));
  start({r});
  call("itf_add_res_file", {p});
  call("itf_add_res_file", {q});
  call("itf_add_res_file", {p});
  ConsoleCapture console;

  const auto removing = [&](std::vector<std::string> arguments, const std::string& printed) {
    call("itf_set_current_project", {q});
    call("itf_set_current_block", {"4"});
    const std::string before = console.text();
    call("itf_remove_res_file", arguments);
    EXPECT_EQ(console.text().substr(before.size()), printed) << arguments.size();
    EXPECT_EQ(monitor_->currentProject, 0);
    EXPECT_EQ(monitor_->currentBlock, 0);
  };
  const auto modes = [&] {
    std::string all;
    for (const char* index : {"0", "1", "2", "3"}) all += "[" + call("itf_get_mode", {index}) + "]";
    return all;
  };
  const std::string pMode = "[3D {NO-K-E}  0 1 { {h1}  }  {P} ]";
  const std::string qMode = "[3D {NO-K-E}  0 1 { {h1}  }  {Q} ]";
  const std::string none = "[" + kDefaultMode + "]";

  // Running projects are never removed.
  removing({"1", r}, "can't remove it!\n");
  removing({"1", path("unknown.res")}, "can't remove it!\n");
  removing({"0", p}, "");
  removing({"-2", p}, "");
  removing({"abc", p}, "");
  removing({}, "");
  EXPECT_EQ(modes(), none + pMode + qMode + pMode);

  removing({"2", "{" + p + "} {" + q + "}"}, "");
  EXPECT_EQ(modes(), none + pMode + none + none);
  // Missing elements of the list read as empty paths.
  removing({"3", p}, "can't remove it!\ncan't remove it!\n");
  EXPECT_EQ(modes(), none + none + none + none);
  removing({"1"}, "can't remove it!\n");
  EXPECT_EQ(call("itf_read_running_project"), "1 {" + r + "} ");
}

TEST_F(TurboProjects, CurrentProjectIsTheLastProjectOfThatPath) {
  const std::string a = write("a.res", shortHistory(1, 5, 1));
  const std::string b = write("b.res", shortHistory(3, 5, 1));
  start({a});
  ConsoleCapture console;
  call("itf_add_res_file", {b});
  call("itf_add_res_file", {a});
  EXPECT_EQ(console.text(), "Project already loaded\n");
  EXPECT_EQ(monitor_->currentProject, 0);
  EXPECT_EQ(call("itf_get_current_nb_blocks"), "1");
  call("itf_set_current_project", {b});
  EXPECT_EQ(monitor_->currentProject, 1);
  EXPECT_EQ(call("itf_get_current_nb_blocks"), "3");
  call("itf_set_current_project", {a});
  EXPECT_EQ(monitor_->currentProject, 2);
  // Unknown or missing paths leave it as it was.
  call("itf_set_current_project", {path("c.res")});
  call("itf_set_current_project", {});
  call("itf_set_current_project", {""});
  EXPECT_EQ(monitor_->currentProject, 2);
  EXPECT_EQ(call("itf_get_current_nb_blocks"), "1");
}

TEST_F(TurboProjects, CurrentBlockIsTheOneBasedArgumentLessOne) {
  start();
  const struct {
    std::vector<std::string> arguments;
    int block;
  } cases[] = {
      {{"1"}, 0},      {{"3"}, 2},    {{"0"}, -1}, {{"-5"}, -6},
      {{"12abc"}, 11}, {{"abc"}, -1}, {{}, -1},    {{"99999999999"}, 2147483646},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(call("itf_set_current_block", c.arguments), "");
    EXPECT_EQ(monitor_->currentBlock, c.block) << (c.arguments.empty() ? "none" : c.arguments[0]);
  }
}

TEST_F(TurboProjects, ModeDescriptionsWithoutAnyProject) {
  start();
  EXPECT_EQ(call("itf_get_current_mode"), kDefaultMode);
  for (const char* index : {"5", "0", "-1", "abc"})
    EXPECT_EQ(call("itf_get_mode", {index}), kDefaultMode);
  EXPECT_EQ(call("itf_get_mode"), kDefaultMode);
}

TEST_F(TurboProjects, ModeDescriptionsOfEachHeaderVersion) {
  // Version 3.0: both name lists, the residuals-per-row choice and an
  // unsteady mode (time step, iteration, then one float more: the time).
  std::string unsteady;
  for (int r = 0; r < 2; ++r) {
    unsteady += std::to_string(r + 1) + " " + steadyRecord(10 * (r + 1), r, 9 + 2 * 11 + 1);
  }
  const std::string v3 =
      write("v3.res", "0 3.0 1 TF K-E 2 sp_a sp_b 1 h_c 4 UNSTEADY TURBO2\n" + unsteady);
  // Version 1.0: one name list, no choice.
  const std::string v1 =
      write("v1.res", "0 1.0 2 B2B SPL-ALM 1 sp_x STEADY TURBO\n" + steadyRecords(2, 9 + 4 * 7));
  // Version 2.0 behind a marker above the short-header range.
  const std::string v2 =
      write("v2.res", "100001 2.0 1 3D K-O 0 2 h1 h2 STEADY APP\n" + steadyRecords(2, 9 + 2 * 9));
  // The largest block count of a short header.
  const std::string s = write("s.res", "100000 0\n" + steadyRecords(2, 9));
  start();
  for (const std::string& file : {v3, v1, v2, s}) call("itf_add_res_file", {file});

  const struct {
    const char* index;
    std::string mode;
  } cases[] = {
      {"0", "TF {K-E}  2 1 { {sp_a}  {sp_b}  {h_c}  }  {TURBO2} "},
      {"1", "B2B {SPL-ALM}  1 0 { {sp_x}  }  {TURBO} "},
      {"2", "3D {K-O}  0 2 { {h1}  {h2}  }  {APP} "},
      {"3", kDefaultMode},
      {"4", kDefaultMode},
      {"-1", kDefaultMode},
      {"2147483647", kDefaultMode},
      {"1abc", "B2B {SPL-ALM}  1 0 { {sp_x}  }  {TURBO} "},
      {"abc", "TF {K-E}  2 1 { {sp_a}  {sp_b}  {h_c}  }  {TURBO2} "},
  };
  for (const auto& c : cases) EXPECT_EQ(call("itf_get_mode", {c.index}), c.mode) << c.index;

  // The equation counts the headers give fit the records exactly.
  for (const std::string& file : {v3, v1, v2, s})
    EXPECT_EQ(call("itf_get_nbIter", {file}), "2") << file;
  EXPECT_EQ(call("itf_get_nbBlock", {v1}), "2");
  EXPECT_EQ(call("itf_get_nbBlock", {s}), "100000");

  EXPECT_EQ(call("itf_get_current_mode"), cases[0].mode);
  call("itf_set_current_project", {v2});
  EXPECT_EQ(call("itf_get_current_mode"), cases[2].mode);
  call("itf_set_current_project", {s});
  EXPECT_EQ(call("itf_get_current_mode"), kDefaultMode);

  ConsoleCapture console;
  EXPECT_EQ(call("itf_get_residuals_per_row_choice", {v3}), "4");
  EXPECT_EQ(call("itf_get_residuals_per_row_choice", {v1}), "0");
  EXPECT_EQ(call("itf_get_residuals_per_row_choice", {v2}), "0");
  EXPECT_EQ(call("itf_get_residuals_per_row_choice", {s}), "0");
  EXPECT_EQ(console.text(), "");
}

TEST_F(TurboProjects, ResidualsPerRowChoiceOfAnUnknownPathIsReported) {
  start();
  ConsoleCapture console;
  EXPECT_EQ(call("itf_get_residuals_per_row_choice", {path("none.res")}), "0");
  EXPECT_EQ(call("itf_get_residuals_per_row_choice"), "0");
  EXPECT_EQ(console.text(),
            "itf_get_residuals_per_row_choice, ERROR: residual file: " + path("none.res") +
                " not found!\n"
                "itf_get_residuals_per_row_choice, ERROR: residual file:  not found!\n");
}

TEST_F(TurboProjects, HistoryWithOnlyItsHeaderShowsNothingUntilTheFirstRecord) {
  const std::string file = write("h.res", "0 3.0 2 3D K-E 1 sp1 0 2 STEADY TURBO\n");
  start({file});
  EXPECT_EQ(call("itf_get_nbIter", {file}), "0");
  EXPECT_EQ(call("itf_get_current_mode"), kDefaultMode);
  append(file, steadyRecord(10, 0, 9 + 4 * 8));
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(call("itf_get_nbIter", {file}), "1");
  EXPECT_EQ(call("itf_get_real_nbIter", {file}), "10");
  EXPECT_EQ(call("itf_get_current_mode"), "3D {K-E}  1 0 { {sp1}  }  {TURBO} ");
  EXPECT_EQ(call("itf_get_residuals_per_row_choice", {file}), "2");
}

TEST_F(TurboProjects, UnknownModuleIsReportedAtEveryRead) {
  const std::string file =
      write("m.res", "0 3.0 1 4D K-E 0 0 0 STEADY TURBO\n" + steadyRecords(1, 9 + 2 * 7));
  start();
  ConsoleCapture console;
  call("itf_add_res_file", {file});
  EXPECT_EQ(console.text(), "unkown module 4D\nunkown module 4D\n");
  EXPECT_EQ(call("itf_get_mode", {"0"}), kDefaultMode);
  EXPECT_EQ(call("itf_get_nbIter", {file}), "0");
  EXPECT_EQ(call("itf_update_now_monitor"), "0");
}

TEST_F(TurboProjects, CountsOfAProject) {
  const std::string steady = write("s.res", shortHistory(2, 5, 3));
  std::string records;
  for (int r = 0; r < 2; ++r)
    records += std::to_string(r + 7) + " " + steadyRecord(100 * (r + 1), r, 9 + 2 * 5 + 1);
  const std::string unsteady = write("u.res", "0 2.0 1 3D NO-K-E 0 0 UNSTEADY TURBO\n" + records);
  start({steady});
  call("itf_add_res_file", {unsteady});

  const struct {
    const char* command;
    std::string file;
    const char* answer;
  } cases[] = {
      {"itf_get_nbIter", steady, "3"},
      {"itf_get_real_nbIter", steady, "30"},
      {"itf_get_nbBlock", steady, "2"},
      {"itf_get_nbIter", unsteady, "2"},
      {"itf_get_real_nbIter", unsteady, "200"},
      {"itf_get_nbBlock", unsteady, "1"},
      // Unknown paths answer nothing.
      {"itf_get_nbIter", path("x.res"), ""},
      {"itf_get_real_nbIter", path("x.res"), ""},
      {"itf_get_nbBlock", path("x.res"), ""},
      {"itf_get_nbIter", "", ""},
  };
  for (const auto& c : cases)
    EXPECT_EQ(call(c.command, {c.file}), c.answer) << c.command << " " << c.file;
  for (const char* command : {"itf_get_nbIter", "itf_get_real_nbIter", "itf_get_nbBlock"}) {
    EXPECT_EQ(call(command), "") << command;
  }
}

TEST_F(TurboProjects, BookmarksAreCellsOfAGridPerProject) {
  const std::string a = write("a.res", shortHistory(1, 5, 2));
  const std::string b = write("b.res", shortHistory(1, 5, 2));
  start({a, b});
  EXPECT_EQ(call("itf_get_current_nbIter", {"0", "0", a}), "0");
  call("itf_set_current_nbIter", {"2", "3", a, "15"});
  call("itf_set_current_nbIter", {"3", "2", a, "16"});
  call("itf_set_current_nbIter", {"2", "3", b, "17"});
  EXPECT_EQ(call("itf_get_current_nbIter", {"2", "3", a}), "15");
  EXPECT_EQ(call("itf_get_current_nbIter", {"3", "2", a}), "16");
  EXPECT_EQ(call("itf_get_current_nbIter", {"2", "3", b}), "17");

  // A cell lies at i * 10000 + j.
  call("itf_set_current_nbIter", {"1", "0", a, "21"});
  EXPECT_EQ(call("itf_get_current_nbIter", {"0", "10000", a}), "21");

  // Numbers as the argument conversions give them.
  call("itf_set_current_nbIter", {"4x", "5y", a, "12abc"});
  EXPECT_EQ(call("itf_get_current_nbIter", {"4", "5", a}), "12");
  call("itf_set_current_nbIter", {"abc", "abc", a, "-3"});
  EXPECT_EQ(call("itf_get_current_nbIter", {"0", "0", a}), "-3");

  // Indices beyond the grid are not refused.
  call("itf_set_current_nbIter", {"-1", "-1", a, "5"});
  call("itf_set_current_nbIter", {"99999999999", "2147483647", a, "6"});
  EXPECT_EQ(call("itf_get_current_nbIter", {"-1", "-1", a}), "5");
  EXPECT_EQ(call("itf_get_current_nbIter", {"2147483647", "2147483647", a}), "6");

  // Unknown projects: nothing stored, nothing answered.
  call("itf_set_current_nbIter", {"2", "3", path("c.res"), "99"});
  EXPECT_EQ(call("itf_get_current_nbIter", {"2", "3", path("c.res")}), "");
  EXPECT_EQ(call("itf_get_current_nbIter", {"2", "3"}), "");
  EXPECT_EQ(call("itf_get_current_nbIter", {"2", "3", a}), "15");
}

TEST_F(TurboProjects, UpdateAppendsExactlyTheNewRecordsAndWaitsForHalfWrittenOnes) {
  const std::string file = write("run.res", shortHistory(1, 5, 2));
  start({file});
  const auto lifts = [&] {
    std::string all;
    const int count = std::stoi(call("itf_get_nbIter", {file}));
    for (int i = 0; i < count; ++i)
      all += "[" + call("itf_get_curve_value", {"0", file, std::to_string(i)}) + "]";
    return all;
  };
  call("itf_set_current_nbIter", {"0", "1", file, "2"});
  EXPECT_EQ(lifts(), "[10 0.5][20 3.5]");

  append(file, steadyRecord(30, 2, 19) + steadyRecord(40, 3, 19));
  EXPECT_EQ(call("itf_get_nbIter", {file}), "2");
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(lifts(), "[10 0.5][20 3.5][30 6.5][40 9.5]");
  EXPECT_EQ(call("itf_get_real_nbIter", {file}), "40");

  // The solver has written part of the next record, its last line cut inside
  // the "Lift" value 12.5.
  const std::string next = steadyRecord(50, 4, 19);
  const std::size_t cut = next.find(" 12.5") + 3;
  append(file, next.substr(0, cut));
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(lifts(), "[10 0.5][20 3.5][30 6.5][40 9.5]");
  EXPECT_EQ(call("itf_get_real_nbIter", {file}), "40");
  append(file, next.substr(cut));
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(lifts(), "[10 0.5][20 3.5][30 6.5][40 9.5][50 12.5]");
  EXPECT_EQ(call("itf_get_real_nbIter", {file}), "50");

  // A record spread over two lines, the second not there yet.
  const std::string spread = steadyRecord(60, 5, 19);
  const std::size_t middle = spread.find(" 20.5");
  append(file, spread.substr(0, middle) + "\n");
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(call("itf_get_nbIter", {file}), "5");
  append(file, spread.substr(middle + 1));
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(lifts(), "[10 0.5][20 3.5][30 6.5][40 9.5][50 12.5][60 15.5]");

  // Growing keeps the script's bookmarks.
  EXPECT_EQ(call("itf_get_current_nbIter", {"0", "1", file}), "2");
}

TEST_F(TurboProjects, RewrittenHistoryStartsOverAndClearsTheBookmarks) {
  const std::string file = write("run.res", shortHistory(1, 5, 3));
  const std::string other = write("other.res", shortHistory(1, 5, 2));
  start({file, other});
  call("itf_set_current_nbIter", {"0", "0", file, "3"});
  call("itf_set_current_nbIter", {"7", "9", file, "1"});
  call("itf_set_current_nbIter", {"0", "0", other, "2"});

  // A restarted run: shorter, other numbers.
  write("run.res", "1 5\n" + steadyRecord(1, 7, 19) + steadyRecord(2, 8, 19));
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(call("itf_get_nbIter", {file}), "2");
  EXPECT_EQ(call("itf_get_real_nbIter", {file}), "2");
  EXPECT_EQ(call("itf_get_curve_value", {"0", file, "0"}), "1 21.5");
  EXPECT_EQ(call("itf_get_curve_value", {"0", file, "1"}), "2 24.5");
  EXPECT_EQ(call("itf_get_current_nbIter", {"0", "0", file}), "0");
  EXPECT_EQ(call("itf_get_current_nbIter", {"7", "9", file}), "0");
  EXPECT_EQ(call("itf_get_current_nbIter", {"0", "0", other}), "2");

  // Rewritten longer than before, with another shape: nothing of the old
  // history stays.
  write("run.res", "2 5\n" + steadyRecord(3, 1, 29) + steadyRecord(4, 2, 29) +
                       steadyRecord(5, 3, 29) + steadyRecord(6, 4, 29));
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(call("itf_get_nbIter", {file}), "4");
  EXPECT_EQ(call("itf_get_nbBlock", {file}), "2");
  EXPECT_EQ(call("itf_get_curve_value", {"0", file, "0"}), "3 3.5");
  EXPECT_EQ(call("itf_get_curve_value", {"0", file, "3"}), "6 12.5");
}

TEST_F(TurboProjects, RestartedRunThatHasOnlyWrittenItsHeaderShowsAnEmptyHistory) {
  const std::string file = write("run.res", shortHistory(1, 5, 3));
  start({file});
  call("itf_set_current_nbIter", {"0", "0", file, "3"});
  write("run.res", "1 5\n");
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(call("itf_get_nbIter", {file}), "0");
  EXPECT_EQ(call("itf_get_real_nbIter", {file}), "0");
  EXPECT_EQ(call("itf_get_curve_value", {"0", file, "0"}), "0 0");
  EXPECT_EQ(call("itf_get_current_nbIter", {"0", "0", file}), "0");
  append(file, steadyRecord(1, 4, 19));
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(call("itf_get_nbIter", {file}), "1");
  EXPECT_EQ(call("itf_get_curve_value", {"0", file, "0"}), "1 12.5");
}

TEST_F(TurboProjects, EmptyFileIsNotAHistoryAndSaysNothing) {
  const std::string file = write("empty.res", "");
  ConsoleCapture console;
  start({file});
  EXPECT_EQ(call("itf_update_now_monitor"), "0");
  EXPECT_EQ(call("itf_get_nbIter", {file}), "0");
  EXPECT_EQ(call("itf_get_current_mode"), kDefaultMode);
  EXPECT_EQ(console.text(), "");
}

TEST_F(TurboProjects, LinesEndingInCarriageReturnLineFeed) {
  const auto crlf = [](std::string text) {
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2)) {
      text.insert(at, "\r");
    }
    return text;
  };
  const std::string file =
      write("win.res", crlf("0 2.0 1 3D K-E 1 sp1 0 STEADY TURBO\n" + steadyRecords(2, 9 + 2 * 8)));
  start({file});
  EXPECT_EQ(call("itf_get_current_mode"), "3D {K-E}  1 0 { {sp1}  }  {TURBO} ");
  EXPECT_EQ(call("itf_get_nbIter", {file}), "2");
  // A record whose line has its carriage return but not yet its line feed.
  const std::string next = crlf(steadyRecord(30, 2, 9 + 2 * 8));
  append(file, next.substr(0, next.size() - 1));
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  append(file, "\n" + crlf(steadyRecord(40, 3, 9 + 2 * 8)));
  EXPECT_EQ(call("itf_update_now_monitor"), "1");
  EXPECT_EQ(call("itf_get_nbIter", {file}), "4");
  EXPECT_EQ(call("itf_get_real_nbIter", {file}), "40");
  EXPECT_EQ(call("itf_get_curve_value", {"6", file, "3"}), "40 27.5");
}

TEST_F(TurboProjects, WorkUnitChoiceIsStoredAsGiven) {
  start();
  EXPECT_EQ(call("itf_get_work_unit"), "0");
  EXPECT_EQ(monitor_->settingsChanged, 0);
  const struct {
    std::vector<std::string> arguments;
    const char* answer;
  } cases[] = {{{"1"}, "1"},   {{"0"}, "0"}, {{"1xyz"}, "1"},
               {{"abc"}, "0"}, {{"7"}, "7"}, {{}, "0"}};
  for (const auto& c : cases) {
    monitor_->settingsChanged = 0;
    EXPECT_EQ(call("itf_work_unit", c.arguments), "");
    EXPECT_EQ(call("itf_get_work_unit"), c.answer);
    EXPECT_EQ(monitor_->settingsChanged, 1);
  }
}

TEST_F(TurboProjects, PrintReadsItsTextAndShowsNothing) {
  start();
  ConsoleCapture console;
  EXPECT_EQ(call("itf_print", {"some text"}), "");
  EXPECT_EQ(call("itf_print"), "");
  EXPECT_EQ(call("itf_print", {std::string(5000, 'x')}), "");
  EXPECT_EQ(console.text(), "");
}

TEST(TurboCommandTable, ThirtyTwoDistinctItfCommands) {
  std::vector<std::string_view> names;
  for (const CommandRow& row : turbo::kTurboCommands) {
    EXPECT_TRUE(row.name.starts_with("itf_")) << row.name;
    EXPECT_NE(row.handler, nullptr) << row.name;
    names.push_back(row.name);
  }
  std::sort(names.begin(), names.end());
  EXPECT_EQ(std::unique(names.begin(), names.end()), names.end());
  EXPECT_EQ(names.size(), 32u);
}

}  // namespace

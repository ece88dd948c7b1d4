// monitor-watch as a job script runs it, on a marine computation that the
// solver stand-in writes live: its JSON lines, its CSV files, what it tells
// standard error, and each way it ends.
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <tuple>

#include "../unit/scratch_folder.h"
#include "monitor_process.h"

namespace e2e {
namespace {

using Strings = std::vector<std::string>;
using Json = nlohmann::json;
const std::string kStamp = "21/11/2026 14:05:09";

class Watch : public ScratchFolder {
 protected:
  std::string residual() const { return (folder_ / "case" / "ship.res").string(); }
  // The same stamp and seed every time, so that a later run takes up what an
  // earlier one wrote (unsteady: 5 iterations per time step).
  std::unique_ptr<ChildProcess> solver(const Strings& more) const {
    Strings arguments = {"--out", (folder_ / "case").string(), "--stamp", kStamp};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return std::make_unique<ChildProcess>(MARINE_SOLVER, Launch{arguments});
  }
  void writeCase(const Strings& more) {
    const auto written = solver(more);
    ASSERT_TRUE(written->finish(30s));
    ASSERT_EQ(written->exitStatus(), 0) << written->errors();
  }
  // Started, and its first `lines` lines waited for.
  static std::unique_ptr<ChildProcess> watch(const Strings& arguments, long lines = 0) {
    auto watcher = std::make_unique<ChildProcess>(MONITOR_WATCH_BINARY, Launch{arguments});
    const auto enough = [lines](const std::string& out) {
      return std::ranges::count(out, '\n') >= lines;
    };
    EXPECT_TRUE(watcher->waitFor(enough, 10s)) << watcher->errors();
    return watcher;
  }
  // The first computation of every line of standard output.
  static std::vector<Json> computations(const ChildProcess& watcher) {
    std::vector<Json> lines;
    for (const std::string& line : watcher.outputLines())
      lines.push_back(Json::parse(line)["computations"][0]);
    return lines;
  }
  // "<stamp> <rows>:" then "<name> <points> <verdict> <mean>" for each curve.
  static std::string summary(const Json& computation) {
    std::string text = computation["stamp"].dump() + " " + computation["rows"].dump() + ":";
    for (const Json& c : computation["curves"])
      text += " " + c["name"].get<std::string>() + " " + c["points"].dump() + " " +
              c["verdict"].get<std::string>() + " " + c["mean"].dump();
    return text;
  }
  static const Json& curve(const Json& computation, const std::string& name) {
    for (const Json& found : computation["curves"])
      if (found["name"].get<std::string>() == name) return found;
    throw std::out_of_range("no curve " + name);
  }
};

TEST_F(Watch, JsonLinesFollowARunAsItGrowsThenStall) {
  writeCase({"--iterations", "20"});
  const auto watcher = watch({"--json", "--every", "0.1", "--stall", "1.5", "--curves",
                              "ResU,Fx_hull,FxDyn_hull,X_hull,Thrust2,Heave force", residual()},
                             1);
  const auto live =
      solver({"--iterations", "20", "--append", "0", "--live", "1", "--interval", "40"});
  ASSERT_TRUE(live->finish(20s));
  const std::string over = "live run over: ";
  const std::size_t at = live->output().find(over);
  ASSERT_NE(at, std::string::npos) << live->output();
  const int total = 20 + std::stoi(live->output().substr(at + over.size()));

  ASSERT_TRUE(watcher->finish(20s));
  EXPECT_EQ(watcher->exitStatus(), 3) << "ended by --stall once the solver stopped";
  const std::vector<Json> lines = computations(*watcher);
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(lines.back()["mode"].get<std::string>() + " " + lines.back()["path"].get<std::string>(),
            "marine " + residual());
  for (const auto& [line, rows] : {std::pair{lines.front(), 20}, {lines.back(), total}}) {
    const std::string all = std::to_string(rows), steps = std::to_string(rows / 5);
    EXPECT_EQ(summary(line), '"' + kStamp + "\" " + all + ": ResU " + all + " short null Fx_hull " +
                                 all + " short null FxDyn_hull " + steps + " short null X_hull " +
                                 steps + " short null Thrust2 " + steps +
                                 " short null Heave force " + steps + " short null");
  }
  // The watch saw the run grow between those ends, never going back.
  std::vector<double> rows;
  for (const Json& line : lines) rows.push_back(line["rows"].get<double>());
  EXPECT_TRUE(std::ranges::is_sorted(rows));
  EXPECT_GE(std::set(rows.begin(), rows.end()).size(), 3u);
  // The model's messages go to standard error.
  EXPECT_NE(watcher->errors().find("Mode: UNSTEADY"), std::string::npos) << watcher->errors();
}

TEST_F(Watch, ARestartedRunStartsTheCurvesOver) {
  writeCase({"--iterations", "30"});
  const auto watcher =
      watch({"--json", "--every", "0.1", "--stall", "2.5", "--curves", "Fx_hull", residual()}, 1);
  // A new stamp, every file from its top, 10 iterations.
  ASSERT_TRUE(solver({"--iterations", "30", "--append", "0", "--restart"})->finish(20s));
  ASSERT_TRUE(watcher->finish(20s));
  EXPECT_EQ(watcher->exitStatus(), 3);
  const std::vector<Json> lines = computations(*watcher);
  ASSERT_GE(lines.size(), 2u);
  const std::string restamp = "21/11/2026 14:05:10";
  EXPECT_EQ(summary(lines.front()) + " | " + summary(lines.back()),
            '"' + kStamp + "\" 30: Fx_hull 30 short null | \"" + restamp +
                "\" 10: Fx_hull 10 short null");
  const std::string message = "monitor-watch: " + residual() + ": a new run stamped " + restamp +
                              " replaced the one followed; its curves start over\n";
  const std::size_t first = watcher->errors().find(message);
  EXPECT_NE(first, std::string::npos) << watcher->errors();
  EXPECT_EQ(watcher->errors().find(message, first + 1), std::string::npos) << "said once";
}

TEST_F(Watch, UntilConvergedEndsWithZeroWhileTheSolverRuns) {
  writeCase({"--steady", "--iterations", "60"});
  // A constant formula converges once it has enough points.
  const auto watcher =
      watch({"--json", "--every", "0.1", "--formula", "level=1", "--curves", "level,Fx_hull",
             "--until-converged", "level", "--timeout", "60", residual()},
            1);
  const auto live = solver(
      {"--steady", "--iterations", "60", "--append", "0", "--live", "30", "--interval", "20"});
  ASSERT_TRUE(watcher->finish(40s));
  EXPECT_EQ(watcher->exitStatus(), 0) << watcher->errors();
  EXPECT_TRUE(live->running()) << "the watch ended while the solver ran";
  const std::vector<Json> lines = computations(*watcher);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(summary(lines.front()),
            '"' + kStamp + "\" 60: level 60 short null Fx_hull 60 short null");
  const Json& level = curve(lines.back(), "level");
  EXPECT_GE(level["points"].get<double>(), 100);
  EXPECT_EQ(level["verdict"].get<std::string>() + " " + level["mean"].dump() + " " +
                level["last"].dump() + " " + level["halfWidth"].dump(),
            "converged 1 1 0");
}

TEST_F(Watch, DeadlinesWakeTheWatchWithTheirStatus) {
  writeCase({"--iterations", "20"});
  // Both deadlines come before the next refresh would, which they bring.
  for (const auto& [status, deadline] :
       {std::pair{2, Strings{"--until-converged", "ResU", "--timeout", "0.5"}},
        {3, Strings{"--stall", "0.5"}}}) {
    SCOPED_TRACE(status);
    Strings arguments = deadline;
    arguments.insert(arguments.end(), {"--every", "30", "--curves", "ResU", residual()});
    const auto started = std::chrono::steady_clock::now();
    const auto watcher = watch(arguments);
    ASSERT_TRUE(watcher->finish(20s));
    EXPECT_EQ(watcher->exitStatus(), status) << watcher->errors();
    const auto took = std::chrono::steady_clock::now() - started;
    EXPECT_TRUE(took >= 500ms && took < 10s);
    // The table at the first refresh and at the deadline, without the codes
    // that rewrite a terminal's screen.
    const Strings lines = watcher->outputLines();
    const std::string title = residual() + " (marine, run of " + kStamp + ", 20 rows)";
    EXPECT_EQ(std::ranges::count(lines, title), 2) << watcher->output();
    EXPECT_EQ(watcher->output().find('\x1b'), std::string::npos);
  }
}

TEST_F(Watch, WhatItSaysAtOnceAndItsStatus) {
  writeCase({"--iterations", "5"});
  const std::string missing = (folder_ / "nowhere" / "ship.res").string();
  const std::string notes = pathOf("notes.res");
  write("notes.res", "these are notes\n");
  const std::string stage = std::string(MONITOR_EXAMPLES_DIR) + "/turbo/stage.res";
  const std::string none = "no readable computation: ", unreadable = missing + " cannot be read";
  const std::string json =
      R"("computations":[{"path":")" + stage +
      R"(","mode":"turbomachinery","stamp":null,"rows":300,"curves":[{"name":"rms_sp2_block2","points":300,)";
  // Status 1: one line on standard error alone; status 0: nothing on it.
  const std::tuple<Strings, int, std::string> cases[] = {
      {{"--every", "0", residual()}, 1, "--every takes a number of seconds above 0, not \"0\""},
      {{missing}, 1, none + unreadable},
      {{notes}, 1, none + notes + " is neither a marine nor a turbomachinery residual file"},
      {{"--marine", missing, missing}, 1, none + unreadable + "; " + unreadable},
      {{"--help"}, 0, "usage: monitor-watch"},
      {{"--once", "--json", "--curves", "rms_sp2_block2", stage}, 0, json}};
  for (const auto& [arguments, status, text] : cases) {
    const auto watcher = watch(arguments);
    ASSERT_TRUE(watcher->finish(20s));
    EXPECT_EQ(watcher->exitStatus(), status) << text;
    const bool failed = status == 1;
    EXPECT_EQ(watcher->errors(), failed ? "monitor-watch: " + text + "\n" : "");
    const std::string& out = watcher->output();
    EXPECT_TRUE(failed ? out.empty() : out.find(text) != std::string::npos) << out;
  }
}

TEST_F(Watch, StopSignalsEndItCleanlyWithTheLastStateWritten) {
  writeCase({"--iterations", "20"});
  const auto live =
      solver({"--iterations", "20", "--append", "0", "--live", "30", "--interval", "30"});
  for (const auto& [signal, status] : {std::pair{SIGTERM, 143}, {SIGINT, 130}}) {
    const fs::path csv = folder_ / ("csv-" + std::to_string(signal));
    const auto watcher = watch(
        {"--json", "--every", "0.1", "--csv", csv.string(), "--curves", "ResU,Fx_hull", residual()},
        3);
    watcher->sendSignal(signal);
    ASSERT_TRUE(watcher->finish(10s));
    EXPECT_EQ(watcher->exitStatus(), status) << "ended by its own exit, not by the signal";
    ASSERT_TRUE(watcher->output().ends_with('\n')) << "the last line is whole";
    const Json last = computations(*watcher).back();
    // The CSV files hold the state of the last line: a title, then a line per point.
    for (const char* name : {"ResU", "Fx_hull"}) {
      std::ifstream in(csv / "ship" / (std::string(name) + ".csv"));
      const auto lines = std::count(std::istreambuf_iterator<char>(in), {}, '\n');
      EXPECT_EQ(lines, curve(last, name)["points"].get<long>() + 1) << name;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(csv / "ship"), {}), 2);
  }
}

}  // namespace
}  // namespace e2e

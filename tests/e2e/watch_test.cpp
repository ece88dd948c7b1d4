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

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;
using Clock = std::chrono::steady_clock;

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
  static std::unique_ptr<ChildProcess> watch(const Strings& arguments) {
    return std::make_unique<ChildProcess>(MONITOR_WATCH_BINARY, Launch{arguments});
  }
  static bool waitForLines(ChildProcess& watcher, long count) {
    return watcher.waitFor(
        [count](const std::string& out) { return std::ranges::count(out, '\n') >= count; }, 10s);
  }

  // The first computation of every line of standard output.
  static std::vector<nlohmann::json> computations(const ChildProcess& watcher) {
    std::vector<nlohmann::json> lines;
    for (const std::string& line : watcher.outputLines())
      lines.push_back(nlohmann::json::parse(line)["computations"][0]);
    return lines;
  }
  static const nlohmann::json& curve(const nlohmann::json& computation, const std::string& name) {
    for (const nlohmann::json& found : computation["curves"])
      if (found["name"].get<std::string>() == name) return found;
    throw std::out_of_range("no curve " + name);
  }
};

TEST_F(Watch, JsonLinesFollowARunAsItGrowsThenStall) {
  writeCase({"--iterations", "20"});
  const auto watcher = watch({"--json", "--every", "0.1", "--stall", "1.5", "--curves",
                              "ResU,Fx_hull,FxDyn_hull,X_hull,Thrust2,Heave force", residual()});
  ASSERT_TRUE(waitForLines(*watcher, 1)) << watcher->errors();
  const auto live =
      solver({"--iterations", "20", "--append", "0", "--live", "1", "--interval", "40"});
  ASSERT_TRUE(live->finish(20s));
  const std::string over = "live run over: ";
  const std::size_t at = live->output().find(over);
  ASSERT_NE(at, std::string::npos) << live->output();
  const int total = 20 + std::stoi(live->output().substr(at + over.size()));

  ASSERT_TRUE(watcher->finish(20s));
  EXPECT_EQ(watcher->exitStatus(), 3) << "ended by --stall once the solver stopped";
  const std::vector<nlohmann::json> lines = computations(*watcher);
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(lines.back()["stamp"].get<std::string>(), kStamp);
  EXPECT_EQ(lines.back()["mode"].get<std::string>(), "marine");
  EXPECT_EQ(lines.back()["path"].get<std::string>(), residual());
  for (const auto& [line, iterations] : {std::pair{lines.front(), 20}, {lines.back(), total}}) {
    SCOPED_TRACE(iterations);
    EXPECT_EQ(line["rows"].get<double>(), iterations);
    for (const char* name : {"ResU", "Fx_hull"})
      EXPECT_EQ(curve(line, name)["points"].get<double>(), iterations) << name;
    for (const char* name : {"FxDyn_hull", "X_hull", "Thrust2", "Heave force"})
      EXPECT_EQ(curve(line, name)["points"].get<double>(), iterations / 5) << name;
    EXPECT_EQ(curve(line, "ResU")["verdict"].get<std::string>(), "short");
    EXPECT_TRUE(curve(line, "ResU")["mean"].is_null());
  }
  // The watch saw the run grow between those ends, never going back.
  std::set<double> rows;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    EXPECT_GE(lines[i]["rows"].get<double>(), lines[i - 1]["rows"].get<double>());
    rows.insert(lines[i]["rows"].get<double>());
  }
  EXPECT_GE(rows.size(), 3u);
  // The model's messages go to standard error.
  EXPECT_NE(watcher->errors().find("Mode: UNSTEADY"), std::string::npos) << watcher->errors();
}

TEST_F(Watch, ARestartedRunStartsTheCurvesOver) {
  writeCase({"--iterations", "30"});
  const auto watcher =
      watch({"--json", "--every", "0.1", "--stall", "2.5", "--curves", "Fx_hull", residual()});
  ASSERT_TRUE(waitForLines(*watcher, 1)) << watcher->errors();
  // A second later the stand-in starts the case again: a new stamp, every
  // file from its top, 10 iterations.
  ASSERT_TRUE(solver({"--iterations", "30", "--append", "0", "--restart"})->finish(20s));
  ASSERT_TRUE(watcher->finish(20s));
  EXPECT_EQ(watcher->exitStatus(), 3);
  const std::vector<nlohmann::json> lines = computations(*watcher);
  ASSERT_GE(lines.size(), 2u);
  const std::string restamp = "21/11/2026 14:05:10";
  for (const auto& [line, stamp, rows] :
       {std::tuple{lines.front(), kStamp, 30}, {lines.back(), restamp, 10}}) {
    EXPECT_EQ(line["stamp"].get<std::string>(), stamp);
    EXPECT_EQ(line["rows"].get<double>(), rows);
    EXPECT_EQ(curve(line, "Fx_hull")["points"].get<double>(), rows);
  }
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
             "--until-converged", "level", "--timeout", "60", residual()});
  ASSERT_TRUE(waitForLines(*watcher, 1)) << watcher->errors();
  const auto live = solver(
      {"--steady", "--iterations", "60", "--append", "0", "--live", "30", "--interval", "20"});
  ASSERT_TRUE(watcher->finish(40s));
  EXPECT_EQ(watcher->exitStatus(), 0) << watcher->errors();
  EXPECT_TRUE(live->running()) << "the watch ended while the solver ran";
  const std::vector<nlohmann::json> lines = computations(*watcher);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(curve(lines.front(), "level")["verdict"].get<std::string>(), "short");
  EXPECT_EQ(curve(lines.front(), "level")["points"].get<double>(), 60);
  const nlohmann::json& level = curve(lines.back(), "level");
  EXPECT_EQ(level["verdict"].get<std::string>(), "converged");
  EXPECT_GE(level["points"].get<double>(), 100);
  for (const char* field : {"mean", "last"}) EXPECT_EQ(level[field].get<double>(), 1.0) << field;
  EXPECT_EQ(level["halfWidth"].get<double>(), 0.0);
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
    const Clock::time_point started = Clock::now();
    const auto watcher = watch(arguments);
    ASSERT_TRUE(watcher->finish(20s));
    EXPECT_EQ(watcher->exitStatus(), status) << watcher->errors();
    EXPECT_GE(Clock::now() - started, 500ms);
    EXPECT_LT(Clock::now() - started, 10s);
    // The table at the first refresh and at the deadline, without the codes
    // that rewrite a terminal's screen.
    const std::vector<std::string> lines = watcher->outputLines();
    const std::string title = residual() + " (marine, run of " + kStamp + ", 20 rows)";
    EXPECT_EQ(std::count(lines.begin(), lines.end(), title), 2) << watcher->output();
    EXPECT_EQ(watcher->output().find('\x1b'), std::string::npos);
  }
}

TEST_F(Watch, WhatItSaysAtOnceAndItsStatus) {
  writeCase({"--iterations", "5"});
  const std::string missing = (folder_ / "nowhere" / "ship.res").string();
  const std::string notes = pathOf("notes.res");
  write("notes.res", "these are notes\n");
  const std::string stage = std::string(MONITOR_EXAMPLES_DIR) + "/turbo/stage.res";
  // Status 1: one line on standard error alone; status 0: nothing on it.
  const std::tuple<Strings, int, std::string> cases[] = {
      {{"--every", "0", residual()}, 1, "--every takes a number of seconds above 0, not \"0\""},
      {{missing}, 1, "no readable computation: " + missing + " cannot be read"},
      {{notes},
       1,
       "no readable computation: " + notes +
           " is neither a marine nor a turbomachinery residual file"},
      {{"--marine", missing, missing},
       1,
       "no readable computation: " + missing + " cannot be read; " + missing + " cannot be read"},
      {{"--help"}, 0, "usage: monitor-watch"},
      {{"--once", "--json", "--curves", "rms_sp2_block2", stage},
       0,
       R"("computations":[{"path":")" + stage +
           R"(","mode":"turbomachinery","stamp":null,"rows":300,"curves":[{"name":"rms_sp2_block2","points":300,)"}};
  for (const auto& [arguments, status, text] : cases) {
    const auto watcher = watch(arguments);
    ASSERT_TRUE(watcher->finish(20s));
    EXPECT_EQ(watcher->exitStatus(), status) << text;
    if (status == 1) {
      EXPECT_EQ(watcher->output(), "");
      EXPECT_EQ(watcher->errors(), "monitor-watch: " + text + "\n");
    } else {
      EXPECT_EQ(watcher->errors(), "");
      EXPECT_NE(watcher->output().find(text), std::string::npos) << watcher->output();
    }
  }
}

TEST_F(Watch, StopSignalsEndItCleanlyWithTheLastStateWritten) {
  writeCase({"--iterations", "20"});
  const auto live =
      solver({"--iterations", "20", "--append", "0", "--live", "30", "--interval", "30"});
  for (const auto& [signal, status] : {std::pair{SIGTERM, 143}, {SIGINT, 130}}) {
    const fs::path csv = folder_ / ("csv-" + std::to_string(signal));
    const auto watcher = watch({"--json", "--every", "0.1", "--csv", csv.string(), "--curves",
                                "ResU,Fx_hull", residual()});
    ASSERT_TRUE(waitForLines(*watcher, 3)) << watcher->errors();
    watcher->sendSignal(signal);
    ASSERT_TRUE(watcher->finish(10s));
    EXPECT_EQ(watcher->exitStatus(), status) << "ended by its own exit, not by the signal";
    ASSERT_TRUE(watcher->output().ends_with('\n')) << "the last line is whole";
    const nlohmann::json last = computations(*watcher).back();
    // The CSV files hold the state of the last line: a title, then a line per point.
    for (const char* name : {"ResU", "Fx_hull"}) {
      std::ifstream in(csv / "ship" / (std::string(name) + ".csv"));
      std::size_t count = 0;
      for (std::string line; std::getline(in, line);) ++count;
      EXPECT_EQ(count, static_cast<std::size_t>(curve(last, name)["points"].get<double>()) + 1)
          << name;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(csv / "ship"), {}), 2);
  }
}

}  // namespace
}  // namespace e2e

// monitor-watch as a job script runs it: on a marine computation that the
// solver stand-in writes live, and on the turbomachinery example. Its JSON
// lines, its CSV files, what it tells standard error, and each way it ends.
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "../unit/json_reader.h"
#include "child_process.h"

namespace e2e {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Strings = std::vector<std::string>;

const std::string kStamp = "21/11/2026 14:05:09";
const std::string kRestartStamp = "21/11/2026 14:05:10";

class Watch : public testing::Test {
 protected:
  Watch() {
    std::string pattern = (fs::temp_directory_path() / "monitor-watch-e2e-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp");
    folder_ = pattern;
  }
  ~Watch() override { fs::remove_all(folder_); }

  std::string residual() const { return (folder_ / "case" / "ship.res").string(); }

  // The stand-in's command line on the case: the same stamp and seed every
  // time, so that a later run can take up what an earlier one wrote.
  Strings solverArguments(const Strings& more) const {
    Strings arguments = {"--out", (folder_ / "case").string(), "--stamp", kStamp};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  void writeCase(const Strings& more) {
    ChildProcess solver(MARINE_SOLVER, solverArguments(more));
    ASSERT_TRUE(solver.finish(30s));
    ASSERT_EQ(solver.exitStatus(), 0) << solver.errors();
  }

  static ChildProcess watch(const Strings& arguments) {
    return ChildProcess(MONITOR_WATCH_BINARY, arguments);
  }

  // Every line of standard output, each read as one JSON value.
  static std::vector<testjson::Value> jsonLines(const ChildProcess& process) {
    std::vector<testjson::Value> lines;
    for (const std::string& line : process.outputLines()) {
      try {
        lines.push_back(testjson::parse(line));
      } catch (const std::exception& error) {
        ADD_FAILURE() << error.what() << "\nin the line: " << line;
      }
    }
    return lines;
  }

  static const testjson::Value& computationIn(const testjson::Value& line) {
    return line["computations"][0];
  }
  static const testjson::Value& curve(const testjson::Value& line, const std::string& name) {
    for (const testjson::Value& found : computationIn(line)["curves"].items) {
      if (found["name"].text == name) return found;
    }
    throw std::out_of_range("no curve " + name);
  }
  static double points(const testjson::Value& line, const std::string& name) {
    return curve(line, name)["points"].number;
  }

  static std::size_t occurrences(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
  }

  fs::path folder_;
};

TEST_F(Watch, JsonLinesFollowARunAsItGrows) {
  writeCase({"--iterations", "20"});  // unsteady: 5 iterations per time step
  ChildProcess watcher = watch({"--json", "--every", "0.1", "--stall", "1.5", "--curves",
                                "ResU,Fx_hull,FxDyn_hull,X_hull,Thrust2,Heave force", residual()});
  ASSERT_TRUE(watcher.waitForLines(1, 10s)) << watcher.errors();
  ChildProcess solver(MARINE_SOLVER, solverArguments({"--iterations", "20", "--append", "0",
                                                      "--live", "1", "--interval", "40"}));
  ASSERT_TRUE(solver.finish(20s));
  const std::string over = "live run over: ";
  const std::size_t at = solver.output().find(over);
  ASSERT_NE(at, std::string::npos) << solver.output();
  const int total = 20 + std::stoi(solver.output().substr(at + over.size()));

  ASSERT_TRUE(watcher.finish(20s));
  EXPECT_EQ(watcher.exitStatus(), 3) << "ended by --stall once the solver stopped";
  const std::vector<testjson::Value> lines = jsonLines(watcher);
  ASSERT_GE(lines.size(), 3u);

  const struct {
    const testjson::Value& line;
    int iterations;
  } ends[] = {{lines.front(), 20}, {lines.back(), total}};
  for (const auto& end : ends) {
    const int steps = end.iterations / 5;
    EXPECT_EQ(computationIn(end.line)["rows"].number, end.iterations);
    EXPECT_EQ(computationIn(end.line)["stamp"].text, kStamp);
    EXPECT_EQ(computationIn(end.line)["mode"].text, "marine");
    EXPECT_EQ(computationIn(end.line)["path"].text, residual());
    const struct {
      const char* curve;
      int points;
    } counts[] = {{"ResU", end.iterations}, {"Fx_hull", end.iterations}, {"FxDyn_hull", steps},
                  {"X_hull", steps},        {"Thrust2", steps},          {"Heave force", steps}};
    for (const auto& count : counts) {
      EXPECT_EQ(points(end.line, count.curve), count.points)
          << count.curve << " after " << end.iterations << " iterations";
    }
    EXPECT_EQ(curve(end.line, "ResU")["verdict"].text, "short");
    EXPECT_TRUE(curve(end.line, "ResU")["mean"].isNull());
  }
  // The watch saw the run grow between those ends, never going back.
  std::set<double> rows;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    EXPECT_GE(computationIn(lines[i])["rows"].number, computationIn(lines[i - 1])["rows"].number);
    rows.insert(computationIn(lines[i])["rows"].number);
  }
  EXPECT_GE(rows.size(), 3u);
  // The model's messages went to standard error.
  EXPECT_NE(watcher.errors().find("Mode: UNSTEADY"), std::string::npos) << watcher.errors();
}

TEST_F(Watch, ARestartedRunStartsTheCurvesOver) {
  writeCase({"--iterations", "30"});
  ChildProcess watcher =
      watch({"--json", "--every", "0.1", "--stall", "2.5", "--curves", "Fx_hull", residual()});
  ASSERT_TRUE(watcher.waitForLines(1, 10s)) << watcher.errors();
  // A second later the solver starts the case again: a new stamp, every
  // file from its top, 10 iterations.
  ChildProcess solver(MARINE_SOLVER,
                      solverArguments({"--iterations", "30", "--append", "0", "--restart"}));
  ASSERT_TRUE(solver.finish(20s));
  ASSERT_TRUE(watcher.finish(20s));
  EXPECT_EQ(watcher.exitStatus(), 3);

  const std::vector<testjson::Value> lines = jsonLines(watcher);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(computationIn(lines.front())["stamp"].text, kStamp);
  EXPECT_EQ(computationIn(lines.front())["rows"].number, 30);
  EXPECT_EQ(points(lines.front(), "Fx_hull"), 30);
  EXPECT_EQ(computationIn(lines.back())["stamp"].text, kRestartStamp);
  EXPECT_EQ(computationIn(lines.back())["rows"].number, 10);
  EXPECT_EQ(points(lines.back(), "Fx_hull"), 10);
  EXPECT_EQ(occurrences(watcher.errors(), "monitor-watch: " + residual() + ": a new run stamped " +
                                              kRestartStamp +
                                              " replaced the one followed; its curves start over"),
            1u)
      << watcher.errors();
}

TEST_F(Watch, UntilConvergedEndsAsSoonAsTheCurvesHaveConverged) {
  writeCase({"--steady", "--iterations", "60"});
  // A constant formula converges once it has enough points.
  ChildProcess watcher =
      watch({"--json", "--every", "0.1", "--formula", "level=1", "--curves", "level,Fx_hull",
             "--until-converged", "level", "--timeout", "60", residual()});
  ASSERT_TRUE(watcher.waitForLines(1, 10s)) << watcher.errors();
  ChildProcess solver(MARINE_SOLVER, solverArguments({"--steady", "--iterations", "60", "--append",
                                                      "0", "--live", "30", "--interval", "20"}));
  const Clock::time_point started = Clock::now();
  ASSERT_TRUE(watcher.finish(40s));
  EXPECT_EQ(watcher.exitStatus(), 0) << watcher.errors();
  EXPECT_LT(Clock::now() - started, 20s);
  EXPECT_TRUE(solver.running()) << "the watch ended while the solver ran";

  const std::vector<testjson::Value> lines = jsonLines(watcher);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(curve(lines.front(), "level")["verdict"].text, "short");
  EXPECT_EQ(points(lines.front(), "level"), 60);
  const testjson::Value& level = curve(lines.back(), "level");
  EXPECT_EQ(level["verdict"].text, "converged");
  EXPECT_GE(level["points"].number, 100);
  EXPECT_EQ(level["mean"].number, 1.0);
  EXPECT_EQ(level["halfWidth"].number, 0.0);
  EXPECT_EQ(level["last"].number, 1.0);
}

TEST_F(Watch, TimeoutEndsWithTwoWhenTheCurvesHaveNotConverged) {
  writeCase({"--iterations", "20"});
  const Clock::time_point started = Clock::now();
  // The deadline comes before the next refresh would: it wakes the watch.
  ChildProcess watcher = watch({"--json", "--every", "30", "--until-converged", "ResU", "--timeout",
                                "0.5", "--curves", "ResU", residual()});
  ASSERT_TRUE(watcher.finish(20s));
  EXPECT_EQ(watcher.exitStatus(), 2) << watcher.errors();
  EXPECT_GE(Clock::now() - started, 500ms);
  EXPECT_LT(Clock::now() - started, 10s);
  const std::vector<testjson::Value> lines = jsonLines(watcher);
  ASSERT_EQ(lines.size(), 2u) << "the first refresh and the one at the deadline";
  EXPECT_EQ(curve(lines.back(), "ResU")["verdict"].text, "short");
}

TEST_F(Watch, StallEndsWithThreeWhenNoFileGrows) {
  writeCase({"--iterations", "20"});
  const Clock::time_point started = Clock::now();
  ChildProcess watcher =
      watch({"--every", "30", "--stall", "0.5", "--curves", "ResU,Fx_hull", residual()});
  ASSERT_TRUE(watcher.finish(20s));
  EXPECT_EQ(watcher.exitStatus(), 3) << watcher.errors();
  EXPECT_GE(Clock::now() - started, 500ms);
  EXPECT_LT(Clock::now() - started, 10s);
  // The table, twice (the first refresh and the one at the deadline), and
  // without the codes that rewrite a terminal's screen.
  EXPECT_EQ(occurrences(watcher.output(), residual() + " (marine, run of " + kStamp + ", 20 rows)"),
            2u)
      << watcher.output();
  EXPECT_EQ(occurrences(watcher.output(), "\n  ResU "), 2u) << watcher.output();
  EXPECT_EQ(watcher.output().find('\x1b'), std::string::npos);
}

TEST_F(Watch, BadUseEndsWithOneAndOneLine) {
  writeCase({"--iterations", "5"});
  const std::string missing = (folder_ / "nowhere" / "ship.res").string();
  const std::string text = (folder_ / "notes.res").string();
  std::ofstream(text) << "these are notes\n";
  const struct {
    Strings arguments;
    std::string line;
  } cases[] = {
      {{}, "no residual file given (see --help)"},
      {{"--every", "0", residual()}, "--every takes a number of seconds above 0, not \"0\""},
      {{"--until-converged", "ResU", "--timeout", "soon", residual()},
       "--timeout takes a number of seconds above 0, not \"soon\""},
      {{"--formula", "x=sqr(2)", residual()}, "--formula x: Unknown function \"sqr\""},
      {{"--verbose", residual()}, "unknown option --verbose (see --help)"},
      {{missing}, "no readable computation: " + missing + " cannot be read"},
      {{text},
       "no readable computation: " + text +
           " is neither a marine nor a turbomachinery residual file"},
      {{"--marine", missing, missing},
       "no readable computation: " + missing + " cannot be read; " + missing + " cannot be read"},
  };
  for (const auto& c : cases) {
    ChildProcess watcher = watch(c.arguments);
    ASSERT_TRUE(watcher.finish(20s));
    EXPECT_TRUE(watcher.exited());
    EXPECT_EQ(watcher.exitStatus(), 1) << c.line;
    EXPECT_EQ(watcher.output(), "");
    EXPECT_EQ(watcher.errors(), "monitor-watch: " + c.line + "\n");
  }
}

TEST_F(Watch, StopSignalsEndItCleanlyWithTheLastStateWritten) {
  writeCase({"--iterations", "20"});
  ChildProcess solver(MARINE_SOLVER, solverArguments({"--iterations", "20", "--append", "0",
                                                      "--live", "30", "--interval", "30"}));
  const struct {
    int signal;
    int status;
  } cases[] = {{SIGTERM, 143}, {SIGINT, 130}};
  for (const auto& c : cases) {
    const fs::path csv = folder_ / ("csv-" + std::to_string(c.signal));
    ChildProcess watcher = watch({"--json", "--every", "0.1", "--csv", csv.string(), "--curves",
                                  "ResU,Fx_hull", residual()});
    ASSERT_TRUE(watcher.waitForLines(3, 10s)) << watcher.errors();
    watcher.sendSignal(c.signal);
    ASSERT_TRUE(watcher.finish(10s));
    ASSERT_TRUE(watcher.exited()) << "ended by its own exit, not by the signal";
    EXPECT_EQ(watcher.exitStatus(), c.status);

    ASSERT_FALSE(watcher.output().empty());
    EXPECT_EQ(watcher.output().back(), '\n') << "the last line is whole";
    const std::vector<testjson::Value> lines = jsonLines(watcher);
    ASSERT_FALSE(lines.empty());
    // The CSV files hold the state of the last line: a title line, then one
    // line per point.
    for (const char* name : {"ResU", "Fx_hull"}) {
      std::ifstream in(csv / "ship" / (std::string(name) + ".csv"));
      std::size_t count = 0;
      for (std::string line; std::getline(in, line);) ++count;
      EXPECT_EQ(count, static_cast<std::size_t>(points(lines.back(), name)) + 1) << name;
    }
    for (const auto& entry : fs::directory_iterator(csv / "ship")) {
      EXPECT_EQ(entry.path().extension(), ".csv") << entry.path();
    }
  }
}

TEST_F(Watch, TurbomachineryComputationOnce) {
  const std::string stage = std::string(MONITOR_EXAMPLES_DIR) + "/turbo/stage.res";
  ChildProcess watcher = watch({"--once", "--json", stage});
  ASSERT_TRUE(watcher.finish(20s));
  EXPECT_EQ(watcher.exitStatus(), 0) << watcher.errors();
  const std::vector<testjson::Value> lines = jsonLines(watcher);
  ASSERT_EQ(lines.size(), 1u);
  const testjson::Value& computation = computationIn(lines[0]);
  EXPECT_EQ(computation["mode"].text, "turbomachinery");
  EXPECT_TRUE(computation["stamp"].isNull());
  EXPECT_EQ(computation["rows"].number, 300);
  // 9 global values, then 2 blocks x (rms, max) x 9 equations.
  EXPECT_EQ(computation["curves"].items.size(), 9u + 2 * 2 * 9);
  for (const char* name : {"Axial thrust", "rms_d_block1", "max_eps_block1", "rms_sp2_block2"}) {
    EXPECT_EQ(points(lines[0], name), 300) << name;
  }
}

TEST_F(Watch, HelpDocumentsTheOptions) {
  ChildProcess watcher = watch({"--help"});
  ASSERT_TRUE(watcher.finish(20s));
  EXPECT_EQ(watcher.exitStatus(), 0);
  EXPECT_EQ(watcher.errors(), "");
  EXPECT_NE(watcher.output().find("usage: monitor-watch"), std::string::npos);
  EXPECT_NE(watcher.output().find("--until-converged"), std::string::npos);
}

}  // namespace
}  // namespace e2e

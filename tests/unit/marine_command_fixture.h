// Runs the marine commands the way the scripts call them, on computations
// written by the solver simulator, and reads what they answer and print.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "command_call.h"
#include "console_capture.h"
#include "fileformat/work_unit.h"
#include "marine/commands/marine_command_set.h"
#include "marine/monitor_marine.h"
#include "script/tcl_arg_stream.h"
#include "script/tcl_result_stream.h"
#include "solver_simulator/marine_case_writer.h"
#include "turbo/monitor.h"

namespace marine_commands_test {

namespace fs = std::filesystem;
using solver_simulator::CaseSetup;
using solver_simulator::MarineCaseWriter;
using solver_simulator::RunMode;

// What a command answered and what it printed on the console.
struct Answer {
  std::string result;
  std::string console = {};
  bool operator==(const Answer&) const = default;
};

inline void PrintTo(const Answer& answer, std::ostream* out) {
  *out << "result \"" << answer.result << "\", console \"" << answer.console << "\"";
}

// The result text of a command that writes `items` in turn.
template <typename... Items>
std::string resultOf(const Items&... items) {
  std::string text;
  TclResultStream out(text);
  (out << ... << items);
  return text;
}

// Calls the marine command registered as `name` with `arguments`.
inline Answer run(std::string_view name, const std::vector<std::string>& arguments = {}) {
  ConsoleCapture console;
  std::string text = callCommand(marine::kMarineCommands, name, arguments);
  return {text, console.text()};
}

// The line a command prints for a path that names no loaded project.
inline std::string missingProject(std::string_view command, const std::string& path) {
  return "Error in " + std::string(command) + "! Cannot find project '" + path + "'!\n";
}

class MarineCommandTest : public testing::Test {
 protected:
  MarineCommandTest() {
    static int serial = 0;
    folder_ = fs::temp_directory_path() /
              ("marine_commands_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
    monitor_.emplace(std::vector<std::string>{"monitor"}, "/nonexistent/preferences.dat");
  }
  ~MarineCommandTest() override {
    monitor_.reset();
    fileformat::workUnit = 0;
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  // The simulator's default case in the folder `name`: the moving body "hull"
  // with the sub-bodies "keel" and "bulb", the fixed body "rudder", two
  // actuator disks and three user quantities.
  CaseSetup caseSetup(const std::string& name, RunMode mode = RunMode::unsteady) const {
    return solver_simulator::defaultCaseSetup(folder_ / name, mode);
  }

  // The case of `setup` with its first `iterations` iterations written.
  static MarineCaseWriter written(const CaseSetup& setup, int iterations) {
    MarineCaseWriter writer(setup);
    writer.writeHeaders();
    for (int i = 0; i < iterations; ++i) writer.appendIteration();
    return writer;
  }

  // Loads the computation at `path` and reads what it holds, as the first
  // refresh after loading does; answers the path.
  std::string load(const std::string& path) {
    ConsoleCapture quiet;
    monitor_->addProject(path).refresh();
    return path;
  }
  std::string load(const CaseSetup& setup, int iterations) {
    return load(written(setup, iterations).setup().residualPath().string());
  }

  marine::ProjectMonitorMarine& project(const std::string& path) {
    return *monitor_->findProject(path);
  }

  static void append(const fs::path& file, const std::string& text) {
    std::ofstream(file, std::ios::binary | std::ios::app) << text;
  }

  fs::path folder_;
  std::optional<marine::MonitorMarine> monitor_;
};

}  // namespace marine_commands_test

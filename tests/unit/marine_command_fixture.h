// Runs the marine commands the way the scripts call them, on two computations
// written by the solver simulator and completed by rows with round values.
#pragma once

#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "command_call.h"
#include "console_capture.h"
#include "fileformat/work_unit.h"
#include "marine/commands/marine_command_set.h"
#include "marine/monitor_marine.h"
#include "scratch_folder.h"
#include "solver_simulator/marine_case_writer.h"

namespace marine_commands_test {

using solver_simulator::RunMode;

// What a command answered and what it printed on the console.
using Answer = std::pair<std::string, std::string>;

// A call as a script writes it, "command word ...", where "{}" is an empty
// word and "|" a blank inside a word; its result and its console lines, a
// leading "!" or ":" standing for "Error in <command>! " or ": ".
struct Row {
  std::string call;
  std::string result;
  std::string console = {};
};

// $U: an unsteady run of two time steps with a third completed here, the
// bodies hull (sub-bodies keel and bulb, moving), rudder and buoy (no loads).
// $S: a steady run of three iterations and a fourth, iteration 7, written
// here, without the file eff_FyV.dat.
class MarineCommands : public ScratchFolder {
 protected:
  MarineCommands() {
    write("preferences.dat",
          "PRODUCT Other\nRefresh 9\nEND_PRODUCT\nPRODUCT Monitor\nRefresh 5\nEND_PRODUCT\n");
    monitor_.emplace(std::vector<std::string>{"monitor"}, pathOf("preferences.dat"));
    u_ = writeCase("u", RunMode::unsteady, 10,
                   {{"eff_Fx.dat", "0.75 11 1520.5 210.25 95 12.125\n-0.15 11 7.25 1 2 3\n"},
                    {"eff_Fz.dat", "-0.15 11 1e39 -1e39 1e38 2\n"},
                    {"eff_MyV.dat", "-0.15 11 7.5 0.5 0.25 -1\n"},
                    {"eff_FxP.dat", "-0.15 11 100.5\n"},
                    {"Mvt_hull.dat", "0.15 1.5 2.5 -0.5 0.25 0.125 1e39\n"},
                    {"eff_AD.dat", "0.15 100.5 20.25 -3.5 7\n"},
                    {"user_data.csv", "0.15\t98000.5\t-4300.25\t0.28\n"},
                    {"ship_body_param.dat", "#QV_BEGIN\nBODY\nNAME buoy\n#QV_END\n"}});
    s_ = writeCase("s", RunMode::steady, 3,
                   {{"ship.res", "7 1.5 0.5 0.25 0.125 0.0625 0.03125 1e39\n"},
                    {"eff_Fx.dat", "0.2 7 1520.5 210.25 95 12.125\n"},
                    {"Mvt_hull.dat", "0.2 1.5 2.5 -0.5 0.25 0.125 1e39\n"},
                    {"eff_FyV.dat", ""}});
  }
  ~MarineCommands() override {
    monitor_.reset();
    fileformat::workUnit = 0;
  }

  // Loads the default case of the simulator, written in `name` after
  // `iterations` iterations and then `rows` (file, text appended or, when
  // empty, the file removed), as the first refresh reads it; answers its path.
  std::string writeCase(const std::string& name, RunMode mode, int iterations,
                        const std::vector<std::pair<std::string, std::string>>& rows) {
    solver_simulator::MarineCaseWriter writer(
        solver_simulator::defaultCaseSetup(folder_ / name, mode));
    writer.writeHeaders();
    for (int i = 0; i < iterations; ++i) writer.appendIteration();
    for (const auto& [file, text] : rows) {
      if (text.empty())
        std::filesystem::remove(folder_ / name / file);
      else
        append(name + "/" + file, text);
    }
    ConsoleCapture quiet;
    monitor_->addProject(pathOf(name + "/ship.res")).refresh();
    return pathOf(name + "/ship.res");
  }

  static Answer run(std::string_view name, const std::vector<std::string>& arguments = {}) {
    ConsoleCapture console;
    std::string text = callCommand(marine::kMarineCommands, name, arguments);
    return {text, console.text()};
  }

  std::string expand(std::string text) const {
    for (const auto& [mark, path] : {std::pair{"$U", u_}, std::pair{"$S", s_}}) {
      for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at))
        text.replace(at, 2, path);
    }
    return text;
  }

  void expectRows(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
      std::istringstream words(expand(row.call));
      std::string command;
      std::vector<std::string> arguments;
      words >> command;
      for (std::string word; words >> word;) {
        if (word == "{}") word.clear();
        for (char& c : word) c = c == '|' ? ' ' : c;
        arguments.push_back(word);
      }
      std::string console = row.console;
      if (console.starts_with('!') || console.starts_with(':'))
        console = "Error in " + command + console.substr(0, 1) + " " + console.substr(1);
      if (!console.empty()) console = expand(console) + "\n";
      EXPECT_EQ(run(command, arguments), Answer(expand(row.result), console)) << row.call;
    }
  }

  std::optional<marine::MonitorMarine> monitor_;
  std::string u_;
  std::string s_;
};

}  // namespace marine_commands_test

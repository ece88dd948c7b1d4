// Calls a turbomachinery command the way the interpreter would, without one,
// on a monitor made for each test beside a scratch folder.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "command_call.h"
#include "fileformat/work_unit.h"
#include "scratch_folder.h"
#include "turbo/commands/turbo_command_set.h"
#include "turbo/curve_names.h"
#include "turbo/monitor.h"

// The answer of the turbomachinery command `name` called with `arguments`.
inline std::string call(std::string_view name, const std::vector<std::string>& arguments = {}) {
  return callCommand(turbo::kTurboCommands, name, arguments);
}

// A command called with its arguments and the answer it must give.
struct CommandCase {
  const char* command;
  std::vector<std::string> arguments;
  const char* answer;
};

inline void expectAnswers(const std::vector<CommandCase>& cases) {
  for (const CommandCase& c : cases) {
    EXPECT_EQ(call(c.command, c.arguments), c.answer)
        << c.command << " " << testing::PrintToString(c.arguments);
  }
}

// A scratch folder, and the turbomachinery monitor of a program started by
// `start`; the process-wide work-unit choice is put back after each test.
class TurboMonitorTest : public ScratchFolder {
 protected:
  static void SetUpTestSuite() { turbo::buildCurveNameTables(); }
  ~TurboMonitorTest() override {
    monitor_.reset();
    fileformat::workUnit = 0;
  }

  std::string path(const std::string& name) const { return pathOf(name); }
  // Writes a file of the scratch folder and answers its path.
  std::string write(const std::string& name, const std::string& text) {
    ScratchFolder::write(name, text);
    return pathOf(name);
  }
  void append(const std::string& file, const std::string& text) const {
    std::ofstream(file, std::ios::binary | std::ios::app) << text;
  }
  // The monitor of a program started with these arguments after its name.
  turbo::Monitor& start(std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), "monitor");
    monitor_.reset();
    monitor_ = std::make_unique<turbo::Monitor>(arguments);
    return *monitor_;
  }

  std::unique_ptr<turbo::Monitor> monitor_;
};

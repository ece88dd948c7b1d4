// The command line of monitor-watch: what to follow, how often, what to
// write and when to end. See help_text.cpp for what each option means.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "convergence/verdict.h"
#include "watch/computation_mode.h"

namespace watch {

enum class OutputFormat { table, json };

// A curve the user defines by a formula over the marine variables.
struct CustomFormula {
  std::string name;
  std::string expression;
};

struct WatchOptions {
  std::vector<std::string> residualPaths;
  std::optional<Mode> mode;  // none: recognised from each file
  double everySeconds = 5.0;
  bool once = false;
  std::vector<CustomFormula> formulas;
  std::vector<std::string> curves;  // empty: every curve
  OutputFormat format = OutputFormat::table;
  std::optional<std::filesystem::path> csvFolder;
  std::vector<std::string> untilConverged;
  std::optional<double> timeoutSeconds;
  std::optional<double> stallSeconds;
  convergence::Settings criteria;
  bool help = false;
};

// The options, or the one line that says what is wrong with the command line.
struct ParsedArguments {
  std::optional<WatchOptions> options;
  std::string error;
};

// `arguments` without the program name. Options take their value as the next
// argument or after '=' ("--every 2", "--every=2").
ParsedArguments parseWatchArguments(std::span<const std::string_view> arguments);

// Every option the command line knows, for the help text and its test.
std::vector<std::string_view> optionNames();

}  // namespace watch

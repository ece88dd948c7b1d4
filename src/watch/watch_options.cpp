#include "watch/watch_options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "watch/formula_check.h"

namespace watch {
namespace {

// Sets what an option means from its value; false, with `problem` set, for
// a value the option cannot take.
using ValueSetter = bool (*)(std::string_view option, std::string_view value, WatchOptions& options,
                             std::string& problem);
using FlagSetter = void (*)(WatchOptions& options);

std::string quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

// The whole text as a finite number; the decimal point is '.' whatever the
// locale.
std::optional<double> numberOf(std::string_view text) {
  double value = 0.0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  if (text.empty() || result.ec != std::errc{} || result.ptr != end || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

bool readSeconds(std::string_view option, std::string_view value, double& seconds,
                 std::string& problem) {
  const std::optional<double> number = numberOf(value);
  if (!number || !(*number > 0.0)) {
    problem = std::string(option) + " takes a number of seconds above 0, not " + quoted(value);
    return false;
  }
  seconds = *number;
  return true;
}

bool readOptionalSeconds(std::string_view option, std::string_view value,
                         std::optional<double>& seconds, std::string& problem) {
  double number = 0.0;
  if (!readSeconds(option, value, number, problem)) return false;
  seconds = number;
  return true;
}

// Appends the names of a comma-separated list; an empty name is refused.
bool appendNames(std::string_view option, std::string_view value, std::vector<std::string>& names,
                 std::string& problem) {
  std::vector<std::string> found;
  std::size_t start = 0;
  while (true) {
    const std::size_t comma = value.find(',', start);
    const std::string_view name = value.substr(start, comma - start);
    if (name.empty()) {
      problem =
          std::string(option) + " takes curve names separated by commas, not " + quoted(value);
      return false;
    }
    found.emplace_back(name);
    if (comma == std::string_view::npos) break;
    start = comma + 1;
  }
  names.insert(names.end(), found.begin(), found.end());
  return true;
}

bool setEvery(std::string_view option, std::string_view value, WatchOptions& options,
              std::string& problem) {
  return readSeconds(option, value, options.everySeconds, problem);
}

bool setTimeout(std::string_view option, std::string_view value, WatchOptions& options,
                std::string& problem) {
  return readOptionalSeconds(option, value, options.timeoutSeconds, problem);
}

bool setStall(std::string_view option, std::string_view value, WatchOptions& options,
              std::string& problem) {
  return readOptionalSeconds(option, value, options.stallSeconds, problem);
}

bool setCurves(std::string_view option, std::string_view value, WatchOptions& options,
               std::string& problem) {
  return appendNames(option, value, options.curves, problem);
}

bool setUntilConverged(std::string_view option, std::string_view value, WatchOptions& options,
                       std::string& problem) {
  return appendNames(option, value, options.untilConverged, problem);
}

// NAME=EXPRESSION: the name ends at the first '=' and holds no comma (it may
// stand in --curves); the formula must at least parse.
bool addFormula(std::string_view option, std::string_view value, WatchOptions& options,
                std::string& problem) {
  const std::size_t equals = value.find('=');
  const std::string_view name = value.substr(0, equals);
  if (equals == std::string_view::npos || name.empty() ||
      name.find(',') != std::string_view::npos || equals + 1 == value.size()) {
    problem = std::string(option) + " takes NAME=EXPRESSION (a name without commas), not " +
              quoted(value);
    return false;
  }
  const std::string_view expression = value.substr(equals + 1);
  if (const std::optional<std::string> fault = formulaFault(expression)) {
    problem = std::string(option) + " " + std::string(name) + ": " + *fault;
    return false;
  }
  options.formulas.push_back({std::string(name), std::string(expression)});
  return true;
}

bool setCsvFolder(std::string_view option, std::string_view value, WatchOptions& options,
                  std::string& problem) {
  if (value.empty()) {
    problem = std::string(option) + " takes a folder";
    return false;
  }
  options.csvFolder = std::filesystem::path(std::string(value));
  return true;
}

// The window's criteria accept the same ranges.
bool setConfidence(std::string_view option, std::string_view value, WatchOptions& options,
                   std::string& problem) {
  const std::optional<double> level = numberOf(value);
  if (!level || !(*level > 0.0 && *level < 1.0)) {
    problem = std::string(option) + " takes a level between 0 and 1, not " + quoted(value);
    return false;
  }
  options.criteria.confidence = *level;
  return true;
}

bool setTolerance(std::string_view option, std::string_view value, WatchOptions& options,
                  std::string& problem) {
  const std::optional<double> fraction = numberOf(value);
  if (!fraction || !(*fraction >= 0.0)) {
    problem =
        std::string(option) + " takes a fraction of the mean, 0 or more, not " + quoted(value);
    return false;
  }
  options.criteria.tolerance = *fraction;
  return true;
}

struct ValueOption {
  std::string_view name;
  ValueSetter set;
};

constexpr std::array<ValueOption, 9> kValueOptions{{
    {"--every", setEvery},
    {"--timeout", setTimeout},
    {"--stall", setStall},
    {"--curves", setCurves},
    {"--until-converged", setUntilConverged},
    {"--formula", addFormula},
    {"--csv", setCsvFolder},
    {"--confidence", setConfidence},
    {"--tolerance", setTolerance},
}};

struct FlagOption {
  std::string_view name;
  FlagSetter set;
};

constexpr std::array<FlagOption, 5> kFlagOptions{{
    {"--once", [](WatchOptions& options) { options.once = true; }},
    {"--json", [](WatchOptions& options) { options.format = OutputFormat::json; }},
    {"--marine", [](WatchOptions& options) { options.mode = Mode::marine; }},
    {"--turbo", [](WatchOptions& options) { options.mode = Mode::turbomachinery; }},
    {"--help", [](WatchOptions& options) { options.help = true; }},
}};

const ValueOption* valueOption(std::string_view name) {
  const auto found = std::find_if(kValueOptions.begin(), kValueOptions.end(),
                                  [name](const ValueOption& row) { return row.name == name; });
  return found == kValueOptions.end() ? nullptr : &*found;
}

const FlagOption* flagOption(std::string_view name) {
  const auto found = std::find_if(kFlagOptions.begin(), kFlagOptions.end(),
                                  [name](const FlagOption& row) { return row.name == name; });
  return found == kFlagOptions.end() ? nullptr : &*found;
}

// What the options say together; empty when they agree.
std::string disagreement(const WatchOptions& options, bool bothModes) {
  if (bothModes) return "--marine and --turbo exclude each other";
  if (options.residualPaths.empty()) return "no residual file given (see --help)";
  if (options.timeoutSeconds && options.untilConverged.empty()) {
    return "--timeout needs --until-converged: the curves it waits for";
  }
  if (options.once && (options.timeoutSeconds || options.stallSeconds)) {
    return "--once reads the files once: --timeout and --stall need a watch that goes on";
  }
  return {};
}

// Whether help is asked for anywhere before "--": it wins over any mistake
// in the rest of the line.
bool asksForHelp(std::span<const std::string_view> arguments) {
  for (const std::string_view argument : arguments) {
    if (argument == "--") return false;
    if (argument == "-h" || argument == "--help") return true;
  }
  return false;
}

}  // namespace

std::vector<std::string_view> optionNames() {
  std::vector<std::string_view> names;
  for (const ValueOption& row : kValueOptions) names.push_back(row.name);
  for (const FlagOption& row : kFlagOptions) names.push_back(row.name);
  return names;
}

ParsedArguments parseWatchArguments(std::span<const std::string_view> arguments) {
  WatchOptions options;
  if (asksForHelp(arguments)) {
    options.help = true;
    return {options, {}};
  }
  bool sawMarine = false;
  bool sawTurbo = false;
  bool pathsOnly = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (pathsOnly || !argument.starts_with('-') || argument == "-") {
      options.residualPaths.emplace_back(argument);
      continue;
    }
    if (argument == "--") {
      pathsOnly = true;
      continue;
    }
    const std::size_t equals = argument.find('=');
    const std::string_view name = argument.substr(0, equals);
    if (const FlagOption* flag = flagOption(name);
        flag != nullptr && equals == std::string_view::npos) {
      flag->set(options);
      sawMarine = sawMarine || name == "--marine";
      sawTurbo = sawTurbo || name == "--turbo";
      continue;
    }
    const ValueOption* option = valueOption(name);
    if (option == nullptr) {
      return {std::nullopt, "unknown option " + std::string(argument) + " (see --help)"};
    }
    std::string_view value;
    if (equals != std::string_view::npos) {
      value = argument.substr(equals + 1);
    } else if (i + 1 < arguments.size()) {
      value = arguments[++i];
    } else {
      return {std::nullopt, std::string(name) + " needs a value"};
    }
    std::string problem;
    if (!option->set(name, value, options, problem)) return {std::nullopt, problem};
  }
  if (std::string problem = disagreement(options, sawMarine && sawTurbo); !problem.empty()) {
    return {std::nullopt, problem};
  }
  return {options, {}};
}

}  // namespace watch

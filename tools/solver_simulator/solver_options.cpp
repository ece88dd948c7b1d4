#include "solver_simulator/solver_options.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace solver_simulator {
namespace {

template <typename Number>
bool readNumber(std::string_view text, Number& value) {
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  return !text.empty() && result.ec == std::errc{} && result.ptr == end;
}

constexpr std::array<std::string_view, 8> kValueOptions = {
    "--out", "--case", "--iterations", "--append", "--live", "--interval", "--seed", "--stamp"};

// Sets the option that takes `text` as its value; false for a bad value.
bool setValueOption(std::string_view option, std::string_view text, SolverOptions& options) {
  if (option == "--out") {
    options.out = std::filesystem::path(std::string(text));
    return !text.empty();
  }
  if (option == "--case") {
    options.caseName = text;
    return !text.empty();
  }
  if (option == "--iterations") {
    return readNumber(text, options.iterations) && options.iterations >= 0;
  }
  if (option == "--append") {
    options.append.emplace();
    return readNumber(text, *options.append) && *options.append >= 0;
  }
  if (option == "--live") {
    return readNumber(text, options.liveSeconds) && options.liveSeconds >= 0.0;
  }
  if (option == "--interval") {
    return readNumber(text, options.intervalMilliseconds) && options.intervalMilliseconds > 0;
  }
  if (option == "--seed") return readNumber(text, options.seed);
  options.stamp = RunStamp::parse(text);
  return options.stamp.has_value();
}

}  // namespace

void printUsage(std::ostream& out) {
  out << "usage: marine_solver --out DIR [--case NAME] [--steady|--unsteady] [--iterations N]\n"
         "                     [--append M] [--cut] [--live SECONDS] [--interval MS] [--restart]\n"
         "                     [--seed S] [--stamp STAMP]\n"
         "\n"
         "Writes a marine computation into DIR as the solver would: the residual history,\n"
         "the body description, the 18 force and moment files, the motion of the hull,\n"
         "the actuator disks and the user quantities.\n"
         "\n"
         "  --out DIR         the folder to write into (created when missing)\n"
         "  --case NAME       the case: NAME.res, NAME_body_param.dat (default ship)\n"
         "  --steady          a steady run\n"
         "  --unsteady        an unsteady run, 5 iterations per time step (the default)\n"
         "  --iterations N    iterations written at once (default 60)\n"
         "  --append M        take up the run on disk that the same options wrote (N\n"
         "                    iterations) and append M iterations to it; the end of a\n"
         "                    line that --cut left half-written comes first\n"
         "  --cut             leave the lines of the last iteration written half-written\n"
         "  --restart         then start a new run over it: every file from its start,\n"
         "                    stamped a second later, with min(10, N) iterations\n"
         "  --live SECONDS    then keep appending an iteration every interval for that\n"
         "                    long; about one in three arrives in two pieces (half a\n"
         "                    line, a pause, the rest)\n"
         "  --interval MS     the interval of --live (default 500)\n"
         "  --seed S          noise seed (default 1); with --stamp, the same options\n"
         "                    write the same files\n"
         "  --stamp STAMP     creation stamp \"dd/mm/yyyy hh:mm:ss\" (default: now)\n";
}

std::optional<SolverOptions> parseSolverOptions(std::span<const std::string_view> arguments,
                                                std::ostream& errors) {
  SolverOptions options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view option = arguments[i];
    if (option == "-h" || option == "--help") {
      options.help = true;
    } else if (option == "--steady") {
      options.mode = RunMode::steady;
    } else if (option == "--unsteady") {
      options.mode = RunMode::unsteady;
    } else if (option == "--restart") {
      options.restart = true;
    } else if (option == "--cut") {
      options.cut = true;
    } else if (std::find(kValueOptions.begin(), kValueOptions.end(), option) ==
               kValueOptions.end()) {
      errors << "marine_solver: unknown option " << option << "\n";
      return std::nullopt;
    } else if (i + 1 == arguments.size()) {
      errors << "marine_solver: " << option << " needs a value\n";
      return std::nullopt;
    } else if (!setValueOption(option, arguments[++i], options)) {
      errors << "marine_solver: bad value for " << option << ": " << arguments[i] << "\n";
      return std::nullopt;
    }
  }
  if (options.out.empty() && !options.help) {
    errors << "marine_solver: --out DIR is required\n";
    return std::nullopt;
  }
  return options;
}

}  // namespace solver_simulator

// The command line of marine_solver.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>

#include "solver_simulator/case_setup.h"
#include "solver_simulator/run_stamp.h"

namespace solver_simulator {

struct SolverOptions {
  std::filesystem::path out;
  std::string caseName = "ship";
  RunMode mode = RunMode::unsteady;
  int iterations = 60;
  // Iterations added to the run that --iterations describes, already on disk.
  std::optional<int> append;
  // The last iteration written leaves its last lines half-written.
  bool cut = false;
  double liveSeconds = 0.0;
  int intervalMilliseconds = 500;
  bool restart = false;
  std::uint64_t seed = 1;
  std::optional<RunStamp> stamp;  // none: the current time
  bool help = false;
};

// The options of `arguments` (without the program name); nothing, after a
// message on `errors`, for a command line that cannot be used.
std::optional<SolverOptions> parseSolverOptions(std::span<const std::string_view> arguments,
                                                std::ostream& errors);

void printUsage(std::ostream& out);

}  // namespace solver_simulator

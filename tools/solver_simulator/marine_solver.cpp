// marine_solver: writes a marine computation as the solver would, and can
// keep it growing like a running solver. See printUsage for the options.
#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "solver_simulator/marine_case_writer.h"
#include "solver_simulator/solver_noise.h"
#include "solver_simulator/solver_options.h"

namespace {

using solver_simulator::LineEnd;
using solver_simulator::MarineCaseWriter;
using solver_simulator::SolverOptions;
using std::chrono::milliseconds;

// Iterations written after a restart.
constexpr int kRestartIterations = 10;
// Part of the live iterations that reach the disk in two pieces.
constexpr double kCutShare = 1.0 / 3.0;

std::string runSummary(const MarineCaseWriter& writer) {
  const bool unsteady = writer.setup().unsteady();
  std::string text = std::string(unsteady ? "unsteady" : "steady") + " run stamped " +
                     writer.setup().stamp.text() + ", " +
                     std::to_string(writer.iterationsWritten()) + " iterations";
  if (unsteady) text += " (" + std::to_string(writer.timeStepsCompleted()) + " time steps)";
  return text;
}

// With LineEnd::cutLastLine, the last of them leaves its lines half-written.
void appendIterations(MarineCaseWriter& writer, int count, LineEnd last = LineEnd::whole) {
  for (int i = 1; i <= count; ++i) writer.appendIteration(i == count ? last : LineEnd::whole);
}

// Appends one iteration every interval for the --live seconds; about one in
// three is written in two pieces, the way a solver's buffered output reaches
// the disk.
void goLive(MarineCaseWriter& writer, const SolverOptions& options) {
  const solver_simulator::SolverNoise noise(options.seed, 0);
  const milliseconds interval(options.intervalMilliseconds);
  const auto stop =
      std::chrono::steady_clock::now() +
      std::chrono::duration_cast<milliseconds>(std::chrono::duration<double>(options.liveSeconds));
  std::cout << "appending an iteration every " << options.intervalMilliseconds << " ms for "
            << options.liveSeconds << " s" << std::endl;
  int appended = 0;
  while (std::chrono::steady_clock::now() < stop) {
    const int iteration = writer.iterationsWritten() + 1;
    if (noise.unit("live cut", iteration) < kCutShare) {
      writer.appendIteration(LineEnd::cutLastLine);
      std::cout << "iteration " << iteration << ": half a line, a pause, the rest" << std::endl;
      std::this_thread::sleep_for(interval / 2);
      writer.completeLines();
      std::this_thread::sleep_for(interval - interval / 2);
    } else {
      writer.appendIteration();
      std::cout << "iteration " << iteration << std::endl;
      std::this_thread::sleep_for(interval);
    }
    ++appended;
  }
  std::cout << "live run over: " << appended << " iterations appended" << std::endl;
}

int run(const SolverOptions& options) {
  solver_simulator::CaseSetup setup = solver_simulator::defaultCaseSetup(options.out, options.mode);
  setup.caseName = options.caseName;
  setup.seed = options.seed;
  setup.stamp = options.stamp.value_or(solver_simulator::RunStamp::now());
  MarineCaseWriter writer(setup);
  const LineEnd last = options.cut ? LineEnd::cutLastLine : LineEnd::whole;
  if (options.append) {
    writer.resume(options.iterations);
    appendIterations(writer, *options.append, last);
    std::cout << "appended " << *options.append << " iterations to "
              << setup.residualPath().string() << ": " << runSummary(writer) << std::endl;
  } else {
    writer.writeHeaders();
    appendIterations(writer, options.iterations, last);
    std::cout << "wrote " << setup.residualPath().string()
              << " and the files beside it: " << runSummary(writer) << std::endl;
  }

  if (options.restart) {
    // Leave the first run on disk long enough for a watcher to see it.
    std::this_thread::sleep_for(std::chrono::seconds(1));
    writer.restart(writer.setup().stamp.plusSeconds(1));
    appendIterations(writer, std::min(kRestartIterations, options.iterations));
    std::cout << "restarted: " << runSummary(writer) << std::endl;
  }
  if (options.liveSeconds > 0.0) goLive(writer, options);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string_view> arguments(argv + 1, argv + argc);
  const std::optional<SolverOptions> options =
      solver_simulator::parseSolverOptions(arguments, std::cerr);
  if (!options) {
    std::cerr << "try: marine_solver --help" << std::endl;
    return 2;
  }
  if (options->help) {
    solver_simulator::printUsage(std::cout);
    return 0;
  }
  try {
    return run(*options);
  } catch (const std::exception& error) {
    std::cerr << "marine_solver: " << error.what() << std::endl;
    return 1;
  }
}
